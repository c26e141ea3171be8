// What holds for every ordinary window: nothing that takes the keyboard is without a name and a key of its own.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "tests/fakes/fake_services.h"

namespace quenlox {
namespace {

int PageCount(const Layout& layout) {
    int count = layout.kind == Layout::Kind::Pages ? static_cast<int>(layout.items.size()) : 1;
    for (const Layout& item : layout.items) count = std::max(count, PageCount(item));
    return count;
}

// The window as it looks on one of its pages.
Layout OnPage(Layout layout, int page) {
    if (layout.kind == Layout::Kind::Pages) layout.items = {layout.items[static_cast<std::size_t>(page)]};
    for (Layout& item : layout.items) item = OnPage(item, page);
    return layout;
}

template <class... Types>
bool IsOneOf(const Control* control) {
    return (dynamic_cast<const Types*>(control) || ...);
}

bool FollowsItsGroup(const Control* control, const Control* before) {
    return IsOneOf<OptionButton>(control) && IsOneOf<OptionButton>(before) && before->name() == control->name();
}

struct OrdinaryWindows : testing::Test, FakeServices {};

TEST_F(OrdinaryWindows, EveryControlHasANameBeforeItAndAKeyThatNothingElseInTheWindowHas) {
    Application application(all(), "");
    application.load();
    const auto items = application.top().menuMain().items;
    for (const char* title : {"プレイリスト", "オプション", "グライコ", "タグ情報", "ファイル変換", "バージョン情報"}) {
        std::ranges::find_if(items, [&](const MenuItem& item) { return item.caption.starts_with(title); })->click();
        Form& form = *windows.hosts.back().first;
        for (int page = 0; page < PageCount(form.layout()); ++page) {
            std::map<char, int> keys;
            if (form.menuBar()) {
                for (const MenuItem& menu : form.menuBar()->items) ++keys[AccessKeyOf(menu.caption)];
            }
            const Control* before = nullptr;
            for (const Control* control : ReadingOrder(OnPage(form.layout(), page))) {
                const std::string where = std::string(title) + " " + std::to_string(page) + " " + control->name();
                if (const auto* tabs = dynamic_cast<const TabStrip*>(control))
                    for (const std::string& tab : tabs->tabs()) ++keys[AccessKeyOf(tab)];
                const bool shows = IsOneOf<Label, Frame, CommandButton, CheckBox, OptionButton>(control);
                const char own = shows ? AccessKeyOf(control->caption()) : char{0};
                ++keys[own];
                const bool labelled = IsOneOf<Label, Frame>(before) && !before->caption().empty();
                if (!IsOneOf<Label, Frame, ProgressBar, PictureBox>(control)) {
                    EXPECT_TRUE(!control->caption().empty() || (labelled && !shows)) << where;
                    // A control that shows no name can show no key either.
                    const bool needsKey = shows ? !FollowsItsGroup(control, before) : control->caption().empty();
                    EXPECT_TRUE(!needsKey || own || (labelled && AccessKeyOf(before->caption()))) << where;
                }
                before = control;
            }
            for (const auto& [key, count] : keys) EXPECT_TRUE(key == 0 || count == 1) << title << page << key;
        }
    }
    application.top().unload();
}

}  // namespace
}  // namespace quenlox

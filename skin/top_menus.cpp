#include "skin/top_menus.h"

#include <utility>

#include "skin/top_controls.h"
#include "state/options.h"
#include "text/strings.h"

namespace quenlox {
namespace {

class Builder {
  public:
    explicit Builder(const PerformCommand& perform) : perform_(perform) {}

    MenuItem item(const char* caption, TopCommand command, int index = 0) const {
        return MenuCommand(caption, act(command, index));
    }
    MenuItem check(const char* caption, TopCommand command, bool checked, int index = 0) const {
        return MenuChoice(caption, checked, act(command, index));
    }
    MenuItem choice(std::string caption, TopCommand command, int index, bool chosen) const {
        return MenuChoice(std::move(caption), chosen, act(command, index), true);
    }

  private:
    std::function<void()> act(TopCommand command, int index) const {
        return [perform = perform_, command, index] { perform(command, index); };
    }

    const PerformCommand& perform_;
};

MenuItem EnabledWhen(bool enabled, MenuItem item) {
    item.enabled = enabled;
    return item;
}

MenuItem Skins(const Builder& build, const MainMenuFacts& facts) {
    std::vector<MenuItem> items;
    const auto add = [&](const std::string& folder, const std::string& caption) {
        const bool shown = EqualsNoCase(facts.skin, folder);
        items.push_back(build.choice(caption, TopCommand::Skin, static_cast<int>(items.size()), shown));
    };
    add("default", "Default");
    for (const std::string& folder : facts.skins) add(folder, ReplaceAll(folder, "&", "&&"));
    return SubMenu("スキンの変更(&S)", std::move(items));
}

MenuItem Playback(const Builder& build) {
    constexpr const char* kActions[kButtonCount] = {"再生／停止(&P)",   "一時停止(&U)",     "前の曲(&B)",  "次の曲(&N)",
                                                    "音程を下げる(&L)", "音程を上げる(&H)", "速度変更(&D)"};
    std::vector<MenuItem> items;
    for (int n = 0; n < kButtonCount; ++n) items.push_back(build.item(kActions[n], TopCommand::Playback, n));
    items.push_back(MenuSeparator());
    items.push_back(build.item("再生モード(&M)", TopCommand::PlayMode));
    items.push_back(build.item("経過／残り時間(&T)", TopCommand::TimeMode));
    items.push_back(build.item("曲名／ファイル名(&F)", TopCommand::TitleMode));
    return SubMenu("再生操作(&B)", std::move(items));
}

MenuItem Scales(const Builder& build, const MainMenuFacts& facts) {
    std::vector<MenuItem> items;
    for (const ZoomChoice& zoom : kZoomChoices) {
        const std::string caption = zoom.name + std::string("(&") + zoom.key + ")";
        items.push_back(build.choice(caption, TopCommand::Scale, zoom.percent, zoom.percent == facts.zoom));
    }
    return SubMenu("表示倍率(&Z)", std::move(items));
}

}  // namespace

Menu MainMenu(const MainMenuFacts& facts, const PerformCommand& perform) {
    const Builder build(perform);
    return {
        "menuMain",
        {build.check("常に手前に表示(&T)", TopCommand::AlwaysOnTop, facts.alwaysOnTop),
         EnabledWhen(facts.hasOperationPanel,
                     build.check("操作パネルモード(&P)", TopCommand::OperationPanel, facts.operationPanel)),
         Skins(build, facts), build.check("タイトルアニメーション(&A)", TopCommand::TitleAnimation, facts.titleRuns),
         EnabledWhen(facts.hasSpectrum, build.check("オシロ・スペアナ表示(&O)", TopCommand::Spectrum, facts.spectrum)),
         build.check("グライコ(&G)", TopCommand::Equalizer, facts.equalizer),
         build.item("タグ情報(&I)", TopCommand::Command, kTagCommand),
         build.item("ファイル変換(&C)", TopCommand::Command, kConvCommand),
         build.item("バージョン情報(&V)", TopCommand::About), MenuSeparator(),
         // What the buttons of a skin do, for those who use the keyboard or a skin without that button.
         build.check("プレイリスト(&L)", TopCommand::Command, facts.list, kListCommand),
         build.check("オプション(&N)", TopCommand::Command, facts.options, kOptCommand),
         build.check("歌詞(&Y)", TopCommand::Lyrics, facts.lyrics), Playback(build), Scales(build, facts),
         build.item("ヘルプ(&H)", TopCommand::Command, kHelpCommand),
         build.item("通知領域に入れる(&M)", TopCommand::Command, kMiniCommand), MenuSeparator(),
         build.item("Quenloxの終了(&Q)", TopCommand::Quit)}};
}

Menu TrayMenu(const PerformCommand& perform) {
    const Builder build(perform);
    return {"menuTray",
            {build.item("ﾒｲﾝ画面を表示", TopCommand::Restore), build.item("Quenloxの終了", TopCommand::Quit)}};
}

}  // namespace quenlox

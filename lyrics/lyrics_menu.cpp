#include "lyrics/lyrics_menu.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "forms/keys.h"

namespace quenlox {
namespace {

constexpr std::array<const char*, 8> kSchemeNames{"白地に黒(&1)",       "黒地に白(&2)",   "クリーム地に黒(&3)",
                                                  "黒地にクリーム(&4)", "薄緑地に黒(&5)", "黒地に薄緑(&6)",
                                                  "薄青地に黒(&7)",     "黒地に薄青(&8)"};

}  // namespace

Menu LyricsMenu(const LyricsMenuFacts& facts, const LyricsPerform& perform) {
    const auto act = [perform](LyricsCommand command, int number = 0) {
        return [perform, command, number] { perform(command, number); };
    };
    const auto item = [&](const char* caption, LyricsCommand command, bool enabled = true) {
        return MenuCommand(caption, act(command), enabled);
    };
    const auto check = [&](const char* caption, LyricsCommand command, bool checked) {
        return MenuChoice(caption, checked, act(command));
    };
    std::vector<MenuItem> schemes, lines;
    for (const char* name : kSchemeNames) {
        const int number = static_cast<int>(schemes.size()) + 1;
        schemes.push_back(MenuChoice(name, facts.scheme == number, act(LyricsCommand::Scheme, number), true));
    }
    for (const int count : {1, 3, 5}) {
        const std::string digit = std::to_string(count);
        lines.push_back(
            MenuChoice(digit + "行(&" + digit + ")", facts.lines == count, act(LyricsCommand::Lines, count), true));
    }
    return {"menuLyrics",
            {SubMenu("配色(&C)", std::move(schemes)), SubMenu("行数(&L)", std::move(lines)),
             item("フォント(&F)...", LyricsCommand::Font), check("太字(&B)", LyricsCommand::Bold, facts.bold),
             check("タイムタグも表示(&T)", LyricsCommand::Stamps, facts.stamps),
             check("なめらかに送る(&M)", LyricsCommand::Smooth, facts.smooth), MenuSeparator(),
             item("早く出す(&E)\tCtrl+←", LyricsCommand::Earlier, facts.timed),
             item("遅く出す(&D)\tCtrl+→", LyricsCommand::Later, facts.timed),
             item("ずらした時間を戻す(&Z)\tCtrl+0", LyricsCommand::OnTime, facts.shifted),
             item("ずらした時間を歌詞ファイルに保存(&S)\tCtrl+S", LyricsCommand::SaveTiming,
                  facts.shifted && facts.sideFile),
             MenuSeparator(), item("歌詞をコピー(&Y)\tCtrl+C", LyricsCommand::Copy, facts.text),
             item("歌詞を読み直す(&R)\tF5", LyricsCommand::Reread), item("オプション(&O)...", LyricsCommand::Options)}};
}

LyricsCommand LyricsCommandOfKey(int key, int shift) {
    if (key == kKeyF5 && shift == 0) return LyricsCommand::Reread;
    if (shift != kControl) return LyricsCommand::None;
    switch (key) {
        case kKeyLeft: return LyricsCommand::Earlier;
        case kKeyRight: return LyricsCommand::Later;
        case kKey0: return LyricsCommand::OnTime;
        case kKeyS: return LyricsCommand::SaveTiming;
        default: return LyricsCommand::None;
    }
}

}  // namespace quenlox

#include "lyrics/lyrics_commands.h"

#include <algorithm>

#include "lyrics/form_lyrics.h"
#include "lyrics/lyrics_display.h"
#include "lyrics/lyrics_lookup.h"
#include "lyrics/lyrics_offset.h"
#include "platform/dialogs.h"
#include "platform/file_system.h"
#include "state/global_state.h"
#include "state/option_store.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr int kShiftStep = 100, kMostShift = 60000;  // milliseconds

}  // namespace

LyricsCommands::LyricsCommands(const Parts& parts) : parts_(parts) {
    parts_.window.facts = [this] { return facts(); };
    parts_.window.onCommand = [this](LyricsCommand command, int number) { perform(command, number); };
}

LyricsMenuFacts LyricsCommands::facts() const {
    const Options& options = parts_.options;
    LyricsMenuFacts facts;
    facts.scheme = std::max(parts_.state.LyricsColors[kLyricsScheme], 1);
    facts.lines = options.LyricsLine;
    facts.bold = options.LyricsBold;
    facts.stamps = options.TimeTagShown;
    facts.smooth = options.LyricsSmooth;
    facts.timed = parts_.state.LyricsKind == kTimedLyrics;
    facts.shifted = facts.timed && parts_.display.trackShift() != 0;
    facts.sideFile = !parts_.lookup.sideFile().empty();
    facts.text = parts_.window.Text2.visible();
    return facts;
}

void LyricsCommands::perform(LyricsCommand command, int number) {
    OptionStore& options = parts_.options;
    switch (command) {
        case LyricsCommand::Scheme: return parts_.window.chooseScheme(number);
        case LyricsCommand::Lines: return options.set(&Options::LyricsLine, number);
        case LyricsCommand::Font:
            if (const auto face = parts_.dialogs.chooseFont(options->LyricsFont))
                options.set(&Options::LyricsFont, *face);
            return;
        case LyricsCommand::Bold: return options.set(&Options::LyricsBold, !options->LyricsBold);
        case LyricsCommand::Stamps: return options.set(&Options::TimeTagShown, !options->TimeTagShown);
        case LyricsCommand::Smooth: return options.set(&Options::LyricsSmooth, !options->LyricsSmooth);
        case LyricsCommand::Earlier: return shift(parts_.display.trackShift() - kShiftStep);
        case LyricsCommand::Later: return shift(parts_.display.trackShift() + kShiftStep);
        case LyricsCommand::OnTime: return shift(0);
        case LyricsCommand::SaveTiming: return saveTiming();
        case LyricsCommand::Reread: return reread();
        case LyricsCommand::Copy: return parts_.window.Text2.copy();
        case LyricsCommand::Options:
            if (onOptions) onOptions();
            return;
        case LyricsCommand::None: return;
    }
}

void LyricsCommands::shift(int milliseconds) {
    if (facts().timed) parts_.display.setTrackShift(std::clamp(milliseconds, -kMostShift, kMostShift));
}

void LyricsCommands::saveTiming() {
    const LyricsMenuFacts now = facts();
    if (!now.shifted || !now.sideFile) return;
    const std::string path = parts_.lookup.sideFile();
    const auto bytes = parts_.files.read(path, kLargestLyrics);
    const auto shifted =
        bytes ? ShiftLyrics(*bytes, parts_.display.trackShift(), EqualsNoCase(LastCharacters(path, 4), ".kra"))
              : std::nullopt;
    if (!shifted || !parts_.files.write(path, *shifted)) {
        return parts_.dialogs.message(
            "歌詞ファイルに保存できませんでした。\rファイルが読み取り専用か、ほかのプログラムで使用中でないかを確かめて"
            "くだ"
            "さい",
            MessageIcon::Warning);
    }
    reread();
}

void LyricsCommands::reread() {
    parts_.display.setTrackShift(0);
    parts_.lookup.lookAgain();
    parts_.display.update();
}

}  // namespace quenlox

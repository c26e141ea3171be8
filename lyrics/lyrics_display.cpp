#include "lyrics/lyrics_display.h"

#include <algorithm>

#include "forms/bmp.h"
#include "lyrics/form_lyrics.h"
#include "lyrics/lyrics_lookup.h"
#include "platform/file_system.h"
#include "platform/text_painter.h"
#include "state/global_state.h"
#include "state/options.h"

namespace quenlox {
namespace {

constexpr int kInterval = 500;        // milliseconds
constexpr int kKaraokeInterval = 80;  // while a line shows its progress
constexpr int kShortestInterval = 20;
constexpr int kMoveInterval = 16;                     // while lines move up
constexpr std::uint64_t kLargestPicture = 32u << 20;  // bytes
constexpr std::int64_t kMostPixels = 1 << 22;         // of the picture that is kept, more than a window of lyrics shows
constexpr int kShiftUnit = 100;                       // milliseconds for one step of the option

}  // namespace

LyricsDisplay::LyricsDisplay(GlobalState& state, const Options& options, Vbmp3& vbmp3, FileSystem& files,
                             TextPainter& painter, FormLyrics& window, LyricsScreen& main)
    : state_(state), options_(options), vbmp3_(vbmp3), files_(files), painter_(painter), window_(window), main_(main) {
    window_.onShown = [this] { update(); };
}

bool LyricsDisplay::runs() const {
    return state_.LyricsKind == kTimedLyrics || (state_.LyricsKind == kPlainLyrics && options_.LyricsSelf);
}

bool LyricsDisplay::wantsWindow() const {
    if (!options_.LyricsShown || state_.LyricsKind == kNoLyrics) return false;
    return state_.SkinLacksLyricsArea || !runs();
}

void LyricsDisplay::chooseWindow() {
    windowDue_ = wantsWindow();
    if (!state_.SkinLacksLyricsArea && !windowDue_) window_.hide();
}

void LyricsDisplay::trackOpened() {
    setTrackShift(0);
    chooseWindow();
    followWindow();
    update();
}

void LyricsDisplay::lyricsDisplayMode(bool inWindow) {
    panelLines_.reset();
    windowDue_ = wantsWindow();
    if (!inWindow && !windowDue_) window_.hide();
}

void LyricsDisplay::lyricsShownChanged() {
    if (state_.ShuttingDown) return;
    windowDue_ = false;
    if (options_.LyricsShown) {
        main_.showLyricsWindow();
    } else {
        window_.hide();
    }
}

// While the main window is not on the screen, at the start and in the notification area, no window comes up.
void LyricsDisplay::followWindow() {
    if (!windowDue_ || !main_.seen() || state_.ShuttingDown) return;
    windowDue_ = false;
    if (!window_.visible()) main_.showLyricsWindow();
}

void LyricsDisplay::followOptions() {
    const int shift = (options_.LyricsTime - kLyricsOnTime) * kShiftUnit + trackShift_;
    if (shift != shift_) vbmp3_.vbmp3_setLyricsShift(shift);
    shift_ = shift;
    const bool spread = options_.LyricsSelf;
    if (spread != spread_) {
        vbmp3_.vbmp3_setNotTagLyricsLine(spread ? 1 : 0);
        chooseWindow();
    }
    spread_ = spread;
}

bool LyricsDisplay::windowSeen() const {
    if (!window_.visible()) return false;
    return !window_.host() || window_.host()->clientSize().height > 0;  // minimised it has none
}

void LyricsDisplay::update() {
    followOptions();
    followWindow();
    const bool panel = main_.seen() && main_.hasPanel(), window = windowSeen();
    const LyricsLines lines = (panel || window) && runs() ? vbmp3_.vbmp3_getLyrics2() : LyricsLines{};
    if (panel) drawPanel(lines);
    if (window) {
        findPicture();
        window_.setShowsText(state_.LyricsKind == kPlainLyrics && !runs());
        window_.setNotice(notice());
        window_.showLines(lines);
    }
    schedule(lines);
}

void LyricsDisplay::setTrackShift(int milliseconds) {
    if (milliseconds == trackShift_) return;
    trackShift_ = milliseconds;
    window_.showShift(milliseconds);
    update();
}

LyricsNotice LyricsDisplay::notice() const {
    if (state_.LyricsKind != kNoLyrics) return {};
    if (state_.CurrentFile.empty()) return {"", "曲を開くと、ここに歌詞を表示します"};
    if (!state_.MediaKind.lyrics) return {main_.title(), "歌詞を表示できるのは、MPEGオーディオとRMPの曲です"};
    return {main_.title(),
            "歌詞はありません。曲と同じ名前の歌詞ファイル（.lrc .kra .txt）を" +
                std::string(options_.LyricsFolder.empty() ? "曲と同じフォルダ" : "曲のフォルダか歌詞フォルダ") +
                "に置くと、表示します"};
}

void LyricsDisplay::picturesChanged() {
    picturedTrack_.reset();
    update();
}

// A picture is read only when it will be seen.
void LyricsDisplay::findPicture() {
    if (picturedTrack_ == state_.CurrentFile) return;
    picturedTrack_ = state_.CurrentFile;
    for (const std::string& path : LyricsPictures(state_.CurrentFile, options_.PictureFolder)) {
        const auto bytes = files_.read(path, kLargestPicture);
        if (auto picture = bytes ? ReadBmpThinned(*bytes, kMostPixels) : std::nullopt)
            return window_.setPicture(std::move(*picture));
    }
    window_.setPicture({});
}

void LyricsDisplay::drawPanel(const LyricsLines& lines) {
    const auto color = [&](int entry) {
        return Surface::ToColor(static_cast<Surface::Pixel>(state_.LyricsColors[static_cast<std::size_t>(entry)]));
    };
    LyricsPanelLook look = main_.panelLook();
    look.font.face = options_.LyricsFont;
    look.font.bold = options_.LyricsBold;
    const bool second = options_.LyricsSecondColor;
    look.text = color(second ? kSkinLyricsSecond : kSkinLyricsFirst);
    look.sung = color(second ? kSkinLyricsFirst : kSkinLyricsSecond);
    if (panelLines_ == lines && look == panelLook_) return;
    panelLines_ = lines;
    panelLook_ = look;
    DrawLyricsPanel(main_.panel(), painter_, lines, look);
    main_.panelDrawn(CurrentLyricsLine(lines));
}

// A line shall appear when it is due and not at the next of the timer's even steps.
void LyricsDisplay::schedule(const LyricsLines& lines) {
    int interval = kInterval;
    if (window_.moving() && windowSeen()) {
        interval = kMoveInterval;
    } else if (state_.PlayerStatus == kPlay && lines.total > 0) {
        if (lines.progressBytes >= 0) interval = kKaraokeInterval;
        if (const std::int64_t next = lines.stampMs[3]; next >= 0) {
            const std::int64_t left = next - vbmp3_.vbmp3_getPositionMs();
            if (left > 0) interval = static_cast<int>(std::clamp<std::int64_t>(left, kShortestInterval, interval));
        }
    }
    main_.setInterval(interval);
}

}  // namespace quenlox

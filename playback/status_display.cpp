#include "playback/status_display.h"

#include <algorithm>
#include <array>
#include <utility>

#include "playback/main_display.h"
#include "state/global_state.h"
#include "text/numbers.h"

namespace quenlox {
namespace {

constexpr const char* kNoDevice = " ﾃﾞﾊﾞｲｽなし";
constexpr std::array<const char*, 8> kStatusWords{"STOP", "PLAY", "PAUSE", "ERROR", "LOAD", "WAIT", "Decode", "Encode"};
constexpr std::array<const char*, 4> kPlayWords{"PLAY", " PLAY↑", " PLAY↓", " PLAY⇒"};
constexpr std::array<const char*, 4> kModeWords{"SINGLE", "REPEAT", "PROGRAM", "RANDOM"};

template <std::size_t N>
const char* WordAt(const std::array<const char*, N>& words, int place, const char* otherwise) {
    return place >= 0 && place < static_cast<int>(N) ? words[static_cast<std::size_t>(place)] : otherwise;
}

}  // namespace

std::string StatusWord(int status, int pitchMode) {
    if (status == kPlay) return WordAt(kPlayWords, pitchMode, kPlayWords[0]);
    return WordAt(kStatusWords, status, kStatusWords[0]);
}

std::string PlayModeWord(int playMode) { return WordAt(kModeWords, playMode, ""); }

std::string Information::text() const {
    if (!notice.empty()) return notice;
    return format + (format.ends_with('+') ? std::string() : lyrics) + (withoutDevice ? kNoDevice : "");
}

void StatusDisplay::showInformation(Information information) {
    information_ = std::move(information);
    display_.showInformation(information_.text());
}

void StatusDisplay::showLyricsMarker(const std::string& marker) {
    showInformation({information_.format, marker, information_.withoutDevice, {}});
}

void StatusDisplay::showDevice(bool there) {
    if (information_.withoutDevice == there) showInformation({information_.format, information_.lyrics, !there, {}});
}

void StatusDisplay::showNotice(const std::string& text) {
    Information told = information_;
    told.notice = text;
    showInformation(std::move(told));
}

void StatusDisplay::ShowStatus(int code) {
    display_.showStatus(StatusWord(code == 0 ? state_.PlayerStatus : code, state_.PitchMode));
}

void StatusDisplay::ShowPlayMode() { display_.showPlayMode(PlayModeWord(state_.PlayMode)); }

void StatusDisplay::ShowTime(std::int32_t seconds) {
    if (state_.PlayerStatus < kEncode) {
        const std::int64_t shown = state_.TimeMode != 0 ? std::int64_t{state_.TotalSeconds} - seconds : seconds;
        display_.showTime(MinutesAndSeconds(shown));
    }
    const bool filled = seconds > 0 && state_.TotalSeconds > 0;
    display_.showBar(filled ? std::min(static_cast<double>(seconds) / state_.TotalSeconds, 1.0) : 0.0);
}

}  // namespace quenlox

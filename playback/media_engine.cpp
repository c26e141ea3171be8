#include "playback/media_engine.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <utility>

#include "forms/window_host.h"
#include "platform/file_system.h"
#include "platform/media_control.h"
#include "platform/vbmp3.h"
#include "playback/cd_drives.h"
#include "playback/file_kind.h"
#include "playback/main_display.h"
#include "state/global_state.h"
#include "state/options.h"
#include "text/midi_text.h"
#include "text/numbers.h"
#include "state/media_formats.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr int kPortInUse = 337;                  // media control: the sequencer's port is taken
constexpr std::uint64_t kMidiLimit = 16u << 20;  // bytes
constexpr int kInvalidFile = 296;                // media control: the file itself is at fault
constexpr const char* kMissingText = "ファイルがありません";
constexpr const char* kRefusedText = "再生できません";
// A file that answers sooner is shown at once; for a slower one its name stands in the meantime.
constexpr std::chrono::milliseconds kShowNameAfter{100};

// One line that fits the information label: MPEG audio from its figures ("MPEG1 Layer3 44.1kHz 128kbps"), everything
// else as the library names it.
std::string FormatText(const TrackInfo& info) {
    std::string text = info.format;
    if (text == "WAVE_FORMAT_PCM") text = "WAVE PCM";
    if (info.layer > 0) {
        char line[64];
        std::snprintf(line, sizeof line, "MPEG%g Layer%d %gkHz %dkbps", info.mpegVersion / 10.0, info.layer,
                      info.sampleRate / 1000.0, (info.bitRate + 500) / 1000);
        text = line;
    }
    return info.variableBitRate ? text + " VBR" : text;
}

}  // namespace

// What the disk knows of a file. Filled on another thread, which may be left to itself.
struct MediaEngine::Found {
    std::string path;  // CurrentFile, or where its CD is now
    std::atomic<bool> wanted = true;
    bool exists = false;
    bool rootAnswers = true;  // its drive or share is there
    LibraryResult<TrackInfo> info = LibraryError::None;  // with a value it is open in the decoding library
};

MediaEngine::MediaEngine(GlobalState& state, const Options& options, Vbmp3& vbmp3, MediaControl& mediaControl,
                         FileSystem& files, WindowSystem& windows, MainDisplay& display)
    : state_(state),
      options_(options),
      vbmp3_(vbmp3),
      mediaControl_(mediaControl),
      files_(files),
      windows_(windows),
      display_(display),
      status_(state, display) {}

MediaEngine::~MediaEngine() { vbmp3_.vbmp3_setListener(nullptr); }

void MediaEngine::command(const char* what) { mediaControl_.sendString(std::string(what) + " MediaFile"); }

std::int32_t MediaEngine::askMilliseconds(const std::string& command) {
    if (mediaControl_.sendString(command, &state_.MciReturn) != 0) return 0;
    return NumericInteger(TrimAtNull(state_.MciReturn));
}

void MediaEngine::DetectMediaKind(const Found& found) {
    const std::string lastFour = LastFour(state_.CurrentFile);
    state_.MediaKind = found.info ? KindOfFileType(found.info->type) : KindOfRefused(lastFour);
    state_.MediaKindName = state_.MediaKind.name();
    display_.showKind(state_.MediaKindName);
}

void MediaEngine::listen() {
    // An event of a file that has been closed meanwhile must not reach the one that is open now.
    underway_ = std::make_shared<std::atomic<int>>(0);
    vbmp3_.vbmp3_setListener([this, opened = openCount_, underway = underway_](LibraryEvent event) {
        ++*underway;
        windows_.post([this, opened, underway, event] {
            --*underway;
            if (opened == openCount_ && !state_.ShuttingDown && onEvent) onEvent(event);
        });
    });
}

Opening MediaEngine::OpenMedia() {
    const int opened = ++openCount_;
    state_.Actions.noteFile("open", state_.CurrentFile);
    vbmp3_.vbmp3_clearLyrics();
    CloseMedia();
    listen();
    beginTrack();
    state_.TotalSeconds = 0;
    state_.TrackStartMs = 0;
    state_.MediaKind = {};
    status_.ShowTime(0);
    if (state_.CurrentFile.empty()) {
        state_.PlayerStatus = kStop;
        showUnopened("");
        return {OpenResult::Nothing};
    }
    state_.PlayerStatus = kLoad;
    status_.ShowStatus();
    opening_ = true;
    const auto found = find(opened);
    const Opening opening = found ? openFound(*found, opened) : Opening{OpenResult::Superseded};
    if (openCount_ == opened) {
        opening_ = false;
        pending_.reset();
    }
    return opening;
}

// Null when something else was asked for meanwhile.
std::shared_ptr<const MediaEngine::Found> MediaEngine::find(int opened) {
    const auto found = pending_ = std::make_shared<Found>();
    found->path = state_.CurrentFile;
    const auto ask = [found, &files = files_, &vbmp3 = vbmp3_, drive = options_.DefaultCdDrive] {
        const MediaKind kind = KindOfExtension(LastFour(found->path));
        if (kind.base == kCdAudio) found->path = CdTrack(files, found->path, drive);
        const bool device = IsDevicePath(found->path);
        found->exists = !device && files.fileExists(found->path);
        if (!found->exists && !device) found->rootAnswers = files.folderExists(JoinPath(VolumeOf(found->path), ""));
        // A late answer must not open what is wanted no more over what is open by then.
        if (!found->exists || kind.base != kUnknownKind || !found->wanted) return;
        found->info = vbmp3.vbmp3_open(found->path);
    };
    bool named = false;
    const auto start = std::chrono::steady_clock::now();
    const auto wanted = [&] {
        if (openCount_ != opened || state_.ShuttingDown) return false;  // another file is shown by now
        if (!named && std::chrono::steady_clock::now() - start > kShowNameAfter) {
            named = true;
            showUnopened("");
        }
        return true;
    };
    return windows_.runAside(ask, wanted) ? found : nullptr;
}

Opening MediaEngine::openFound(const Found& found, int opened) {
    if (!found.exists) {
        state_.PlayerStatus = kStop;
        showUnopened(kMissingText);
        return {OpenResult::Missing, found.rootAnswers};
    }
    path_ = found.path;
    title_.clear();
    artist_.clear();
    DetectMediaKind(found);
    Opening opening{OpenResult::Refused, found.info.error() == LibraryError::Format};
    if (found.info) {
        showOpened(*found.info);
        opening = {};
    } else if (state_.MediaKind.playedByMediaControl()) {
        opening = openWithMediaControl();
        if (openCount_ != opened || state_.ShuttingDown) return {OpenResult::Superseded};
        if (opening) showOpenedByMediaControl();
    }
    open_ = static_cast<bool>(opening);
    if (open_) {
        showTrack();
    } else {
        state_.MediaKind = {};
        showUnopened(kRefusedText);
    }
    return opening;
}

void MediaEngine::CloseMedia() {
    open_ = false;
    if (const auto late = std::exchange(pending_, nullptr)) late->wanted = false;
    vbmp3_.vbmp3_close();
    command("stop");
    command("close");
}

void MediaEngine::abandonOpening() {
    if (!std::exchange(opening_, false)) return;
    ++openCount_;
    CloseMedia();
}

// While messages are handled the user may open another file: that one counts.
Opening MediaEngine::openWithMediaControl() {
    const int opened = openCount_;
    const bool midi = state_.MediaKind.base == kMidi;
    const std::string open = "open \"" + path_ + "\"" + (midi ? " type sequencer" : "") + " alias MediaFile";
    const int code = mediaControl_.sendString(open);
    windows_.pumpMessages();
    if (openCount_ != opened || state_.ShuttingDown) return {OpenResult::Superseded};
    if (code != 0) return {OpenResult::Refused, code == kInvalidFile};
    mediaControl_.sendString("set MediaFile time format ms");
    if (state_.MediaKind.base == kCdAudio) {
        const std::string track = path_.size() < 6 ? "01" : path_.substr(path_.size() - 6, 2);
        state_.TrackStartMs = askMilliseconds("status MediaFile position track " + track);
        state_.TotalSeconds = askMilliseconds("status MediaFile length track " + track) / 1000;
    } else {
        state_.TotalSeconds = askMilliseconds("status MediaFile length") / 1000;
    }
    return {};
}

void MediaEngine::showOpened(const TrackInfo& info) {
    state_.TotalSeconds = info.seconds;
    title_ = info.texts.title;
    artist_ = info.texts.artist;
    status_.showFormat(FormatText(info));
}

void MediaEngine::showOpenedByMediaControl() {
    status_.showFormat("");
    if (state_.MediaKind.base == kMidi) {
        const auto bytes = files_.read(state_.CurrentFile, kMidiLimit);
        title_ = bytes ? MidiTitle(*bytes) : std::string();
    }
}

// Its own name, no length, and in place of the format the reason.
void MediaEngine::showUnopened(const std::string& why) {
    state_.MediaKindName.clear();
    display_.showKind("");
    status_.showFormat(why);
    status_.ShowStatus();
    showTrack();
}

void MediaEngine::showNothing() {
    CloseMedia();
    state_.MediaKind = {};
    state_.TotalSeconds = 0;
    showUnopened("");
}

void MediaEngine::showTrack() {
    ShowTitle();
    display_.showLength(MinutesAndSeconds(state_.TotalSeconds));
    status_.ShowTime(0);
    display_.refreshDisplay();
}

void MediaEngine::beginTrack() {
    sought_ = false;
    state_.LyricsKind = 0;
    state_.PositionSeconds = 0;
}

void MediaEngine::TakeOverNextFile() {
    state_.Actions.noteFile("go on to", state_.CurrentFile);
    vbmp3_.vbmp3_clearLyrics();
    beginTrack();
    Found found;
    found.info = vbmp3_.vbmp3_getFileInfo(state_.CurrentFile);
    if (found.info) DetectMediaKind(found);  // else it plays all the same, and is of the same back end
    showOpened(found.info ? *found.info : TrackInfo{});
    showTrack();
}

void MediaEngine::ShowTitle() {
    const std::string fileName = FileNameOf(state_.CurrentFile);
    switch (state_.MediaKind.base) {
        case kWavePcm:
        case kWaveOther:
        case kMp3:
        case kRmp:
            if (state_.TitleMode == 1) {
                display_.showTitle(title_.empty() ? "no title" : title_, artist_);
            } else {
                display_.showTitle(fileName, "");
            }
            return;
        case kMidi: display_.showTitle(title_.empty() ? fileName : title_, ""); return;
        case kCdAudio: display_.showTitle("Compact Disk", ""); return;
        default: display_.showTitle(fileName, "");
    }
}

void MediaEngine::ToggleTitleMode() {
    state_.TitleMode = state_.TitleMode == 0 ? 1 : 0;
    ShowTitle();
}

PlayResult MediaEngine::PlayMedia() {
    if (state_.ShuttingDown) return PlayResult::Nothing;
    sought_ = false;
    vbmp3_.vbmp3_stop();
    command("stop");
    if (state_.CurrentFile.empty()) {
        display_.refreshDisplay();
        return PlayResult::Nothing;
    }
    state_.Actions.note("play", state_.MediaKind.code());
    PlayResult result = PlayResult::Failed;
    if (state_.MediaKind.playedByVbmp3()) {
        const LibraryError error = vbmp3_.vbmp3_play();
        if (error == LibraryError::None) result = PlayResult::Playing;
        if (error == LibraryError::DeviceBusy) result = PlayResult::Waiting;
    } else if (state_.MediaKind.playedByMediaControl()) {
        const bool disc = state_.MediaKind.base == kCdAudio;
        const int code =
            mediaControl_.sendString("play MediaFile from " + std::to_string(disc ? state_.TrackStartMs : 0));
        if (code == 0) {
            result = PlayResult::Playing;
        } else if (code == kPortInUse && !disc) {
            result = PlayResult::Waiting;
        }
    }
    if (result == PlayResult::Playing) {
        state_.PlayerStatus = kPlay;
        state_.PositionSeconds = 0;
        if (state_.MediaKind.playedByVbmp3()) TellMissingDevice();
    } else if (result == PlayResult::Waiting) {
        state_.PlayerStatus = kWait;
    }
    status_.ShowStatus();
    display_.refreshDisplay();
    return result;
}

void MediaEngine::TellMissingDevice() {
    status_.showDevice(!state_.MediaKind.playedByVbmp3() || vbmp3_.vbmp3_hasOutputDevice());
}

void MediaEngine::StopMedia() {
    state_.Actions.note("stop");
    state_.PositionSeconds = 0;
    state_.PlayerStatus = kStop;
    status_.ShowTime(0);
    status_.ShowStatus();
    status_.showDevice(true);  // what stands still misses none
    if (state_.MediaKind.playedByVbmp3()) vbmp3_.vbmp3_stop();
    if (state_.MediaKind.playedByMediaControl()) command("stop");
    display_.refreshDisplay();
}

void MediaEngine::PauseMedia() {
    const bool pausing = state_.PlayerStatus == kPlay;
    if (!pausing && state_.PlayerStatus != kPause) return;
    state_.Actions.note(pausing ? "pause" : "resume");
    state_.PlayerStatus = pausing ? kPause : kPlay;
    status_.ShowStatus();
    if (state_.MediaKind.playedByVbmp3()) {
        if (pausing) {
            vbmp3_.vbmp3_pause();
        } else {
            vbmp3_.vbmp3_restart();
        }
    } else if (state_.MediaKind.playedByMediaControl() && state_.MediaKind.base <= kWma) {
        command(pausing ? "pause" : "play");
    }
}

void MediaEngine::SeekMedia(double fraction) {
    const BaseKind kind = state_.MediaKind.base;
    if (kind < kWavePcm || kind > kWma) return;
    const double seconds = std::clamp(std::isnan(fraction) ? 0.0 : fraction, 0.0, 1.0) * state_.TotalSeconds;
    state_.Actions.note("seek", static_cast<std::int64_t>(seconds));
    sought_ = true;
    state_.PositionSeconds = static_cast<std::int32_t>(std::nearbyint(seconds));
    if (state_.MediaKind.playedByVbmp3()) {
        vbmp3_.vbmp3_seek(seconds);
    } else {
        const std::int64_t from = (kind == kCdAudio ? state_.TrackStartMs : 0) + std::llround(seconds * 1000);
        mediaControl_.sendString("play MediaFile from " + std::to_string(from));
        if (state_.PlayerStatus == kPause) command("pause");  // the command above makes it sound
    }
    status_.ShowTime(state_.PositionSeconds);
}

}  // namespace quenlox

#include "playback/media_engine.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "app/global_state.h"
#include "playback/cd_drives.h"
#include "playback/main_display.h"
#include "playback/midi_text.h"
#include "platform/file_system.h"
#include "platform/media_control.h"
#include "platform/vbmp3.h"
#include "platform/window_host.h"
#include "text/numbers.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr int kPortInUse = 337;                       // media control: the sequencer's port is taken
constexpr std::uint64_t kMidiLimit = 16u << 20;       // bytes
constexpr const char* kNoDevice = " ﾃﾞﾊﾞｲｽなし";

template <std::size_t N>
std::string Field(const char (&field)[N]) {
    return TrimAtNull({field, N});
}

// One line that fits the information label: MPEG audio from its figures ("MPEG1 Layer3 44.1kHz 128kbps"), everything
// else as the library names it.
std::string FormatText(const vbmp3_FileInfo& info) {
    std::string text = Field(info.format);
    if (text == "WAVE_FORMAT_PCM") text = "WAVE PCM";
    if (info.layer > 0) {
        char line[64];
        std::snprintf(line, sizeof line, "MPEG%g Layer%d %gkHz %dkbps", info.mpegVersion / 10.0, info.layer,
                      info.sampleRate / 1000.0, (info.bitRate + 500) / 1000);
        text = line;
    }
    return info.variableBitRate != 0 ? text + " VBR" : text;
}

}  // namespace

int KindOfFile(const std::string& lastFour, const std::function<int()>& fileType) {
    if (lastFour == ".rmi" || lastFour == ".mid") return kMidi;
    if (lastFour == ".cda") return kCdAudio;
    if (lastFour == ".wma") return kWma;
    const int type = fileType();
    if (type < 0) return lastFour == ".wav" ? kWaveMci : kUnknownKind;
    int kind = type & VBMP3_TYPE_RMP    ? kRmp
               : type & VBMP3_TYPE_WAVE ? kWavePcm
               : type & VBMP3_TYPE_MPEG ? kMp3
                                        : kWaveOther;
    if (type & VBMP3_TYPE_ID3V2) {
        kind += 100;
    } else if (type & VBMP3_TYPE_ID3V1) {
        kind += 200;
    }
    if (type & VBMP3_TYPE_LYRICS) kind += 1000;
    return kind;
}

std::string KindName(int mediaKind) {
    switch (mediaKind % 100) {
        case kWavePcm:
        case kWaveOther:
        case kWaveMci: return "WAV";
        case kMp3: return "MP3";
        case kRmp: return "RMP";
        case kMidi: return "MIDI";
        case kCdAudio: return "CD-DA";
        case kWma: return "WMA";
        default: return "";
    }
}

MediaEngine::MediaEngine(GlobalState& state, Vbmp3& vbmp3, MediaControl& mediaControl, FileSystem& files,
                         WindowSystem& windows, MainDisplay& display)
    : state_(state),
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

void MediaEngine::DetectMediaKind() {
    state_.MediaKind =
        KindOfFile(LastFour(state_.CurrentFile), [this] { return vbmp3_.vbmp3_getFileType(state_.CurrentFile); });
    state_.MediaKindName = KindName(state_.MediaKind);
    display_.showKind(state_.MediaKindName);
}

void MediaEngine::listen() {
    // An event of a file that has been closed meanwhile must not reach the one that is open now.
    underway_ = std::make_shared<std::atomic<int>>(0);
    vbmp3_.vbmp3_setListener([this, opened = openCount_, underway = underway_](int event) {
        ++*underway;
        windows_.post([this, opened, underway, event] {
            --*underway;
            if (opened == openCount_ && !state_.ShuttingDown && onEvent) onEvent(event);
        });
    });
}

void MediaEngine::OpenMedia() {
    const int opened = ++openCount_;
    state_.Actions.noteFile("open", state_.CurrentFile);
    vbmp3_.vbmp3_clearLyrics();
    CloseMedia();
    closed_ = false;
    listen();
    sought_ = false;
    state_.LyricsKind = 0;
    state_.PositionSeconds = 0;
    state_.TotalSeconds = 0;
    state_.TrackStartMs = 0;
    status_.ShowTime(0);
    path_ = state_.CurrentFile;
    if (LastFour(path_) == ".cda") path_ = CdTrack(files_, path_, state_.DefaultCdDrive);
    if (path_.empty() || !files_.fileExists(path_)) {
        state_.MediaKind = kUnknownKind;
        state_.PlayerStatus = kStop;
        status_.ShowStatus();
        display_.refreshDisplay();
        return;
    }
    state_.PlayerStatus = kLoad;
    status_.ShowStatus();
    DetectMediaKind();
    title_.clear();
    artist_.clear();
    bool open = state_.playedByVbmp3() && openWithLibrary();
    if (openCount_ != opened) return;
    if (!open && state_.playedByVbmp3() && LastFour(state_.CurrentFile) == ".wav") {
        state_.MediaKind = kWaveMci;
    }
    if (state_.baseKind() >= kMidi) open = openWithMediaControl();
    if (openCount_ != opened || state_.ShuttingDown || !open) return;
    finishOpen();
}

void MediaEngine::CloseMedia() {
    closed_ = true;
    vbmp3_.vbmp3_close();
    command("stop");
    command("close");
}

// While messages are handled the user may open another file: the callers look at openCount_.
bool MediaEngine::openWithLibrary() {
    const int opened = openCount_;
    vbmp3_FileInfo info{};
    info.size = sizeof info;
    const bool open = vbmp3_.vbmp3_open(state_.CurrentFile, info);
    windows_.pumpMessages();
    if (!open || openCount_ != opened || state_.ShuttingDown) return false;
    showOpened(info);
    return true;
}

bool MediaEngine::openWithMediaControl() {
    const int opened = openCount_;
    const bool midi = state_.baseKind() == kMidi;
    const std::string open =
        "open \"" + path_ + "\"" + (midi ? " type sequencer" : "") + " alias MediaFile";
    const bool done = mediaControl_.sendString(open) == 0;
    windows_.pumpMessages();
    if (!done || openCount_ != opened || state_.ShuttingDown) return false;
    mediaControl_.sendString("set MediaFile time format ms");
    if (state_.baseKind() == kCdAudio) {
        const std::string track = path_.size() < 6 ? "01" : path_.substr(path_.size() - 6, 2);
        state_.TrackStartMs = askMilliseconds("status MediaFile position track " + track);
        state_.TotalSeconds = askMilliseconds("status MediaFile length track " + track) / 1000;
    } else {
        state_.TotalSeconds = askMilliseconds("status MediaFile length") / 1000;
    }
    showOpenedByMediaControl();
    return true;
}

void MediaEngine::showOpened(const vbmp3_FileInfo& info) {
    state_.TotalSeconds = info.seconds;
    title_ = Field(info.title);
    artist_ = Field(info.artist);
    display_.showInformation(FormatText(info));
}

void MediaEngine::showOpenedByMediaControl() {
    display_.showInformation("");
    if (state_.baseKind() == kMidi) {
        const auto bytes = files_.read(state_.CurrentFile, kMidiLimit);
        title_ = bytes ? MidiTitle(*bytes) : std::string();
    }
}

void MediaEngine::finishOpen() {
    ShowTitle();
    display_.showLength(MinutesAndSeconds(state_.TotalSeconds));
    status_.ShowTime(0);
    if (onOpened) onOpened();
    display_.refreshDisplay();
}

void MediaEngine::TakeOverNextFile() {
    state_.Actions.noteFile("go on to", state_.CurrentFile);
    vbmp3_.vbmp3_clearLyrics();
    sought_ = false;
    state_.LyricsKind = 0;
    state_.PositionSeconds = 0;
    DetectMediaKind();
    vbmp3_FileInfo info{};
    info.size = sizeof info;
    vbmp3_.vbmp3_getFileInfo(state_.CurrentFile, info);
    showOpened(info);
    finishOpen();
}

void MediaEngine::ShowTitle() {
    const std::string fileName = FileNameOf(state_.CurrentFile);
    switch (state_.baseKind()) {
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

MediaEngine::PlayResult MediaEngine::PlayMedia() {
    if (state_.ShuttingDown) return PlayResult::Nothing;
    ++playCount_;
    sought_ = false;
    vbmp3_.vbmp3_stop();
    command("stop");
    if (state_.CurrentFile.empty()) {
        display_.refreshDisplay();
        return PlayResult::Nothing;
    }
    if (closed_) {
        const int opened = openCount_ + 1;
        OpenMedia();
        if (openCount_ != opened) return PlayResult::Nothing;
    }
    state_.Actions.note("play", state_.MediaKind);
    PlayResult result = PlayResult::Failed;
    if (state_.playedByVbmp3()) {
        if (vbmp3_.vbmp3_play()) {
            result = PlayResult::Playing;
        } else if (vbmp3_.vbmp3_getLastErrorNo() == VBMP3_ERROR_DEVICE_BUSY) {
            result = PlayResult::Waiting;
        }
    } else if (state_.baseKind() >= kMidi) {
        const bool disc = state_.baseKind() == kCdAudio;
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
        if (state_.playedByVbmp3()) TellMissingDevice();
    } else if (result == PlayResult::Waiting) {
        state_.PlayerStatus = kWait;
    }
    status_.ShowStatus();
    display_.refreshDisplay();
    return result;
}

void MediaEngine::TellMissingDevice() {
    const bool there = vbmp3_.vbmp3_hasOutputDevice();
    std::string information = display_.information();
    if (there && information.ends_with(kNoDevice)) {  // it is back
        information.resize(information.size() - std::string_view(kNoDevice).size());
        display_.showInformation(information);
    }
    if (there || missingDeviceTold_) return;
    missingDeviceTold_ = true;
    display_.showInformation(information + kNoDevice);
}

void MediaEngine::StopMedia() {
    state_.Actions.note("stop");
    state_.PositionSeconds = 0;
    state_.PlayerStatus = kStop;
    status_.ShowTime(0);
    status_.ShowStatus();
    if (state_.playedByVbmp3()) vbmp3_.vbmp3_stop();
    if (state_.baseKind() >= kMidi) command("stop");
    display_.refreshDisplay();
}

void MediaEngine::PauseMedia() {
    const bool pausing = state_.PlayerStatus == kPlay;
    if (!pausing && state_.PlayerStatus != kPause) return;
    state_.Actions.note(pausing ? "pause" : "resume");
    state_.PlayerStatus = pausing ? kPause : kPlay;
    status_.ShowStatus();
    if (state_.playedByVbmp3()) {
        if (pausing) {
            vbmp3_.vbmp3_pause();
        } else {
            vbmp3_.vbmp3_restart();
        }
    } else if (state_.baseKind() >= kMidi && state_.baseKind() <= kWma) {
        command(pausing ? "pause" : "play");
    }
}

void MediaEngine::SeekMedia(double fraction) {
    const int kind = state_.baseKind();
    if (kind < kWavePcm || kind > kWma) return;
    const double seconds = std::clamp(std::isnan(fraction) ? 0.0 : fraction, 0.0, 1.0) * state_.TotalSeconds;
    state_.Actions.note("seek", static_cast<std::int64_t>(seconds));
    sought_ = true;
    state_.PositionSeconds = static_cast<std::int32_t>(std::nearbyint(seconds));
    if (state_.playedByVbmp3()) {
        vbmp3_.vbmp3_seek(seconds);
    } else {
        const std::int64_t from = (kind == kCdAudio ? state_.TrackStartMs : 0) + std::llround(seconds * 1000);
        mediaControl_.sendString("play MediaFile from " + std::to_string(from));
        if (state_.PlayerStatus == kPause) command("pause");  // the command above makes it sound
    }
    status_.ShowTime(state_.PositionSeconds);
}

}  // namespace quenlox

// Plays the one file named by CurrentFile, through the decoding library (MPEG audio, RMP, WAVE) or through the media
// control interface under the alias "MediaFile" (MIDI, audio CD, WMA, and WAVE that the library refuses). Opening
// always closes both. On the user-interface thread; the library's events are brought there.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "playback/status_display.h"

struct vbmp3_FileInfo;

namespace quenlox {

class FileSystem;
class MainDisplay;
class MediaControl;
class Vbmp3;
class WindowSystem;
struct GlobalState;

// The kind of a file from the last four characters of its path in lower case and its vbmp3_getFileType result
// (negative: refused): the base kind, 100 more with an ID3v2 tag, else 200 more with an ID3v1 tag, 1000 more where
// lyrics can be shown. `fileType` is not asked for when the extension decides alone.
int KindOfFile(const std::string& lastFour, const std::function<int()>& fileType);
std::string KindName(int mediaKind);

class MediaEngine {
  public:
    enum class PlayResult {
        Nothing,  // no file
        Playing,
        Waiting,  // the device is in use: PlayerStatus is 5 and the play is to be tried again
        Failed
    };

    MediaEngine(GlobalState& state, Vbmp3& vbmp3, MediaControl& mediaControl, FileSystem& files, WindowSystem& windows,
                MainDisplay& display);
    ~MediaEngine();
    MediaEngine(const MediaEngine&) = delete;
    MediaEngine& operator=(const MediaEngine&) = delete;

    std::function<void()> onOpened;           // a file is open and shown: its lyrics are to be looked for
    std::function<void(int event)> onEvent;   // VBMP3_EVENT_*, never one of a file that is not open any more

    void DetectMediaKind();
    void OpenMedia();
    // Lets go of the file, so that it can be replaced on the disk; what is shown stays, and the next play opens it
    // again.
    void CloseMedia();
    PlayResult PlayMedia();
    void StopMedia();
    void PauseMedia();
    // Fraction of the track, 0 to 1. Kind 40 is not served, as with pausing.
    void SeekMedia(double fraction);

    // The library has gone on by itself to CurrentFile, the file that was handed to it: shows it as OpenMedia does.
    void TakeOverNextFile();
    // Once in a run, behind the format: the track plays without a sound device. Takes it away when there is one again.
    void TellMissingDevice();
    // The title by TitleMode: from the tag, or the name of the file.
    void ShowTitle();
    void ToggleTitleMode();

    int openCount() const { return openCount_; }
    int playCount() const { return playCount_; }
    bool sought() const { return sought_; }  // the user has moved in this track since it began
    bool eventUnderway() const { return underway_ && *underway_ > 0; }  // reported by the library, not handled yet
    StatusDisplay& status() { return status_; }

  private:
    bool openWithLibrary();
    bool openWithMediaControl();
    void showOpened(const vbmp3_FileInfo& info);
    void showOpenedByMediaControl();
    void finishOpen();
    void listen();
    std::int32_t askMilliseconds(const std::string& command);
    void command(const char* what);

    GlobalState& state_;
    Vbmp3& vbmp3_;
    MediaControl& mediaControl_;
    FileSystem& files_;
    WindowSystem& windows_;
    MainDisplay& display_;
    StatusDisplay status_;
    std::string path_;    // of what is open: CurrentFile, or where its CD is now
    std::string title_;   // of the tag, or of the MIDI data
    std::string artist_;
    int openCount_ = 0;
    int playCount_ = 0;
    bool sought_ = false;
    bool closed_ = false;  // by CloseMedia
    bool missingDeviceTold_ = false;
    std::shared_ptr<std::atomic<int>> underway_;  // the library's thread counts up
};

}  // namespace quenlox

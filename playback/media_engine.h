// Plays the one file named by CurrentFile, through the decoding library (MPEG audio, RMP, WAVE) or through the media
// control interface under the alias "MediaFile" (MIDI, audio CD, WMA, and WAVE that the library refuses). Opening
// always closes both. On the user-interface thread; the library's events are brought there.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "playback/opening.h"
#include "playback/status_display.h"

namespace quenlox {

class FileSystem;
class MainDisplay;
class MediaControl;
class Vbmp3;
class WindowSystem;
struct GlobalState;
struct Options;
struct TrackInfo;
enum class LibraryEvent;

class MediaEngine {
  public:
    MediaEngine(GlobalState& state, const Options& options, Vbmp3& vbmp3, MediaControl& mediaControl, FileSystem& files,
                WindowSystem& windows, MainDisplay& display);
    ~MediaEngine();
    MediaEngine(const MediaEngine&) = delete;
    MediaEngine& operator=(const MediaEngine&) = delete;

    std::function<void(LibraryEvent event)> onEvent;  // never one of a file that is not open any more

    // Closes what is open, and opens and shows CurrentFile; a file that cannot be opened is shown with the reason.
    // Messages are handled meanwhile, however long a disk or a server takes to answer.
    Opening OpenMedia();
    // Lets go of the file, so that it can be replaced on the disk; what is shown stays.
    void CloseMedia();
    // Ends an OpenMedia that still waits for the file: it comes back as superseded.
    void abandonOpening();
    bool isOpen() const { return open_; }
    bool opening() const { return opening_; }  // an OpenMedia is under way
    PlayResult PlayMedia();
    void StopMedia();
    void PauseMedia();
    // Fraction of the track, 0 to 1. Kind 40 is not served, as with pausing.
    void SeekMedia(double fraction);

    // The library has gone on by itself to CurrentFile, the file that was handed to it: shows it as OpenMedia does.
    void TakeOverNextFile();
    // There is no file any more: nothing is shown.
    void showNothing();
    // Says so while it plays without a sound device, and says it no more when there is one again.
    void TellMissingDevice();
    // The title by TitleMode: from the tag, or the name of the file.
    void ShowTitle();
    void ToggleTitleMode();

    bool sought() const { return sought_; }  // the user has moved in this track since it began
    bool eventUnderway() const { return underway_ && *underway_ > 0; }  // reported by the library, not handled yet
    StatusDisplay& status() { return status_; }

  private:
    struct Found;  // of a file, by whoever asked the disk for it

    std::shared_ptr<const Found> find(int opened);
    void DetectMediaKind(const Found& found);
    Opening openFound(const Found& found, int opened);
    Opening openWithMediaControl();
    void showOpened(const TrackInfo& info);
    void showOpenedByMediaControl();
    void showUnopened(const std::string& why);
    void showTrack();
    void beginTrack();
    void listen();
    std::int32_t askMilliseconds(const std::string& command);
    void command(const char* what);

    GlobalState& state_;
    const Options& options_;
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
    bool open_ = false;
    bool opening_ = false;
    std::shared_ptr<Found> pending_;  // what is being asked for at the moment
    bool sought_ = false;
    std::shared_ptr<std::atomic<int>> underway_;  // the library's thread counts up
};

}  // namespace quenlox

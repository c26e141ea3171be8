// What plays: the one door for it. Every button, key, menu, drop, list, the command line, the converter, the tag editor
// and the end of a track come here, so that one rule holds for all of them. It alone writes CurrentFile, CurrentIndex
// and PlayIntent. On the user-interface thread; while a file is being opened messages are handled, and whatever is
// asked for meanwhile counts instead.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "playback/gapless_hand_over.h"
#include "playback/opening.h"
#include "playback/track_step.h"

namespace quenlox {

class MediaEngine;
struct Options;
class PitchControl;
class StatusDisplay;
class TrackSource;
enum PlayStatus : int;
struct GlobalState;

class Transport {
  public:
    static constexpr int kNoList = -1;

    // A file and the row it was taken from. A file of a list has its row there become the current one.
    struct Track {
        std::string path;
        int list = kNoList;  // 0 to 3
        int row = -1;
    };
    enum class Start { Open, Play, PlayIfPlaying };

    struct Parts {
        GlobalState& state;
        MediaEngine& engine;
        PitchControl& pitch;
        Vbmp3& vbmp3;
        TrackSource& tracks;
        const Options& options;
    };
    explicit Transport(const Parts& parts);
    ~Transport();
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;

    std::function<void()> onTrackChanged;  // CurrentFile is another, opened or not
    std::function<void(bool stops)> onStopAfterChanged;
    std::function<void()> onDecodeEnded;   // a decode while playing is through: the converter goes on

    // False while a conversion runs: it may not be ended by anything but its own window. Every command below asks.
    bool mayAct() const;

    // Commands. False, and nothing happens, when they may not act.
    bool play();        // when it stands; opens the file again when it is not open
    bool stop();        // and ends what it may be opening, and a change of pitch
    bool playOrStop();  // the play button
    bool pause();       // or goes on
    bool NextTrack();
    bool PreviousTrack();
    // The player stops at the end of the current track, whatever would follow; once, and not for another track.
    bool setStopAfter(bool stops);
    bool seek(double fraction);  // of the track, 0 to 1; while it plays or is paused
    bool seekBy(int seconds);    // from where it is, to the beginning or the end at most
    OpenResult open(const Track& track, int intent, Start start);

    void remember(const std::string& path);  // from the last time; it is not opened yet
    // The file of the last time, or the one that the command line names; REPEAT does not repeat the latter until the
    // user plays it himself.
    void openFirst(const std::string& path, bool named, bool play);

    // Files that are about to be written, replaced or renamed on the disk, where nobody may have them open. What was
    // playing goes on afterwards at the same place.
    struct LetGo {
        bool current = false;  // it is CurrentFile
        int status = 0;
        std::int64_t positionMs = 0;
    };
    std::optional<LetGo> letGoOf(const std::string& path);  // nothing: a conversion needs it
    void takeUp(const LetGo& file);
    void leaveClosed(const LetGo& file);  // the player stands; the next play opens the file
    void renamed(const std::string& from, const std::string& to);

    // For the conversion that runs; these do not ask whether one does.
    void showConversion(PlayStatus status);
    void stopForConversion() { halt(); }
    void openForConversion(const std::string& path);  // what is heard or has been made: the current file, not played
    void conversionFailed();                          // there is no current file any more

    // What the watch over the back ends reports.
    void trackEnded();
    void libraryWentOn();
    void retry();          // the device was in use
    void RenewNextFile();  // a list, its order, the mode or the intent may have changed

    void StepPlayMode();  // a click on the play-mode label
    void StepTimeMode();  // a click on the time label
    StatusDisplay& status();

  private:
    struct Attempt {
        Opening opening;
        bool plays = false;  // or waits for its device
    };

    unsigned newRequest() { return ++request_; }
    bool superseded(unsigned request) const;
    void halt();
    void setCurrent(const Track& track);
    // All three open CurrentFile and say to the lists whether it can be played.
    Opening openCurrent();
    Opening openOnly(unsigned request);
    Attempt openAndPlay(unsigned request);
    PlayResult startPlaying();
    bool step(Direction direction);
    void walk(Direction direction);
    std::optional<GaplessHandOver::Next> planStep(Direction direction);
    std::optional<GaplessHandOver::Next> planNext();
    bool stillThere(const GaplessHandOver::Next& next) const;
    void take(const GaplessHandOver::Next& next, int intent);
    void takePlace(const GaplessHandOver::Next& next);
    void takeOrder(const GaplessHandOver::Next& next);
    int sourceList() const;
    bool throughList() const;
    bool goesOn() const;
    bool sounding() const;
    void noteStopAfter(bool stops);

    GlobalState& state_;
    MediaEngine& engine_;
    PitchControl& pitch_;
    Vbmp3& vbmp3_;
    TrackSource& tracks_;
    const Options& options_;

    unsigned request_ = 0;  // a newer one supersedes what an older one still does
    bool fromCommandLine_ = false;
    bool opensForConversion_ = false;  // the status is that of loading meanwhile
    GaplessHandOver handOver_;
    // The order of a pass to come, drawn ahead because its first track is the next file.
    struct DrawnOrder {
        int list = 0;
        RandomOrder order;
    };
    std::optional<DrawnOrder> drawn_;
    bool stopsAfter_ = false;  // the current track is the last
};

}  // namespace quenlox

// Watches the back end that plays, keeps the position current, and decides what comes after the end of a track. So
// that an album plays without gaps it hands the next file to the decoding library beforehand, and follows when the
// library has gone on to it. On the user-interface thread.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "playback/media_engine.h"

namespace quenlox {

class OptionSettings;
class TrackSource;

class PlayStateMonitor {
  public:
    PlayStateMonitor(GlobalState& state, MediaEngine& engine, Vbmp3& vbmp3, MediaControl& mediaControl,
                     TrackSource& tracks, const OptionSettings& options);

    std::function<void()> onDecodeEnded;  // a decode while playing is through: the converter goes on
    std::function<bool()> decodesUnheard; // a decode runs without sound: no track of it can end
    std::function<void()> onTrackChanged; // CurrentFile and CurrentIndex have moved

    void Timer1_Timer();  // the poll
    void Timer5_Timer();  // tries a waiting play again

    void NextTrack();
    void PreviousTrack();
    // OpenMedia and PlayMedia; with "DelList" a file that cannot be played leaves the lists, and while PlayIntent is
    // set the next one is tried.
    void OpenAndPlay();

    // The track that has just begun was named on the command line and comes from no list: REPEAT does not play it
    // again.
    void playsFromNoList() { playFromNoList_ = engine_.playCount(); }

    void StepPlayMode();  // a click on the play-mode label
    void StepTimeMode();  // a click on the time label

    // To be called when a list, its order, the mode or the intent has changed; each poll does it too.
    void RenewNextFile();
    // A file of that path is about to be replaced: the library must not hold it as its next one. The next poll hands it
    // over anew.
    void letGoOf(const std::string& path);

  private:
    struct Step {
        int list = 0;
        int index = 0;
        std::string path;
        std::int32_t position = 0;             // in the random order
        bool newOrder = false;                 // goes into a new pass
        bool operator==(const Step&) const = default;
    };

    void libraryEvent(int event);
    void pollMediaControl();
    void pollLibrary();
    void endOfTrack();
    bool introIsOver() const;
    int sourceList() const;
    void step(int direction);
    int shuffleStep(int list, int count, int direction);
    void beginNewOrder(int list, int count);
    std::optional<Step> planNext();
    void followLibrary();
    void withdraw();

    GlobalState& state_;
    MediaEngine& engine_;
    Vbmp3& vbmp3_;
    MediaControl& mediaControl_;
    TrackSource& tracks_;
    const OptionSettings& options_;

    int playFromNoList_ = -1;                  // MediaEngine::playCount() of that track
    std::optional<Step> handed_;               // what the library holds as its next file
    std::optional<Step> withdrawn_;            // what it held before, in case it had just gone on to it
    int handedAtOpen_ = 0;
    int handedAtPlay_ = 0;
    std::string refused_;                      // a path that the library did not take
    // The order of the next pass, drawn ahead because its first track is the next file.
    struct DrawnOrder {
        int list = 0;
        int count = 0;
        std::vector<std::int32_t> order;
    };
    std::optional<DrawnOrder> drawn_;
};

}  // namespace quenlox

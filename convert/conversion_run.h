// What is to be converted and the run that converts it, without a window: MPEG audio and RMP to WAVE, also while
// playing, and WAVE to MP3. Several files go on side by side, each on a thread of its own (file_conversion.h), as many
// as there are processor cores. One file after another are decoded while playing and encoded where gogo.dll is missing,
// by jobs of the decoding library, which has one at a time; so is a file that is to be decoded alone. While it runs
// PlayerStatus is that of the run, and whoever changes it ends the run. On the user-interface thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "convert/conversion.h"
#include "convert/file_conversion.h"

namespace quenlox {

class FileSystem;
class Vbmp3;
enum PlayStatus : int;
struct GlobalState;

class ConversionRun {
  public:
    // What other rooms do for it.
    struct Hooks {
        std::function<void()> stopPlayback = [] {};
        std::function<void(const std::string& path)> letGo = [](const std::string&) {};  // nobody may have it open
        std::function<void(PlayStatus)> showStatus = [](PlayStatus) {};  // PlayerStatus becomes that and is shown
        // Decoding while playing: this source becomes the current file and is opened, not played. This and made() may
        // handle messages, in which the user cancels or plays something else.
        std::function<void(const std::string& path)> openHeard = [](const std::string&) {};
        // The run is over: this file becomes the current file and is opened.
        std::function<void(const std::string& path)> made = [](const std::string&) {};
        std::function<void()> failed = [] {};  // there is no current file any more
        std::function<void()> refreshBrowserFiles = [] {};
        std::function<void(bool on)> setPolling = [](bool) {};  // Timer7 of the main window
    };

    // `cores`: how many files may go on side by side; 0: one for each processor core.
    ConversionRun(GlobalState& state, Vbmp3& vbmp3, std::shared_ptr<Gogo> gogo, FileSystem& files,
                  WindowSystem& windows, int cores = 0);
    void connect(Hooks hooks) { hooks_ = std::move(hooks); }
    std::function<void()> onChanged = [] {};   // anything that can be asked here
    std::function<void()> onProgress = [] {};  // how far the files are, and no more than that
    std::function<void()> onFailed = [] {};    // after everything else

    // What is to be converted; nothing of it changes while a run goes on.
    Operation operation() const { return operation_; }
    void setOperation(Operation operation);  // what was chosen for decoding cannot be encoded
    const EncoderSettings& settings() const { return settings_; }
    void setSettings(const EncoderSettings& settings);
    // New files are put beside their sources, or all into the folder that was chosen last.
    bool besideSource() const { return besideSource_; }
    const std::string& folder() const { return folder_; }
    void setPlace(bool besideSource, const std::string& folder);

    enum class State { Waiting, Running, Made, Cancelled, Failed };
    struct File {
        ConversionJob job;
        State state = State::Waiting;
        int permille = 0;      // while it runs
        std::string left{};    // while it runs: "01:23", or nothing
        std::string reason{};  // when it failed: more about that, or nothing
        ConversionError error = ConversionError::Other;
    };
    // In the order in which they were chosen, those of the last run until others are chosen. One without a source, if
    // any, has a destination that was chosen first.
    const std::vector<File>& files() const { return list_; }
    std::vector<ConversionJob> jobs() const;  // of the files that are not made yet
    void setSources(const std::vector<std::string>& sources);
    void setDestination(const std::string& path);        // of the only source; the user has agreed to replace it
    void removeFiles(const std::vector<bool>& which);    // while nothing runs, off the list
    std::vector<std::string> replaced() const;           // files that nobody has agreed to replace yet
    bool encoderThere() const { return encoderThere_; }  // gogo.dll; the settings are for it alone

    bool canStart() const;
    void start();
    void cancel();
    void cancelFile(std::size_t file);  // while a run goes on: the others go on
    // Gives the run up at the end of the program: what does not come back in this time is left behind.
    void abandon(std::chrono::milliseconds limit = std::chrono::milliseconds(500));
    bool leftBehind() const { return leftBehind_; }
    void poll();         // of Timer7
    void decodeEnded();  // the sound of a decode while playing is through

    bool running() const { return run_ != Run::None; }
    bool decodesUnheard() const { return run_ == Run::Job; }

    enum class Outcome { None, Made, Cancelled, Failed };
    struct Progress {
        int permille = 0;       // of all files
        std::size_t done = 0;   // files
        std::size_t files = 0;  // of the whole run
        std::string left;       // "01:23", or nothing
    };
    const Progress& progress() const { return progress_; }
    Outcome outcome() const { return outcome_; }           // of the last run; None while one goes on
    ConversionError error() const { return error_; }       // when it failed
    const std::string& reason() const { return reason_; }  // the file, and more about the error where that is known

  private:
    enum class Run { None, Threads, Job, PlayedJob };
    using Clock = std::chrono::steady_clock;
    // A file that has a thread. It stays also after a cancel, until the thread has come back.
    struct Lane {
        std::size_t file = 0;
        bool cancelled = false;
        std::string toWrap;  // an RMP is an MP3 that is wrapped afterwards: the name of that, or nothing
        Clock::time_point started;
        double left = -1;  // seconds; below 0 unknown
        std::unique_ptr<FileConversion> work;
    };

    void proposeDestinations();
    Run kindOfRun() const;
    std::vector<File>::iterator nextWaiting();
    void goOn();
    void startLane(std::size_t file);
    void follow(std::size_t file);
    void laneOver(Lane lane, const FileConversion::Report& report);
    bool startJob(std::size_t file);
    LibraryError startLibraryJob(const ConversionJob& job);
    PlayStatus expectedStatus() const;
    bool playedOver() const;
    void followJob(bool heard);
    void endFile(std::size_t file, State state);
    void failFile(std::size_t file, ConversionError error, LibraryError why);
    void finish();
    void fail();
    void stopWork();
    void leave(Outcome outcome);
    void showProgress();

    GlobalState& state_;
    Vbmp3& vbmp3_;
    std::shared_ptr<Gogo> gogo_;
    FileSystem& files_;
    WindowSystem& windows_;
    const std::size_t cores_;
    const bool encoderThere_;
    Hooks hooks_;

    Operation operation_ = Operation::Decode;
    EncoderSettings settings_;
    bool besideSource_ = true;
    std::string folder_;
    std::vector<File> list_;
    bool replaceAgreed_ = false;

    Run run_ = Run::None;
    std::vector<Lane> lanes_;
    std::size_t side_ = 1;     // how many files go on side by side
    std::size_t current_ = 0;  // the file of a job
    PlayStatus runStatus_{};   // as it must stay while the run goes on
    bool leftBehind_ = false;
    Clock::time_point started_, jobStarted_;
    Progress progress_;
    Outcome outcome_ = Outcome::None;
    ConversionError error_ = ConversionError::Other;
    std::string reason_;
};

}  // namespace quenlox

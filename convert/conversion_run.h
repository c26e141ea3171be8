// What is to be converted and the run that converts it, one file after another, without a window: MPEG audio and RMP to
// WAVE, also while playing, by jobs of the decoding library; WAVE to MP3 by gogo.dll on a thread of its own, or by such
// a job where gogo.dll is missing. While it runs PlayerStatus is that of the run, and whoever changes it ends the run.
// On the user-interface thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "convert/conversion.h"
#include "convert/gogo_encode.h"

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

    ConversionRun(GlobalState& state, Vbmp3& vbmp3, std::shared_ptr<Gogo> gogo, FileSystem& files,
                  WindowSystem& windows);
    void connect(Hooks hooks) { hooks_ = std::move(hooks); }
    std::function<void()> onChanged = [] {};  // anything that can be asked here
    std::function<void()> onFailed = [] {};   // after everything else

    // What is to be converted; nothing of it changes while a run goes on.
    Operation operation() const { return operation_; }
    void setOperation(Operation operation);  // what was chosen for decoding cannot be encoded
    const EncoderSettings& settings() const { return settings_; }
    void setSettings(const EncoderSettings& settings);
    // Not done yet. The one without a source, if any, has a destination that was chosen first.
    const std::vector<ConversionJob>& jobs() const { return jobs_; }
    void setSources(const std::vector<std::string>& sources);
    void setDestination(const std::string& path);  // of the only source; the user has agreed to replace it
    void setDestinationFolder(const std::string& folder);
    std::vector<std::string> replaced() const;           // files that nobody has agreed to replace yet
    bool encoderThere() const { return encoderThere_; }  // gogo.dll; the settings are for it alone

    bool canStart() const;
    void start();
    void cancel();
    // Gives the run up at the end of the program: when an encoder does not come back in this time it is left behind.
    void abandon(std::chrono::milliseconds limit = std::chrono::milliseconds(500));
    void poll();         // of Timer7
    void decodeEnded();  // the sound of a decode while playing is through

    bool running() const { return run_ != Run::None; }
    bool decodesUnheard() const { return run_ == Run::Job; }

    enum class Outcome { None, Made, Cancelled, Failed };
    struct Progress {
        int permille = 0;       // of all files
        std::size_t done = 0;   // files
        std::size_t files = 0;  // of the whole run
        std::string left;       // "残り 01:23", or nothing
    };
    const Progress& progress() const { return progress_; }
    Outcome outcome() const { return outcome_; }           // of the last run; None while one goes on
    ConversionError error() const { return error_; }       // when it failed
    const std::string& reason() const { return reason_; }  // the file, and more about the error where that is known

  private:
    enum class Run { None, Encoder, Job, PlayedJob };

    void startFile();
    void startEncoder();
    void startJob();
    LibraryError startLibraryJob(const ConversionJob& job);
    PlayStatus expectedStatus() const;
    bool playedOver() const;
    void followEncoder();
    void followJob(bool heard);
    void encoderFinished();
    void fileMade();
    void carryTags(const ConversionJob& job);
    void finish(const std::string& lastDestination);
    void failWithLibrary(LibraryError error);
    void fail(ConversionError error, LibraryError why);
    void stopWork();
    void leave(Outcome outcome);
    void showProgress(double doneOfFile);

    GlobalState& state_;
    Vbmp3& vbmp3_;
    std::shared_ptr<Gogo> gogo_;
    FileSystem& files_;
    WindowSystem& windows_;
    const bool encoderThere_;
    Hooks hooks_;

    Operation operation_ = Operation::Decode;
    EncoderSettings settings_;
    std::vector<ConversionJob> jobs_;
    bool replaceAgreed_ = false;

    Run run_ = Run::None;
    // Also after a cancel, until it has come back from its frame: the encoder can do one file at a time.
    std::unique_ptr<GogoEncode> encode_;
    PlayStatus encodeStatus_{};  // as it must stay while encode_ goes on
    std::string toWrap_;         // an RMP is an MP3 that is wrapped afterwards: the name of that, or nothing
    std::chrono::steady_clock::time_point started_;
    Progress progress_;
    Outcome outcome_ = Outcome::None;
    ConversionError error_ = ConversionError::Other;
    std::string reason_;
};

}  // namespace quenlox

// The converter window: MPEG audio and RMP to WAVE, also while playing, and WAVE to MP3. Encoding with gogo.dll runs in
// the start handler, which lets the window system work in between; everything else are jobs of the decoding library,
// watched by a timer. That a run goes on is told by PlayerStatus alone: whoever changes it ends the run. On the
// user-interface thread.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "convert/conversion.h"
#include "forms/control_array.h"
#include "forms/form.h"

namespace quenlox {

class FileSystem;
class Gogo;
class Vbmp3;
struct GlobalState;

class FormConv : public Form {
  public:
    // What other rooms do for it; each may be empty.
    struct Hooks {
        std::function<void()> stopPlayback;
        // A file is about to be made there: nobody may have it open.
        std::function<void(const std::string& path)> letGo;
        std::function<void()> showStatus;           // PlayerStatus has changed
        std::function<void()> refreshBrowserFiles;  // a file has been made
        std::function<void()> openFile;             // opens CurrentFile, without playing it
        std::function<void(bool on)> setPolling;    // Timer7 of the main window
    };

    FormConv(GlobalState& state, Vbmp3& vbmp3, Gogo& gogo, Dialogs& dialogs, FileSystem& files, WindowSystem& windows);
    void connect(const Hooks& hooks) { hooks_ = hooks; }

    Frame FrameOperation{*this, "FrameOperation"};
    ControlArray<OptionButton> DecOption = optionsOf(*this);  // decode, decode while playing, encode
    Label Label1{*this, "Label1"};
    Label Label3{*this, "Label3"};                 // the source
    CommandButton Command2{*this, "Command2"};     // chooses it
    Label Label2{*this, "Label2"};
    Label Label4{*this, "Label4"};                 // the destination
    CommandButton Command3{*this, "Command3"};     // chooses it
    Frame Frame1{*this, "Frame1"};                 // the encoder's settings
    Label LabelGogo{*this, "LabelGogo"};
    Label LabelFrequency{*this, "LabelFrequency"};
    ComboBox Combo4{*this, "Combo4"};              // output frequency
    Label LabelHertz{*this, "LabelHertz"};
    Label LabelBitRate{*this, "LabelBitRate"};
    ComboBox Combo3{*this, "Combo3"};              // bit rate
    Label LabelKbits{*this, "LabelKbits"};
    Label LabelVbr{*this, "LabelVbr"};
    ComboBox Combo5{*this, "Combo5"};              // VBR quality
    ProgressBar Progress{*this, "Progress"};
    Label LabelProgress{*this, "LabelProgress"};   // what is being converted, and the time left
    CommandButton Command4{*this, "Command4"};     // starts and cancels
    CommandButton Command1{*this, "Command1"};     // closes

    void Form_Load() override;
    void Form_Shown() override { moveToMiddleOnce(); }
    void Form_Unload(bool& cancel) override;
    void Form_FilesDropped(const std::vector<std::string>& files, Point at) override;
    Layout layout() override;
    void Command1_Click();
    void Command2_Click();
    void Command3_Click();
    void Command4_Click();
    void DecOption_Click(int index);
    void Combo5_Click();

    void Timer7_Timer();  // polls a job of the library
    void decodeEnded();   // the sound of a decode while playing is through
    bool decodesUnheard() const { return run_ == Run::Job; }
    bool running() const { return run_ != Run::None; }

    Operation operation() const;
    std::int32_t encoderProgress() const { return encoderProgress_; }  // frames of the running encode, 0 unknown

  private:
    // Made in its place among the controls, which is its place in the tab order.
    static ControlArray<OptionButton> optionsOf(FormConv& form);

    enum class Run { None, Encoder, Job, PlayedJob };

    void start();
    void startNext();
    void startJob();
    void encodeAll();
    bool encodeWithGogo(const ConversionJob& job);
    int encodeFrames();
    void jobDone();
    void finishFile(const ConversionJob& job);
    void finishRun(const std::string& lastDestination);
    void fail(ConversionError error, const std::string& reason);
    void cancel();
    void endRun();
    void setStatus(int status);
    void setSources(std::vector<std::string> sources);
    void setDestinations();
    bool mayReplace();
    void carryTags(const ConversionJob& job);
    void showProgress(double doneOfFile);
    void showControls();

    GlobalState& state_;
    Vbmp3& vbmp3_;
    Gogo& gogo_;
    Dialogs& dialogs_;
    FileSystem& files_;
    WindowSystem& windows_;
    Hooks hooks_;

    std::vector<std::string> sources_;
    std::vector<ConversionJob> jobs_;           // as chosen; emptied as they are done
    bool replaceAgreed_ = false;                // the save dialog has asked
    Operation chosenFor_ = Operation::Decode;   // what sources_ are for

    Run run_ = Run::None;
    bool encoding_ = false;                     // the encoder's loop is on the stack, cancelled or not
    Operation runs_ = Operation::Decode;
    std::size_t count_ = 0;                     // of the files of a run
    std::size_t done_ = 0;
    std::int32_t encoderProgress_ = 0;
    std::chrono::steady_clock::time_point started_;
};

}  // namespace quenlox

// The converter window: shows what is to be converted and the run that converts it, and lets the user change, start and
// cancel it. Keeps nothing of that itself. On the user-interface thread.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "convert/conversion_run.h"
#include "forms/control_array.h"
#include "forms/form.h"
#include "forms/list_view.h"

namespace quenlox {

class FileManager;

class FormConv : public Form {
  public:
    FormConv(ConversionRun& run, const GlobalState& state, Dialogs& dialogs, FileManager& fileManager);
    ~FormConv() override;

    Frame FrameOperation{*this, "FrameOperation"};
    ControlArray<OptionButton> DecOption;  // decode, decode while playing, encode
    Label Label1{*this, "Label1"};
    Label Label3{*this, "Label3"};              // the source
    CommandButton Command2{*this, "Command2"};  // chooses it
    Label Label2{*this, "Label2"};
    Label Label4{*this, "Label4"};               // the destination
    CommandButton Command3{*this, "Command3"};   // chooses it
    CheckBox CheckBeside{*this, "CheckBeside"};  // new files are put beside their sources
    ListView FileView{*this, "FileView"};        // all files with state, size and remaining time
    Frame Frame1{*this, "Frame1"};               // the encoder's settings
    Label LabelGogo{*this, "LabelGogo"};
    Label LabelFrequency{*this, "LabelFrequency"};
    ComboBox Combo4{*this, "Combo4"};  // output frequency
    Label LabelHertz{*this, "LabelHertz"};
    Label LabelBitRate{*this, "LabelBitRate"};
    ComboBox Combo3{*this, "Combo3"};  // bit rate
    Label LabelKbits{*this, "LabelKbits"};
    Label LabelLowered{*this, "LabelLowered"};  // when the frequency has no bit rate as high as was wished
    Label LabelVbr{*this, "LabelVbr"};
    ComboBox Combo5{*this, "Combo5"};  // VBR quality
    ProgressBar Progress{*this, "Progress"};
    Label LabelProgress{*this, "LabelProgress"};  // what is being converted, and the time left
    CommandButton cmdDrop{*this, "cmdDrop"};      // the selected files: off the list, or no more of them
    CommandButton Command4{*this, "Command4"};    // starts and cancels
    CommandButton Command1{*this, "Command1"};    // closes

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
    void Combo3_Click();
    void Combo4_Click();
    void Combo5_Click();

    void CheckBeside_Click();
    void cmdDrop_Click();

  private:
    void makeFileView();
    void settingsChosen(int bitRate);
    void chooseFolder();
    void showSettings();
    void showBitRates();
    void showRun();
    void showProgress();
    void showFiles();
    void say(const std::string& text);
    std::string cellOf(int row, int column) const;
    std::string stateOf(const ConversionRun::File& file) const;
    std::string progressText() const;
    bool mayReplace();

    ConversionRun& run_;
    const GlobalState& state_;
    Dialogs& dialogs_;
    FileManager& fileManager_;
    bool showing_ = false;                                          // controls change because the run does
    mutable std::unordered_map<std::string, std::uint64_t> sizes_;  // of the files that have been shown
};

}  // namespace quenlox

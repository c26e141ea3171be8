// The options window. Every control is bound to a field of the options: it shows the field, whoever changes that, and
// sets it at once. It knows nobody whom a change concerns. On the user-interface thread.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "forms/control_array.h"
#include "forms/form.h"
#include "state/option_store.h"

namespace quenlox {

class Dialogs;
class FileSystem;
class OutputDevices;
struct GlobalState;

class FormOpt : public Form {
  public:
    struct Services {
        Dialogs* dialogs = nullptr;
        FileSystem* files = nullptr;
        OutputDevices* devices = nullptr;
    };

    FormOpt(GlobalState& state, OptionStore& options);
    void connect(const Services& services);

    TabStrip Tabs{*this, "Tabs", {"表示(&D)", "再生(&P)", "歌詞(&L)", "リスト・名前(&N)"}};

    // Panel and title.
    Frame FrameMain{*this, "FrameMain"}, FrameSpeana{*this, "FrameSpeana"};
    Label LabelScale{*this, "LabelScale"}, LabelAnime{*this, "LabelAnime"}, LabelSpeana{*this, "LabelSpeana"},
        LabelIntroView{*this, "LabelIntroView"}, LabelFft{*this, "LabelFft"};
    Label FigureAnime{*this, "FigureAnime"}, FigureSpeana{*this, "FigureSpeana"},
        FigureIntroView{*this, "FigureIntroView"};
    CheckBox CheckAnime{*this, "CheckAnime"};
    ScrollBar HScrollAnime{*this, "HScrollAnime", kHorizontal};
    CheckBox CheckSpeana{*this, "CheckSpeana"};
    ScrollBar HScrollSpeana{*this, "HScrollSpeana", kHorizontal};
    ScrollBar HScrollSpeanaIntro{*this, "HScrollSpeanaIntro", kHorizontal};
    ComboBox ComboSkinScale{*this, "ComboSkinScale"};
    ControlArray<OptionButton> FftOption;
    CheckBox CheckPanel{*this, "CheckPanel"};

    // Playing.
    Frame FramePitch{*this, "FramePitch"}, FramePlay{*this, "FramePlay"}, FrameOutput{*this, "FrameOutput"},
        FrameVolume{*this, "FrameVolume"};
    Label LabelHiPitch{*this, "LabelHiPitch"}, LabelLowPitch{*this, "LabelLowPitch"},
        LabelStepPitch{*this, "LabelStepPitch"}, LabelQuality{*this, "LabelQuality"}, LabelCd{*this, "LabelCd"},
        LabelDevice{*this, "LabelDevice"}, LabelBuffer{*this, "LabelBuffer"};
    Label FigureHiPitch{*this, "FigureHiPitch"}, FigureLowPitch{*this, "FigureLowPitch"},
        FigureStepPitch{*this, "FigureStepPitch"}, FigureIntro{*this, "FigureIntro"},
        FigureBuffer{*this, "FigureBuffer"};
    ComboBox ComboCdDrive{*this, "ComboCdDrive"};
    ControlArray<OptionButton> QualityOption;
    ScrollBar HScrollHiPitch{*this, "HScrollHiPitch", kHorizontal};
    ScrollBar HScrollLowPitch{*this, "HScrollLowPitch", kHorizontal};
    ScrollBar HScrollStepPitch{*this, "HScrollStepPitch", kHorizontal};
    CheckBox CheckIntro{*this, "CheckIntro"};
    ScrollBar HScrollIntro{*this, "HScrollIntro", kHorizontal};
    ControlArray<OptionButton> VolumeOption;
    CheckBox CheckGapless{*this, "CheckGapless"};
    CheckBox CheckPassOver{*this, "CheckPassOver"};
    ComboBox ComboDevice{*this, "ComboDevice"};
    ScrollBar HScrollBuffer{*this, "HScrollBuffer", kHorizontal};

    // Lyrics.
    Frame FrameLyrics{*this, "FrameLyrics"}, FrameSources{*this, "FrameSources"}, FrameBmp{*this, "FrameBmp"};
    Label LabelLines{*this, "LabelLines"}, LabelFont{*this, "LabelFont"}, LabelLyricsTime{*this, "LabelLyricsTime"},
        LabelLyricsDir{*this, "LabelLyricsDir"}, LabelBmpDir{*this, "LabelBmpDir"},
        LabelBmpNames{*this, "LabelBmpNames"}, FigureLyricsTime{*this, "FigureLyricsTime"};
    CheckBox CheckLyrics{*this, "CheckLyrics"};
    CheckBox CheckLyricsSelf{*this, "CheckLyricsSelf"};
    ScrollBar HScrollLyricsTime{*this, "HScrollLyricsTime", kHorizontal};
    ControlArray<OptionButton> LyricsOption;
    TextBox TextLyricsFont{*this, "TextLyricsFont"};
    CheckBox CheckLyricsMain{*this, "CheckLyricsMain"};
    CommandButton CommandLyricsFont{*this, "CommandLyricsFont"};
    Label LabelFontSample{*this, "LabelFontSample"};
    CheckBox CheckTimeTag{*this, "CheckTimeTag"};
    CheckBox CheckLyricsBold{*this, "CheckLyricsBold"};
    CheckBox CheckLyricsSecond{*this, "CheckLyricsSecond"};
    CheckBox CheckLyricsSmooth{*this, "CheckLyricsSmooth"};
    TextBox TextLyricsDir{*this, "TextLyricsDir"};

    CommandButton CommandLyricsDir{*this, "CommandLyricsDir"};
    TextBox TextBmpDir{*this, "TextBmpDir"};

    CommandButton CommandBmpDir{*this, "CommandBmpDir"};

    // Lists and names.
    Frame FrameList{*this, "FrameList"}, FrameReName{*this, "FrameReName"};
    Label LabelTokens{*this, "LabelTokens"}, LabelCase{*this, "LabelCase"}, LabelForbidden{*this, "LabelForbidden"},
        LabelSideFiles{*this, "LabelSideFiles"};
    CheckBox CheckReName{*this, "CheckReName"};
    TextBox TextReName{*this, "TextReName"};
    CheckBox CheckListType{*this, "CheckListType"};
    CheckBox CheckListTypeS{*this, "CheckListTypeS"};
    CheckBox CheckListTime{*this, "CheckListTime"};
    CheckBox CheckDelList{*this, "CheckDelList"};
    CheckBox CheckTellUnsaved{*this, "CheckTellUnsaved"};
    ComboBox ComboSideFiles{*this, "ComboSideFiles"};

    ControlArray<Label> ScaleRange;  // what the ends of each slider mean

    CommandButton CommandDefaults{*this, "CommandDefaults"};
    CommandButton CommandClose{*this, "CommandClose"};

    // A typed text counts when the keyboard leaves it: half a path would be looked for on every disk and network. This
    // takes what stands in the boxes now.
    void settleTexts();

    static constexpr int kLyricsPage = 2;
    void showPage(int page) { Tabs.setValue(page); }

    // The device is remembered by its name, because the numbers shift when devices come and go; the number counts for
    // one without a name. One that is not there keeps an item of its own and is waited for; meanwhile the default
    // plays. To be called when devices may have come or gone. True when there are others.
    bool followDevices();

    void Form_Shown() override;
    void Form_Unload(bool& cancel) override;
    Layout layout() override;

  private:
    using Figure = std::string (*)(std::int32_t value);
    static constexpr auto kHorizontal = ScrollBar::Direction::Horizontal;
    static constexpr int kAbsentDevice = -2;  // a number in ComboDevice
    static constexpr int kScales = 9;         // sliders

    // form_opt_layout.cpp
    void bindControls();
    void setCaptions();
    void captionDisplayAndPlayback();
    void captionLyricsAndLists();

    // form_opt.cpp: the control shows the field and sets it.
    void bind(CheckBox& box, OnOff Options::*field);
    void bind(ScrollBar& slider, std::int32_t Options::*field, Label& figure, Figure text);  // with the field's range
    void bind(ControlArray<OptionButton>& buttons, std::int32_t Options::*field);            // by their indexes
    void bind(ComboBox& box, std::int32_t Options::*field);                                  // by the items' data
    void bind(TextBox& box, std::string Options::*field);
    void bindWhenLeft(TextBox& box, std::string Options::*field);
    void follow(Control& control, const OptionField& field, const OptionStore::Listener& show);
    void showAvailable();

    void CommandDefaults_Click();
    void chooseFolder(TextBox& box, const std::string& title);
    void chooseFont();
    void showFontSample();
    void deviceChosen();
    void driveChosen();
    void showDrive();

    GlobalState& state_;
    OptionStore& options_;
    Services services_;
    bool listing_ = false;              // a list is being filled: its choice is not the user's
    std::vector<std::string> devices_;  // as listed
    std::vector<std::pair<Control*, OptionField>> bound_;
};

}  // namespace quenlox

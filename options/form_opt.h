// The options window. Its controls are where most settings live while the program runs: reading the settings file fills
// them, writing it reads them back, and everybody else asks through OptionSettings. On the user-interface thread.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "state/option_settings.h"
#include "forms/control_array.h"
#include "forms/form.h"

namespace quenlox {

class Dialogs;
class FileSystem;
class OutputDevices;
struct GlobalState;

class FormOpt : public Form, public OptionControls {
  public:
    struct Services {
        Dialogs* dialogs = nullptr;
        FileSystem* files = nullptr;
        OutputDevices* devices = nullptr;
    };

    explicit FormOpt(GlobalState& state);
    void connect(const Services& services) { services_ = services; }

    TabStrip Tabs{*this, "Tabs", {"表示", "再生", "歌詞", "リスト・名前"}};

    // Panel and title.
    Frame FrameMain{*this, "FrameMain"}, FrameSpeana{*this, "FrameSpeana"};
    Label LabelScale{*this, "LabelScale"}, LabelAnime{*this, "LabelAnime"}, LabelSpeana{*this, "LabelSpeana"},
        LabelIntroView{*this, "LabelIntroView"}, LabelFft{*this, "LabelFft"};
    Label FigureAnime{*this, "FigureAnime"}, FigureSpeana{*this, "FigureSpeana"},
        FigureIntroView{*this, "FigureIntroView"};
    CheckBox CheckAnime{*this, "CheckAnime"};                               // "AnimeMode": the title text moves
    ScrollBar HScrollAnime{*this, "HScrollAnime", kHorizontal, 0, 10};      // "AnimeTime": 0 slow to 10 fast
    CheckBox CheckSpeana{*this, "CheckSpeana"};                             // "SpeanaMode": display B is drawn
    ScrollBar HScrollSpeana{*this, "HScrollSpeana", kHorizontal, 0, 10};    // "SpeanaTime": 0 slow to 10 fast
    ScrollBar HScrollSpeanaIntro{*this, "HScrollSpeanaIntro", kHorizontal, 0, 60};  // "SpeanaIntro": the view changes
                                                                            // every value * 2 seconds, 0 never
    ComboBox ComboSkinScale{*this, "ComboSkinScale"};                       // "SkinScale": 1 to 4 screen pixels
    ControlArray<OptionButton> FftOption;                                   // "Fft", 0 to 2
    CheckBox CheckPanel{*this, "CheckPanel"};                               // "PanelMode": the operation panel

    // Playing.
    Frame FramePitch{*this, "FramePitch"}, FramePlay{*this, "FramePlay"}, FrameOutput{*this, "FrameOutput"},
        FrameVolume{*this, "FrameVolume"};
    Label LabelHiPitch{*this, "LabelHiPitch"}, LabelLowPitch{*this, "LabelLowPitch"},
        LabelStepPitch{*this, "LabelStepPitch"}, LabelQuality{*this, "LabelQuality"}, LabelCd{*this, "LabelCd"},
        LabelDevice{*this, "LabelDevice"}, LabelBuffer{*this, "LabelBuffer"};
    Label FigureHiPitch{*this, "FigureHiPitch"}, FigureLowPitch{*this, "FigureLowPitch"},
        FigureStepPitch{*this, "FigureStepPitch"}, FigureIntro{*this, "FigureIntro"}, FigureBuffer{*this, "FigureBuffer"};
    ComboBox ComboCdDrive{*this, "ComboCdDrive"};                           // "defCdDrv", the drives with a disc tray
    ControlArray<OptionButton> QualityOption;                               // "Quality": 0 standard, 1 high, 2 light
    ScrollBar HScrollHiPitch{*this, "HScrollHiPitch", kHorizontal, 101, 200};   // "HiPitch", percent
    ScrollBar HScrollLowPitch{*this, "HScrollLowPitch", kHorizontal, 50, 99};   // "LowPitch", percent
    ScrollBar HScrollStepPitch{*this, "HScrollStepPitch", kHorizontal, 2, 16};  // "StepPitch": the speed is
                                                                            // 1 + (value - 1) / 5, so 6 doubles it
    CheckBox CheckIntro{*this, "CheckIntro"};                               // "IntroPlay"
    ScrollBar HScrollIntro{*this, "HScrollIntro", kHorizontal, 1, 60};      // "IntroTime", seconds
    ControlArray<OptionButton> VolumeOption;                                // "Volume": 0 the master alone, 1 the
                                                                            // single sources too
    CheckBox CheckGapless{*this, "CheckGapless"};                           // "Gapless": no gap between tracks
    CheckBox CheckPassOver{*this, "CheckPassOver"};                         // "PassOver": what cannot be played
    ComboBox ComboDevice{*this, "ComboDevice"};                             // "OutputDevice": -1 the system's default,
                                                                            // and "OutputDeviceName"
    ScrollBar HScrollBuffer{*this, "HScrollBuffer", kHorizontal, 50, 2000}; // "OutputBuffer", milliseconds

    // Lyrics.
    Frame FrameLyrics{*this, "FrameLyrics"}, FrameSources{*this, "FrameSources"}, FrameBmp{*this, "FrameBmp"};
    Label LabelLines{*this, "LabelLines"}, LabelFont{*this, "LabelFont"}, LabelLyricsTime{*this, "LabelLyricsTime"},
        LabelLyricsDir{*this, "LabelLyricsDir"}, LabelBmpDir{*this, "LabelBmpDir"},
        LabelBmpNames{*this, "LabelBmpNames"}, FigureLyricsTime{*this, "FigureLyricsTime"};
    CheckBox CheckLyrics{*this, "CheckLyrics"};                             // "DispLyrics": the lyrics window
    CheckBox CheckLyricsSelf{*this, "CheckLyricsSelf"};                     // "LyricsSelf"
    ScrollBar HScrollLyricsTime{*this, "HScrollLyricsTime", kHorizontal, -50, 50};  // "LyricsTime"
    ControlArray<OptionButton> LyricsOption;                                // "LyricsLine", 0 to 5; 1, 3 and 5 are shown
    TextBox TextLyricsFont{*this, "TextLyricsFont"};                        // section "Lyrics", "Font"
    CheckBox CheckLyricsMain{*this, "CheckLyricsMain"};                     // "LyricsMain": Lyrics3 before side files
    CheckBox CheckTimeTag{*this, "CheckTimeTag"};                           // "TimeTag"
    CheckBox CheckLyricsBold{*this, "CheckLyricsBold"};                     // "LyricsBold": bold type
    CheckBox CheckLyricsSecond{*this, "CheckLyricsSecond"};                 // "LyricsColor2": the skin's second colour
    TextBox TextLyricsDir{*this, "TextLyricsDir"};                          // "LyricsDir"

    CommandButton CommandLyricsDir{*this, "CommandLyricsDir"};
    TextBox TextBmpDir{*this, "TextBmpDir"};                                // "BmpDir": pictures behind the lyrics

    CommandButton CommandBmpDir{*this, "CommandBmpDir"};

    // Lists and names.
    Frame FrameList{*this, "FrameList"}, FrameReName{*this, "FrameReName"};
    Label LabelTokens{*this, "LabelTokens"}, LabelCase{*this, "LabelCase"}, LabelForbidden{*this, "LabelForbidden"};
    CheckBox CheckReName{*this, "CheckReName"};                             // "ReName": texts told from file names
    TextBox TextReName{*this, "TextReName"};                                // "ReNameS": the format of file names
    CheckBox CheckListType{*this, "CheckListType"};                         // "ListType", counts at the next start
    CheckBox CheckListTypeS{*this, "CheckListTypeS"};                       // "ListTypeS": columns in file-name mode
    CheckBox CheckListTime{*this, "CheckListTime"};                         // "ListTime": the playing-time column
    CheckBox CheckDelList{*this, "CheckDelList"};                           // "DelList"

    CommandButton CommandDefaults{*this, "CommandDefaults"};
    CommandButton CommandClose{*this, "CommandClose"};

    // Told after a change, by the user or from code.
    std::function<void()> onDisplayOptions;  // title animation, display B, operation panel, scale of the skin
    std::function<void()> onPanelOptions;    // speed of display B, analysis
    std::function<void()> onLyricsShown;
    std::function<void()> onLyricsLook;      // lines, type, time tags, timing
    std::function<void()> onLyricsSources;   // lyrics folder, or which source counts more
    std::function<void()> onPictureFolder;
    std::function<void()> onOutput;          // device or buffer
    std::function<void()> onPitch;           // one of the amounts
    std::function<void()> onQuality;
    std::function<void()> onVolume;          // which volumes the bar changes
    std::function<void()> onListColumns;
    std::function<void()> onEstimate;        // texts are told from file names, or not
    std::function<void()> onNameFormat;
    std::function<void()> onDefaults;        // every option shall get the value of a fresh start

    // Tells of folders and of the format as they stand now. A typed text counts when the keyboard leaves it:
    // half a path would be looked for on every disk and network.
    void settleTexts();

    // Chooses the button with the index; one that does not exist leaves the choice as it was.
    static void choose(ControlArray<OptionButton>& options, int index);
    static int chosen(const ControlArray<OptionButton>& options);  // 0 when none is

    // The device is remembered by its name, because the numbers shift when devices come and go; the number counts for
    // one without a name. One that is not there keeps an item of its own and is waited for; meanwhile the default
    // plays.
    void setOutputDevice(int device);
    void setOutputDeviceName(const std::string& name);
    const std::string& outputDeviceName() const { return deviceName_; }  // empty: the default
    // Devices may have come or gone: lists them anew and tells onOutput when the chosen one has another number now.
    // True when there are others.
    bool followDevices();

    bool titleAnimation() const override { return CheckAnime.checked(); }
    int titleAnimationSpeed() const override { return HScrollAnime.value(); }
    bool spectrumShown() const override { return CheckSpeana.checked(); }
    int spectrumSpeed() const override { return HScrollSpeana.value(); }
    int spectrumIntro() const override { return HScrollSpeanaIntro.value(); }
    int highPitch() const override { return HScrollHiPitch.value(); }
    int lowPitch() const override { return HScrollLowPitch.value(); }
    int stepPitch() const override { return HScrollStepPitch.value(); }
    bool introPlay() const override { return CheckIntro.checked(); }
    int introSeconds() const override { return HScrollIntro.value(); }
    bool driveMixerSources() const override { return chosen(VolumeOption) == 1; }
    bool lyricsShown() const override { return CheckLyrics.checked(); }
    bool lyricsSelf() const override { return CheckLyricsSelf.checked(); }
    int lyricsTime() const override { return HScrollLyricsTime.value(); }
    bool lyrics3First() const override { return CheckLyricsMain.checked(); }
    bool timeTagShown() const override { return CheckTimeTag.checked(); }
    bool lyricsBold() const override { return CheckLyricsBold.checked(); }
    bool lyricsSecondColor() const override { return CheckLyricsSecond.checked(); }
    std::string lyricsFolder() const override { return TextLyricsDir.text(); }
    std::string lyricsFont() const override { return TextLyricsFont.text(); }
    std::string pictureFolder() const override { return TextBmpDir.text(); }
    bool operationPanel() const override { return CheckPanel.checked(); }
    bool estimateFromFileName() const override { return CheckReName.checked(); }
    std::string renameFormat() const override { return TextReName.text(); }
    bool listTimeColumn() const override { return CheckListTime.checked(); }
    bool listColumns() const override { return CheckListTypeS.checked(); }
    bool deleteFromList() const override { return CheckDelList.checked(); }
    bool passOverUnplayable() const override { return CheckPassOver.checked(); }
    bool gaplessNext() const override { return CheckGapless.checked(); }
    int outputDevice() const override { return std::max(ComboDevice.data(), kDefaultDevice); }
    int skinScale() const override { return ComboSkinScale.data(); }

    void setTitleAnimation(bool on) override { CheckAnime.setValue(on); }
    void setSpectrumShown(bool on) override { CheckSpeana.setValue(on); }
    void setOperationPanel(bool on) override { CheckPanel.setValue(on); }
    void setLyricsShown(bool on) override { CheckLyrics.setValue(on); }
    void setSkinScale(int factor) override;
    void allowOperationPanel(bool allowed) override;
    void allowSpectrum(bool allowed) override;
    void allowLyricsWindowChoices(bool allowed) override;

    void CommandDefaults_Click();
    void chooseFolder(TextBox& box, const std::string& title);

    void Form_Shown() override;
    void Form_KeyDown(int key, int shift) override;
    void Form_Unload(bool& cancel) override;
    Layout layout() override;

  private:
    static constexpr auto kHorizontal = ScrollBar::Direction::Horizontal;
    static constexpr int kDefaultDevice = -1, kAbsentDevice = -2;  // numbers in ComboDevice
    void setCaptions();
    void showFigures();
    void listCdDrives();

    GlobalState& state_;
    Services services_;
    bool listing_ = false;  // a list is being filled: its choice is not the user's
    std::vector<std::string> devices_;                       // as listed
    std::string deviceName_;                                 // of the chosen one
    std::string lyricsFolder_, pictureFolder_, nameFormat_;  // as last told
};

}  // namespace quenlox

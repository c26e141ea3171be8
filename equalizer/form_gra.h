// The graphic equalizer window: ten sliders, five presets, a random pattern, and the switch. What it sets reaches the
// decoding library at once while a track is open. On the user-interface thread.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "equalizer/curve.h"
#include "equalizer/presets.h"
#include "forms/control_array.h"
#include "forms/form.h"

namespace quenlox {

class Dialogs;
class FileSystem;
class Random;
class Vbmp3;
struct GlobalState;

class FormGra : public Form {
  public:
    static constexpr int kBands = static_cast<int>(kEqualizerBands);
    static constexpr int kPresets = 5;

    FormGra(GlobalState& state, Vbmp3& vbmp3, Dialogs& dialogs, Random& random, FileSystem& files);

    CheckBox Check4{*this, "Check4"};             // the equalizer is on
    PictureBox geLine{*this, "geLine"};           // the curve through the knobs
    ControlArray<Label> geValue;                  // what each slider is set to
    ControlArray<ScrollBar> VScroll;              // 0 to 9: -12 (top, +12 dB) to 12
    ControlArray<Label> geBand;                   // captions of the bands
    ControlArray<Label> geScale;                  // 0 to 2: +12 dB, 0 dB, -12 dB
    ControlArray<Label> geUnit;                   // 0 of the values, 1 of the bands
    ControlArray<OptionButton> geOption;          // presets 0 to 4
    ControlArray<Label> geLabel;                  // their names; the buttons show them
    Frame Frame1{*this, "Frame1"};                // around the presets
    CommandButton Command23{*this, "Command23"};  // random
    CommandButton Command2{*this, "Command2"};    // pattern menu
    CommandButton Command1{*this, "Command1"};    // close
    Menu menuPat{"menuPat", {}};                  // items menuPatName(0) to (4), and what else there is to patterns

    // Keys that this window leaves to the main window.
    std::function<void(int key, int shift)> onKeyDown;
    std::function<void(int key, int shift)> onKeyUp;

    // Position of a slider for a gain in tenths of a decibel: whole decibels, halves to the even one, upwards negative.
    static int sliderOf(int gain) { return RoundHalfToEven(gain / -10.0); }
    // Gains in tenths of a decibel, band 60 Hz first.
    const EqualizerGains& gains() const { return gains_; }
    // The same in the whole decibels of the sliders.
    EqualizerGains sliderGains() const;
    void restore(const EqualizerGains& gains);  // sets them without telling the library
    void markPreset();                          // chooses the preset that has the same, likewise

    void Check4_Click();
    void VScroll_Change(int index);
    void VScroll_Scroll(int index);
    void VScroll_DblClick(int index);              // back to 0 dB
    void VScroll_FineStep(int index, int tenths);  // the slider stays at the nearest decibel
    void geOption_Click(int index);
    void geLabel_MouseDown(int index);
    void Command23_Click();
    void Command2_Click();
    void Command1_Click();
    // Keeps the gains of the sliders as that pattern, under a name that the user is asked for.
    void menuPatName_Click(int index);
    void menuPatSave_Click(int index);     // into a file
    void menuPatLoad_Click(int index);     // from a file, in place of that pattern
    void menuPatFactory_Click(int index);  // what it was on a fresh start; kPresets: all

    Layout layout() override;
    void Form_Unload(bool& cancel) override;
    void Form_KeyDown(int key, int shift) override;
    void Form_KeyUp(int key, int shift) override;

  protected:
    void controlChangedHere(Control& control, Property property) override;

  private:
    void makeArrays();
    void geLine_MouseDown(Point at);
    void geLine_MouseMove(Point at);
    void showValue(int index);
    struct CurvePlace {
        Knobs knobs;
        CurveScale scale;
    };
    CurvePlace curvePlace() const;
    void drawCurve();
    void setGains(const EqualizerGains& gains);
    void apply(const EqualizerGains* gains);
    EqualizerPattern pattern(int index) const;
    void setPattern(int index, const EqualizerPattern& pattern);
    MenuItem patternMenu(std::string caption, void (FormGra::*act)(int)) const;
    void deselectPresets();

    GlobalState& state_;
    Vbmp3& vbmp3_;
    Dialogs& dialogs_;
    Random& random_;
    FileSystem& files_;
    EqualizerGains gains_{};
    int draggedBand_ = -1;    // whose knob the mouse holds in the picture
    int lastBand_ = -1;       // whose it held last
    bool movingAll_ = false;  // the program moves sliders: it sets the gains itself, and one apply step follows
    bool marking_ = false;    // a preset is shown to be in force
};

}  // namespace quenlox

// What the rooms need to know of the user's options. The options window's controls hold the values; this is how the
// rooms below it ask for them.
#pragma once

#include <string>

namespace quenlox {

class OptionSettings {
  public:
    virtual ~OptionSettings() = default;
    virtual bool titleAnimation() const = 0;      // "AnimeMode"
    virtual int titleAnimationSpeed() const = 0;  // "AnimeTime"
    virtual bool spectrumShown() const = 0;       // "SpeanaMode"
    virtual int spectrumSpeed() const = 0;        // "SpeanaTime"
    virtual int spectrumIntro() const = 0;        // slider of "SpeanaIntro"
    virtual int highPitch() const = 0;            // percent
    virtual int lowPitch() const = 0;             // percent
    virtual int stepPitch() const = 0;            // factor of vbmp3_setStepPitch over 5
    virtual bool introPlay() const = 0;
    virtual int introSeconds() const = 0;
    virtual bool driveMixerSources() const = 0;   // "Volume": the single sources follow the bar too
    virtual bool lyricsShown() const = 0;         // "DispLyrics"
    virtual bool lyricsSelf() const = 0;
    virtual int lyricsTime() const = 0;
    virtual bool lyrics3First() const = 0;        // "LyricsMain"
    virtual bool timeTagShown() const = 0;
    virtual bool lyricsBold() const = 0;          // "LyricsBold"
    virtual bool lyricsSecondColor() const = 0;   // "LyricsColor2": the second lyrics colour of the skin
    virtual std::string lyricsFolder() const = 0;
    virtual std::string lyricsFont() const = 0;
    virtual std::string pictureFolder() const = 0;
    virtual bool operationPanel() const = 0;      // "PanelMode"
    virtual bool estimateFromFileName() const = 0;  // "ReName"
    virtual std::string renameFormat() const = 0;   // "ReNameS"
    virtual bool listTimeColumn() const = 0;        // the playing-time column is enabled
    virtual bool listColumns() const = 0;           // "ListTypeS"
    virtual bool deleteFromList() const = 0;        // "DelList"
    virtual bool passOverUnplayable() const = 0;    // "PassOver": a step goes on to a track that can be played
    virtual bool gaplessNext() const = 0;
    virtual int outputDevice() const = 0;           // number of the device that is played on, -1 the system's default
    virtual int skinScale() const = 0;              // screen pixels for one pixel of the skin, 1 to 4
};

// What the main window does to the options window: its menu items mirror check boxes there, and a skin takes choices
// away that it has no place for.
class OptionControls : public OptionSettings {
  public:
    virtual void setTitleAnimation(bool on) = 0;
    virtual void setSpectrumShown(bool on) = 0;
    virtual void setOperationPanel(bool on) = 0;
    virtual void setLyricsShown(bool on) = 0;
    virtual void setSkinScale(int factor) = 0;
    virtual void allowOperationPanel(bool allowed) = 0;        // the skin has display A
    virtual void allowSpectrum(bool allowed) = 0;              // the skin has display B
    virtual void allowLyricsWindowChoices(bool allowed) = 0;   // the skin has no lyrics area of its own
};

}  // namespace quenlox

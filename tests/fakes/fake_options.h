// Options as plain fields, with the values of a fresh start.
#pragma once

#include <string>

#include "state/option_settings.h"

namespace quenlox {

class FakeOptions : public OptionControls {
  public:
    struct Values {
        bool titleAnimation = false;
        int titleAnimationSpeed = 0;
        bool spectrumShown = false;
        int spectrumSpeed = 0;
        int spectrumIntro = 0;
        int highPitch = 130;
        int lowPitch = 80;
        int stepPitch = 6;
        bool introPlay = false;
        int introSeconds = 10;
        bool driveMixerSources = false;
        bool lyricsShown = true;
        bool lyricsSelf = false;
        int lyricsTime = 1;
        bool lyrics3First = false;
        bool timeTagShown = false;
        bool lyricsBold = false;
        bool lyricsSecondColor = false;
        std::string lyricsFolder;
        std::string lyricsFont = "ＭＳ Ｐゴシック";
        std::string pictureFolder;
        bool operationPanel = false;
        bool estimateFromFileName = false;
        std::string renameFormat = "(*N) *T";
        bool listTimeColumn = true;
        bool listColumns = false;
        bool deleteFromList = false;
        bool passOverUnplayable = true;
        bool gaplessNext = true;
        int outputDevice = -1;
        int skinScale = 1;
    } values;
    bool operationPanelAllowed = true;
    bool lyricsWindowChoicesAllowed = true;

    bool titleAnimation() const override { return values.titleAnimation; }
    int titleAnimationSpeed() const override { return values.titleAnimationSpeed; }
    bool spectrumShown() const override { return values.spectrumShown; }
    int spectrumSpeed() const override { return values.spectrumSpeed; }
    int spectrumIntro() const override { return values.spectrumIntro; }
    int highPitch() const override { return values.highPitch; }
    int lowPitch() const override { return values.lowPitch; }
    int stepPitch() const override { return values.stepPitch; }
    bool introPlay() const override { return values.introPlay; }
    int introSeconds() const override { return values.introSeconds; }
    bool driveMixerSources() const override { return values.driveMixerSources; }
    bool lyricsShown() const override { return values.lyricsShown; }
    bool lyricsSelf() const override { return values.lyricsSelf; }
    int lyricsTime() const override { return values.lyricsTime; }
    bool lyrics3First() const override { return values.lyrics3First; }
    bool timeTagShown() const override { return values.timeTagShown; }
    bool lyricsBold() const override { return values.lyricsBold; }
    bool lyricsSecondColor() const override { return values.lyricsSecondColor; }
    std::string lyricsFolder() const override { return values.lyricsFolder; }
    std::string lyricsFont() const override { return values.lyricsFont; }
    std::string pictureFolder() const override { return values.pictureFolder; }
    bool operationPanel() const override { return values.operationPanel; }
    bool estimateFromFileName() const override { return values.estimateFromFileName; }
    std::string renameFormat() const override { return values.renameFormat; }
    bool listTimeColumn() const override { return values.listTimeColumn; }
    bool listColumns() const override { return values.listColumns; }
    bool deleteFromList() const override { return values.deleteFromList; }
    bool passOverUnplayable() const override { return values.passOverUnplayable; }
    bool gaplessNext() const override { return values.gaplessNext; }
    int outputDevice() const override { return values.outputDevice; }
    int skinScale() const override { return values.skinScale; }

    void setTitleAnimation(bool on) override { values.titleAnimation = on; }
    void setSpectrumShown(bool on) override { values.spectrumShown = on; }
    void setOperationPanel(bool on) override { values.operationPanel = on; }
    void setLyricsShown(bool on) override { values.lyricsShown = on; }
    void setSkinScale(int factor) override { values.skinScale = factor; }
    void allowOperationPanel(bool allowed) override { operationPanelAllowed = allowed; }
    void allowSpectrum(bool) override {}
    void allowLyricsWindowChoices(bool allowed) override { lyricsWindowChoicesAllowed = allowed; }
};

}  // namespace quenlox

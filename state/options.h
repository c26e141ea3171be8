// What the user chooses in the options window, as plain values; each begins with that of a fresh start. One owner, the
// OptionStore; the rooms read it through a reference.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace quenlox {

// A check box. A number of the settings file other than 0 and 1 is on, and is kept as it stands.
class OnOff {
  public:
    constexpr OnOff(bool on = false) : number_(on ? 1 : 0) {}
    static constexpr OnOff Of(std::int32_t number) {
        OnOff value;
        value.number_ = number;
        return value;
    }
    constexpr operator bool() const { return number_ != 0; }
    constexpr std::int32_t number() const { return number_; }
    bool operator==(const OnOff&) const = default;

  private:
    std::int32_t number_;
};

enum VolumeChoice : int { kMasterAlone = 0, kSourcesToo = 1 };

enum SideFilesChoice : int { kAskSideFiles = 0, kTakeSideFiles = 1, kLeaveSideFiles = 2 };

inline constexpr std::int32_t kDefaultDevice = -1;
inline constexpr std::int32_t kLyricsOnTime = 1;  // of LyricsTime: each line at its own time

// At which the main window is shown: percent of the skin's own size. The key is the access key in a menu.
inline constexpr std::int32_t kZoomOfMonitor = 0;  // as its resolution asks
struct ZoomChoice {
    std::int32_t percent;
    const char* name;
    char key;
};
inline constexpr ZoomChoice kZoomChoices[] = {
    {kZoomOfMonitor, "自動", 'A'}, {100, "等倍", '1'}, {150, "1.5倍", '5'}, {200, "2倍", '2'},
    {250, "2.5倍", '6'},           {300, "3倍", '3'},  {400, "4倍", '4'}};

struct Options {
    // Panel and title.
    OnOff TitleAnimation;                    // a title that is too long moves
    std::int32_t TitleAnimationSpeed = 0;    // 0 slow to 10 fast
    OnOff SpectrumShown;                     // display B is drawn
    std::int32_t SpectrumSpeed = 0;          // 0 slow to 10 fast
    std::int32_t SpectrumIntro = 0;          // the view changes after twice as many seconds; 0 never
    std::int32_t SpectrumBands = 0;          // 0 few to 2 many
    OnOff OperationPanel;                    // display A stands in the place of the buttons
    std::int32_t SkinZoom = kZoomOfMonitor;  // percent of the skin's own size, 100 to 400

    // Playing.
    std::int32_t HighPitch = 130;  // percent
    std::int32_t LowPitch = 80;    // percent
    std::int32_t StepPitch = 6;    // the speed is 1 + (value - 1) / 5, so 6 doubles it
    std::int32_t Quality = 0;      // of another pitch or speed: 0 standard, 1 high, 2 light
    OnOff IntroPlay;               // every track is left after its first seconds
    std::int32_t IntroSeconds = 10;
    OnOff GaplessNext = true;
    OnOff PassOverUnplayable = true;             // a step goes on to a track that can be played
    std::string DefaultCdDrive;                  // "D:", empty: the first one
    std::int32_t OutputDevice = kDefaultDevice;  // number of the device that is played on
    std::string OutputDeviceName;                // the one that is meant; empty: the system's default, or the number
    std::int32_t OutputBuffer = 250;             // milliseconds
    std::int32_t VolumeDrives = kMasterAlone;    // what the bar changes: a VolumeChoice

    // Lyrics.
    OnOff LyricsShown = true;                 // in their window, for a skin without a place for them
    OnOff LyricsSelf;                         // those without time tags move with the track
    std::int32_t LyricsTime = kLyricsOnTime;  // tenths of a second; more is later
    std::int32_t LyricsLine = 5;              // number of lines that are shown
    std::string LyricsFont = "ＭＳ Ｐゴシック";
    OnOff LyricsBold;
    OnOff LyricsSecondColor;  // the second lyrics colour of the skin
    OnOff TimeTagShown;
    OnOff LyricsSmooth;  // a new line comes up pixel by pixel
    OnOff Lyrics3First;  // those in the file count more than a file beside it
    std::string LyricsFolder;
    std::string PictureFolder;  // of pictures behind the lyrics

    // Lists and names.
    OnOff TagLists;     // ListType of the next start
    OnOff ListColumns;  // columns in the file-name mode too
    OnOff ListTimeColumn = true;
    OnOff DeleteFromList;        // what cannot be played leaves the list
    OnOff EstimateFromFileName;  // texts of a row are told from its file name
    std::string RenameFormat = "(*N) *T";
    // Whether lyrics and pictures of its name are renamed with a track: a SideFilesChoice.
    std::int32_t RenameSideFiles = kAskSideFiles;
    OnOff TellUnsaved;  // what the end of the program could not write is said, and can be tried again

    bool operator==(const Options&) const = default;
};

// One option, whatever its type.
using OptionField = std::variant<OnOff Options::*, std::int32_t Options::*, std::string Options::*>;

}  // namespace quenlox

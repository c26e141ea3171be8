// What a skin package says, read into a plain value. Nothing here touches a window: it is shown when it is complete.
// The format is told in docs/skins.md. Every number is brought to what a window can have before anything is made of it.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "forms/geometry.h"
#include "forms/scale.h"
#include "forms/surface.h"
#include "forms/window_host.h"
#include "platform/file_system.h"
#include "skin/skin_notes.h"
#include "text/ini_document.h"
#include "text/numbers.h"

namespace quenlox {

inline constexpr int kLabelCount = 9;
inline constexpr int kButtonCount = 7;  // playback buttons; there are as many command buttons
inline constexpr int kOldestSkinVersion = 4;
inline constexpr Size kPanelDisplay{85, 30};  // display B, whatever a skin says

// What a package may take, in pixels. A window of many more pixels than a monitor shows is a mistake; the pictures are
// held beside those of the skin that is being left. Those of a finer set, but that behind the window, may have as many
// times more as the set is finer.
inline constexpr int kLongestSide = 4096;                        // of the window and of every element in it
inline constexpr int kMostWindowPixels = 1 << 21;                // of the window, and of the picture behind it
inline constexpr int kMostScreenPixels = 1 << 22;                // of the screen, for the window at its scale
inline constexpr int kMostBarPixels = 1 << 17;                   // of each bar, of the level and of the operation panel
inline constexpr int kMostButtonPixels = 1 << 16;                // of each picture of a button
inline constexpr int kMostPartPixels = 1 << 19;                  // of all pictures but that behind the window
inline constexpr std::uint64_t kLargestDefinition = 128u << 10;  // bytes of the definition file
inline constexpr int kLargestType = 300;                         // points
inline constexpr int kFinest = 3;                                // pixels of a picture for one of the window

inline constexpr std::array<const char*, kButtonCount> kPlaybackButtonNames = {"play", "pause", "back",  "next",
                                                                               "low",  "high",  "double"};
inline constexpr std::array<const char*, kButtonCount> kCommandButtonNames = {"list", "opt",  "tag",  "conv",
                                                                              "help", "mini", "close"};

struct SkinDefinition {
    // An element that the skin leaves out has no place.
    struct Text {
        Rect bounds;
        int fontField = 0;  // points at 96 dots per inch, 0 to kLargestType
        Color color;
    };
    struct LyricsArea {
        Rect bounds;  // the part of it that lies in the window
        int fontField = 0;
        Color first, second, background;
    };
    struct Display {
        Rect bounds;
        Color background;
    };
    struct ButtonPictures {
        std::optional<Surface> released, pressed;
    };

    int version = 0;
    Size size;  // each side 1 or more
    Color background;
    bool box = false;
    bool alpha = false;  // the edges of the window are soft
    std::array<std::optional<Text>, kLabelCount> labels;
    std::optional<LyricsArea> lyrics;
    std::array<std::optional<Point>, kButtonCount> buttons, commands;
    std::optional<Point> displayA, displayB;
    std::optional<Display> displayC, displayD;
    // Where the bars are; nothing said: PlaceOfBar.
    std::optional<Point> bar, volume;
    bool barHidden = false, volumeHidden = false;

    // Pictures may come in finer sets beside the first. All that are held are of one set: one that it lacks is the
    // first set's, enlarged.
    int fineness = 1;                  // pixels of a picture for one of the window, 1 to kFinest
    std::vector<int> finer;            // the sets that the package has beside the first, from the coarsest
    // A picture that is missing, damaged or too large has no value.
    std::optional<Surface> opacity;  // of the background, as ReadBmpOpacity; only with `alpha`
    std::optional<Surface> back, barPicture, volumePicture, panel;
    std::optional<Surface> levelPicture;  // or, without one of its own, that of the volume bar
    std::array<ButtonPictures, kButtonCount> buttonPictures, commandPictures;

    // With `box` unused; no value when the file is there but is no region file.
    std::optional<Region> region;
    bool regionFileMissing = false;
};

// Reads the texts of the definition file; what had to be passed over or changed is told to `notes`, if there are any,
// whose file is left empty. `values` is the store that all lists share: a list with fewer fields than its
// key needs takes the others from what was read before it.
SkinDefinition ReadDefinition(const IniDocument& file, SplitValues& values, SkinNotes* notes = nullptr);

// Reads a whole package, its pictures for that scale. `definitionFile` is the full path; a file that cannot be read
// counts as empty.
SkinDefinition ReadSkin(FileSystem& files, const std::string& definitionFile, SplitValues& values, Scale scale = {},
                        SkinNotes* notes = nullptr);

// The set of pictures that is shown at a scale: the coarsest that is fine enough, else the finest. `finer` are those
// beside the first, from the coarsest.
int FinenessFor(std::span<const int> finer, Scale scale);
// The scale at which a window is shown when `wanted` is asked for: no larger than kMostScreenPixels allow.
Scale FittingScale(Scale wanted, Size window);

// Where the seek bar and the volume bar lie when the definition does not say: below and to the right of the rectangle
// around all labels, moved into the window.
Point PlaceOfBar(const SkinDefinition& skin, Size picture);
Point PlaceOfVolume(const SkinDefinition& skin, Size picture);

}  // namespace quenlox

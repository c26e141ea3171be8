// The menus of the main window, made from what is so at the moment. They do nothing themselves: every item is a command
// that the window performs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "forms/menu.h"

namespace quenlox {

inline constexpr int kVolumeStep = 5;  // percent, of keys and of the wheel

enum class TopCommand {
    AlwaysOnTop,
    OperationPanel,
    Skin,  // index 0: the default skin, then those of the list
    ReloadSkin,
    CheckSkin,
    TitleAnimation,
    Spectrum,
    Equalizer,
    About,
    Lyrics,
    Command,   // index: a CommandButtonIndex
    Playback,  // index: a PlaybackButton
    PlayMode,
    TimeMode,
    TitleMode,
    Scale,  // index: percent, 0 as the monitor asks
    OpenFile,
    OpenFolder,
    Seek,    // index: seconds from here
    Volume,  // index: percent more
    Mute,
    NextView,   // of the panel
    NextGroup,
    View,       // index: its number
    Restore,
    Quit
};
using PerformCommand = std::function<void(TopCommand command, int index)>;

struct MainMenuFacts {
    bool alwaysOnTop, operationPanel, hasOperationPanel, titleRuns, spectrum, hasSpectrum, equalizer, list, options,
        lyrics;
    bool muted;
    int view;  // of the panel
    int zoom;  // percent, 0 as the monitor asks
    std::string skin;                // folder of the one that is shown
    std::vector<std::string> skins;  // folders, without the default skin
};

Menu MainMenu(const MainMenuFacts& facts, const PerformCommand& perform);
// `playing` or `paused`: what the player does at the moment.
Menu TrayMenu(bool playing, bool paused, const PerformCommand& perform);

}  // namespace quenlox

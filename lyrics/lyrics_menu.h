// What the lyrics window can be told: its context menu, and the keys that say the same. Pure.
#pragma once

#include <functional>

#include "forms/menu.h"

namespace quenlox {

enum class LyricsCommand {
    None,
    Scheme,  // the number of a colour scheme, from 1
    Lines,   // how many
    Font,
    Bold,
    Stamps,
    Smooth,
    Earlier,  // the lyrics of this track, by a tenth of a second
    Later,
    OnTime,
    SaveTiming,
    Reread,
    Copy,
    Options
};

struct LyricsMenuFacts {
    int scheme = 1, lines = 5;
    bool bold = false, stamps = false, smooth = false;
    bool timed = false;     // the lines run with the music
    bool shifted = false;   // they have been brought forward or put off
    bool sideFile = false;  // they come from a file of their own
    bool text = false;      // they stand in the text box
};

using LyricsPerform = std::function<void(LyricsCommand command, int number)>;

Menu LyricsMenu(const LyricsMenuFacts& facts, const LyricsPerform& perform);

// The command of a key (forms/keys.h) in the lyrics window.
LyricsCommand LyricsCommandOfKey(int key, int shift);

}  // namespace quenlox

// The state that the windows and the playback share, under one name each. One owner, the application; everybody else
// gets a reference. What plays (CurrentFile, CurrentIndex, PlayIntent) is written by Transport alone.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "crash/action_log.h"
#include "state/media_kind.h"
#include "state/random_order.h"

namespace quenlox {

enum PlayModeCode : int { kSingle = 0, kRepeat = 1, kProgram = 2, kRandom = 3 };
// Below kPlay the player stands; from kDecode on a conversion has it.
enum PlayStatus : int {
    kStop = 0, kPlay = 1, kPause = 2, kError = 3, kLoad = 4, kWait = 5, kDecode = 6, kEncode = 7
};
enum PlayIntentCode : int { kNoIntent = 0, kForward = 1, kBackward = 2 };
enum PitchModeCode : int { kNormalPitch = 0, kHighPitch = 1, kLowPitch = 2, kStepPitch = 3 };

enum LyricsColorEntry : int { kLyricsScheme = 0, kSkinLyricsFirst = 3, kSkinLyricsSecond = 4 };

inline constexpr int kListCount = 4;       // A, B, C and the folder list
inline constexpr int kFolderList = 3;

struct GlobalState {
    // From the settings file.
    std::string CurrentFile;     // full path of the current media file
    std::string CurrentFolder;   // folder of the play-list window's browser
    int PlayMode = kSingle;
    int TimeMode = 0;            // 1: remaining time is shown
    int TitleMode = 0;           // 1: the tag title is shown, 0: the file name
    int ViewType = 0;            // panel animation: procedure = value / 10, variant = value % 10
    std::string SkinName;        // folder name under "skin"
    bool ListShown = false;
    int ListType = 0;            // not 0: tag-information mode; the option counts at the next start
    int ListNo = 0;              // current list, 0 to 2
    std::array<int, 5> LyricsColors{};  // 0: number of the window's colour scheme; 3, 4: colours of the skin, 0xRRGGBB
    std::array<std::array<int, 10>, 5> EqPresetTable{};  // tenths of a decibel

    // Playback.
    quenlox::MediaKind MediaKind;
    std::string MediaKindName;
    PlayStatus PlayerStatus = kStop;
    std::int32_t TotalSeconds = 0;
    std::int32_t PositionSeconds = 0;
    std::int32_t TrackStartMs = 0;
    std::string MciReturn;
    int PlayIntent = kNoIntent;
    bool UseFolderList = false;

    // Play lists.
    std::array<int, kListCount> CurrentIndex{-1, -1, -1, -1};
    bool ListDirty = false;
    std::array<RandomOrder, kListCount> ShuffleOrder;  // each with its ShufflePos and its last position

    // Volume and pitch.
    int PitchMode = kNormalPitch;
    int VolumePercent = 0;

    // Main window.
    bool ButtonHeld = false;
    bool KeyLatch = false;
    bool ShuttingDown = false;
    int LyricsKind = 0;          // 0 none, 1 with time tags, 2 without
    std::string CurrentSkinFile;
    bool SkinLacksLyricsArea = false;

    // What the program did last, for the note of a crash.
    ActionLog Actions;
};

}  // namespace quenlox

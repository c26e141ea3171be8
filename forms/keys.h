// Keys as the handlers of a form get them: virtual-key codes of Windows, and the shift state.
#pragma once

namespace quenlox {

inline constexpr int kKeyTab = 9, kKeyEnter = 13, kKeyEscape = 27, kKeySpace = 32;
inline constexpr int kKeyLeft = 37, kKeyUp = 38, kKeyRight = 39, kKeyDown = 40;
inline constexpr int kKeyDelete = 46;
inline constexpr int kKey0 = 48;
inline constexpr int kKeyF = 70, kKeyM = 77, kKeyO = 79, kKeyR = 82, kKeyS = 83, kKeyT = 84, kKeyV = 86;
inline constexpr int kKeyF1 = 112, kKeyF5 = 116;

// Sums of these.
inline constexpr int kShift = 1, kControl = 2, kAlt = 4;

}  // namespace quenlox

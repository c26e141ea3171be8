// The command line: a file, then switches behind the first "/".
#pragma once

#include <string>

namespace quenlox {

class StatusDisplay;
struct GlobalState;

// `text` is the command line without the program's own name; it is cut to begin at its first "/". A file named comes into
// `file`, to become CurrentFile; "m" with a digit 0 to 3 sets and shows PlayMode. The ones digit of the result is 1 when the file is to
// be played at once ("p", or a file was named), the tens digit when the program starts in the notification area ("t").
int ParseCommandLine(std::string& text, std::string& file, GlobalState& state, StatusDisplay& display);

}  // namespace quenlox

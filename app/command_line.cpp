#include "app/command_line.h"

#include <string_view>

#include "state/global_state.h"
#include "playback/status_display.h"
#include "text/strings.h"

namespace quenlox {

int ParseCommandLine(std::string& text, std::string& file, GlobalState& state, StatusDisplay& display) {
    const std::size_t slash = text.find('/');
    std::string name = ReplaceAll(std::string_view(text).substr(0, slash), "\"", "");
    if (slash != std::string::npos) {
        name = TrimBlanks(name);
        text.erase(0, slash);
    }
    int ones = 0;
    int tens = 0;
    if (!name.empty()) {
        file = name;
        ones = 1;
    }
    if (slash == std::string::npos) return ones;
    for (std::size_t i = 1; i < text.size(); ++i) {
        switch (text[i]) {
            case 'p':
            case 'P': ones = 1; break;
            case 't':
            case 'T': tens = 1; break;
            case 'm':
            case 'M':
                if (i + 1 < text.size() && text[i + 1] >= '0' && text[i + 1] <= '3') {
                    state.PlayMode = text[++i] - '0';
                    display.ShowPlayMode();
                }
                break;
            default: break;
        }
    }
    return tens * 10 + ones;
}

}  // namespace quenlox

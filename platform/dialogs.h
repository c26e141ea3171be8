// Message boxes and the common dialogs. On the user-interface thread. Every call returns when the user has answered and
// handles messages meanwhile: timers tick, and what has been posted runs. One that cannot be shown counts as cancelled.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quenlox {

enum class MessageIcon { None, Stop, Question, Warning, Information };

struct FileDialog {
    std::string title;
    std::string filterName;  // "M3Uﾌｧｲﾙ"
    std::string filter;      // "*.m3u" or "*.mp?;*.rmp"
    std::string folder;      // where it opens, empty for the system's choice
    std::string fileName;    // proposed name
};

class Dialogs {
  public:
    virtual ~Dialogs() = default;
    // Text lines are parted by CR, LF or both.
    virtual void message(const std::string& text, MessageIcon icon, const std::string& title = "Quenlox") = 0;
    virtual bool confirm(const std::string& question, const std::string& title = "Quenlox") = 0;  // yes; else no
    // The same about something that yes would lose or open to others: no is what Enter answers.
    virtual bool confirmLoss(const std::string& question, const std::string& title = "Quenlox") = 0;
    // Yes true, no false, cancelled nothing.
    virtual std::optional<bool> confirmOrCancel(const std::string& question, const std::string& title = "Quenlox") = 0;
    // What was chosen, whole paths; nothing, or none, when cancelled. A file to open exists, and the user has agreed to
    // replace one to save.
    virtual std::optional<std::string> openFile(const FileDialog& dialog) = 0;
    virtual std::vector<std::string> openFiles(const FileDialog& dialog) = 0;
    virtual std::optional<std::string> saveFile(const FileDialog& dialog) = 0;
    virtual std::optional<std::string> chooseFolder(const std::string& title, const std::string& folder) = 0;
    // The name of a face that is installed; nothing when cancelled.
    virtual std::optional<std::string> chooseFont(const std::string& face) = 0;
    // The text as it was typed, perhaps empty; nothing when cancelled.
    virtual std::optional<std::string> inputText(const std::string& prompt, const std::string& text,
                                                 const std::string& title = "Quenlox") = 0;
};

}  // namespace quenlox

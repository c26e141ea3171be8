#include "tags/rename.h"

#include "platform/dialogs.h"
#include "platform/file_system.h"
#include "playback/transport.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {

bool IsAcceptableFileName(std::string_view name) {
    name = TrimBlanks(name);
    return !name.empty() && !name.starts_with("() ");
}

RenameResult RenameFile(FileSystem& files, Dialogs& dialogs, Transport& transport,
                        const std::string& file, std::string_view name, const RenameFollowers& followers,
                        std::string& newPath) {
    const std::string trimmed(TrimBlanks(name));
    if (!IsAcceptableFileName(trimmed)) {
        dialogs.message("ファイル名が不正です", MessageIcon::Stop);
        return RenameResult::Refused;
    }
    // Joined as texts: a name with a "\" in it leads elsewhere, and the file system is asked as it stands.
    const std::string to = FolderOf(file) + trimmed;
    const auto released = transport.letGoOf(file);
    if (!released || (to != file && !files.rename(file, to))) {
        if (released) transport.leaveClosed(*released);
        dialogs.message("ファイル名変換エラー", MessageIcon::Stop);
        return RenameResult::Failed;
    }
    if (followers.lists) followers.lists(file, to);
    // The browser finds the place of the current file in its folder by name.
    transport.renamed(file, to);
    if (followers.browser) followers.browser();
    newPath = to;
    transport.takeUp(*released);
    return RenameResult::Done;
}

}  // namespace quenlox

#include "tags/rename.h"

#include "app/global_state.h"
#include "platform/dialogs.h"
#include "platform/file_system.h"
#include "tags/file_release.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {

bool IsAcceptableFileName(std::string_view name) {
    name = TrimBlanks(name);
    return !name.empty() && !name.starts_with("() ");
}

RenameResult RenameFile(GlobalState& state, FileSystem& files, Dialogs& dialogs, FileRelease& release,
                        const std::string& file, std::string_view name, const RenameFollowers& followers,
                        std::string& newPath) {
    const std::string trimmed(TrimBlanks(name));
    if (!IsAcceptableFileName(trimmed)) {
        dialogs.message("ファイル名が不正です", MessageIcon::Stop);
        return RenameResult::Refused;
    }
    // Joined as texts: a name with a "\" in it leads elsewhere, and the file system is asked as it stands.
    const std::string to = FolderOf(file) + trimmed;
    const bool open = file == state.CurrentFile;
    if (open) release.release();
    if (to != file && !files.rename(file, to)) {
        if (open) release.leaveClosed();
        dialogs.message("ファイル名変換エラー", MessageIcon::Stop);
        return RenameResult::Failed;
    }
    if (followers.lists) followers.lists(file, to);
    // The browser finds the place of the current file in its folder by name.
    if (open) state.CurrentFile = to;
    if (followers.browser) followers.browser();
    newPath = to;
    if (open) release.reopen();
    return RenameResult::Done;
}

}  // namespace quenlox

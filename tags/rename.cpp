#include "tags/rename.h"

#include <algorithm>

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

bool LeadsElsewhere(std::string_view name) { return name.find_first_of("\\/") != std::string_view::npos; }

std::vector<std::string> SideFilesOf(FileSystem& files, const std::string& track, const std::string& lyricsFolder,
                                     const std::string& pictureFolder) {
    std::vector<std::string> found;
    const auto add = [&](const std::string& folder, std::string_view extension) {
        const std::string path = JoinPath(folder, WithExtension(FileNameOf(track), extension));
        const bool known = std::ranges::any_of(found, [&](const auto& other) { return EqualsNoCase(other, path); });
        if (!folder.empty() && !known && !EqualsNoCase(path, track) && files.fileExists(path)) found.push_back(path);
    };
    for (const std::string_view extension : kLyricsExtensions) {
        add(FolderOf(track), extension);
        add(lyricsFolder, extension);
    }
    add(pictureFolder, "bmp");
    return found;
}

int RenameSideFiles(FileSystem& files, const std::vector<std::string>& sideFiles, const std::string& track) {
    int failed = 0;
    for (const std::string& path : sideFiles) {
        const std::string to = JoinPath(FolderOf(path), WithExtension(FileNameOf(track), ExtensionOf(path)));
        failed += to != path && !files.rename(path, to);
    }
    return failed;
}

RenameResult RenameFile(FileSystem& files, Dialogs& dialogs, Transport& transport, const std::string& file,
                        std::string_view name, const RenameFollowers& followers, std::string& newPath) {
    const std::string trimmed(TrimBlanks(name));
    if (!IsAcceptableFileName(trimmed)) {
        dialogs.message("ファイル名が不正です", MessageIcon::Stop);
        return RenameResult::Refused;
    }
    const std::string to = FolderOf(file) + trimmed;
    const auto released = transport.letGoOf(file);
    if (!released || LeadsElsewhere(trimmed) || (to != file && !files.rename(file, to))) {
        if (released) transport.leaveClosed(*released);
        dialogs.message("ファイル名変換エラー", MessageIcon::Stop);
        return RenameResult::Failed;
    }
    if (followers.lists) followers.lists(file, to);
    // The browser finds the place of the current file in its folder by name.
    transport.renamed(file, to);
    if (followers.browser) followers.browser();
    if (followers.sideFiles) followers.sideFiles(file, to);
    newPath = to;
    transport.takeUp(*released);
    return RenameResult::Done;
}

}  // namespace quenlox

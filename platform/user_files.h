// Where the program keeps what it remembers, the settings and the lists: beside itself, so that a copied folder takes
// them along, or in the user's own folder when nobody may write there (installed for all users, a medium that is read
// only). On the user-interface thread; nothing fails: what cannot be written there is told by whoever writes.
#pragma once

#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "text/paths.h"

namespace quenlox {

// `applicationData` is the folder in which the system keeps the user's data of all programs; empty when it has none.
inline std::string ChooseUserFolder(const std::string& programFolder, bool canWriteThere,
                                    const std::string& applicationData) {
    return canWriteThere || applicationData.empty() ? programFolder : JoinPath(applicationData, "Quenlox");
}

inline std::string UserFileToWrite(FileSystem& files, std::string_view name) {
    return JoinPath(files.userFolder(), name);
}

// The file of this name that counts: as long as the user has none, the one that was delivered beside the program.
inline std::string UserFileToRead(FileSystem& files, std::string_view name) {
    const std::string own = UserFileToWrite(files, name);
    if (files.fileExists(own)) return own;
    const std::string delivered = JoinPath(files.programFolder(), name);
    return files.fileExists(delivered) ? delivered : own;
}

}  // namespace quenlox

// Renaming a media file on the disk: what is refused, what is told, and who follows. On the user-interface thread.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace quenlox {

class Dialogs;
class FileSystem;
class Transport;

// What the default format gives for a file without artist begins with an empty pair of parentheses: such a name, and an
// empty one, is taken for a slip. Blanks around the name do not count.
bool IsAcceptableFileName(std::string_view name);

enum class RenameResult { Refused, Failed, Done };

struct RenameFollowers {
    std::function<void(const std::string& from, const std::string& to)> lists;  // rows that show the old path
    std::function<void()> browser;
};

// Gives `file` the name `name` in its own folder; a message says what went wrong. The file that is open is closed for
// it; after a failure it stays closed, after a success CurrentFile is the new path and the track goes on where it was.
// Characters that no file name may have are not looked for: the file system refuses them. `newPath` is set when done.
RenameResult RenameFile(FileSystem& files, Dialogs& dialogs, Transport& transport,
                        const std::string& file, std::string_view name, const RenameFollowers& followers,
                        std::string& newPath);

}  // namespace quenlox

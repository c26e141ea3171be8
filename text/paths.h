// Windows paths as texts: no look at the disk. "\" parts folders.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace quenlox {

std::string FolderOf(std::string_view path);    // up to and including the last "\"; empty when there is none
std::string FileNameOf(std::string_view path);  // behind the last "\"
// The folder and the name with one "\" between them; a folder that ends in one (the root of a drive) gets no second.
// An empty folder gives the name alone.
std::string JoinPath(std::string_view folder, std::string_view name);

// The last four characters in lower case (".mp3"), the whole text when it is shorter. What decides on kinds of files.
std::string LastFour(std::string_view path);
// The file name without folder and without its last "." and what follows.
std::string BaseNameOf(std::string_view path);
// Everything behind the last "." of the file name, as written; empty when there is none.
std::string ExtensionOf(std::string_view path);
// The path up to and including the last "." of its file name, then `extension`; a name without "." gets one.
std::string WithExtension(std::string_view path, std::string_view extension);

// The extensions of the files beside a track that hold its lyrics, the one that counts most first.
inline constexpr std::array<std::string_view, 3> kLyricsExtensions{"kra", "lrc", "txt"};

// The drive "C:" or the network share "\\server\share" that holds the file; empty for a relative path.
std::string_view VolumeOf(std::string_view path);
// The computer that a network path names, in lower case: "server" of "\\Server\share\x". Empty for any other path.
std::string ServerOf(std::string_view path);
// True for what Windows hands to a device or past its own rules for names: "\\.\...", "\\?\..." and "\??\...". No file
// of a user is called so, and behind it anything may stand, a serial port or another computer.
bool IsDevicePath(std::string_view path);
// True for "C:\...", "\\server\..." and "\...".
bool IsAbsolutePath(std::string_view path);

}  // namespace quenlox

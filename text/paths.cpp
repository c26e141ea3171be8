#include "text/paths.h"

#include "text/strings.h"

namespace quenlox {
namespace {

std::size_t NameStart(std::string_view path) {
    const std::size_t slash = path.rfind('\\');
    return slash == std::string_view::npos ? 0 : slash + 1;
}

// Place of the last "." of the file name, npos when it has none.
std::size_t LastDot(std::string_view path) {
    const std::size_t dot = path.rfind('.');
    return dot == std::string_view::npos || dot < NameStart(path) ? std::string_view::npos : dot;
}

}  // namespace

std::string FolderOf(std::string_view path) { return std::string(path.substr(0, NameStart(path))); }

std::string FileNameOf(std::string_view path) { return std::string(path.substr(NameStart(path))); }

std::string JoinPath(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.empty() && path.back() != '\\') path += '\\';
    return path.append(name);
}

std::string_view VolumeOf(std::string_view path) {
    if (path.size() >= 2 && path[1] == ':') return path.substr(0, 2);
    if (!path.starts_with("\\\\")) return {};
    const std::size_t share = path.find('\\', 2);
    return path.substr(0, share == path.npos ? share : path.find('\\', share + 1));
}

std::string ServerOf(std::string_view path) {
    if (!path.starts_with("\\\\")) return {};
    path.remove_prefix(2);
    return FoldCase(path.substr(0, path.find('\\')));
}

bool IsDevicePath(std::string_view path) {
    const auto slash = [&](std::size_t at) { return path[at] == '\\' || path[at] == '/'; };
    if (path.size() < 4 || !slash(0) || !slash(3)) return false;
    return (slash(1) && (path[2] == '.' || path[2] == '?')) || (path[1] == '?' && path[2] == '?');
}

std::string LastFour(std::string_view path) { return FoldCase(LastCharacters(path, 4)); }

std::string BaseNameOf(std::string_view path) {
    const std::size_t start = NameStart(path);
    const std::size_t dot = LastDot(path);
    return std::string(path.substr(start, dot == std::string_view::npos ? dot : dot - start));
}

std::string ExtensionOf(std::string_view path) {
    const std::size_t dot = LastDot(path);
    return dot == std::string_view::npos ? std::string{} : std::string(path.substr(dot + 1));
}

std::string WithExtension(std::string_view path, std::string_view extension) {
    return std::string(path.substr(0, LastDot(path))).append(".").append(extension);
}

bool IsAbsolutePath(std::string_view path) {
    return (path.size() >= 2 && path[1] == ':') || (!path.empty() && path.front() == '\\');
}

}  // namespace quenlox

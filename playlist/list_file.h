// What stands in a list file (the three lists in one text) and in an M3U file (one list), as pure functions over bytes.
//
// Reading takes what any program writes: UTF-8, Shift-JIS or UTF-16, with or without a byte-order mark; where another
// code page than Shift-JIS is at home also that, for what looks like neither; lines that end with CR LF, LF or CR, the
// last one with nothing.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quenlox {

inline constexpr std::array<std::string_view, 3> kListMarkers{"#ListA", "#ListB", "#ListC"};

// FileSystem::fromCodePage of the machine; may be empty.
using CodePage = std::function<std::optional<std::string>(std::string_view bytes)>;

// `add` is told the list (0 to 2) and the path of each row, in the order of the file. Lines before the first marker
// belong to list A. Paths are taken as they are written; nothing but a marker or an empty line is special.
void ParseListFile(std::string_view bytes, const std::function<void(int list, std::string_view path)>& add,
                   const CodePage& codePage = {});

// `add` is told the path of each entry. Blanks around a line do not count and "/" is read as "\". Left out are lines
// that begin with "#" and lines of fewer than 6 characters. What has neither a drive nor the two "\" of a network
// name is relative to `folder`, the folder of the M3U file, which ends in "\" and is put in front as it is.
void ParseM3U(std::string_view bytes, std::string_view folder, const std::function<void(std::string_view path)>& add,
              const CodePage& codePage = {});

// The text of a file that is written: of an M3U file when no list is begun, of a list file otherwise. Lists come in
// their order, and a list without rows leaves nothing.
class ListText {
  public:
    void beginList(int list) { marker_ = kListMarkers[static_cast<std::size_t>(list)]; }
    void append(std::string_view path);
    // Shift-JIS, and UTF-8 with a byte-order mark, which most players read, when it would not be read back the same.
    std::string bytes(const CodePage& codePage = {}) const;

  private:
    void line(std::string_view text);

    std::string text_;
    std::string_view marker_;  // to be written before the next path
};

}  // namespace quenlox

#include "playlist/list_file.h"

#include <algorithm>
#include <utility>

#include "text/encoding.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::size_t kShortestEntry = 6;  // characters

// Takes the text up to the first `separator` and that away from the front of `text`.
std::string_view TakeUpTo(std::string_view& text, char separator) {
    const std::size_t end = text.find(separator);
    const std::string_view front = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return front;
}

// Lines end with CR LF, LF or CR. Empty lines, which mean nothing in either file, may be left out.
template <typename Take>
void EachLine(std::string_view text, Take take) {
    while (!text.empty()) {
        std::string_view lines = TakeUpTo(text, '\n');
        while (!lines.empty()) take(TakeUpTo(lines, '\r'));
    }
}

std::string_view TrimLine(std::string_view line) {
    const std::size_t first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return line.substr(first, line.find_last_not_of(" \t") - first + 1);
}

std::string Decode(std::string_view bytes, const CodePage& codePage) {
    const bool marked = bytes.starts_with(kUtf8Mark) || bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
    if (codePage && !marked && !IsValidUtf8(bytes) && !LooksLikeShiftJis(bytes)) {
        if (std::optional<std::string> text = codePage(bytes)) return *std::move(text);
    }
    return DecodeText(bytes);
}

}  // namespace

void ParseListFile(std::string_view bytes, const std::function<void(int list, std::string_view path)>& add,
                   const CodePage& codePage) {
    int list = 0;
    EachLine(Decode(bytes, codePage), [&](std::string_view line) {
        if (line.empty()) return;
        const auto marker = std::find(kListMarkers.begin(), kListMarkers.end(), line);
        if (marker != kListMarkers.end()) {
            list = static_cast<int>(marker - kListMarkers.begin());
        } else {
            add(list, line);
        }
    });
}

void ParseM3U(std::string_view bytes, std::string_view folder, const std::function<void(std::string_view path)>& add,
              const CodePage& codePage) {
    std::string path;
    EachLine(Decode(bytes, codePage), [&](std::string_view line) {
        line = TrimLine(line);
        if (line.starts_with('#') || CharacterCount(line) < kShortestEntry) return;
        path.clear();
        const bool drive = line[1] == ':';
        const bool network = line.starts_with("\\\\") || line.starts_with("//");
        if (!drive && !network) path = folder;
        path += line;
        std::replace(path.end() - static_cast<std::ptrdiff_t>(line.size()), path.end(), '/', '\\');
        add(path);
    });
}

void ListText::append(std::string_view path) {
    if (!marker_.empty()) line(marker_);
    marker_ = {};
    line(path);
}

void ListText::line(std::string_view text) {
    text_ += text;
    text_ += "\r\n";
}

std::string ListText::bytes(const CodePage& codePage) const {
    const std::optional<std::string> shiftJis = Utf8ToShiftJis(text_);
    return shiftJis && Decode(*shiftJis, codePage) == text_ ? *shiftJis : std::string(kUtf8Mark) + text_;
}

}  // namespace quenlox

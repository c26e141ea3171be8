#include <algorithm>

#include "libraries/vbmp3/lyrics/lyrics_text.h"
#include "text/encoding.h"

namespace vbmp3 {
namespace {

bool IsText(std::string_view utf8) {
    size_t strange = 0;
    for (size_t i = 0; i < utf8.size(); ++i) {
        const auto c = static_cast<unsigned char>(utf8[i]);
        const bool control = c < 0x20 && c != '\t' && c != '\n' && c != '\r' && c != '\f';
        const bool replacement = utf8.substr(i, 3) == "\xEF\xBF\xBD";
        if (control || c == 0x7F || replacement) ++strange;
    }
    return strange * 50 <= utf8.size();
}

}  // namespace

std::optional<std::string> DecodeLyrics(std::span<const uint8_t> bytes) {
    std::string utf8 = quenlox::DecodeText({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    // Old editors end a text with Ctrl+Z and fill up with it or with NULs.
    while (!utf8.empty() && (utf8.back() == '\x1A' || utf8.back() == '\0')) utf8.pop_back();
    if (!IsText(utf8)) return std::nullopt;
    std::erase(utf8, '\0');
    return utf8;
}

LyricsFormat LyricsFormatOf(std::string_view path) {
    std::string extension(path.substr(std::min(path.size(), path.rfind('.') + 1)));
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    if (extension == "lrc") return LyricsFormat::Lrc;
    return extension == "kra" ? LyricsFormat::Kra : LyricsFormat::Text;
}

std::string PlainText(const Lyrics& lyrics) {
    std::string text;
    for (const LyricsLine& line : lyrics.lines) {
        if (&line != &lyrics.lines.front()) text += "\r\n";
        text += line.text;
        if (!line.translation.empty()) text.append("\r\n").append(line.translation);
    }
    return text;
}

}  // namespace vbmp3

#include "libraries/vbmp3/lyrics/lyrics3.h"

#include <algorithm>
#include <string_view>

#include "text/encoding.h"

namespace vbmp3 {
namespace {

constexpr std::string_view kBegin = "LYRICSBEGIN";
constexpr std::string_view kEnd1 = "LYRICSEND";
constexpr std::string_view kEnd2 = "LYRICS200";

// The format knows Latin-1 only; Japanese writers put Shift-JIS there.
std::string Decode(std::string_view bytes) {
    std::string text(bytes.substr(0, bytes.find('\0')));
    while (!text.empty() && (text.back() == ' ' || text.back() == '\r' || text.back() == '\n')) text.pop_back();
    return quenlox::DecodeLegacyField(text);
}

}  // namespace

std::optional<Lyrics3> ParseLyrics3(std::span<const uint8_t> block) {
    std::string_view bytes(reinterpret_cast<const char*>(block.data()), block.size());
    if (!bytes.starts_with(kBegin)) return std::nullopt;
    bytes.remove_prefix(kBegin.size());
    Lyrics3 result;
    if (bytes.ends_with(kEnd1)) {
        bytes.remove_suffix(kEnd1.size());
        result.version = 1;
        result.lyrics = Decode(bytes);
        return result;
    }
    // Version 2 ends with the size of the block in six digits.
    if (!bytes.ends_with(kEnd2) || bytes.size() < kEnd2.size() + 6) return std::nullopt;
    bytes.remove_suffix(kEnd2.size() + 6);
    result.version = 2;
    // Fields: three letters, five digits of length, and that many bytes.
    while (bytes.size() >= 8) {
        const std::string_view id = bytes.substr(0, 3);
        size_t length = 0;
        for (const char digit : bytes.substr(3, 5)) {
            if (digit < '0' || digit > '9') return result;
            length = length * 10 + static_cast<size_t>(digit - '0');
        }
        const std::string_view data = bytes.substr(8, length);
        if (id == "LYR") result.lyrics = Decode(data);
        if (id == "ETT") result.title = Decode(data);
        if (id == "EAR") result.artist = Decode(data);
        if (id == "EAL") result.album = Decode(data);
        if (id == "AUT") result.author = Decode(data);
        bytes.remove_prefix(std::min(bytes.size(), 8 + length));
    }
    return result;
}

}  // namespace vbmp3

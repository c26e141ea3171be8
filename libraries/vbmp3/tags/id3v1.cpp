#include "libraries/vbmp3/tags/id3v1.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "libraries/formats/bytes.h"
#include "libraries/vbmp3/tags/genres.h"
#include "libraries/vbmp3/tags/legacy_text.h"
#include "text/encoding.h"

namespace vbmp3 {
namespace {

struct Place {
    size_t offset, length;
};
constexpr Place kTitle{3, 30}, kArtist{33, 30}, kAlbum{63, 30}, kYear{93, 4}, kComment{97, 30};
constexpr size_t kTrackMark = 125, kTrack = 126, kGenre = 127;

// The leading number of "5" or "05/12"; 0 when there is none from 1 to 255.
int TrackNumber(std::string_view text) {
    int number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number >= 1 && number <= 255 ? number : 0;
}

std::optional<std::string> Utf8ToLatin1(std::string_view utf8) {
    std::string out;
    for (const char16_t unit : quenlox::Utf8ToUtf16(utf8)) {
        if (unit > 0xFF) return std::nullopt;
        out += static_cast<char>(unit);
    }
    return out;
}

}  // namespace

TagFields ReadId3v1(std::span<const uint8_t> block) {
    TagFields fields;
    if (block.size() < kId3v1Size || !StartsWith(block, "TAG")) return fields;
    const auto text = [&](Place place) { return LegacyField(block.subspan(place.offset, place.length)); };
    fields.title = text(kTitle);
    fields.artist = text(kArtist);
    fields.album = text(kAlbum);
    fields.year = text(kYear);
    const bool hasTrack = block[kTrackMark] == 0 && block[kTrack] != 0;
    fields.comment = text(hasTrack ? Place{kComment.offset, 28} : kComment);
    if (hasTrack) fields.track = std::to_string(block[kTrack]);
    if (block[kGenre] < kGenreCount) {
        fields.genreNumber = block[kGenre];
        fields.genre = GenreName(fields.genreNumber);
    }
    return fields;
}

std::array<uint8_t, kId3v1Size> MakeId3v1(const TagFields& fields) {
    std::array<uint8_t, kId3v1Size> block{};
    const auto put = [&](Place place, const std::string& text) {
        const std::string bytes = EncodeLegacyField(text, place.length);
        std::copy(bytes.begin(), bytes.end(), block.begin() + static_cast<std::ptrdiff_t>(place.offset));
    };
    std::copy_n("TAG", 3, block.begin());
    put(kTitle, fields.title);
    put(kArtist, fields.artist);
    put(kAlbum, fields.album);
    put(kYear, fields.year);
    const int track = TrackNumber(fields.track);
    put(track > 0 ? Place{kComment.offset, 28} : kComment, fields.comment);
    if (track > 0) block[kTrack] = static_cast<uint8_t>(track);
    // Of several genres the first.
    const int genre =
        fields.genre.empty() ? fields.genreNumber : FindGenre(fields.genre.substr(0, fields.genre.find(" / ")));
    block[kGenre] = static_cast<uint8_t>(genre >= 0 && genre < kGenreCount ? genre : kNoGenre);
    return block;
}

// What Shift-JIS can say of a text that no encoding holds, up to `limit` bytes.
static std::string EncodeWhatFits(std::string_view utf8, size_t limit) {
    std::string kept;
    for (std::string_view rest = utf8; !rest.empty();) {
        size_t length = 1;
        while (length < rest.size() && (static_cast<uint8_t>(rest[length]) & 0xC0) == 0x80) ++length;
        const auto bytes = quenlox::Utf8ToShiftJis(rest.substr(0, length));
        if (bytes && kept.size() + bytes->size() > limit) break;
        if (bytes) kept += *bytes;
        rest.remove_prefix(length);
    }
    return kept;
}

std::string EncodeLegacyField(std::string_view utf8, size_t limit, bool* lossless) {
    // Cuts before encoding, a character at a time, so that the cut text is what must be read back.
    const auto cutTo = [&](auto encode) -> std::optional<std::string> {
        std::string_view text = utf8;
        while (true) {
            const std::optional<std::string> bytes = encode(text);
            if (!bytes) return std::nullopt;
            if (bytes->size() <= limit) {
                if (LegacyText(std::span(reinterpret_cast<const uint8_t*>(bytes->data()), bytes->size())) !=
                    Trimmed(text))
                    return std::nullopt;
                if (lossless != nullptr) *lossless = text.size() == utf8.size();
                return bytes;
            }
            // No encoding is longer than UTF-8, so that at least as many bytes of it have to go.
            const size_t excess = bytes->size() - limit;
            text = quenlox::CutUtf8(text, text.size() - std::min(excess, text.size()));
        }
    };
    const auto shiftJis = [](std::string_view text) { return quenlox::Utf8ToShiftJis(text); };
    if (auto bytes = cutTo(shiftJis)) return *bytes;
    if (auto bytes = cutTo(Utf8ToLatin1)) return *bytes;
    if (auto bytes = cutTo([](std::string_view text) { return std::optional(std::string(text)); })) return *bytes;

    if (lossless != nullptr) *lossless = false;
    return EncodeWhatFits(utf8, limit);
}

}  // namespace vbmp3

#include "libraries/vbmp3/tags/ape.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "libraries/formats/bytes.h"
#include "libraries/vbmp3/tags/genres.h"
#include "libraries/vbmp3/tags/legacy_text.h"

namespace vbmp3 {
namespace {

constexpr size_t kMostText = 1 << 16, kMostKey = 255;
constexpr int kMostItems = 1000;

struct Key {
    std::string_view name;  // in lower case
    std::string TagFields::*field;
};
constexpr Key kKeys[] = {
    {"title", &TagFields::title},     {"artist", &TagFields::artist}, {"album", &TagFields::album},
    {"comment", &TagFields::comment}, {"year", &TagFields::year},     {"genre", &TagFields::genre},
    {"track", &TagFields::track},
};

struct Item {
    std::string key;  // in lower case
    bool isText = false;
    ByteRange value;
};

const Key* FieldOf(const Item& item) {
    const auto found = std::find_if(std::begin(kKeys), std::end(kKeys),
                                    [&](const Key& known) { return item.isText && known.name == item.key; });
    return found == std::end(kKeys) ? nullptr : &*found;
}

// Hands over every item that lies in the tag. False when something else stands between them.
template <class Take>
bool ForEachItem(HeadTailReader& reader, ByteRange range, Take take) {
    int64_t at = range.begin;
    if (StartsWith(reader.view(at, 8), "APETAGEX")) at += 32;
    for (int n = 0; n < kMostItems && at < range.end; ++n) {
        const auto bytes = reader.view(at, static_cast<size_t>(std::min<int64_t>(range.end - at, 8 + kMostKey + 1)));
        if (StartsWith(bytes, "APETAGEX")) return true;
        if (bytes.size() < 10) return false;
        const int64_t size = LittleEndian32(bytes.data());
        const auto end = std::find(bytes.begin() + 8, bytes.end(), uint8_t{0});
        if (end == bytes.end()) return false;
        Item item{std::string(bytes.begin() + 8, end), (bytes[4] >> 1 & 3) == 0, {}};
        for (char& c : item.key)
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
        const int64_t value = at + 8 + static_cast<int64_t>(item.key.size()) + 1;
        if (size > range.end - value) return false;
        item.value = {value, value + size};
        take(item);
        at = item.value.end;
    }
    return at == range.end;
}

// Several values are parted by NUL. Version 1 has no encoding of its own.
std::string TextOf(HeadTailReader& reader, ByteRange value) {
    std::string text;
    auto rest = reader.view(value.begin, static_cast<size_t>(std::min<int64_t>(value.size(), kMostText)));
    while (!rest.empty()) {
        const auto part =
            rest.first(static_cast<size_t>(std::find(rest.begin(), rest.end(), uint8_t{0}) - rest.begin()));
        const std::string one = LegacyText(part);
        if (!one.empty()) text += (text.empty() ? "" : " / ") + one;
        rest = rest.subspan(std::min(rest.size(), part.size() + 1));
    }
    return text;
}

}  // namespace

TagFields ReadApe(HeadTailReader& reader, ByteRange range) {
    TagFields fields;
    ForEachItem(reader, range, [&](const Item& item) {
        const Key* known = FieldOf(item);
        if (known != nullptr && (fields.*(known->field)).empty()) fields.*(known->field) = TextOf(reader, item.value);
    });
    fields.genreNumber = FindGenre(fields.genre);
    return fields;
}

TagExtras ReadApeExtras(HeadTailReader& reader, ByteRange range) {
    TagExtras extras;
    const bool whole = ForEachItem(reader, range, [&](const Item& item) {
        if (item.key.starts_with("cover art"))
            ++extras.pictures;
        else if (FieldOf(item) == nullptr)
            ++extras.others;
    });
    extras.others += whole ? 0 : 1;
    return extras;
}

}  // namespace vbmp3

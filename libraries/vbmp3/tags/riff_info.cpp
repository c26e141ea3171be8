#include "libraries/vbmp3/tags/riff_info.h"

#include <algorithm>

#include "libraries/formats/bytes.h"
#include "libraries/vbmp3/tags/genres.h"
#include "libraries/vbmp3/tags/legacy_text.h"
#include "text/encoding.h"

namespace vbmp3 {
namespace {

constexpr size_t kMostText = 1 << 16;
constexpr int64_t kMostKept = 16 << 20;

struct InfoName {
    std::string_view id;  // the first of a field is the one that is written
    std::string TagFields::*field;
};
constexpr InfoName kNames[] = {
    {"INAM", &TagFields::title}, {"IART", &TagFields::artist}, {"IPRD", &TagFields::album},
    {"IGNR", &TagFields::genre}, {"ICRD", &TagFields::year},   {"ICMT", &TagFields::comment},
    {"ITRK", &TagFields::track}, {"IPRT", &TagFields::track},  {"TRCK", &TagFields::track},
};

std::string TagFields::*FieldOf(const RiffChunk& chunk) {
    for (const InfoName& name : kNames)
        if (chunk.is(name.id)) return name.field;
    return nullptr;
}

void AppendChunk(std::vector<uint8_t>& out, std::string_view id, std::span<const uint8_t> body) {
    out.insert(out.end(), id.begin(), id.end());
    for (int shift = 0; shift < 32; shift += 8) out.push_back(static_cast<uint8_t>(body.size() >> shift));
    out.insert(out.end(), body.begin(), body.end());
    if (body.size() % 2 != 0) out.push_back(0);
}

// What stands behind the last sub-chunk and is none; zero bytes do not count.
ByteRange RestOfList(HeadTailReader& reader, const FileLayout& layout) {
    if (layout.info.empty()) return {};
    const ByteRange& last = layout.info.back().body;
    for (const RiffChunk& chunk : layout.chunks) {
        if (!chunk.body.contains(last)) continue;
        for (int64_t at = last.end; at < chunk.body.end;) {
            const auto bytes = reader.view(at, HeadTailReader::kBlock);
            const auto length = std::min<int64_t>(static_cast<int64_t>(bytes.size()), chunk.body.end - at);
            if (length <= 0) break;
            if (std::any_of(bytes.begin(), bytes.begin() + length, [](uint8_t b) { return b != 0; }))
                return {last.end, chunk.body.end};
            at += length;
        }
    }
    return {};
}

}  // namespace

TagFields ReadRiffInfo(HeadTailReader& reader, const FileLayout& layout) {
    TagFields fields;
    for (const RiffChunk& chunk : layout.info) {
        const auto field = FieldOf(chunk);
        if (field == nullptr || !(fields.*field).empty()) continue;
        const auto size = static_cast<size_t>(std::clamp<int64_t>(chunk.body.size(), 0, kMostText));
        fields.*field = LegacyText(reader.view(chunk.body.begin, size));
    }
    if (!fields.genre.empty()) {
        const Genre genre = ReadGenre(fields.genre);
        fields.genre = genre.name;
        fields.genreNumber = genre.number;
    }
    return fields;
}

std::string EncodeInfoField(std::string_view utf8) {
    const auto readsBack = [&](std::string_view bytes) {
        return LegacyText({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()}) == Trimmed(utf8);
    };
    if (const auto bytes = quenlox::Utf8ToShiftJis(utf8); bytes && readsBack(*bytes)) return *bytes;
    if (readsBack(utf8)) return std::string(utf8);
    return "\xEF\xBB\xBF" + std::string(utf8);
}

std::optional<std::vector<uint8_t>> MakeRiffInfo(HeadTailReader& reader, const FileLayout& layout,
                                                 const TagFields& fields, const TagFields* shown,
                                                 const std::vector<uint8_t>& id3v1) {
    const TagFields old = ReadRiffInfo(reader, layout);
    const TagFields& seen = shown != nullptr ? *shown : old;
    const auto unchanged = [&](std::string TagFields::*field) { return fields.*field == seen.*field; };

    std::vector<uint8_t> out = {'I', 'N', 'F', 'O'};
    const auto keep = [&](const ByteRange& body, std::string_view id) {
        if (body.size() > kMostKept) return false;
        AppendChunk(out, id, reader.view(body.begin, static_cast<size_t>(std::max<int64_t>(body.size(), 0))));
        return true;
    };
    for (const RiffChunk& chunk : layout.info) {
        const auto field = FieldOf(chunk);
        if (chunk.is("IID3") || (field != nullptr && !unchanged(field))) continue;
        if (!keep(chunk.body, std::string_view(chunk.id.data(), 4))) return std::nullopt;
    }
    if (const ByteRange rest = RestOfList(reader, layout); !rest.empty() && !keep(rest, "JUNK")) return std::nullopt;
    for (const InfoName& name : kNames) {
        // The further names of a field come after the first and are not written.
        const bool first = std::find_if(std::begin(kNames), std::end(kNames), [&](const InfoName& other) {
                               return other.field == name.field;
                           })->id == name.id;
        const std::string& text = fields.*(name.field);
        if (!first || unchanged(name.field) || text.empty()) continue;
        std::string bytes = EncodeInfoField(text);
        bytes.push_back('\0');  // texts of the list end with a NUL that counts
        AppendChunk(out, name.id, {reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()});
    }
    if (!id3v1.empty()) AppendChunk(out, "IID3", id3v1);
    return out;
}

}  // namespace vbmp3

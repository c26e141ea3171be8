#include "libraries/vbmp3/tags/tag_edit.h"

#include <algorithm>

#include "libraries/formats/bytes.h"
#include "libraries/vbmp3/tags/genres.h"
#include "libraries/vbmp3/tags/id3v1.h"
#include "libraries/vbmp3/tags/id3v2.h"
#include "libraries/vbmp3/tags/riff_info.h"

namespace vbmp3 {
namespace {

using Bytes = std::vector<uint8_t>;

// Bytes of the source that are replaced; an empty range is a place to insert at.
struct Splice {
    ByteRange range;
    Bytes bytes;
};

// New contents of each tag; without a value it stays as it is, an empty value takes it off.
struct NewTags {
    std::optional<Bytes> id3v2, id3v1, info, ape;  // info: the body of LIST; ape: taken off only
};

void copySpliced(Recipe& recipe, ByteRange range, std::vector<Splice> splices) {
    // A place to insert comes before the block that is taken off there.
    std::sort(splices.begin(), splices.end(), [](const Splice& a, const Splice& b) {
        return a.range.begin != b.range.begin ? a.range.begin < b.range.begin : a.range.end < b.range.end;
    });
    int64_t at = range.begin;
    for (const Splice& splice : splices) {
        if (splice.range.begin < at || splice.range.end > range.end) continue;  // stands in another part
        recipe.copy({at, splice.range.begin});
        recipe.add(splice.bytes);
        at = splice.range.end;
    }
    recipe.copy({at, range.end});
}

// The parts of a RIFF file that are no chunks.
int64_t endOfChunks(HeadTailReader& reader, const FileLayout& layout) {
    if (layout.chunks.empty()) return layout.riff.begin + 12;
    const ByteRange& last = layout.chunks.back().body;
    const auto pad = reader.view(last.end, 1);
    return last.end + (last.size() % 2 != 0 && !pad.empty() && pad[0] == 0 ? 1 : 0);
}

// Takes every tag of a kind off, and puts the new one where the first stood, or at `place`.
void replaceTag(std::vector<Splice>& splices, const FileLayout& layout, std::initializer_list<TagKind> kinds,
                const std::optional<Bytes>& bytes, int64_t place) {
    if (!bytes) return;
    const TagBlock* first = nullptr;
    for (const TagKind kind : kinds)
        if (first == nullptr) first = layout.find(kind);
    for (const TagBlock& tag : layout.tags) {
        const bool named = std::find(kinds.begin(), kinds.end(), tag.kind) != kinds.end();
        // Of several the first counts; the others go only when all are to go.
        if (named && (&tag == first || bytes->empty())) splices.push_back({tag.range, {}});
    }
    if (bytes->empty()) return;
    const bool inPlace = first != nullptr && first->kind == *kinds.begin();
    splices.push_back({{inPlace ? first->range.begin : place, inPlace ? first->range.begin : place}, *bytes});
}

// An ID3v2 tag that claims more than there was could reach into the sound once the file has grown: it gets its true
// length.
void repairLengths(std::vector<Splice>& splices, HeadTailReader& reader, const FileLayout& layout) {
    for (const TagBlock& tag : layout.tags) {
        if (tag.kind != TagKind::Id3v2) continue;
        const auto header = reader.view(tag.range.begin, 10);
        const bool footer = header[3] == 4 && (header[5] & 0x10) != 0;
        if (int64_t{synchsafe32(header.data() + 6)} + (footer ? 20 : 10) == tag.range.size()) continue;
        const int64_t size = tag.range.size() - 10;
        Splice repair{{tag.range.begin + 5, tag.range.begin + 10}, {static_cast<uint8_t>(header[5] & ~0x10)}};
        for (int shift = 21; shift >= 0; shift -= 7) repair.bytes.push_back(static_cast<uint8_t>(size >> shift & 0x7F));
        splices.push_back(std::move(repair));
    }
}

Recipe assemblePlain(HeadTailReader& reader, const FileLayout& layout, const NewTags& tags) {
    std::vector<Splice> splices;
    repairLengths(splices, reader, layout);
    replaceTag(splices, layout, {TagKind::Id3v2, TagKind::Id3v2Appended}, tags.id3v2, 0);
    replaceTag(splices, layout, {TagKind::Ape}, tags.ape, 0);
    replaceTag(splices, layout, {TagKind::Id3v1}, tags.id3v1, layout.fileSize);
    Recipe recipe;
    copySpliced(recipe, {0, layout.fileSize}, splices);
    return recipe;
}

void appendChunk(Recipe& recipe, std::string_view id, const Recipe& body) {
    recipe.add(id);
    recipe.addLittleEndian32(static_cast<uint32_t>(body.size()));
    recipe.append(body);
    if (body.size() % 2 != 0) recipe.add(std::string_view("\0", 1));
}

std::optional<Recipe> makeRiff(const FileLayout& layout, std::string_view form,
                               const std::vector<std::pair<std::string, Recipe>>& chunks,
                               const std::vector<Splice>& splices, int64_t tail) {
    if (layout.wide) return std::nullopt;
    Recipe body;
    body.add(form);
    for (const auto& [id, chunk] : chunks) {
        if (chunk.size() > UINT32_MAX) return std::nullopt;
        appendChunk(body, id, chunk);
    }
    if (body.size() > UINT32_MAX) return std::nullopt;
    Recipe recipe;
    copySpliced(recipe, {0, layout.riff.begin}, splices);
    recipe.add("RIFF");
    recipe.addLittleEndian32(static_cast<uint32_t>(body.size()));
    recipe.append(body);
    copySpliced(recipe, {tail, layout.fileSize}, splices);
    return recipe;
}

std::optional<Recipe> assembleRiff(HeadTailReader& reader, const FileLayout& layout, const NewTags& tags) {
    std::vector<Splice> splices;
    repairLengths(splices, reader, layout);
    replaceTag(splices, layout, {TagKind::Id3v2, TagKind::Id3v2Appended}, tags.id3v2, layout.data.begin);
    replaceTag(splices, layout, {TagKind::Ape}, tags.ape, 0);
    // ID3v1 of a RIFF file lives in IID3; one that stands elsewhere would contradict it.
    if (tags.info)
        for (const TagBlock& tag : layout.tags)
            if (tag.kind == TagKind::Id3v1 && tags.id3v1) splices.push_back({tag.range, {}});

    const auto goes = [&](const RiffChunk& chunk) {
        // Of several lists the first that has fields counts and is written at the end.
        if (tags.info && !layout.info.empty() && chunk.body.contains(layout.info.front().body)) return true;
        if (!tags.id3v2 || !(chunk.is("id3 ") || chunk.is("ID3 "))) return false;
        const TagBlock* edited = findId3v2(layout);
        return tags.id3v2->empty() || (edited != nullptr && edited->range.begin == chunk.body.begin);
    };
    std::vector<std::pair<std::string, Recipe>> chunks;
    for (const RiffChunk& chunk : layout.chunks) {
        if (goes(chunk)) continue;
        Recipe body;
        const bool isData = chunk.is("data") && chunk.body.begin == layout.data.begin;
        copySpliced(body, chunk.body, isData ? splices : std::vector<Splice>{});
        chunks.emplace_back(std::string(chunk.id.data(), 4), std::move(body));
    }
    if (tags.info && tags.info->size() > 4) {
        Recipe body;
        body.add(*tags.info);
        chunks.emplace_back("LIST", std::move(body));
    }
    return makeRiff(layout, layout.container == Container::Rmp ? "RMP3" : "WAVE", chunks, splices,
                    endOfChunks(reader, layout));
}

Bytes bytesOf(HeadTailReader& reader, ByteRange range) {
    const auto view = reader.view(range.begin, static_cast<size_t>(std::max<int64_t>(range.size(), 0)));
    return {view.begin(), view.end()};
}

Bytes toBytes(const std::array<uint8_t, kId3v1Size>& block) { return {block.begin(), block.end()}; }

bool isEmpty(const TagFields& fields) {
    return std::all_of(std::begin(kTextFields), std::end(kTextFields),
                       [&](auto field) { return (fields.*field).empty(); });
}

// Number and name of a genre say the same; the name wins.
TagFields normalised(TagFields fields) {
    if (fields.genre.empty()) fields.genre = genreName(fields.genreNumber);
    fields.genreNumber = findGenre(fields.genre);
    for (const auto field : kTextFields)
        (fields.*field)
            .erase(std::remove(std::begin(fields.*field), std::end(fields.*field), '\0'), std::end(fields.*field));
    return fields;
}

std::optional<Bytes> editId3v2(HeadTailReader& reader, const FileLayout& layout, const TagFields& fields,
                               const TagFields* shown) {
    Id3v2Tag tag;
    if (const TagBlock* block = findId3v2(layout)) {
        auto parsed = parseId3v2(reader, block->range);
        if (!parsed) return std::nullopt;  // nothing that cannot be read whole is written anew
        tag = std::move(*parsed);
    }
    setFields(tag, fields, shown);
    return makeId3v2(tag);
}

}  // namespace

bool canHold(HeadTailReader& reader, const FileLayout& layout, int kinds) {
    if (kinds == 0 || (kinds & ~kTagAll) != 0 || layout.wide) return false;
    if ((kinds & kTagSi) != 0 && layout.container == Container::None) return false;
    const bool mpeg = layout.container != Container::Wave || isMpegInWave(reader, layout);
    return mpeg || (kinds & (kTagId3v1 | kTagId3v2)) == 0;
}

bool isMpegInWave(HeadTailReader& reader, const FileLayout& layout) {
    if (layout.container != Container::Wave) return false;
    const RiffChunk* format = layout.findChunk("fmt ");
    if (format == nullptr || format->body.size() < 2) return false;
    const auto bytes = reader.view(format->body.begin, 2);
    const uint32_t tag = bytes.size() == 2 ? littleEndian16(bytes.data()) : 0;
    return tag == 0x50 || tag == 0x55;  // WAVE_FORMAT_MPEG, WAVE_FORMAT_MPEGLAYER3
}

std::optional<Recipe> planWrite(HeadTailReader& reader, const FileLayout& layout, int kinds, const TagFields& given,
                                AsShown asShown) {
    if (!canHold(reader, layout, kinds)) return std::nullopt;
    const TagFields fields = normalised(given);
    const auto shownOf = [&](int kind) {
        const TagFields read = readTagKind(reader, layout, kind);
        return asShown != nullptr ? asShown(read) : read;
    };
    const auto sameTexts = [&](const TagFields& shown) {
        return std::all_of(std::begin(kTextFields), std::end(kTextFields),
                           [&](auto f) { return fields.*f == shown.*f; });
    };

    NewTags tags;
    if ((kinds & kTagId3v2) != 0) {
        const TagFields shown = shownOf(kTagId3v2);
        tags.id3v2 = editId3v2(reader, layout, fields, &shown);
        if (!tags.id3v2) return std::nullopt;
    }
    const bool si = (kinds & kTagSi) != 0, v1 = (kinds & kTagId3v1) != 0;
    const bool keepsSi = si && sameTexts(shownOf(kTagSi));
    const bool iid3 = layout.container == Container::Rmp || layout.findInfo("IID3") != nullptr;
    if (v1 || (si && iid3)) {
        const ByteRange old = layout.id3v1();
        const bool unchanged = !old.empty() && (v1 ? sameTexts(shownOf(kTagId3v1)) : keepsSi);
        tags.id3v1 = unchanged ? bytesOf(reader, old) : toBytes(makeId3v1(fields));
        // An RMP whose last field was cleared needs no block either.
        if (!v1 && isEmpty(fields)) tags.id3v1 = Bytes{};
    }
    if (layout.container == Container::None) return assemblePlain(reader, layout, tags);
    if (si || v1) {
        const TagFields shown = shownOf(kTagSi);
        const Bytes id3v1 = tags.id3v1 ? *tags.id3v1 : bytesOf(reader, iid3 ? layout.id3v1() : ByteRange{});
        tags.info = makeRiffInfo(reader, layout, si ? fields : shown, &shown, id3v1);
        if (!tags.info) return std::nullopt;
    }
    return assembleRiff(reader, layout, tags);
}

std::optional<Recipe> planRemove(HeadTailReader& reader, const FileLayout& layout, int kinds) {
    kinds &= presentTags(layout);
    NewTags tags;
    if ((kinds & kTagId3v2) != 0) tags.id3v2 = Bytes{};
    if ((kinds & kTagId3v1) != 0) tags.id3v1 = Bytes{};
    if ((kinds & kTagApe) != 0) tags.ape = Bytes{};
    if (layout.container == Container::None) return assemblePlain(reader, layout, tags);
    if ((kinds & (kTagSi | kTagId3v1)) != 0) {
        const TagFields old = readRiffInfo(reader, layout);
        const bool keepsId3v1 = (kinds & kTagId3v1) == 0 && layout.findInfo("IID3") != nullptr;
        tags.info = makeRiffInfo(reader, layout, (kinds & kTagSi) != 0 ? TagFields{} : old, &old,
                                 keepsId3v1 ? bytesOf(reader, layout.findInfo("IID3")->body) : Bytes{});
        if (!tags.info) return std::nullopt;
    }
    return assembleRiff(reader, layout, tags);
}

std::optional<Recipe> planRmp(HeadTailReader& reader, const FileLayout& layout) {
    if (layout.container == Container::Rmp || (layout.container == Container::Wave && !isMpegInWave(reader, layout)))
        return std::nullopt;
    const bool plain = layout.container == Container::None;
    const TagFields fields = normalised(readTags(reader, layout));
    const ByteRange old = layout.id3v1();
    const Bytes id3v1 = !old.empty() ? bytesOf(reader, old) : isEmpty(fields) ? Bytes{} : toBytes(makeId3v1(fields));

    std::vector<Splice> splices;
    repairLengths(splices, reader, layout);
    for (const TagBlock& tag : layout.tags)
        if (tag.kind == TagKind::Id3v1 && tag.range.begin == old.begin) splices.push_back({tag.range, {}});
    Recipe data;
    copySpliced(data, plain ? ByteRange{0, layout.fileSize} : layout.data, splices);
    std::vector<std::pair<std::string, Recipe>> chunks;
    chunks.emplace_back("data", std::move(data));
    const auto info = makeRiffInfo(reader, layout, fields, nullptr, id3v1);
    if (!info) return std::nullopt;
    if (info->size() > 4) {
        Recipe list;
        list.add(*info);
        chunks.emplace_back("LIST", std::move(list));
    }
    return makeRiff(layout, "RMP3", chunks, splices, plain ? layout.fileSize : endOfChunks(reader, layout));
}

std::optional<Recipe> planMp3(HeadTailReader& reader, const FileLayout& layout) {
    if (layout.container == Container::None || layout.data.empty()) return std::nullopt;
    if (layout.container == Container::Wave && !isMpegInWave(reader, layout)) return std::nullopt;
    const TagFields sound = readTagsOfSound(reader, layout);
    const TagFields all = normalised(readTags(reader, layout));

    const ByteRange old = layout.id3v1();
    const Bytes made = toBytes(makeId3v1(all));
    Bytes id3v1 = old.empty() ? Bytes{} : bytesOf(reader, old);
    const TagFields base = normalised(sound);
    const bool edited = base != all;  // the SI fields say more than the other tags, or something else
    if (edited && readId3v1(id3v1) != readId3v1(made)) id3v1 = made;
    const bool fitsId3v1 = [&] {
        const TagFields read = readId3v1(id3v1);
        return std::all_of(std::begin(kTextFields), std::end(kTextFields), [&](auto f) { return read.*f == all.*f; });
    }();

    NewTags tags;
    const TagBlock* block = findId3v2(layout);
    const bool inChunk = block != nullptr && block->kind == TagKind::Id3v2Chunk;
    if (block != nullptr ? inChunk || edited : edited && !fitsId3v1) {
        tags.id3v2 = editId3v2(reader, layout, all, edited ? nullptr : &all);
        if (!tags.id3v2) return std::nullopt;
    }
    std::vector<Splice> splices;
    repairLengths(splices, reader, layout);
    const int64_t place = layout.data.begin;
    replaceTag(splices, layout, {TagKind::Id3v2, TagKind::Id3v2Appended}, tags.id3v2, place);
    for (const TagBlock& tag : layout.tags)
        if (tag.kind == TagKind::Id3v1) splices.push_back({tag.range, {}});

    Recipe recipe;
    copySpliced(recipe, {0, layout.riff.begin}, splices);
    copySpliced(recipe, layout.data, splices);
    copySpliced(recipe, {endOfChunks(reader, layout), layout.fileSize}, splices);
    recipe.add(id3v1);
    return recipe;
}

}  // namespace vbmp3

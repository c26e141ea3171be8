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
    Recipe bytes;
};

// New contents of each tag; without a value it stays as it is, an empty value takes it off.
struct NewTags {
    std::optional<Recipe> id3v2;
    std::optional<Bytes> id3v1, info, ape;  // info: the body of LIST; ape: taken off only
};

std::optional<Recipe> AsRecipe(const std::optional<Bytes>& bytes) {
    if (!bytes) return std::nullopt;
    Recipe recipe;
    recipe.add(*bytes);
    return recipe;
}

void CopySpliced(Recipe& recipe, ByteRange range, std::vector<Splice> splices) {
    // A place to insert comes before the block that is taken off there.
    std::sort(splices.begin(), splices.end(), [](const Splice& a, const Splice& b) {
        return a.range.begin != b.range.begin ? a.range.begin < b.range.begin : a.range.end < b.range.end;
    });
    int64_t at = range.begin;
    for (const Splice& splice : splices) {
        if (splice.range.begin < at || splice.range.end > range.end) continue;  // stands in another part
        recipe.copy({at, splice.range.begin});
        recipe.append(splice.bytes);
        at = splice.range.end;
    }
    recipe.copy({at, range.end});
}

// The parts of a RIFF file that are no chunks.
int64_t EndOfChunks(HeadTailReader& reader, const FileLayout& layout) {
    if (layout.chunks.empty()) return layout.riff.begin + 12;
    const ByteRange& last = layout.chunks.back().body;
    const auto pad = reader.view(last.end, 1);
    return last.end + (last.size() % 2 != 0 && !pad.empty() && pad[0] == 0 ? 1 : 0);
}

// Takes every tag of a kind off, and puts the new one where the first stood, or at `place`.
void ReplaceTag(std::vector<Splice>& splices, const FileLayout& layout, std::initializer_list<TagKind> kinds,
                const std::optional<Recipe>& bytes, int64_t place) {
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
void RepairLengths(std::vector<Splice>& splices, HeadTailReader& reader, const FileLayout& layout) {
    for (const TagBlock& tag : layout.tags) {
        if (tag.kind != TagKind::Id3v2) continue;
        const auto header = reader.view(tag.range.begin, 10);
        const bool footer = header[3] == 4 && (header[5] & 0x10) != 0;
        if (int64_t{Synchsafe32(header.data() + 6)} + (footer ? 20 : 10) == tag.range.size()) continue;
        const int64_t size = tag.range.size() - 10;
        Bytes repair{static_cast<uint8_t>(header[5] & ~0x10)};
        for (int shift = 21; shift >= 0; shift -= 7) repair.push_back(static_cast<uint8_t>(size >> shift & 0x7F));
        splices.push_back({{tag.range.begin + 5, tag.range.begin + 10}, *AsRecipe(repair)});
    }
}

Recipe AssemblePlain(HeadTailReader& reader, const FileLayout& layout, const NewTags& tags) {
    std::vector<Splice> splices;
    RepairLengths(splices, reader, layout);
    ReplaceTag(splices, layout, {TagKind::Id3v2, TagKind::Id3v2Appended}, tags.id3v2, 0);
    ReplaceTag(splices, layout, {TagKind::Ape}, AsRecipe(tags.ape), 0);
    ReplaceTag(splices, layout, {TagKind::Id3v1}, AsRecipe(tags.id3v1), layout.fileSize);
    Recipe recipe;
    CopySpliced(recipe, {0, layout.fileSize}, splices);
    return recipe;
}

void AppendChunk(Recipe& recipe, std::string_view id, const Recipe& body) {
    recipe.add(id);
    recipe.addLittleEndian32(static_cast<uint32_t>(body.size()));
    recipe.append(body);
    if (body.size() % 2 != 0) recipe.add(std::string_view("\0", 1));
}

std::optional<Recipe> MakeRiff(const FileLayout& layout, std::string_view form,
                               const std::vector<std::pair<std::string, Recipe>>& chunks,
                               const std::vector<Splice>& splices, int64_t tail) {
    if (layout.wide) return std::nullopt;
    Recipe body;
    body.add(form);
    for (const auto& [id, chunk] : chunks) {
        if (chunk.size() > UINT32_MAX) return std::nullopt;
        AppendChunk(body, id, chunk);
    }
    if (body.size() > UINT32_MAX) return std::nullopt;
    Recipe recipe;
    CopySpliced(recipe, {0, layout.riff.begin}, splices);
    recipe.add("RIFF");
    recipe.addLittleEndian32(static_cast<uint32_t>(body.size()));
    recipe.append(body);
    CopySpliced(recipe, {tail, layout.fileSize}, splices);
    return recipe;
}

std::optional<Recipe> AssembleRiff(HeadTailReader& reader, const FileLayout& layout, const NewTags& tags) {
    std::vector<Splice> splices;
    RepairLengths(splices, reader, layout);
    ReplaceTag(splices, layout, {TagKind::Id3v2, TagKind::Id3v2Appended}, tags.id3v2, layout.data.begin);
    ReplaceTag(splices, layout, {TagKind::Ape}, AsRecipe(tags.ape), 0);
    // ID3v1 of a RIFF file lives in IID3; one that stands elsewhere would contradict it.
    if (tags.info)
        for (const TagBlock& tag : layout.tags)
            if (tag.kind == TagKind::Id3v1 && tags.id3v1) splices.push_back({tag.range, {}});

    const auto goes = [&](const RiffChunk& chunk) {
        // Of several lists the last that has fields counts and is written anew at the end.
        if (tags.info && !layout.info.empty() && chunk.body.contains(layout.info.front().body)) return true;
        if (!tags.id3v2 || !(chunk.is("id3 ") || chunk.is("ID3 "))) return false;
        const TagBlock* edited = FindId3v2(layout);
        return tags.id3v2->empty() || (edited != nullptr && edited->range.begin == chunk.body.begin);
    };
    std::vector<std::pair<std::string, Recipe>> chunks;
    for (const RiffChunk& chunk : layout.chunks) {
        if (goes(chunk)) continue;
        Recipe body;
        const bool isData = chunk.is("data") && chunk.body.begin == layout.data.begin;
        CopySpliced(body, chunk.body, isData ? splices : std::vector<Splice>{});
        chunks.emplace_back(std::string(chunk.id.data(), 4), std::move(body));
    }
    if (tags.info && tags.info->size() > 4) {
        Recipe body;
        body.add(*tags.info);
        chunks.emplace_back("LIST", std::move(body));
    }
    return MakeRiff(layout, layout.container == Container::Rmp ? "RMP3" : "WAVE", chunks, splices,
                    EndOfChunks(reader, layout));
}

Bytes BytesOf(HeadTailReader& reader, ByteRange range) {
    const auto view = reader.view(range.begin, static_cast<size_t>(std::max<int64_t>(range.size(), 0)));
    return {view.begin(), view.end()};
}

Bytes ToBytes(const std::array<uint8_t, kId3v1Size>& block) { return {block.begin(), block.end()}; }

bool IsEmpty(const TagFields& fields) {
    return std::all_of(std::begin(kTextFields), std::end(kTextFields),
                       [&](auto field) { return (fields.*field).empty(); });
}

// Number and name of a genre say the same; the name wins.
TagFields Normalised(TagFields fields) {
    if (fields.genre.empty()) fields.genre = GenreName(fields.genreNumber);
    fields.genreNumber = FindGenre(fields.genre);
    for (const auto field : kTextFields)
        (fields.*field)
            .erase(std::remove(std::begin(fields.*field), std::end(fields.*field), '\0'), std::end(fields.*field));
    return fields;
}

std::optional<Recipe> EditId3v2(HeadTailReader& reader, const FileLayout& layout, const TagFields& fields,
                                const TagFields* shown) {
    Id3v2Tag tag;
    if (const TagBlock* block = FindId3v2(layout)) {
        auto parsed = ParseId3v2(reader, block->range);
        if (!parsed) return std::nullopt;  // nothing that cannot be read whole is written anew
        tag = std::move(*parsed);
    }
    SetFields(tag, fields, shown);
    return MakeId3v2(tag);
}

bool SameTexts(const TagFields& a, const TagFields& b) {
    return std::all_of(std::begin(kTextFields), std::end(kTextFields), [&](auto f) { return a.*f == b.*f; });
}

// The ID3v1 block, of a file or of a RIFF file's list: the very bytes that are there while they say the same.
Bytes EditId3v1(HeadTailReader& reader, const FileLayout& layout, const TagFields& fields, const TagFields& shown) {
    const ByteRange old = layout.id3v1();
    return !old.empty() && SameTexts(fields, shown) ? BytesOf(reader, old) : ToBytes(MakeId3v1(fields));
}

}  // namespace

bool CanHold(HeadTailReader& reader, const FileLayout& layout, int kinds) {
    if (kinds == 0 || (kinds & ~kTagAll) != 0 || layout.wide) return false;
    if ((kinds & kTagSi) != 0 && layout.container == Container::None) return false;
    const bool mpeg = layout.container != Container::Wave || IsMpegInWave(reader, layout);
    return mpeg || (kinds & (kTagId3v1 | kTagId3v2)) == 0;
}

bool IsMpegInWave(HeadTailReader& reader, const FileLayout& layout) {
    if (layout.container != Container::Wave) return false;
    const RiffChunk* format = layout.findChunk("fmt ");
    if (format == nullptr || format->body.size() < 2) return false;
    const auto bytes = reader.view(format->body.begin, 2);
    const uint32_t tag = bytes.size() == 2 ? LittleEndian16(bytes.data()) : 0;
    return tag == 0x50 || tag == 0x55;  // WAVE_FORMAT_MPEG, WAVE_FORMAT_MPEGLAYER3
}

std::optional<Recipe> PlanWrite(HeadTailReader& reader, const FileLayout& layout, int kinds, const TagFields& given,
                                AsShown asShown) {
    if (!CanHold(reader, layout, kinds)) return std::nullopt;
    const TagFields fields = Normalised(given);
    if (asShown == nullptr) asShown = [](const TagFields& all) { return all; };
    const auto shownOf = [&](int kind) { return asShown(ReadTagKind(reader, layout, kind)); };

    NewTags tags;
    if ((kinds & kTagId3v2) != 0) {
        const TagFields shown = shownOf(kTagId3v2);
        tags.id3v2 = EditId3v2(reader, layout, fields, &shown);
        if (!tags.id3v2) return std::nullopt;
    }
    const bool si = (kinds & kTagSi) != 0, v1 = (kinds & kTagId3v1) != 0;
    const bool iid3 = layout.container == Container::Rmp || layout.findInfo("IID3") != nullptr;
    if (v1 || (si && iid3)) {
        tags.id3v1 = EditId3v1(reader, layout, fields, shownOf(v1 ? kTagId3v1 : kTagSi));
        // An RMP whose last field was cleared needs no block either.
        if (!v1 && IsEmpty(fields)) tags.id3v1 = Bytes{};
    }
    if (layout.container == Container::None) return AssemblePlain(reader, layout, tags);
    const Bytes oldBlock = BytesOf(reader, iid3 ? layout.id3v1() : ByteRange{});
    if (si || v1) {
        const TagFields shown = shownOf(kTagSi);
        tags.info = MakeRiffInfo(reader, layout, si ? fields : shown, &shown, tags.id3v1.value_or(oldBlock));
        if (!tags.info) return std::nullopt;
    }
    return AssembleRiff(reader, layout, tags);
}

std::optional<Recipe> PlanRemove(HeadTailReader& reader, const FileLayout& layout, int kinds) {
    kinds &= PresentTags(layout);
    NewTags tags;
    if ((kinds & kTagId3v2) != 0) tags.id3v2 = Recipe();
    if ((kinds & kTagId3v1) != 0) tags.id3v1 = Bytes{};
    if ((kinds & kTagApe) != 0) tags.ape = Bytes{};
    if (layout.container == Container::None) return AssemblePlain(reader, layout, tags);
    if ((kinds & (kTagSi | kTagId3v1)) != 0) {
        const TagFields old = ReadRiffInfo(reader, layout);
        const bool keepsId3v1 = (kinds & kTagId3v1) == 0 && layout.findInfo("IID3") != nullptr;
        tags.info = MakeRiffInfo(reader, layout, (kinds & kTagSi) != 0 ? TagFields{} : old, &old,
                                 keepsId3v1 ? BytesOf(reader, layout.findInfo("IID3")->body) : Bytes{});
        if (!tags.info) return std::nullopt;
    }
    return AssembleRiff(reader, layout, tags);
}

std::optional<Recipe> PlanRmp(HeadTailReader& reader, const FileLayout& layout) {
    if (layout.container == Container::Rmp || (layout.container == Container::Wave && !IsMpegInWave(reader, layout)))
        return std::nullopt;
    const bool plain = layout.container == Container::None;
    const TagFields fields = Normalised(ReadTags(reader, layout));
    const ByteRange old = layout.id3v1();
    const Bytes id3v1 = !old.empty() ? BytesOf(reader, old) : IsEmpty(fields) ? Bytes{} : ToBytes(MakeId3v1(fields));

    std::vector<Splice> splices;
    RepairLengths(splices, reader, layout);
    for (const TagBlock& tag : layout.tags)
        if (tag.kind == TagKind::Id3v1 && tag.range.begin == old.begin) splices.push_back({tag.range, {}});
    Recipe data;
    CopySpliced(data, plain ? ByteRange{0, layout.fileSize} : layout.data, splices);
    std::vector<std::pair<std::string, Recipe>> chunks;
    chunks.emplace_back("data", std::move(data));
    const auto info = MakeRiffInfo(reader, layout, fields, nullptr, id3v1);
    if (!info) return std::nullopt;
    if (info->size() > 4) {
        Recipe list;
        list.add(*info);
        chunks.emplace_back("LIST", std::move(list));
    }
    return MakeRiff(layout, "RMP3", chunks, splices, plain ? layout.fileSize : EndOfChunks(reader, layout));
}

std::optional<Recipe> PlanMp3(HeadTailReader& reader, const FileLayout& layout) {
    if (layout.container == Container::None || layout.data.empty()) return std::nullopt;
    if (layout.container == Container::Wave && !IsMpegInWave(reader, layout)) return std::nullopt;
    const TagFields sound = ReadTagsOfSound(reader, layout);
    const TagFields all = Normalised(ReadTags(reader, layout));

    const ByteRange old = layout.id3v1();
    const Bytes made = ToBytes(MakeId3v1(all));
    Bytes id3v1 = old.empty() ? Bytes{} : BytesOf(reader, old);
    const TagFields base = Normalised(sound);
    const bool edited = base != all;  // the SI fields say more than the other tags, or something else
    if (edited && ReadId3v1(id3v1) != ReadId3v1(made)) id3v1 = made;
    const bool fitsId3v1 = [&] {
        const TagFields read = ReadId3v1(id3v1);
        return std::all_of(std::begin(kTextFields), std::end(kTextFields), [&](auto f) { return read.*f == all.*f; });
    }();

    NewTags tags;
    const TagBlock* block = FindId3v2(layout);
    const bool inChunk = block != nullptr && block->kind == TagKind::Id3v2Chunk;
    if (block != nullptr ? inChunk || edited : edited && !fitsId3v1) {
        tags.id3v2 = EditId3v2(reader, layout, all, edited ? nullptr : &all);
        if (!tags.id3v2) return std::nullopt;
    }
    std::vector<Splice> splices;
    RepairLengths(splices, reader, layout);
    const int64_t place = layout.data.begin;
    ReplaceTag(splices, layout, {TagKind::Id3v2, TagKind::Id3v2Appended}, tags.id3v2, place);
    for (const TagBlock& tag : layout.tags)
        if (tag.kind == TagKind::Id3v1) splices.push_back({tag.range, {}});

    Recipe recipe;
    CopySpliced(recipe, {0, layout.riff.begin}, splices);
    CopySpliced(recipe, layout.data, splices);
    CopySpliced(recipe, {EndOfChunks(reader, layout), layout.fileSize}, splices);
    recipe.add(id3v1);
    return recipe;
}

}  // namespace vbmp3

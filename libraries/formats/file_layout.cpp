#include "libraries/formats/file_layout.h"

#include <charconv>

#include "libraries/formats/bytes.h"

namespace vbmp3 {
namespace {

constexpr int kMostBlocks = 32;  // of tags on one side; a file with more is made to keep us busy
constexpr size_t kMostChunks = 1024;
constexpr int64_t kLyrics3V1Most = 5100 + 11 + 9;  // the text is limited to 5100 bytes
constexpr int64_t kNoLimit = 1024;                 // slack for writers that did not know the limit

// Where a tag ends whose length reaches past the end: after the last frame that fits.
int64_t EndOfFrames(HeadTailReader& reader, ByteRange tag, int version) {
    const int64_t headerSize = version == 2 ? 6 : 10;
    int64_t at = tag.begin + 10;
    for (int n = 0; n < 256 && at + headerSize <= tag.end; ++n) {
        const auto header = reader.view(at, static_cast<size_t>(headerSize));
        if (static_cast<int64_t>(header.size()) < headerSize) break;
        const int idSize = version == 2 ? 3 : 4;
        bool valid = true;
        for (int i = 0; i < idSize; ++i)
            valid = valid && ((header[i] >= 'A' && header[i] <= 'Z') || (header[i] >= '0' && header[i] <= '9'));
        if (!valid) break;
        const uint8_t* p = header.data() + idSize;
        const int64_t size = version == 2                     ? BigEndian24(p)
                             : version == 4 && IsSynchsafe(p) ? Synchsafe32(p)
                                                              : BigEndian32(p);
        if (at + headerSize + size > tag.end) break;
        at += headerSize + size;
    }
    return at;
}

bool Id3v2Header(std::span<const uint8_t> bytes, std::string_view mark) {
    return bytes.size() >= 10 && StartsWith(bytes, mark) && bytes[3] >= 2 && bytes[3] <= 4 && bytes[4] != 0xFF &&
           IsSynchsafe(bytes.data() + 6);
}

// Takes the tags off the head of `range`.
void ScanHead(HeadTailReader& reader, ByteRange& range, bool inData, std::vector<TagBlock>& tags) {
    for (int n = 0; n < kMostBlocks; ++n) {
        const auto bytes = reader.view(range.begin, static_cast<size_t>(std::clamp<int64_t>(range.size(), 0, 32)));
        TagBlock block{TagKind::Id3v2, 0, {range.begin, range.begin}, inData};
        if (Id3v2Header(bytes, "ID3")) {
            block.version = bytes[3];
            const bool footer = block.version == 4 && (bytes[5] & 0x10) != 0;
            block.range.end = range.begin + 10 + Synchsafe32(bytes.data() + 6) + (footer ? 10 : 0);
            if (block.range.end > range.end) block.range.end = EndOfFrames(reader, range, block.version);
        } else if (bytes.size() == 32 && StartsWith(bytes, "APETAGEX") && (bytes[23] & 0x20) != 0) {
            block.kind = TagKind::Ape;
            block.version = LittleEndian32(bytes.data() + 8) >= 2000 ? 2 : 1;
            block.range.end = range.begin + 32 + int64_t{LittleEndian32(bytes.data() + 12)};
            if (block.range.end > range.end) return;
        } else {
            return;
        }
        range.begin = block.range.end;
        tags.push_back(block);
    }
}

// "LYRICSBEGIN" before the six digits and "LYRICS200" of version 2, whose digits count from it to themselves.
int64_t BeginOfLyrics3V2(HeadTailReader& reader, const ByteRange& range, const uint8_t* digits) {
    int64_t size = 0;
    const auto* first = reinterpret_cast<const char*>(digits);
    const auto parsed = std::from_chars(first, first + 6, size);
    if (parsed.ec != std::errc{} || parsed.ptr != first + 6) return -1;
    const int64_t begin = range.end - 15 - size;
    if (begin < range.begin || !StartsWith(reader.view(begin, 11), "LYRICSBEGIN")) return -1;
    return begin;
}

int64_t BeginOfLyrics3V1(HeadTailReader& reader, const ByteRange& range) {
    const int64_t from = std::max(range.begin, range.end - kLyrics3V1Most - kNoLimit);
    const auto bytes = reader.view(from, static_cast<size_t>(range.end - from));
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const size_t at = text.rfind("LYRICSBEGIN");
    return at == std::string_view::npos ? -1 : from + static_cast<int64_t>(at);
}

// Finds the tag that ends at range.end. They may stand in any order.
bool LastTag(HeadTailReader& reader, const ByteRange& range, TagBlock& block) {
    constexpr int64_t kMost = 227;
    const int64_t from = std::max(range.begin, range.end - kMost);
    const auto view = reader.view(from, static_cast<size_t>(std::max<int64_t>(range.end - from, 0)));
    if (static_cast<int64_t>(view.size()) < range.end - from) return false;
    std::array<uint8_t, kMost> copy{};
    std::copy(view.begin(), view.end(), copy.begin());
    const std::span<const uint8_t> bytes(copy.data(), view.size());
    // The last `count` bytes, none when there are fewer.
    const auto last = [&](size_t count) {
        return bytes.size() < count ? std::span<const uint8_t>{} : bytes.subspan(bytes.size() - count);
    };
    block.range.end = range.end;
    // An APE tag of 131 bytes has the "TAG" of its own "APETAGEX" where ID3v1 has it.
    if (StartsWith(last(128), "TAG") && !StartsWith(last(131), "APETAGEX")) {
        block.kind = TagKind::Id3v1;
        block.version = 1;
        block.range.begin = range.end - 128;
        return true;
    }
    if (StartsWith(last(227), "TAG+")) {
        block.kind = TagKind::TagPlus;
        block.version = 1;
        block.range.begin = range.end - 227;
        return true;
    }
    if (const auto footer = last(32); StartsWith(footer, "APETAGEX")) {
        const bool hasHeader = (footer[23] & 0x80) != 0, isHeader = (footer[23] & 0x20) != 0;
        const int64_t size = LittleEndian32(footer.data() + 12);
        block.kind = TagKind::Ape;
        block.version = LittleEndian32(footer.data() + 8) >= 2000 ? 2 : 1;
        block.range.begin = range.end - size - (hasHeader ? 32 : 0);
        return !isHeader && size >= 32 && block.range.begin >= range.begin;
    }
    if (const auto end = last(15); !end.empty() && StartsWith(end.subspan(6), "LYRICS200")) {
        block.kind = TagKind::Lyrics3;
        block.version = 2;
        block.range.begin = BeginOfLyrics3V2(reader, range, end.data());
        return block.range.begin >= 0;
    }
    if (StartsWith(last(9), "LYRICSEND")) {
        block.kind = TagKind::Lyrics3;
        block.version = 1;
        block.range.begin = BeginOfLyrics3V1(reader, range);
        return block.range.begin >= 0;
    }
    if (const auto footer = last(10); Id3v2Header(footer, "3DI")) {
        block.kind = TagKind::Id3v2Appended;
        block.version = footer[3];
        block.range.begin = range.end - 20 - int64_t{Synchsafe32(footer.data() + 6)};
        return block.range.begin >= range.begin && Id3v2Header(reader.view(block.range.begin, 10), "ID3");
    }
    return false;
}

// Takes the tags off the tail of `range`.
void ScanTail(HeadTailReader& reader, ByteRange& range, bool inData, std::vector<TagBlock>& tags) {
    for (int n = 0; n < kMostBlocks; ++n) {
        TagBlock block{TagKind::Id3v1, 0, {}, inData};
        if (!LastTag(reader, range, block)) return;
        range.end = block.range.begin;
        tags.push_back(block);
    }
}

bool IsChunkHeader(std::span<const uint8_t> bytes) {
    if (bytes.size() < 8) return false;
    for (size_t i = 0; i < 4; ++i)
        if (bytes[i] < 0x20 || bytes[i] > 0x7E) return false;
    return true;
}

bool BeginsTag(const std::vector<TagBlock>& tags, int64_t at) {
    return std::any_of(tags.begin(), tags.end(), [&](const TagBlock& tag) { return tag.range.begin == at; });
}

// The size of a data chunk that says `size`, with `rest` bytes behind its header; `wide` is what an RF64 file says of
// it elsewhere, or -1.
int64_t SizeOfData(HeadTailReader& reader, const RiffChunk& data, int64_t size, int64_t rest, int64_t wide) {
    if (size == UINT32_MAX && wide > 0) return std::min(wide, rest);
    // A writer that was interrupted, or that wrote to a pipe, leaves 0 or all ones: the rest is the sound.
    if (size == UINT32_MAX) return rest;
    if (size == 0) return IsChunkHeader(reader.view(data.body.begin, 8)) ? 0 : rest;
    // Writers without RF64 let the size of a long file run over; nothing else in one is that long.
    return rest > size ? size + ((rest - size) >> 32 << 32) : size;
}

// Whether the chunk of odd length that ends at `end` has the byte that fills it up: many writers forget it.
bool HasPadByte(HeadTailReader& reader, int64_t end, const std::vector<TagBlock>& tags) {
    if (BeginsTag(tags, end)) return false;
    const auto next = reader.view(end, 9);
    return next.size() < 9 || next[0] == 0 || !IsChunkHeader(next) || IsChunkHeader(next.subspan(1, 8));
}

// The chunks in `range`. Many writers forget the pad byte after a chunk of odd length; a tag that was appended to the
// file (`tags`) may look like a chunk and is none.
std::vector<RiffChunk> ScanChunks(HeadTailReader& reader, const ByteRange& range, const std::vector<TagBlock>& tags) {
    std::vector<RiffChunk> chunks;
    int64_t at = range.begin;
    int64_t wideData = -1;  // size of the data chunk of an RF64 file
    while (at + 8 <= range.end && chunks.size() < kMostChunks && !BeginsTag(tags, at)) {
        const auto header = reader.view(at, 8);
        if (!IsChunkHeader(header)) break;
        RiffChunk chunk{};
        std::memcpy(chunk.id.data(), header.data(), 4);
        int64_t size = LittleEndian32(header.data() + 4);
        chunk.body.begin = at + 8;
        if (chunk.is("ds64") && size >= 24) {
            const auto sizes = reader.view(chunk.body.begin + 8, 8);
            if (sizes.size() == 8 && (sizes[7] & 0x80) == 0)
                wideData = int64_t{LittleEndian32(sizes.data() + 4)} << 32 | LittleEndian32(sizes.data());
        }
        if (chunk.is("data")) size = SizeOfData(reader, chunk, size, range.end - chunk.body.begin, wideData);
        chunk.body.end = std::min(chunk.body.begin + size, range.end);
        chunks.push_back(chunk);
        at = chunk.body.begin + size;
        if ((size & 1) != 0 && HasPadByte(reader, at, tags)) ++at;
    }
    return chunks;
}

void ScanRiff(HeadTailReader& reader, ByteRange range, FileLayout& layout) {
    const auto header = reader.view(range.begin, 12);
    const uint32_t riffSize = LittleEndian32(header.data() + 4);
    const ByteRange file{0, layout.fileSize};
    layout.wide =
        StartsWith(header, "RF64") || StartsWith(header, "BW64") || file.end - range.begin > int64_t{UINT32_MAX};
    layout.riff = {range.begin, std::min(range.begin + 8 + int64_t{riffSize}, file.end)};
    // The size of the form is wrong so often that the chunks are followed to the end of the file.
    layout.chunks = ScanChunks(reader, {range.begin + 12, file.end}, layout.tags);
    for (const RiffChunk& chunk : layout.chunks) {
        if (chunk.is("data") && layout.data.empty()) layout.data = chunk.body;
        // Of several lists the last that has fields counts: an edited one is written at the end.
        if (chunk.is("LIST") && StartsWith(reader.view(chunk.body.begin, 4), "INFO")) {
            std::vector<RiffChunk> info = ScanChunks(reader, {chunk.body.begin + 4, chunk.body.end}, {});
            if (!info.empty()) layout.info = std::move(info);
        }
        if ((chunk.is("id3 ") || chunk.is("ID3 ")) && layout.find(TagKind::Id3v2Chunk) == nullptr) {
            const auto bytes = reader.view(chunk.body.begin, 10);
            if (Id3v2Header(bytes, "ID3")) layout.tags.push_back({TagKind::Id3v2Chunk, bytes[3], chunk.body, false});
        }
        layout.riff.end = std::max(layout.riff.end, std::min(chunk.body.end, file.end));
    }
    // A data chunk that goes to the end of the file has these at its own tail.
    std::erase_if(layout.tags, [&](const TagBlock& tag) { return layout.data.contains(tag.range); });
    layout.audio = layout.data;
    ScanHead(reader, layout.audio, true, layout.tags);
    ScanTail(reader, layout.audio, true, layout.tags);
}

}  // namespace

const TagBlock* FileLayout::find(TagKind kind) const {
    for (const TagBlock& tag : tags)
        if (tag.kind == kind) return &tag;
    return nullptr;
}

const RiffChunk* FileLayout::findChunk(std::string_view id) const {
    for (const RiffChunk& chunk : chunks)
        if (chunk.is(id)) return &chunk;
    return nullptr;
}

const RiffChunk* FileLayout::findInfo(std::string_view id) const {
    for (const RiffChunk& chunk : info)
        if (chunk.is(id)) return &chunk;
    return nullptr;
}

ByteRange FileLayout::id3v1() const {
    if (const TagBlock* block = find(TagKind::Id3v1)) return block->range;
    if (const RiffChunk* chunk = findInfo("IID3"); chunk != nullptr && chunk->body.size() >= 128)
        return {chunk->body.begin, chunk->body.begin + 128};
    return {};
}

FileLayout ScanFileLayout(HeadTailReader& reader) {
    FileLayout layout;
    layout.fileSize = reader.size();
    ByteRange rest{0, reader.size()};
    ScanHead(reader, rest, false, layout.tags);
    const auto header = reader.view(rest.begin, 12);
    const bool rf64 = StartsWith(header, "RF64") || StartsWith(header, "BW64");
    if (header.size() == 12 && (rf64 || StartsWith(header, "RIFF"))) {
        if (!rf64 && StartsWith(header.subspan(8), "RMP3"))
            layout.container = Container::Rmp;
        else if (StartsWith(header.subspan(8), "WAVE"))
            layout.container = Container::Wave;
    }
    ScanTail(reader, rest, false, layout.tags);
    if (layout.container == Container::None)
        layout.audio = rest;
    else
        ScanRiff(reader, rest, layout);
    return layout;
}

FileLayout ScanFileLayout(const ByteSource& source) {
    HeadTailReader reader(source);
    return ScanFileLayout(reader);
}

}  // namespace vbmp3

// What stands where in a sound file: the tags at its head and tail, the chunks of a RIFF file, and between them the
// sound itself. Looks at head and tail only (and at chunk headers), believes no length that it has not checked against
// the file, and decodes nothing. Pure: any thread.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "libraries/files/byte_source.h"

namespace vbmp3 {

// Byte positions [begin, end) in the file.
struct ByteRange {
    int64_t begin = 0;
    int64_t end = 0;
    int64_t size() const { return end - begin; }
    bool empty() const { return end <= begin; }
    bool contains(const ByteRange& other) const { return other.begin >= begin && other.end <= end; }
};

// Id3v2Chunk: the body of a chunk "id3 " in a RIFF file.
enum class TagKind { Id3v2, Id3v2Appended, Id3v2Chunk, Ape, Lyrics3, TagPlus, Id3v1 };

struct TagBlock {
    TagKind kind;
    int version;      // ID3v2: 2, 3, 4. Lyrics3 and APE: 1, 2. Others 1
    ByteRange range;  // the whole block with header and footer
    bool inData;      // stands inside the data chunk of a RIFF file
};

enum class Container { None, Rmp, Wave };

struct RiffChunk {
    std::array<char, 4> id;
    ByteRange body;  // without header and pad byte; cut at the end of the file
    bool is(std::string_view name) const { return std::string_view(id.data(), 4) == name; }
};

struct FileLayout {
    int64_t fileSize = 0;
    Container container = Container::None;
    // The sound: MPEG frames (or, in a WAVE, the samples) without any tag. May begin with padding or junk that a
    // decoder skips.
    ByteRange audio;
    // In the order found: outside of a RIFF file first, head before tail.
    std::vector<TagBlock> tags;

    // RIFF files only.
    ByteRange riff;                 // from "RIFF" to the end of the form, cut at the end of the file
    ByteRange data;                 // body of the data chunk
    bool wide = false;              // RF64 (EBU Tech 3306) or longer than RIFF can tell; it is only read
    std::vector<RiffChunk> chunks;  // of the top level, LIST included as one
    std::vector<RiffChunk> info;    // sub-chunks of LIST INFO (INAM, IART ... IID3)

    const TagBlock* find(TagKind kind) const;  // the first one, null when there is none
    const RiffChunk* findChunk(std::string_view id) const;
    const RiffChunk* findInfo(std::string_view id) const;
    // The 128 bytes of the ID3v1 tag: the block at the end of file or data, else the body of IID3. Empty without one.
    ByteRange id3v1() const;
};

FileLayout ScanFileLayout(HeadTailReader& reader);
FileLayout ScanFileLayout(const ByteSource& source);

}  // namespace vbmp3

#include "libraries/vbmp3/riff.h"

#include <algorithm>
#include <cstring>

namespace vbmp3 {
namespace {

constexpr size_t kMaxChunks = 4096;
constexpr uint32_t kUnknownSize = 0xFFFFFFFF;

FourCc fourCc(const uint8_t* p)
{
    FourCc id;
    std::memcpy(id.text.data(), p, 4);
    return id;
}

bool plausibleId(const uint8_t* p)
{
    return std::all_of(p, p + 4, [](uint8_t c) { return c >= 0x20 && c < 0x7F; });
}

// Lengths of chunks that do not fit 32 bits (EBU Tech 3306).
struct Ds64 {
    uint64_t data = 0;
};

std::optional<Ds64> readDs64(ByteReader& file, const Chunk& chunk)
{
    const auto bytes = file.bytes(chunk.offset, 16);
    if (chunk.size < 16 || bytes.size() < 16)
        return std::nullopt;
    return Ds64{littleEndian64(bytes.data() + 8)};
}

std::vector<Chunk> walk(ByteReader& file, uint64_t begin, uint64_t end, bool large)
{
    end = std::min(end, file.size());
    std::vector<Chunk> chunks;
    std::optional<Ds64> ds64;
    uint64_t at = begin;
    while (at < end && end - at >= 8 && chunks.size() < kMaxChunks) {
        uint8_t head[8];
        if (file.readAt(at, head) != 8)
            break;
        if (!plausibleId(head)) {
            // Perhaps the chunk before had a padding byte too few.
            uint8_t earlier[8];
            const bool padded = !chunks.empty() && (chunks.back().size & 1) != 0;
            if (!padded || file.readAt(at - 1, earlier) != 8 || !plausibleId(earlier))
                break;
            --at;
            std::memcpy(head, earlier, 8);
        }
        Chunk chunk;
        chunk.id = fourCc(head);
        chunk.offset = at + 8;
        const uint64_t room = end - chunk.offset;
        const uint32_t told = littleEndian32(head + 4);
        uint64_t size = told;
        if (chunk.id == "data") {
            if (large && told == kUnknownSize && ds64)
                size = ds64->data;
            else if (told == 0) {
                uint8_t next[4];
                const bool nothingFollows = file.readAt(chunk.offset, next) != 4 || !plausibleId(next);
                if (nothingFollows)
                    size = room;
            }
        }
        chunk.cut = size > room;
        chunk.size = std::min(size, room);
        if (chunk.id == "ds64" && large)
            ds64 = readDs64(file, chunk);
        chunks.push_back(chunk);
        at = chunk.offset + chunk.size;
        if ((chunk.size & 1) != 0 && at < end)
            ++at;
    }
    return chunks;
}

} // namespace

const Chunk* Riff::find(std::string_view id) const
{
    const auto found = std::find_if(chunks.begin(), chunks.end(), [&](const Chunk& chunk) { return chunk.id == id; });
    return found == chunks.end() ? nullptr : &*found;
}

std::vector<Chunk> readChunks(ByteReader& file, uint64_t begin, uint64_t end) { return walk(file, begin, end, false); }

std::optional<Riff> readRiff(ByteReader& file, uint64_t begin)
{
    uint8_t head[12];
    if (file.readAt(begin, head) != 12)
        return std::nullopt;
    Riff riff;
    const FourCc container = fourCc(head);
    riff.large = container == "RF64" || container == "BW64";
    if (!riff.large && !(container == "RIFF"))
        return std::nullopt;
    riff.form = fourCc(head + 8);
    riff.begin = begin;
    riff.chunks = walk(file, begin + 12, file.size(), riff.large);
    return riff;
}

} // namespace vbmp3

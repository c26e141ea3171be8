#include "libraries/vbmp3/tag_bounds.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace vbmp3 {
namespace {

constexpr int kMaxFrontTags = 16;

std::string_view textOf(std::span<const uint8_t> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

bool syncsafe(const uint8_t* p) { return ((p[0] | p[1] | p[2] | p[3]) & 0x80) == 0; }

uint32_t syncsafeValue(const uint8_t* p)
{
    return uint32_t(p[0]) << 21 | uint32_t(p[1]) << 14 | uint32_t(p[2]) << 7 | p[3];
}

// Length of an ID3v2 tag (id3.org, version 2.4.0 section 3.1) with its head, and its foot when it has one.
std::optional<uint64_t> id3v2Length(const std::vector<uint8_t>& head)
{
    if (head.size() < 10 || std::memcmp(head.data(), "ID3", 3) != 0 || head[3] == 0xFF || head[4] == 0xFF
        || !syncsafe(head.data() + 6))
        return std::nullopt;
    const bool footer = head[3] >= 4 && (head[5] & 0x10) != 0;
    return 10 + uint64_t(syncsafeValue(head.data() + 6)) + (footer ? 10 : 0);
}

class TailScan {
public:
    TailScan(ByteReader& file, TagBounds& bounds) : file_(file), bounds_(bounds) {}

    bool step() { return id3v1() || lyrics3() || ape() || appendedId3v2(); }

private:
    std::vector<uint8_t> before(uint64_t end, size_t count)
    {
        if (end - bounds_.audio.begin < count)
            return {};
        auto bytes = file_.bytes(end - count, count);
        return bytes.size() == count ? bytes : std::vector<uint8_t>{};
    }

    bool take(std::optional<Range>& where, uint64_t length)
    {
        uint64_t& end = bounds_.audio.end;
        if (where || length > end - bounds_.audio.begin)
            return false;
        where = Range{end - length, end};
        end -= length;
        return true;
    }

    bool id3v1()
    {
        const auto tag = before(bounds_.audio.end, 128);
        if (tag.empty() || std::memcmp(tag.data(), "TAG", 3) != 0 || !take(bounds_.id3v1, 128))
            return false;
        const auto enhanced = before(bounds_.audio.end, 227);
        if (!enhanced.empty() && std::memcmp(enhanced.data(), "TAG+", 4) == 0)
            take(bounds_.id3v1Enhanced, 227);
        return true;
    }

    // Version 2 ends with its length as six digits and LYRICS200; version 1 is at most 5100 bytes of text that ends
    // with LYRICSEND (id3.org, Lyrics3).
    bool lyrics3()
    {
        const uint64_t end = bounds_.audio.end;
        const auto foot = before(end, 15);
        if (!foot.empty() && textOf(foot).ends_with("LYRICS200")) {
            uint64_t length = 0;
            for (int i = 0; i < 6; ++i) {
                if (foot[size_t(i)] < '0' || foot[size_t(i)] > '9')
                    return false;
                length = length * 10 + (foot[size_t(i)] - '0');
            }
            length += 15;
            if (length > end - bounds_.audio.begin || textOf(file_.bytes(end - length, 11)) != "LYRICSBEGIN")
                return false;
            return take(bounds_.lyrics3, length);
        }
        if (foot.empty() || !textOf(foot).ends_with("LYRICSEND"))
            return false;
        const size_t most = size_t(std::min<uint64_t>(5100 + 20, end - bounds_.audio.begin));
        const auto block = before(end, most);
        const size_t begin = textOf(block).rfind("LYRICSBEGIN");
        return begin != std::string_view::npos && take(bounds_.lyrics3, most - begin);
    }

    bool ape()
    {
        const auto foot = before(bounds_.audio.end, 32);
        if (foot.empty() || std::memcmp(foot.data(), "APETAGEX", 8) != 0)
            return false;
        const uint64_t length = littleEndian32(foot.data() + 12);
        const bool header = (littleEndian32(foot.data() + 20) & 0x80000000u) != 0;
        return length >= 32 && take(bounds_.ape, length + (header ? 32 : 0));
    }

    bool appendedId3v2()
    {
        const uint64_t end = bounds_.audio.end;
        const auto foot = before(end, 10);
        if (foot.empty() || std::memcmp(foot.data(), "3DI", 3) != 0 || !syncsafe(foot.data() + 6))
            return false;
        const uint64_t length = 20 + uint64_t(syncsafeValue(foot.data() + 6));
        if (length > end - bounds_.audio.begin || textOf(file_.bytes(end - length, 3)) != "ID3")
            return false;
        bounds_.id3v2.push_back({end - length, end});
        bounds_.audio.end -= length;
        return true;
    }

    ByteReader& file_;
    TagBounds& bounds_;
};

} // namespace

TagBounds findTags(ByteReader& file, uint64_t begin, uint64_t end)
{
    TagBounds bounds;
    end = std::min(end, file.size());
    begin = std::min(begin, end);
    bounds.audio = {begin, end};
    for (int i = 0; i < kMaxFrontTags; ++i) {
        const auto length = id3v2Length(file.bytes(bounds.audio.begin, 10));
        if (!length || bounds.audio.begin >= end)
            break;
        const uint64_t tagEnd = std::min(bounds.audio.begin + *length, end);
        bounds.id3v2.push_back({bounds.audio.begin, tagEnd});
        bounds.audio.begin = tagEnd;
    }
    TailScan tail(file, bounds);
    while (tail.step()) {
    }
    return bounds;
}

} // namespace vbmp3

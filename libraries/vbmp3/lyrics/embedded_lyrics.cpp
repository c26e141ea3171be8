#include "libraries/vbmp3/lyrics/embedded_lyrics.h"

#include "libraries/vbmp3/lyrics/id3v2_lyrics.h"
#include "libraries/vbmp3/lyrics/lyrics3.h"
#include "libraries/vbmp3/lyrics/lyrics_text.h"
#include "libraries/vbmp3/tags/id3v2_walk.h"
#include "libraries/vbmp3/tags/tag_reader.h"

namespace vbmp3 {
namespace {

constexpr int kMostFrames = 10000;

std::optional<EmbeddedLyrics> ReadLyrics3(const ByteSource& file, const TagBlock& block) {
    if (block.range.size() > kMostLyricsBytes) return std::nullopt;
    std::string raw(static_cast<size_t>(block.range.size()), '\0');
    raw.resize(file.readAt(block.range.begin, raw.data(), raw.size()));
    auto parsed = ParseLyrics3({reinterpret_cast<const uint8_t*>(raw.data()), raw.size()});
    if (!parsed || parsed->lyrics.empty()) return std::nullopt;
    return EmbeddedLyrics{
        parsed->version,           std::move(raw),           std::move(parsed->lyrics), std::move(parsed->title),
        std::move(parsed->artist), std::move(parsed->album), std::move(parsed->author)};
}

// Of several frames the first that can be used, synchronised ones first.
std::optional<std::string> ReadId3v2Lyrics(const ByteSource& file, const TagBlock& block, double msPerMpegFrame) {
    HeadTailReader reader(file);
    auto walk = Id3v2Walk::open(reader, block.range);
    if (!walk) return std::nullopt;
    std::optional<std::string> unsynchronised;
    FrameView frame;
    for (int n = 0; n < kMostFrames && walk->next(frame); ++n) {
        const bool synchronised = frame.name() == "SYLT" || frame.name() == "SLT";
        if (!synchronised && frame.name() != "USLT" && frame.name() != "ULT") continue;
        const auto contents = walk->contents(frame, kMostLyricsBytes);
        if (!contents) continue;
        if (synchronised) {
            if (auto text = ReadSylt(*contents, msPerMpegFrame)) return text;
        } else if (!unsynchronised) {
            unsynchronised = ReadUslt(*contents);
        }
    }
    return unsynchronised;
}

}  // namespace

std::optional<EmbeddedLyrics> ReadEmbeddedLyrics(const ByteSource& file, const FileLayout& layout,
                                                 double msPerMpegFrame) {
    for (const TagBlock& block : layout.tags) {
        if (block.kind != TagKind::Lyrics3) continue;
        if (auto lyrics = ReadLyrics3(file, block)) return lyrics;
    }
    const TagBlock* id3v2 = FindId3v2(layout);
    if (id3v2 == nullptr) return std::nullopt;
    auto text = ReadId3v2Lyrics(file, *id3v2, msPerMpegFrame);
    if (!text) return std::nullopt;
    EmbeddedLyrics lyrics;
    lyrics.raw = *text;
    lyrics.text = std::move(*text);
    return lyrics;
}

}  // namespace vbmp3

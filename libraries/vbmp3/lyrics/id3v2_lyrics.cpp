#include "libraries/vbmp3/lyrics/id3v2_lyrics.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <vector>

#include "text/encoding.h"

namespace vbmp3 {
namespace {

constexpr int kLatin1 = 0, kUtf16 = 1, kUtf16BigEndian = 2, kUtf8 = 3;
constexpr int64_t kLatestMs = int64_t{99} * 3600 * 1000;

// Texts that follow one another in a frame, each ended by a NUL of the encoding's width.
class TextReader {
  public:
    TextReader(int encoding, std::span<const uint8_t> bytes)
        : wide_(encoding == kUtf16 || encoding == kUtf16BigEndian),
          rest_(reinterpret_cast<const char*>(bytes.data()), bytes.size()) {}

    size_t left() const { return rest_.size(); }

    // The bytes up to the terminator, which is skipped; all that is left when there is none.
    std::string_view next() {
        size_t end = 0;
        if (wide_) {
            while (end + 1 < rest_.size() && (rest_[end] != '\0' || rest_[end + 1] != '\0')) end += 2;
            end = std::min(end, rest_.size());
        } else {
            end = std::min(rest_.find('\0'), rest_.size());
        }
        return take(end, wide_ ? 2 : 1);
    }

    std::string_view take(size_t bytes, size_t skip = 0) {
        const std::string_view taken = rest_.substr(0, bytes);
        rest_.remove_prefix(std::min(rest_.size(), bytes + skip));
        return taken;
    }

  private:
    bool wide_;
    std::string_view rest_;
};

// Decodes the texts of one frame alike.
class Decoder {
  public:
    // `all` is everything that will be decoded: what claims Latin-1 is too short in a single syllable to tell what it
    // really is.
    Decoder(int encoding, std::string_view all) : encoding_(encoding) {
        if (encoding_ == kUtf16 || encoding_ == kUtf16BigEndian) return;
        if (encoding_ == kUtf8 && quenlox::IsValidUtf8(all)) return;
        encoding_ = kLatin1;
        const std::string guess = quenlox::DecodeLegacyField(all);
        if (guess == all) {
            encoding_ = kUtf8;
        } else if (guess == quenlox::ShiftJisToUtf8(all)) {
            shiftJis_ = true;
        }
    }

    std::string operator()(std::string_view text) {
        if (encoding_ == kUtf8) {
            if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
            // What is valid as a whole may be cut inside a character.
            if (!quenlox::IsValidUtf8(text)) return quenlox::Utf16ToUtf8(quenlox::Utf8ToUtf16(text));
            return std::string(text);
        }
        if (encoding_ == kUtf16BigEndian) return quenlox::Utf16BytesToUtf8(text, true);
        if (encoding_ != kUtf16) return shiftJis_ ? quenlox::ShiftJisToUtf8(text) : quenlox::Latin1ToUtf8(text);
        // A byte-order mark holds for the texts behind it too: many writers put it before the first one only.
        if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
            bigEndian_ = text[0] == '\xFE';
            text.remove_prefix(2);
        }
        return quenlox::Utf16BytesToUtf8(text, bigEndian_);
    }

  private:
    int encoding_;
    bool shiftJis_ = false;
    bool bigEndian_ = false;
};

struct Entry {
    int64_t ms = 0;
    std::string_view bytes;
    std::string text;
};

bool IsBreak(char c) { return c == '\n' || c == '\r'; }

std::string StampText(int64_t ms, char open, char close) {
    char text[32];
    std::snprintf(text, sizeof text, "%c%02lld:%02lld.%03lld%c", open, static_cast<long long>(ms / 60000),
                  static_cast<long long>(ms / 1000 % 60), static_cast<long long>(ms % 1000), close);
    return text;
}

// Syllables follow one another until one begins (or ends) with a line break; without any break inside, each entry is a
// line of its own.
std::string Arrange(const std::vector<Entry>& entries) {
    bool syllables = false;
    for (size_t i = 0; i < entries.size(); ++i) {
        const std::string& text = entries[i].text;
        syllables |= i > 0 && !text.empty() && IsBreak(text.front());
        syllables |= i + 1 < entries.size() && !text.empty() && IsBreak(text.back());
    }
    // When every entry ends with a break, they are lines all the same.
    if (std::all_of(entries.begin(), entries.end() - 1,
                    [](const Entry& e) { return !e.text.empty() && IsBreak(e.text.back()); }))
        syllables = false;

    std::string lrc;
    bool fresh = true;
    for (const Entry& entry : entries) {
        std::string_view text = entry.text;
        while (!text.empty() && IsBreak(text.front())) {
            text.remove_prefix(1);
            fresh = true;
        }
        const bool endsLine = !text.empty() && IsBreak(text.back());
        while (!text.empty() && IsBreak(text.back())) text.remove_suffix(1);
        if (fresh || !syllables) lrc.append(lrc.empty() ? "" : "\r\n").append(StampText(entry.ms, '[', ']'));
        if (syllables) lrc += StampText(entry.ms, '<', '>');
        std::string flat(text);
        std::replace_if(flat.begin(), flat.end(), IsBreak, ' ');
        lrc += flat;
        fresh = endsLine;
    }
    return lrc;
}

}  // namespace

std::optional<std::string> ReadSylt(std::span<const uint8_t> contents, double msPerMpegFrame) {
    // Encoding, language (three bytes), format of the stamps, kind of content; then a description.
    if (contents.size() < 6) return std::nullopt;
    const int encoding = contents[0], stampFormat = contents[4], kind = contents[5];
    const bool frames = stampFormat == 1;
    if (kind > 2 || (!frames && stampFormat != 2) || (frames && !(msPerMpegFrame > 0.0))) return std::nullopt;
    TextReader reader(encoding, contents.subspan(6));
    const std::string_view description = reader.next();
    std::vector<Entry> entries;
    std::string all;
    while (reader.left() > 4) {
        Entry entry;
        entry.bytes = reader.next();
        const std::string_view time = reader.take(4);
        if (time.size() < 4) break;
        uint32_t value = 0;
        for (const char byte : time) value = value << 8 | static_cast<uint8_t>(byte);
        entry.ms = static_cast<int64_t>(value * (frames ? msPerMpegFrame : 1.0));
        if (entry.ms >= kLatestMs) continue;
        all += entry.bytes;
        entries.push_back(entry);
    }
    Decoder decode(encoding, all);
    if (encoding == kUtf16) decode(description);  // for its byte-order mark
    bool anyText = false;
    for (Entry& entry : entries) {
        entry.text = decode(entry.bytes);
        anyText |= entry.text.find_first_not_of(" \t\r\n") != std::string::npos;
    }
    if (!anyText) return std::nullopt;
    return Arrange(entries);
}

std::optional<std::string> ReadUslt(std::span<const uint8_t> contents) {
    if (contents.size() < 5) return std::nullopt;
    TextReader reader(contents[0], contents.subspan(4));
    const std::string_view description = reader.next();
    const std::string_view bytes = reader.next();
    Decoder decode(contents[0], bytes);
    if (contents[0] == kUtf16) decode(description);  // for its byte-order mark
    std::string text = decode(bytes);
    if (text.find_first_not_of(" \t\r\n") == std::string::npos) return std::nullopt;
    return text;
}

}  // namespace vbmp3

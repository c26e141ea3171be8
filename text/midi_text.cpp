#include "text/midi_text.h"

#include <algorithm>
#include <cstdint>
#include <optional>

#include "text/encoding.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr std::size_t kChunkHead = 8;
constexpr int kText = 1;
constexpr int kTrackName = 3;
constexpr int kEndOfTrack = 0x2F;

std::uint32_t Number(std::string_view bytes, bool bigEndian) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value << 8 | static_cast<unsigned char>(bytes[bigEndian ? i : 3 - i]);
    }
    return value;
}

// Takes bytes from the front of a track; what is not there makes it fail, and it stays failed.
class TrackReader {
  public:
    explicit TrackReader(std::string_view bytes) : rest_(bytes) {}

    bool failed() const { return failed_; }
    bool atEnd() const { return failed_ || rest_.empty(); }
    int peek() const { return rest_.empty() ? -1 : static_cast<unsigned char>(rest_.front()); }
    int byte() { return static_cast<unsigned char>(take(1).front()); }
    std::uint32_t variableLength() {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            const int next = byte();
            value = value << 7 | static_cast<std::uint32_t>(next & 0x7F);
            if (next < 0x80) return value;
        }
        failed_ = true;
        return 0;
    }
    // "\0" instead when there are fewer.
    std::string_view take(std::size_t count) {
        if (failed_ || count > rest_.size()) {
            failed_ = true;
            return {"\0", 1};
        }
        const std::string_view taken = rest_.substr(0, count);
        rest_.remove_prefix(count);
        return taken;
    }

  private:
    std::string_view rest_;
    bool failed_ = false;
};

std::string Cleaned(std::string_view text) {
    std::string decoded = DecodeLegacyField(text.substr(0, text.find('\0')));
    std::ranges::replace_if(
        decoded, [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return TrimAtNull(decoded);
}

struct TrackTexts {
    std::string name;
    std::string text;
};

TrackTexts ReadTrack(std::string_view track) {
    TrackTexts texts;
    TrackReader reader(track);
    int runningStatus = 0;
    while (!reader.atEnd() && texts.name.empty()) {
        reader.variableLength();  // time since the event before
        const int status = reader.peek() >= 0x80 ? reader.byte() : runningStatus;
        if (status == 0xFF) {
            const int type = reader.byte();
            const std::string_view content = reader.take(reader.variableLength());
            if (reader.failed() || type == kEndOfTrack) break;
            if (type == kTrackName) texts.name = Cleaned(content);
            if (type == kText && texts.text.empty()) texts.text = Cleaned(content);
        } else if (status == 0xF0 || status == 0xF7) {
            reader.take(reader.variableLength());
        } else if (status >= 0x80 && status < 0xF0) {
            runningStatus = status;
            reader.take((status & 0xE0) == 0xC0 ? 1 : 2);  // program change and channel pressure carry one byte
        } else {
            break;
        }
    }
    return texts;
}

// The chunks of a MIDI file out of a RIFF file of form RMID; the bytes themselves when they are none.
std::string_view WithoutRiff(std::string_view bytes) {
    if (bytes.size() < 12 || bytes.substr(0, 4) != "RIFF" || bytes.substr(8, 4) != "RMID") return bytes;
    bytes.remove_prefix(12);
    while (bytes.size() >= kChunkHead) {
        const std::size_t length = std::min<std::size_t>(Number(bytes.substr(4), false), bytes.size() - kChunkHead);
        if (bytes.substr(0, 4) == "data") return bytes.substr(kChunkHead, length);
        bytes.remove_prefix(std::min(kChunkHead + length + length % 2, bytes.size()));
    }
    return {};
}

}  // namespace

std::string MidiTitle(std::string_view bytes) {
    bytes = WithoutRiff(bytes);
    if (bytes.substr(0, 4) != "MThd") return {};
    std::optional<std::string> firstText;
    while (bytes.size() >= kChunkHead) {
        const bool isTrack = bytes.substr(0, 4) == "MTrk";
        const std::size_t length = std::min<std::size_t>(Number(bytes.substr(4), true), bytes.size() - kChunkHead);
        const std::string_view content = bytes.substr(kChunkHead, length);
        bytes.remove_prefix(kChunkHead + length);
        if (!isTrack) continue;
        TrackTexts texts = ReadTrack(content);
        if (!texts.name.empty()) return std::move(texts.name);
        if (!firstText) firstText = std::move(texts.text);
        if (!firstText->empty()) break;
    }
    return firstText.value_or("");
}

}  // namespace quenlox

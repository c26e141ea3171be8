#include "libraries/vbmp3/tags/id3v2_text.h"

#include <algorithm>

#include "libraries/vbmp3/tags/legacy_text.h"
#include "text/encoding.h"

namespace vbmp3 {
namespace {

std::string_view AsText(std::span<const uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Some writers leave the byte-order mark out. Western and Japanese texts have many units with the high byte 0 (ASCII),
// 0x30 (kana, punctuation) or 0xFF (full width); on which side of the pair these stand tells the order.
bool LooksBigEndian(std::span<const uint8_t> bytes) {
    int even = 0, odd = 0;
    for (size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto common = [](uint8_t b) { return b == 0 || b == 0x30 || b == 0xFF; };
        even += common(bytes[i]);
        odd += common(bytes[i + 1]);
    }
    return even > odd;
}

std::string DecodeUtf16(std::span<const uint8_t> bytes, bool& bigEndian, bool& orderKnown, int encoding) {
    if (bytes.size() >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE) {
        bigEndian = false;
        orderKnown = true;
        bytes = bytes.subspan(2);
    } else if (bytes.size() >= 2 && bytes[0] == 0xFE && bytes[1] == 0xFF) {
        bigEndian = true;
        orderKnown = true;
        bytes = bytes.subspan(2);
    } else if (!orderKnown) {
        bigEndian = encoding == 2 || LooksBigEndian(bytes);
        orderKnown = encoding == 2;
    }
    return quenlox::Utf16BytesToUtf8(AsText(bytes), bigEndian);
}

// A text that says UTF-8 and is it but for a few bytes loses those and no more. Others are taken for what their bytes
// look like, for writers that did not convert.
std::string DecodeUtf8(std::span<const uint8_t> bytes) {
    const std::string_view text = AsText(bytes);
    if (quenlox::IsValidUtf8(text)) return LegacyText(bytes);
    const std::string mended = quenlox::Utf16ToUtf8(quenlox::Utf8ToUtf16(text));
    constexpr std::string_view kBad = "\xEF\xBF\xBD";
    size_t bad = 0, high = 0;
    for (size_t at = 0; (at = mended.find(kBad, at)) != std::string::npos; at += kBad.size()) ++bad;
    for (const char c : mended) high += static_cast<signed char>(c) < 0;
    const size_t good = high - bad * kBad.size();
    // Half-width kana of Shift-JIS happen to make pairs of UTF-8, Western letters do not.
    const bool isUtf8 = quenlox::IsValidShiftJis(text) ? good > 2 * bad : good > 0 && good >= bad;
    return isUtf8 ? std::string(Trimmed(mended)) : LegacyText(bytes);
}

// Where the first part ends.
size_t EndOfPart(std::span<const uint8_t> bytes, bool wide) {
    if (!wide) return static_cast<size_t>(std::find(bytes.begin(), bytes.end(), uint8_t{0}) - bytes.begin());
    size_t i = 0;
    while (i + 1 < bytes.size() && (bytes[i] != 0 || bytes[i + 1] != 0)) i += 2;
    return i + 1 < bytes.size() ? i : bytes.size();
}

}  // namespace

std::vector<std::string> SplitId3v2Text(int encoding, std::span<const uint8_t> bytes, size_t most) {
    std::vector<std::string> parts;
    const bool wide = encoding == 1 || encoding == 2;
    bool bigEndian = false, orderKnown = false;
    while (parts.size() < most) {
        const size_t end = EndOfPart(bytes, wide);
        const auto part = bytes.first(end);
        parts.push_back(wide            ? DecodeUtf16(part, bigEndian, orderKnown, encoding)
                        : encoding == 3 ? DecodeUtf8(part)
                                        : LegacyText(part));
        if (end >= bytes.size()) break;
        bytes = bytes.subspan(std::min(bytes.size(), end + (wide ? 2 : 1)));
    }
    return parts;
}

std::string JoinId3v2Text(int encoding, std::span<const uint8_t> bytes) {
    std::string all;
    for (const std::string& part : SplitId3v2Text(encoding, bytes)) {
        const std::string_view text = Trimmed(part);
        if (text.empty()) continue;
        if (!all.empty()) all += " / ";
        all += text;
    }
    return all;
}

int EncodingFor(std::string_view utf8, int version) {
    if (std::all_of(utf8.begin(), utf8.end(), [](char c) { return static_cast<signed char>(c) >= 0; })) return 0;
    return version == 4 ? 3 : 1;
}

void AppendId3v2Text(std::vector<uint8_t>& out, std::string_view utf8, int encoding, bool terminated) {
    if (encoding == 1) {
        out.insert(out.end(), {0xFF, 0xFE});
        for (const char16_t unit : quenlox::Utf8ToUtf16(utf8)) {
            out.push_back(static_cast<uint8_t>(unit & 0xFF));
            out.push_back(static_cast<uint8_t>(unit >> 8));
        }
        if (terminated) out.insert(out.end(), {0, 0});
    } else {
        out.insert(out.end(), utf8.begin(), utf8.end());
        if (terminated) out.push_back(0);
    }
}

}  // namespace vbmp3

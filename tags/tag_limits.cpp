#include "tags/tag_limits.h"

#include <array>
#include <string>

#include "text/encoding.h"

namespace quenlox {
namespace {

constexpr int kTrack = 5, kComment = 6, kUnlimited = 1 << 20;
constexpr std::array<int, 7> kId3v1Bytes{30, 30, 30, kUnlimited, 4, kUnlimited, 30};
constexpr int kTrackBytes = 2;

bool IsTrackNumber(std::string_view text) {
    // "3/12" is a track of how many, of which the first number is kept.
    text = text.substr(0, text.find('/'));
    if (text.empty() || text.size() > 3 || text.find_first_not_of("0123456789") != text.npos) return false;
    const int number = std::stoi(std::string(text));
    return number >= 1 && number <= 255;
}

}  // namespace

bool FitsId3v1(int field, std::string_view text, bool withTrack) {
    if (text.empty()) return true;
    if (field == kTrack) return IsTrackNumber(text);
    const auto bytes = Utf8ToShiftJis(text);
    const int room = kId3v1Bytes[static_cast<std::size_t>(field)] - (field == kComment && withTrack ? kTrackBytes : 0);
    return bytes && static_cast<int>(bytes->size()) <= room;
}

}  // namespace quenlox

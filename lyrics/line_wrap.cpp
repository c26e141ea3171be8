#include "lyrics/line_wrap.h"

#include <algorithm>
#include <utility>

namespace quenlox {
namespace {

constexpr std::string_view kNotAtFront =
    "、。，．・：；？！）］｝」』】〉》〕’”ー〜～々…‥ぁぃぅぇぉっゃゅょゎァィゥェォッャュョヮヵヶ､｡｣ｰ,.;:?!)]}%";
constexpr std::string_view kNotAtEnd = "（［｛「『【〈《〔‘“｢([{";
// From here on (CJK radicals) characters are written without blanks between words.
constexpr unsigned kFirstWide = 0x2E80;

std::size_t NextCharacter(std::string_view utf8, std::size_t at) {
    ++at;
    while (at < utf8.size() && (static_cast<unsigned char>(utf8[at]) & 0xC0) == 0x80) ++at;
    return at;
}

// Wide enough a view for the question: three bytes tell the range.
bool IsWide(std::string_view character) {
    if (character.size() > 3) return true;
    if (character.size() < 3) return false;
    const auto bits = [&](std::size_t i, unsigned mask) { return static_cast<unsigned char>(character[i]) & mask; };
    return (bits(0, 0x0F) << 12 | bits(1, 0x3F) << 6 | bits(2, 0x3F)) >= kFirstWide;
}

bool MayBreak(std::string_view before, std::string_view after) {
    if (before == " ") return after != " ";
    if (after == " ") return false;
    if (before == "-") return true;
    if (!IsWide(before) && !IsWide(after)) return false;
    return kNotAtEnd.find(before) == std::string_view::npos && kNotAtFront.find(after) == std::string_view::npos;
}

// Where a line may end, rising; the last is the end of the text.
std::vector<std::size_t> Breaks(std::string_view utf8) {
    std::vector<std::size_t> breaks;
    std::string_view before;
    for (std::size_t at = 0; at < utf8.size();) {
        const std::size_t next = NextCharacter(utf8, at);
        const std::string_view character = utf8.substr(at, next - at);
        if (!before.empty() && MayBreak(before, character)) breaks.push_back(at);
        before = character;
        at = next;
    }
    breaks.push_back(utf8.size());
    return breaks;
}

std::size_t WithoutBlanks(std::string_view utf8, std::size_t begin, std::size_t end) {
    while (end > begin && utf8[end - 1] == ' ') --end;
    return end;
}

// How many of `count`, from the first, fit: found by ever larger steps, or the whole text would be measured for each
// line.
template <class Fits>
std::size_t CountThatFits(std::size_t count, const Fits& fits) {
    std::size_t good = 0, bad = 1;
    while (bad <= count && fits(bad - 1)) good = std::exchange(bad, bad * 2);
    bad = std::min(bad, count + 1);
    while (bad - good > 1) {
        const std::size_t middle = (good + bad) / 2;
        (fits(middle - 1) ? good : bad) = middle;
    }
    return good;
}

}  // namespace

std::vector<TextPart> WrapText(std::string_view utf8,
                               const std::function<bool(std::string_view part, std::size_t line)>& fits) {
    std::vector<TextPart> parts;
    const std::vector<std::size_t> breaks = Breaks(utf8);
    std::size_t begin = 0;
    auto next = breaks.begin();
    while (begin < utf8.size()) {
        const auto until = [&](std::size_t end) { return utf8.substr(begin, WithoutBlanks(utf8, begin, end) - begin); };
        const std::size_t count = CountThatFits(static_cast<std::size_t>(breaks.end() - next), [&](std::size_t n) {
            return fits(until(next[static_cast<std::ptrdiff_t>(n)]), parts.size());
        });
        std::size_t end = 0;
        if (count > 0) {
            end = next[static_cast<std::ptrdiff_t>(count) - 1];
        } else {
            end = NextCharacter(utf8, begin);
            for (std::size_t more = end; end < *next; end = more) {
                more = NextCharacter(utf8, end);
                if (!fits(until(more), parts.size())) break;
            }
        }
        parts.push_back({begin, WithoutBlanks(utf8, begin, end)});
        begin = end;
        next = std::upper_bound(next, breaks.end(), begin);
    }
    return parts;
}

}  // namespace quenlox

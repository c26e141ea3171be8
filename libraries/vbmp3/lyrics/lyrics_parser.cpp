#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "libraries/vbmp3/lyrics/lyrics_text.h"
#include "libraries/vbmp3/lyrics/stamps.h"

namespace vbmp3 {
namespace {

constexpr size_t kMostLines = 20000;
// A line of many stamps is repeated that often; together the repetitions stay below this.
constexpr size_t kMostRepeatedBytes = 4 << 20;

constexpr std::array<std::string_view, 7> kLongNames = {"offset", "length", "title",   "artist",
                                                        "album",  "author", "encoding"};

std::string_view Trim(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\f' || c == '\r'; };
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    return text;
}

std::string Lowered(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    return lower;
}

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

struct Item {
    std::string name, value;
    bool atMark = false;
};

// "[ti:...]" as a whole line: a short name, or a long one that is in use, so that "[Chorus: all]" stays text.
std::optional<Item> ReadIdTag(std::string_view line) {
    if (line.size() < 3 || line.front() != '[' || line.back() != ']') return std::nullopt;
    const std::string_view inside = line.substr(1, line.size() - 2);
    const size_t colon = inside.find(':');
    if (colon == 0 || colon == std::string_view::npos) return std::nullopt;
    const std::string_view name = Trim(inside.substr(0, colon));
    std::string known = Lowered(name);
    if (known != "#") {
        if (known.empty() || !std::all_of(known.begin(), known.end(), IsLetter)) return std::nullopt;
        const bool inUse = std::find(kLongNames.begin(), kLongNames.end(), known) != kLongNames.end();
        if (known.size() > 3 && !inUse) return std::nullopt;
    }
    return Item{std::move(known), std::string(Trim(inside.substr(colon + 1))), false};
}

// "@Title=...", "@Ruby1=..." as a whole line.
std::optional<Item> ReadAtMark(std::string_view line) {
    if (line.empty() || line.front() != '@') return std::nullopt;
    const size_t equals = line.find('=');
    if (equals == std::string_view::npos) return std::nullopt;
    std::string_view name = Trim(line.substr(1, equals - 1));
    while (!name.empty() && name.back() >= '0' && name.back() <= '9') name.remove_suffix(1);
    if (name.empty() || !std::all_of(name.begin(), name.end(), IsLetter)) return std::nullopt;
    return Item{Lowered(name), std::string(Trim(line.substr(equals + 1))), true};
}

// Milliseconds with a sign or without, up to an hour either way.
int64_t ReadOffset(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    int value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return std::clamp(value, -3600000, 3600000);
}

class Parser {
  public:
    Parser(LyricsFormat format, const LyricsRules& rules) : format_(format), rules_(rules) {}

    Lyrics parse(std::string_view text) {
        while (!text.empty() && seen_ < 4 * kMostLines) {
            const size_t end = std::min(text.size(), text.find_first_of("\r\n"));
            readLine(Trim(text.substr(0, end)));
            ++seen_;
            const bool pair = text.substr(end).starts_with("\r\n");
            text.remove_prefix(std::min(text.size(), end + (pair ? 2 : 1)));
        }
        if (lyrics_.timed) {
            arrange();
        } else {
            for (Raw& raw : raws_) lyrics_.lines.push_back({0, std::move(raw.line.text), {}, {}});
            while (!lyrics_.lines.empty() && lyrics_.lines.back().text.empty()) lyrics_.lines.pop_back();
        }
        if (lyrics_.author.empty()) lyrics_.author = std::move(writer_);
        return std::move(lyrics_);
    }

  private:
    struct Raw {
        LyricsLine line;
        bool stamped = false;
    };

    void readLine(std::string_view line) {
        if (raws_.size() >= kMostLines) return;
        if (const auto tag = ReadIdTag(line)) return take(*tag);
        line = takeTagsInFront(line);
        if (rules_.atMarkTags)
            if (const auto mark = ReadAtMark(line)) return take(*mark);
        const bool kra = format_ == LyricsFormat::Kra;
        const bool stamped = ReadStamp(line, '[') || (kra && hasStamp(line));
        if (!stamped) {
            raws_.push_back({{0, std::string(line), {}, {}}, false});
            return;
        }
        lyrics_.timed = true;
        std::vector<int64_t> starts;
        while (const auto stamp = ReadStamp(line, '[')) {
            starts.push_back(stamp->ms);
            line.remove_prefix(stamp->length);
            // In a kra file the stamps behind the first one are of syllables without text.
            if (kra) break;
            const std::string_view next = Trim(line);
            if (!next.starts_with('[')) break;
            line = next;
        }
        addStamped(starts, line);
    }

    // "[offset:500][00:01.00]..." on one line: tags in front of a stamp are taken, and what is behind them remains.
    std::string_view takeTagsInFront(std::string_view line) {
        while (line.starts_with('[') && !ReadStamp(line, '[')) {
            const size_t end = line.find(']');
            const auto tag = end == std::string_view::npos ? std::nullopt : ReadIdTag(line.substr(0, end + 1));
            const std::string_view behind = tag ? Trim(line.substr(end + 1)) : std::string_view();
            if (!behind.starts_with('[')) break;
            take(*tag);
            line = behind;
        }
        return line;
    }

    static bool hasStamp(std::string_view line) {
        for (size_t at = line.find('['); at != std::string_view::npos; at = line.find('[', at + 1))
            if (ReadStamp(line.substr(at), '[')) return true;
        return false;
    }

    void take(const Item& item) {
        const auto fill = [&item](std::string& field) {
            if (field.empty()) field = item.value;
        };
        if (item.name == "ti" || item.name == "title") fill(lyrics_.title);
        if (item.name == "ar" || item.name == "artist") fill(lyrics_.artist);
        if (item.name == "al" || item.name == "album") fill(lyrics_.album);
        if (item.name == "au" || item.name == "author") fill(lyrics_.author);
        if ((item.name == "by" || item.name == "taggingby") && writer_.empty()) writer_ = item.value;
        // The two dialects disagree: a positive offset of an lrc shows the words sooner, that of an at-mark tag is
        // added to the stamps.
        if (item.name == "offset") later_ += ReadOffset(item.value) * (item.atMark ? 1 : -1);
    }

    // Splits the text at the stamps inside it and adds a line for each of `starts`.
    void addStamped(const std::vector<int64_t>& starts, std::string_view rest) {
        LyricsLine line;
        std::optional<int64_t> first;
        while (!rest.empty()) {
            auto stamp = ReadStamp(rest, '[');
            if (!stamp) stamp = ReadStamp(rest, '<');
            if (stamp) {
                if (!first) first = stamp->ms;
                const int64_t before = line.words.empty() ? 0 : line.words.back().ms;
                line.words.push_back({std::max(before, stamp->ms), line.text.size()});
                rest.remove_prefix(stamp->length);
            } else {
                const size_t next = std::min(rest.size(), rest.find_first_of("[<", 1));
                line.text += rest.substr(0, next);
                rest.remove_prefix(next);
            }
        }
        trimLine(line);
        line.ms = starts.empty() ? first.value_or(0) : starts.front();
        if (!line.words.empty() && line.words.front().byte > 0 && !starts.empty())
            line.words.insert(line.words.begin(), {line.ms, 0});
        for (LyricsWord& word : line.words) word.ms = std::max(word.ms, line.ms);

        raws_.push_back({line, true});
        for (size_t i = 1; i < starts.size() && raws_.size() < kMostLines; ++i) {
            repeated_ += line.text.size() + line.words.size() * sizeof(LyricsWord);
            if (repeated_ > kMostRepeatedBytes) break;
            raws_.push_back({line, true});
            LyricsLine& again = raws_.back().line;
            again.ms = starts[i];
            for (LyricsWord& word : again.words) word.ms += starts[i] - starts.front();
        }
    }

    // Blanks at both ends go, and the words move with the text.
    static void trimLine(LyricsLine& line) {
        const std::string_view kept = Trim(line.text);
        const auto front = kept.empty() ? line.text.size() : static_cast<size_t>(kept.data() - line.text.data());
        const size_t length = kept.size();
        for (LyricsWord& word : line.words) word.byte = std::min(word.byte < front ? 0 : word.byte - front, length);
        line.text = std::string(kept);
    }

    void arrange() {
        giveTimesToUnstamped();
        for (Raw& raw : raws_) {
            raw.line.ms += later_;
            for (LyricsWord& word : raw.line.words) word.ms += later_;
        }
        std::stable_sort(raws_.begin(), raws_.end(), [](const Raw& a, const Raw& b) { return a.line.ms < b.line.ms; });
        for (Raw& raw : raws_) {
            if (lyrics_.lines.empty() || lyrics_.lines.back().ms != raw.line.ms) {
                lyrics_.lines.push_back(std::move(raw.line));
            } else {
                join(lyrics_.lines.back(), std::move(raw.line));
            }
        }
    }

    // What stands above the first stamp is a heading and is spread over the time before it; elsewhere a line without a
    // stamp belongs to the one above.
    void giveTimesToUnstamped() {
        raws_.erase(std::remove_if(raws_.begin(), raws_.end(),
                                   [](const Raw& raw) { return !raw.stamped && raw.line.text.empty(); }),
                    raws_.end());
        const auto stamped = std::find_if(raws_.begin(), raws_.end(), [](const Raw& raw) { return raw.stamped; });
        const auto headings = stamped - raws_.begin();
        for (ptrdiff_t i = 0; i < headings; ++i) raws_[i].line.ms = stamped->line.ms * i / headings;
        int64_t above = 0;
        for (auto raw = stamped; raw != raws_.end(); ++raw) {
            if (raw->stamped) above = raw->line.ms;
            raw->line.ms = above;
        }
    }

    // A second line of the same time is the translation of the first.
    static void join(LyricsLine& line, LyricsLine&& other) {
        if (other.text.empty() || other.text == line.text || other.text == line.translation) {
            if (line.words.empty() && other.text == line.text) line.words = std::move(other.words);
        } else if (line.text.empty()) {
            line = std::move(other);
        } else if (line.translation.empty()) {
            line.translation = std::move(other.text);
        } else {
            line.translation.append("  ").append(other.text);
        }
    }

    LyricsFormat format_;
    LyricsRules rules_;
    Lyrics lyrics_;
    std::vector<Raw> raws_;
    size_t seen_ = 0;
    size_t repeated_ = 0;
    std::string writer_;  // of the stamps; serves when the author of the words is not named
    int64_t later_ = 0;   // what the offsets add to every stamp
};

}  // namespace

Lyrics ParseLyrics(std::string_view utf8, LyricsFormat format, const LyricsRules& rules) {
    return Parser(format, rules).parse(utf8);
}

}  // namespace vbmp3

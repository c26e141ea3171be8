#include "libraries/vbmp3/lyrics/lyrics_show.h"

#include <algorithm>
#include <climits>

#include "text/encoding.h"

namespace vbmp3 {
namespace {

// How long the last word of the last line is taken to last.
constexpr int64_t kLastWordMs = 2000;
// Of the record: the lines around the position, and the one beside them.
constexpr int kCurrentRow = 2, kExtraRow = 5;

int32_t AsStamp(int64_t ms) { return static_cast<int32_t>(std::clamp<int64_t>(ms, 0, INT32_MAX)); }

}  // namespace

void LyricsShow::set(std::string utf8, LyricsFormat format) {
    Lyrics lyrics = ParseLyrics(utf8, format, rules_);
    text_ = std::move(utf8);
    format_ = format;
    lyrics_ = std::move(lyrics);
    translated_ = std::any_of(lyrics_.lines.begin(), lyrics_.lines.end(),
                              [](const LyricsLine& line) { return !line.translation.empty(); });
    shown_ = -1;
    sought_ = false;
    heldAt_.reset();
}

void LyricsShow::clear() { set({}, LyricsFormat::Text); }

void LyricsShow::setAtMarkTags(bool on) {
    if (rules_.atMarkTags == on) return;
    rules_.atMarkTags = on;
    set(std::move(text_), format_);
}

void LyricsShow::noteSeek() { sought_ = true; }

int64_t LyricsShow::startOf(int line, int64_t lengthMs) const {
    if (lyrics_.timed) return lyrics_.lines[line].ms + shift_;
    return lengthMs * line / static_cast<int64_t>(lyrics_.lines.size());
}

int LyricsShow::lineAt(int64_t ms, int64_t lengthMs) const {
    const auto count = static_cast<int>(lyrics_.lines.size());
    if (!lyrics_.timed) {
        if (lengthMs <= 0 || ms < 0) return 0;
        const auto line = static_cast<int>(std::min<int64_t>(count - 1, ms * count / lengthMs));
        return line - line % untimedStep_;
    }
    const auto next = std::upper_bound(lyrics_.lines.begin(), lyrics_.lines.end(), ms - shift_,
                                       [](int64_t at, const LyricsLine& line) { return at < line.ms; });
    return static_cast<int>(next - lyrics_.lines.begin()) - 1;
}

bool LyricsShow::fill(int64_t positionMs, int64_t lengthMs, vbmp3_LyricsLines& record) {
    const uint32_t size = record.size;
    record = {};
    record.size = size;
    record.current = -1;
    record.progressBytes = -1;
    std::fill(std::begin(record.stampMs), std::end(record.stampMs), -1);
    record.total = static_cast<int>(lyrics_.lines.size());
    if (!runs()) return false;

    const int due = lineAt(positionMs, lengthMs);
    if (sought_ && !seekFollow_ && due != shown_) heldAt_ = due;
    sought_ = false;
    if (heldAt_ && due != *heldAt_) heldAt_.reset();
    if (!heldAt_) shown_ = due;

    record.current = shown_;
    for (int row = 0; row < VBMP3_LYRICS_ROWS; ++row) quenlox::PutUtf8(record.rows[row], rowText(row));
    for (int row = 0; row < kExtraRow; ++row) {
        if (const int line = shown_ - kCurrentRow + row; line >= 0 && line < record.total)
            record.stampMs[row] = AsStamp(startOf(line, lengthMs));
    }
    if (karaoke_ && shown_ >= 0) fillProgress(shown_, positionMs - shift_, record);
    return true;
}

std::string_view LyricsShow::rowText(int row) const {
    if (!runs() || row < 0 || row >= VBMP3_LYRICS_ROWS) return {};
    const bool translation = row == kExtraRow && translated_;
    const int line = translation ? shown_ : row == kExtraRow ? shown_ + 1 : shown_ - kCurrentRow + row;
    if (line < 0 || line >= static_cast<int>(lyrics_.lines.size())) return {};
    return translation ? lyrics_.lines[line].translation : lyrics_.lines[line].text;
}

void LyricsShow::fillProgress(int index, int64_t ms, vbmp3_LyricsLines& record) const {
    const LyricsLine& line = lyrics_.lines[index];
    const std::vector<LyricsWord>& words = line.words;
    if (words.empty() || line.text.empty()) return;
    double sung = 0.0;  // bytes
    const auto next = std::upper_bound(words.begin(), words.end(), ms,
                                       [](int64_t at, const LyricsWord& word) { return at < word.ms; });
    if (next != words.begin()) {
        const LyricsWord& word = *(next - 1);
        size_t endByte = line.text.size();
        int64_t endMs = word.ms + kLastWordMs;
        if (next != words.end()) {
            endByte = next->byte;
            endMs = next->ms;
        } else if (index + 1 < static_cast<int>(lyrics_.lines.size())) {
            endMs = std::min(endMs, std::max(word.ms, lyrics_.lines[index + 1].ms));
        }
        const double part =
            endMs > word.ms ? std::min(1.0, static_cast<double>(ms - word.ms) / static_cast<double>(endMs - word.ms))
                            : 1.0;
        sung = static_cast<double>(word.byte) + static_cast<double>(endByte - word.byte) * part;
    }
    record.progress = static_cast<int32_t>(sung * 1000.0 / static_cast<double>(line.text.size()));
    const std::string_view row(record.rows[2]);
    record.progressBytes =
        static_cast<int32_t>(quenlox::CutUtf8(row, std::min(row.size(), static_cast<size_t>(sung))).size());
}

}  // namespace vbmp3

// Which lines of the current lyrics to show at a position: the state behind the lyrics calls of the C interface. Lives
// on the caller's thread, reads no file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "libraries/vbmp3/lyrics/lyrics_text.h"
#include "libraries/vbmp3/vbmp3.h"

namespace vbmp3 {

class LyricsShow {
  public:
    // The text stays as it was read, so that a change of the rules can be applied to it.
    void set(std::string utf8, LyricsFormat format);
    void clear();
    bool empty() const { return lyrics_.lines.empty(); }
    const Lyrics& lyrics() const { return lyrics_; }
    const LyricsRules& rules() const { return rules_; }

    void setKaraoke(bool on) { karaoke_ = on; }
    void setAtMarkTags(bool on);
    // Untimed lyrics: 0 shows none of their lines; n spreads them over the length of the track, n lines at a step.
    void setUntimedStep(int lines) { untimedStep_ = lines > 0 ? lines : 0; }
    // True: the lines follow a seek at once; false: the line shown stays until the next one begins.
    void setSeekFollow(bool on) { seekFollow_ = on; }
    void setShift(int64_t ms) { shift_ = ms; }
    void noteSeek();

    // The rows at `positionMs` of a track of `lengthMs` (0 when not known). False, and no rows, when there is nothing
    // to show. `record.size` stays.
    bool fill(int64_t positionMs, int64_t lengthMs, vbmp3_LyricsLines& record);
    // A row of that record at any length, as fill() gave it last; empty when there is none.
    std::string_view rowText(int row) const;

  private:
    bool runs() const { return !lyrics_.lines.empty() && (lyrics_.timed || untimedStep_ > 0); }
    // Number of the line that is sung, -1 before the first.
    int lineAt(int64_t ms, int64_t lengthMs) const;
    int64_t startOf(int line, int64_t lengthMs) const;
    void fillProgress(int line, int64_t ms, vbmp3_LyricsLines& record) const;

    std::string text_;
    LyricsFormat format_ = LyricsFormat::Text;
    LyricsRules rules_;
    Lyrics lyrics_;
    bool translated_ = false;  // some line has a translation
    bool karaoke_ = true;
    bool seekFollow_ = true;
    int untimedStep_ = 0;
    int64_t shift_ = 0;
    int shown_ = -1;
    bool sought_ = false;
    std::optional<int> heldAt_;  // the line at the place of the seek, as long as another one stays shown
};

}  // namespace vbmp3

// Lyrics of the C interface.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "libraries/files/file_source.h"
#include "libraries/vbmp3/interface/library.h"
#include "libraries/vbmp3/interface/records.h"
#include "libraries/vbmp3/lyrics/embedded_lyrics.h"
#include "text/encoding.h"

namespace vbmp3 {
namespace {

using quenlox::PutUtf8;

// Puts a text of any length where the caller has room for it, and gives the bytes that it needs.
uint32_t GiveText(char* to, uint32_t size, std::string_view text) {
    if (to != nullptr) PutUtf8(to, size, text);
    return static_cast<uint32_t>(std::min<size_t>(text.size() + 1, UINT32_MAX));
}

// Those of the open file have been read with it.
std::optional<EmbeddedLyrics> ReadEmbedded(Library& self, const std::string& path, int& error) {
    error = VBMP3_OK;
    if (const TrackPtr track = self.player.current(); track && track->path == path) return track->lyrics;
    const auto file = OpenFile(path);
    error = VBMP3_ERROR_NOT_FOUND;
    if (!file) return std::nullopt;
    error = VBMP3_OK;
    const FileLayout layout = ScanFileLayout(*file);
    return LyricsInTags(*file, layout, Probe(*file, layout));
}

}  // namespace
}  // namespace vbmp3

using namespace vbmp3;

int32_t vbmp3_readLyrics3Data(char* raw, char* text) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        const TrackPtr track = self.player.current();
        if (!track) return Report(VBMP3_ERROR_NOT_OPEN);
        Report(VBMP3_OK);
        std::optional<EmbeddedLyrics> lyrics = track->lyrics;
        if (!lyrics) return 0;
        if (raw != nullptr) {
            const size_t length = std::min<size_t>(lyrics->raw.size(), VBMP3_LYRICS_TEXT - 1);
            std::memcpy(raw, lyrics->raw.data(), length);
            raw[length] = '\0';
        }
        if (text != nullptr) PutUtf8(text, VBMP3_LYRICS_TEXT, lyrics->text);
        self.lyrics.set(std::move(lyrics->text), LyricsFormat::Text);
        return 1;
    });
}

int32_t vbmp3_getFileLyrics3InfoVB(const char* path, vbmp3_Lyrics3Info* info) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        if (!IsRecord(info)) return Report(VBMP3_ERROR_ARGUMENT);
        const auto record = std::make_unique<vbmp3_Lyrics3Info>();
        if (info->size >= sizeof *info) {
            record->text = info->text;
            record->textSize = info->textSize;
        }
        int error = VBMP3_OK;
        const auto found = ReadEmbedded(self, TextOf(path), error);
        Report(error);
        if (found) {
            const Lyrics lyrics = ParseLyrics(found->text, LyricsFormat::Text, self.lyrics.rules());
            const auto either = [](const std::string& a, const std::string& b) { return a.empty() ? b : a; };
            record->version = found->lyrics3Version;
            record->hasTimeTags = lyrics.timed ? 1 : 0;
            PutUtf8(record->title, either(found->title, lyrics.title));
            PutUtf8(record->artist, either(found->artist, lyrics.artist));
            PutUtf8(record->album, either(found->album, lyrics.album));
            PutUtf8(record->author, either(found->author, lyrics.author));
            const std::string text = PlainText(lyrics);
            PutUtf8(record->lyrics, text);
            record->textNeeded = GiveText(record->text, record->textSize, text);
        }
        Give(info, *record);
        return found ? 1 : 0;
    });
}

int32_t vbmp3_setLyricsFile(const char* path) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        const auto file = OpenFile(TextOf(path));
        if (!file) return Report(VBMP3_ERROR_NOT_FOUND);
        if (file->size() > kMostLyricsBytes) return Report(VBMP3_ERROR_FORMAT);
        std::vector<uint8_t> bytes(static_cast<size_t>(file->size()));
        bytes.resize(file->readAt(0, bytes.data(), bytes.size()));
        auto text = DecodeLyrics(bytes);
        if (!text || text->find_first_not_of(" \t\r\n") == std::string::npos) return Report(VBMP3_ERROR_FORMAT);
        self.lyrics.set(std::move(*text), LyricsFormatOf(TextOf(path)));
        return Report(VBMP3_OK);
    });
}

int32_t vbmp3_checkTimeTag(void) {
    return withLibrary<int32_t>(0, [](Library& self) { return self.lyrics.lyrics().timed ? 1 : 0; });
}

int32_t vbmp3_getLyrics2(vbmp3_LyricsLines* lines) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        if (!IsRecord(lines)) return Report(VBMP3_ERROR_ARGUMENT);
        const TrackPtr track = self.player.current();
        const auto position = static_cast<int64_t>(self.player.snapshot().seconds * 1000);
        vbmp3_LyricsLines record{};
        const bool filled = self.lyrics.fill(position, track ? track->info.milliseconds() : 0, record);
        Give(lines, record);
        return filled ? 1 : 0;
    });
}

uint32_t vbmp3_getLyricsText(int32_t row, char* text, uint32_t size) {
    return withLibrary<uint32_t>(0, [&](Library& self) -> uint32_t {
        if (row < 0 || row >= VBMP3_LYRICS_ROWS || (text == nullptr && size != 0))
            return static_cast<uint32_t>(Report(VBMP3_ERROR_ARGUMENT));
        Report(VBMP3_OK);
        return GiveText(text, size, self.lyrics.rowText(row));
    });
}

void vbmp3_clearLyrics(void) {
    withLibrary(0, [](Library& self) {
        self.lyrics.clear();
        return 0;
    });
}

void vbmp3_setKaraokeUse(int32_t use) {
    withLibrary(0, [&](Library& self) {
        self.lyrics.setKaraoke(use != 0);
        return 0;
    });
}

void vbmp3_setNotTagLyricsLine(int32_t lines) {
    withLibrary(0, [&](Library& self) {
        self.lyrics.setUntimedStep(lines);
        return 0;
    });
}

void vbmp3_useAtMarkTag(int32_t use) {
    withLibrary(0, [&](Library& self) {
        self.lyrics.setAtMarkTags(use != 0);
        return 0;
    });
}

void vbmp3_setSeekPlay(int32_t use) {
    withLibrary(0, [&](Library& self) {
        self.lyrics.setSeekFollow(use != 0);
        return 0;
    });
}

void vbmp3_setLyricsShift(int32_t milliseconds) {
    withLibrary(0, [&](Library& self) {
        self.lyrics.setShift(milliseconds);
        return 0;
    });
}

// vbmp3.dll as the program sees it: one method for each operation that the program uses, loaded at run time.
// Texts are UTF-8; texts that the library returns in fixed-length fields arrive here cut at their NUL and trimmed.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "libraries/vbmp3/vbmp3.h"

namespace quenlox {

class Vbmp3 {
  public:
    virtual ~Vbmp3() = default;

    virtual bool vbmp3_init() = 0;
    virtual void vbmp3_free() = 0;
    virtual int vbmp3_getLastErrorNo() = 0;
    virtual std::string vbmp3_getVersion() = 0;

    virtual int vbmp3_getFileType(const std::string& path) = 0;
    virtual bool vbmp3_getFileInfo(const std::string& path, vbmp3_FileInfo& info) = 0;
    virtual std::string vbmp3_getGenre(int number) = 0;  // empty when there is none

    virtual bool vbmp3_open(const std::string& path, vbmp3_FileInfo& info) = 0;
    virtual void vbmp3_close() = 0;
    virtual bool vbmp3_play() = 0;
    virtual void vbmp3_stop() = 0;
    virtual void vbmp3_pause() = 0;
    virtual void vbmp3_restart() = 0;
    virtual void vbmp3_seek(double seconds) = 0;
    virtual int vbmp3_getState(std::int32_t& seconds) = 0;
    virtual std::int64_t vbmp3_getPositionMs() = 0;
    virtual bool vbmp3_setNextFile(const std::string& path) = 0;
    // Called on one of the library's threads; post a message and return.
    virtual void vbmp3_setListener(std::function<void(int event)> listener) = 0;
    virtual bool vbmp3_setOutput(int device, int bufferMs) = 0;
    virtual bool vbmp3_hasOutputDevice() = 0;

    virtual void vbmp3_setEqualizer(const std::array<std::int32_t, 10>* gains) = 0;  // null switches it off
    virtual void vbmp3_reload() = 0;
    virtual void vbmp3_setPitch(int percent) = 0;
    virtual void vbmp3_setStepPitch(int factor, int base) = 0;
    virtual void vbmp3_setQuality(int quality) = 0;
    virtual bool vbmp3_getWave(std::span<std::int16_t> left, std::span<std::int16_t> right) = 0;
    virtual bool vbmp3_getSpectrum(std::span<std::int32_t> levels) = 0;

    virtual bool vbmp3_readLyrics3Data(std::string& raw, std::string& text) = 0;
    virtual bool vbmp3_getFileLyrics3InfoVB(const std::string& path, vbmp3_Lyrics3Info& info) = 0;
    virtual bool vbmp3_setLyricsFile(const std::string& path) = 0;
    virtual int vbmp3_checkTimeTag() = 0;
    virtual bool vbmp3_getLyrics2(vbmp3_LyricsLines& lines) = 0;
    virtual void vbmp3_clearLyrics() = 0;
    virtual void vbmp3_setKaraokeUse(int use) = 0;
    virtual void vbmp3_setNotTagLyricsLine(int lines) = 0;
    virtual void vbmp3_useAtMarkTag(int use) = 0;
    virtual void vbmp3_setSeekPlay(int use) = 0;
    virtual void vbmp3_setLyricsShift(int milliseconds) = 0;

    virtual bool vbmp3_decodeWave(const std::string& source, const std::string& destination) = 0;
    virtual bool vbmp3_playDecodeWave(const std::string& source, const std::string& destination) = 0;
    virtual bool vbmp3_encodeOpen(const std::string& source) = 0;
    virtual bool vbmp3_encodeStart(const std::string& destination) = 0;
    virtual void vbmp3_encodeStop() = 0;
    virtual int vbmp3_getEncodeState(std::int32_t& permille) = 0;

    virtual bool vbmp3_readTag(const std::string& path, int kind, vbmp3_Tag& tag) = 0;
    virtual bool vbmp3_writeTag(const std::string& path, int kinds, const vbmp3_Tag& tag) = 0;
    virtual bool vbmp3_removeTag(const std::string& path, int kinds) = 0;
    virtual bool vbmp3_convertToRmp(const std::string& source, const std::string& destination) = 0;
    virtual bool vbmp3_convertToMp3(const std::string& source, const std::string& destination) = 0;
};

}  // namespace quenlox

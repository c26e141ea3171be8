// vbmp3.dll as the program sees it: one method for each operation that the program uses, in the types of the program.
// Texts are UTF-8, whole, and without blanks around them. Every method is called on the user-interface thread, save
// those that say otherwise; none throws, and none but those that name a file waits for a disk.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "platform/library_error.h"

namespace quenlox {

// What a file is and carries.
struct FileType {
    bool mpeg = false;  // an MPEG audio stream, alone, in RMP or in WAVE
    bool rmp = false;
    bool wave = false;  // plain PCM; a WAVE in another coding has none of these three
    bool id3v1 = false;
    bool id3v2 = false;
    bool lyrics = false;  // lyrics can be shown for it
    bool operator==(const FileType&) const = default;
};

inline constexpr int kNoGenre = 255;

// The texts of a file or of one of its tags; an empty one is missing.
struct TrackTexts {
    std::string title, artist, album, comment, year, genre, track;  // track: "5" or "5/12"
    int genreNumber = kNoGenre;                                     // of ID3v1, 0 to 191, or kNoGenre
    bool operator==(const TrackTexts&) const = default;
};

// All of them, for what is done to each alike; in the order of vbmp3_TagTexts.
inline constexpr std::array<std::string TrackTexts::*, 7> kTrackTexts{
    &TrackTexts::title, &TrackTexts::artist, &TrackTexts::album, &TrackTexts::comment,
    &TrackTexts::year,  &TrackTexts::genre,  &TrackTexts::track};

struct TrackInfo {
    FileType type;
    int seconds = 0;     // length, the fraction dropped
    int sampleRate = 0;  // Hz
    int bitRate = 0;     // bit/s; for a variable bit rate the average
    bool variableBitRate = false;
    int mpegVersion = 0;  // 10 MPEG-1, 20 MPEG-2, 25 MPEG-2.5, 0 no MPEG
    int layer = 0;        // 1 to 3, 0 no MPEG
    std::string format;   // "WAVE_FORMAT_PCM" for plain WAVE, else for the eye
    TrackTexts texts;
};

struct PlayReport {
    enum class State { Stopped, Playing, Paused };  // Stopped: also at the end
    State state = State::Stopped;
    std::int32_t seconds = 0;  // of the sound being heard, the fraction dropped
};

enum class LibraryEvent { EndOfTrack, NextTrack, DeviceLost, JobDone };

// The lines around the position. As it is made it has none.
struct LyricsLines {
    static constexpr int kCurrentRow = 2, kExtraRow = 5;
    int current = -1;        // number of the current line from 0, -1 before the first
    int total = 0;           // number of lines
    int progress = 0;        // how much of the current line has been sung, 0 to 1000
    int progressBytes = -1;  // the same in bytes of the current row; -1 when the line does not tell
    std::array<std::int32_t, 5> stampMs{-1, -1, -1, -1, -1};  // time of rows 0 to 4, -1 for an empty row
    std::array<std::string, 6> rows;  // 0 to 4, 2 the current; 5 its translation, or the next line
    bool operator==(const LyricsLines&) const = default;
};

struct JobReport {
    enum class State { None, Running, Done, Failed };
    State state = State::None;
    int permille = 0;                         // 0 to 1000
    LibraryError error = LibraryError::None;  // when it failed
};

// Kinds of tags; a mask of them is several. APE is read and taken off, never written.
enum TagBit : int { kTagId3v1 = 1, kTagId3v2 = 2, kTagSi = 4, kTagApe = 8 };

// What a tag holds beyond its texts.
struct TagExtras {
    int pictures = 0, others = 0;
};

class Vbmp3 {
  public:
    virtual ~Vbmp3() = default;  // as vbmp3_free

    // Everything else but what tells of files and edits tags fails with NotInitialised before.
    virtual LibraryError vbmp3_init() = 0;
    virtual void vbmp3_free() = 0;               // waits for no file; a second time does nothing
    virtual std::string vbmp3_getVersion() = 0;  // "1.1.0" or "1.1.0-dev+0123456789"

    // Of a file, which need not be open. Any thread. NotFound or Format.
    virtual LibraryResult<FileType> vbmp3_getFileType(const std::string& path) = 0;
    virtual LibraryResult<TrackInfo> vbmp3_getFileInfo(const std::string& path) = 0;
    virtual std::string vbmp3_getGenre(int number) = 0;  // empty when there is none

    // Opens the file, stopped, in place of what is open; a failure leaves nothing open. Called on a thread of its own,
    // while the user-interface thread goes on: what is opened or closed there meanwhile makes it Superseded.
    virtual LibraryResult<TrackInfo> vbmp3_open(const std::string& path) = 0;
    virtual void vbmp3_close() = 0;
    // From the beginning. DeviceBusy when others hold the device, NotOpen.
    virtual LibraryError vbmp3_play() = 0;
    // With nothing open, playing or paused these do nothing.
    virtual void vbmp3_stop() = 0;
    virtual void vbmp3_pause() = 0;
    virtual void vbmp3_restart() = 0;
    virtual void vbmp3_seek(double seconds) = 0;  // beyond the end is the end
    virtual PlayReport vbmp3_getState() = 0;
    virtual std::int64_t vbmp3_getPositionMs() = 0;  // of the sound being heard; 0 when nothing is open
    // The file to go on with; empty takes it back. NotFound or Format, and then nothing follows.
    virtual LibraryError vbmp3_setNextFile(const std::string& path) = 0;
    // The listener is called on one of the library's threads: it posts a message and returns. Null takes it back, and
    // once the call has returned none is running. What a listener throws is lost.
    virtual void vbmp3_setListener(std::function<void(LibraryEvent event)> listener) = 0;
    // Device -1 is the system's default; buffer in milliseconds, 50 to 2000. Argument beyond.
    virtual LibraryError vbmp3_setOutput(int device, int bufferMs) = 0;
    virtual bool vbmp3_hasOutputDevice() = 0;

    // Tenths of a decibel, -120 to 120; null switches it off. Heard from the next play or reload on.
    virtual void vbmp3_setEqualizer(const std::array<std::int32_t, 10>* gains) = 0;
    virtual void vbmp3_reload() = 0;
    // Beyond their ranges these change nothing: 50 to 200 percent; speed 1 + (factor - 1) / base, 0.25 to 4.
    virtual void vbmp3_setPitch(int percent) = 0;
    virtual void vbmp3_setStepPitch(int factor, int base) = 0;
    virtual void vbmp3_setQuality(int quality) = 0;  // 0 standard, 1 high, 2 light
    // What is heard: up to 1024 samples a channel; up to 256 levels, 0 to 1000. Zeros when nothing plays.
    virtual void vbmp3_getWave(std::span<std::int16_t> left, std::span<std::int16_t> right) = 0;
    virtual void vbmp3_getSpectrum(std::span<std::int32_t> levels) = 0;

    // Makes the lyrics inside the open file the current ones, and gives their text as it stands there. Nothing when it
    // has none, and the current ones stay.
    virtual std::optional<std::string> vbmp3_readLyrics3Data() = 0;
    // The text of the lyrics inside a file without time tags, its lines parted by CR LF; nothing when it has none.
    virtual std::optional<std::string> vbmp3_getFileLyrics3InfoVB(const std::string& path) = 0;
    // Makes a file of lyrics the current ones; false, and they stay, when it is none.
    virtual bool vbmp3_setLyricsFile(const std::string& path) = 0;
    virtual bool vbmp3_checkTimeTag() = 0;  // the current lyrics carry time tags
    virtual LyricsLines
    vbmp3_getLyrics2() = 0;  // for the position being heard; without lines when none are to be shown
    virtual void vbmp3_clearLyrics() = 0;
    virtual void vbmp3_setKaraokeUse(bool use) = 0;
    virtual void vbmp3_setNotTagLyricsLine(int lines) = 0;  // 0: untimed lyrics do not run
    virtual void vbmp3_useAtMarkTag(bool use) = 0;
    virtual void vbmp3_setSeekPlay(bool use) = 0;
    virtual void vbmp3_setLyricsShift(int milliseconds) = 0;  // positive shows lines later

    // Jobs, one at a time. What can be found out at once is the result, what comes later is told by getEncodeState:
    // Busy, NotFound, Format, SameFile, NoCodec; Write, Locked. A job that fails or is stopped leaves the destination
    // as it was.
    virtual LibraryError vbmp3_decodeWave(const std::string& source, const std::string& destination) = 0;
    virtual LibraryError vbmp3_playDecodeWave(const std::string& source, const std::string& destination) = 0;
    virtual LibraryError vbmp3_encodeOpen(const std::string& source) = 0;
    virtual LibraryError vbmp3_encodeStart(const std::string& destination) = 0;
    virtual void vbmp3_encodeStop() = 0;  // none runs: does nothing
    virtual JobReport vbmp3_getEncodeState() = 0;

    // The same as decodeWave, on the calling thread, which may be any; several may go on at once, beside a job too.
    // Uses up to `cores` processors (0: as many as decodeWave). `progress` is called there with the done part, 0 to 1;
    // when it gives false, the decode ends with Other. Only what holds MPEG audio: Format else.
    virtual LibraryError vbmp3_decodeFile(const std::string& source, const std::string& destination, int cores,
                                          const std::function<bool(double done)>& progress) = 0;

    // Tags of files that are not open: Locked on Windows else. Any thread. `kinds` is a mask of TagBit.
    // The texts of one kind, or with 0 those that vbmp3_getFileInfo shows. Neither texts nor an error: it has no such
    // tag.
    virtual LibraryResult<TrackTexts> vbmp3_readTag(const std::string& path, int kind) = 0;
    virtual TagExtras vbmp3_countTagExtras(const std::string& path, int kinds) = 0;  // none when it cannot be read
    // A failure leaves the file as it was: NotFound, Format, Tag, Write, Locked, Memory.
    virtual LibraryError vbmp3_writeTag(const std::string& path, int kinds, const TrackTexts& texts) = 0;
    virtual LibraryError vbmp3_removeTag(const std::string& path, int kinds) = 0;
    virtual LibraryError vbmp3_convertToRmp(const std::string& source, const std::string& destination) = 0;
    virtual LibraryError vbmp3_convertToMp3(const std::string& source, const std::string& destination) = 0;
};

}  // namespace quenlox

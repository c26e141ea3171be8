// The C interface of vbmp3.dll: decoding, playing, tags, lyrics, equalizer, pitch and conversion jobs of MPEG audio,
// RMP and WAVE files.
//
// Conventions. Every text is UTF-8; fixed-length texts end with a NUL and are cut at a character border. Every record
// begins with its own size, which the caller sets (sizeof) before the call; the library never writes beyond it. Calls
// that return int32_t give nonzero for success and 0 for failure unless stated; vbmp3_getLastErrorNo tells why. No
// exception leaves the library.
//
// Threads. All calls are made from one thread, the caller's, save these: vbmp3_open may be called on another thread,
// and the caller's goes on calling everything else meanwhile; vbmp3_getFileType, vbmp3_getFileInfo, vbmp3_getGenre,
// vbmp3_readTag, vbmp3_getVersion and vbmp3_getLastErrorNo may be called on any. The number of the last error is kept
// for each thread by itself. The library's own threads never call back, save for the listener, which says so.
//
// Files that do not answer (a share or a disk that has gone). Calls that name a file wait for it, save
// vbmp3_setNextFile; of the others none does. What hangs in a file is left behind with a thread of the library, and the
// next file is played all the same.
#pragma once

#include <stdint.h>

#if defined(_WIN32) && defined(VBMP3_BUILD)
#define VBMP3_API __declspec(dllexport)
#elif defined(_WIN32) && !defined(VBMP3_STATIC)
#define VBMP3_API __declspec(dllimport)
#else
#define VBMP3_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

// Flags of vbmp3_getFileType.
// clang-format off
enum {
    VBMP3_TYPE_MPEG   = 1,   // MPEG audio stream
    VBMP3_TYPE_RMP    = 2,   // MP3 in RIFF, form type RMP3
    VBMP3_TYPE_ID3V1  = 4,   // carries an ID3v1 tag
    VBMP3_TYPE_ID3V2  = 16,  // carries an ID3v2 tag
    VBMP3_TYPE_LYRICS = 32,  // lyrics can be shown for it: every MPEG and RMP file
    VBMP3_TYPE_WAVE   = 64   // WAVE in plain PCM (integer or float)
};
// clang-format on

// Numbers of vbmp3_getLastErrorNo. 25 is the number that players test for.
// clang-format off
enum {
    VBMP3_OK                = 0,
    VBMP3_ERROR_NOT_FOUND   = 1,   // file missing or unreadable
    VBMP3_ERROR_FORMAT      = 2,   // not a file this library can decode
    VBMP3_ERROR_NOT_OPEN    = 3,   // no file is open
    VBMP3_ERROR_MEMORY      = 4,
    VBMP3_ERROR_WRITE       = 5,   // destination cannot be written, disk full
    VBMP3_ERROR_SAME_FILE   = 6,   // destination is the source
    VBMP3_ERROR_NO_CODEC    = 7,   // the operating system has no MP3 encoder
    VBMP3_ERROR_BUSY        = 8,   // a job runs already
    VBMP3_ERROR_ARGUMENT    = 9,
    VBMP3_ERROR_LOCKED      = 10,  // file locked by another program, or read-only
    VBMP3_ERROR_SUPERSEDED  = 11,  // another file was opened, or this one closed, while it was being opened
    VBMP3_ERROR_DEVICE_BUSY = 25   // the sound device is in use
};
// clang-format on

// What is known about one file. Filled by vbmp3_open and vbmp3_getFileInfo.
typedef struct vbmp3_FileInfo {
    uint32_t size;            // sizeof(vbmp3_FileInfo)
    int32_t fileType;         // flags as of vbmp3_getFileType
    int32_t seconds;          // length in whole seconds, the fraction dropped
    int32_t milliseconds;     // the fraction of that length, 0 to 999
    int64_t frames;           // length in sample frames at sampleRate, -1 when only estimated
    int32_t sampleRate;       // Hz
    int32_t channels;         // as in the file
    int32_t bitsPerSample;    // WAVE: 8, 16, 24, 32; MPEG: 0
    int32_t bitRate;          // bit/s; for variable bit rate the average
    int32_t variableBitRate;  // 1 for VBR, 0 for CBR
    int32_t mpegVersion;      // 10 MPEG-1, 20 MPEG-2, 25 MPEG-2.5, 0 no MPEG
    int32_t layer;            // 1 to 3, 0 no MPEG
    int32_t genreNumber;      // ID3v1 genre, 255 none or not in the list
    char format[128];         // "WAVE_FORMAT_PCM" for plain WAVE; "MPEG1 Layer3 44100Hz 128kbit/s Stereo" kind of text
    char title[512];
    char artist[512];
    char album[512];
    char comment[1024];
    char year[32];
    char genre[128];
    char track[32];
} vbmp3_FileInfo;

// Life.

VBMP3_API int32_t vbmp3_init(void);
// Closes what is open, ends every thread and job. A vbmp3_open on another thread may be under way: it gives 0 when its
// file answers.
VBMP3_API void vbmp3_free(void);
VBMP3_API int32_t vbmp3_getLastErrorNo(void);                // of the calls made on this thread
VBMP3_API void vbmp3_getVersion(char* text, uint32_t size);  // "1.0.0"

// Files.

// Flags of the file, or a negative error number when it is none that this library decodes. A WAVE in a coding other
// than plain PCM that the library can decode gives 0. Reads head and tail only.
VBMP3_API int32_t vbmp3_getFileType(const char* path);
// Reads tags and length without decoding; touches head and tail of the file only.
VBMP3_API int32_t vbmp3_getFileInfo(const char* path, vbmp3_FileInfo* info);
// The name of ID3v1 genre `number` (0 to 191) into `text`; 0 when there is none.
VBMP3_API int32_t vbmp3_getGenre(int32_t number, char* text, uint32_t size);

// Playing.

// Closes what is open, which is not undone by a failure, and opens the file; `info` may be null. The file is opened
// once: what `info` and the calls for lyrics tell of it has been read then. May be called on another thread than the
// caller's, even while it is under way on a third. A later vbmp3_open, a vbmp3_close or vbmp3_free supersedes it: it
// then changes nothing, `info` neither, and gives 0 with VBMP3_ERROR_SUPERSEDED once its file answers.
VBMP3_API int32_t vbmp3_open(const char* path, vbmp3_FileInfo* info);
// Afterwards the file can be replaced or removed, unless it does not answer.
VBMP3_API void vbmp3_close(void);
VBMP3_API int32_t vbmp3_play(void);  // from the beginning of the open file
VBMP3_API int32_t vbmp3_stop(void);
VBMP3_API int32_t vbmp3_pause(void);
VBMP3_API int32_t vbmp3_restart(void);  // goes on after pause
// Moves to `seconds` from the beginning, exact to the frame; past the end is the end. Works while paused and stopped:
// the next play after a stop still begins at the beginning.
VBMP3_API int32_t vbmp3_seek(double seconds);
// 0 stopped (also: has reached the end), 1 playing, 2 paused. `seconds` (may be null) receives the position of the
// sound being heard, in whole seconds.
VBMP3_API int32_t vbmp3_getState(int32_t* seconds);
VBMP3_API int64_t vbmp3_getPositionMs(void);  // position of the sound being heard, milliseconds

// The file that follows the playing one. When the playing track reaches its end the library goes on with this file
// without a gap, reports VBMP3_EVENT_NEXT_TRACK, and is from then on as if that file had been opened and played. A null
// or empty path takes it back. Returns 0 when the file cannot be opened. One that needs more than 50 ms to open counts
// as taken; when it then cannot be opened nothing follows. vbmp3_open and vbmp3_close take the next file back.
VBMP3_API int32_t vbmp3_setNextFile(const char* path);

// clang-format off
enum {
    VBMP3_EVENT_END_OF_TRACK = 1,
    VBMP3_EVENT_NEXT_TRACK   = 2,
    VBMP3_EVENT_DEVICE_LOST  = 3,
    VBMP3_EVENT_JOB_DONE     = 4
};
// clang-format on
// Called on one of the library's threads, of a track the moment its last sample has been heard. It must not call the
// library; post a message and return. Null takes it back; after the call returns no callback is running.
typedef void (*vbmp3_Listener)(int32_t event, void* context);
VBMP3_API void vbmp3_setListener(vbmp3_Listener listener, void* context);

// Output. Device -1 is the system's default. Buffer in milliseconds, 50 to 2000 (default 250). What is playing goes on
// with them where it is; paused it stays paused.
VBMP3_API int32_t vbmp3_setOutput(int32_t device, int32_t bufferMs);
// 1 when there is a sound device, 0 when the library runs on its silent clock because there is none.
VBMP3_API int32_t vbmp3_hasOutputDevice(void);

// Sound.

// Gains of ten bands (60, 170, 310, 600, 1k, 3k, 6k, 12k, 14k, 16k Hz) in tenths of a decibel, -120 to +120. Null
// switches the equalizer off, and the sound is then bit-exact. Taken over at the next play or vbmp3_reload; while a
// WAVE file in any coding but MPEG is playing or paused, at once.
VBMP3_API int32_t vbmp3_setEqualizer(const int32_t* gains);
VBMP3_API int32_t vbmp3_reload(void);  // takes the equalizer setting over into the sound being played, smoothly
VBMP3_API int32_t vbmp3_setPitch(int32_t percent);  // 100 is normal, 50 to 200; the speed is kept
// The speed, with the pitch kept: (1, 5) is normal; dsp/README.md tells what the two numbers mean.
VBMP3_API int32_t vbmp3_setStepPitch(int32_t factor, int32_t base);
// How carefully pitch and speed are changed; at normal it makes no difference. At once, also while playing.
enum { VBMP3_QUALITY_STANDARD = 0, VBMP3_QUALITY_HIGH = 1, VBMP3_QUALITY_LIGHT = 2 };
VBMP3_API int32_t vbmp3_setQuality(int32_t quality);
// The sound being heard: `count` samples (up to 1024) a channel, left in `left`, right in `right`, -32768 to 32767.
VBMP3_API int32_t vbmp3_getWave(int16_t* left, int16_t* right, int32_t count);
// Levels of `count` (up to 256) bands, low to high, logarithmically spaced from 40 Hz to 16 kHz, 0 to 1000.
VBMP3_API int32_t vbmp3_getSpectrum(int32_t* levels, int32_t count);

// Lyrics.

enum { VBMP3_LYRICS_TEXT = 60000, VBMP3_LYRICS_ROWS = 6, VBMP3_LYRICS_ROW = 128 };

typedef struct vbmp3_Lyrics3Info {
    uint32_t size;
    int32_t version;  // 1 or 2, 0 none
    int32_t hasTimeTags;
    char title[256];
    char artist[256];
    char album[256];
    char author[256];
    char lyrics[VBMP3_LYRICS_TEXT];  // the text without its time tags
} vbmp3_Lyrics3Info;

typedef struct vbmp3_LyricsLines {
    uint32_t size;
    int32_t current;        // number of the current line, -1 before the first
    int32_t total;          // number of lines
    int32_t progress;       // how much of the current line has been sung, 0 to 1000
    int32_t progressBytes;  // the same as bytes of row 2, for drawing; -1 when the line has no word stamps
    int32_t stampMs[5];     // time of rows 0 to 4 in milliseconds, -1 for an empty row
    char rows[VBMP3_LYRICS_ROWS][VBMP3_LYRICS_ROW];  // 0 to 4 lines around the position, 2 the current; 5 the extra row
} vbmp3_LyricsLines;

// Reads the Lyrics3 block of the open file into two buffers of 60000 bytes (the raw block, and its text) and makes it
// the current lyrics. 0: none. Lyrics of an ID3v2 tag (SYLT, USLT) serve when there is no Lyrics3 block.
VBMP3_API int32_t vbmp3_readLyrics3Data(char* raw, char* text);
VBMP3_API int32_t vbmp3_getFileLyrics3InfoVB(const char* path, vbmp3_Lyrics3Info* info);
// A file in kra, lrc or txt. 0: not loaded, the lyrics stay as they were.
VBMP3_API int32_t vbmp3_setLyricsFile(const char* path);
VBMP3_API int32_t vbmp3_checkTimeTag(void);                    // 1: the current lyrics carry time tags
VBMP3_API int32_t vbmp3_getLyrics2(vbmp3_LyricsLines* lines);  // for the position being heard
VBMP3_API void vbmp3_clearLyrics(void);
VBMP3_API void vbmp3_setKaraokeUse(int32_t use);
VBMP3_API void vbmp3_setNotTagLyricsLine(int32_t lines);  // 0: untimed lyrics are not spread over the track
VBMP3_API void vbmp3_useAtMarkTag(int32_t use);
VBMP3_API void vbmp3_setSeekPlay(int32_t use);              // 1: lyrics follow a seek at once
VBMP3_API void vbmp3_setLyricsShift(int32_t milliseconds);  // positive shows lines later

// Jobs.

VBMP3_API int32_t vbmp3_decodeWave(const char* source, const char* destination);      // in the background
VBMP3_API int32_t vbmp3_playDecodeWave(const char* source, const char* destination);  // while playing it
VBMP3_API int32_t vbmp3_encodeOpen(const char* source);
VBMP3_API int32_t vbmp3_encodeStart(const char* destination);  // with the MP3 codec of the operating system
VBMP3_API int32_t vbmp3_encodeStop(void);                      // cancels whichever job runs; its destination is removed
// 0 no job, 1 running, 2 done, 3 failed (vbmp3_getLastErrorNo tells why). `permille` (may be null) gets 0 to 1000.
VBMP3_API int32_t vbmp3_getEncodeState(int32_t* permille);

// Tag editing.

enum { VBMP3_TAG_ID3V1 = 1, VBMP3_TAG_ID3V2 = 2, VBMP3_TAG_SI = 4 };

typedef struct vbmp3_Tag {
    uint32_t size;
    int32_t present;      // bit mask of VBMP3_TAG_*: which tags the file carries
    int32_t genreNumber;  // 0 to 191, 255 none
    char title[512];
    char artist[512];
    char album[512];
    char comment[1024];
    char year[32];
    char genre[128];
    char track[32];
} vbmp3_Tag;

// Reads the fields of one tag kind (one VBMP3_TAG_* bit). 0 when the file does not carry it; the fields are then empty.
VBMP3_API int32_t vbmp3_readTag(const char* path, int32_t kind, vbmp3_Tag* tag);
// Writes the fields into the tags named by the mask `kinds`; what is there and not edited (pictures, unknown frames,
// lyrics) is kept. The file is replaced in one step: a failure leaves it as it was.
VBMP3_API int32_t vbmp3_writeTag(const char* path, int32_t kinds, const vbmp3_Tag* tag);
VBMP3_API int32_t vbmp3_removeTag(const char* path, int32_t kinds);
// Wraps and unwraps without encoding anew; tag and lyrics are carried over, the MPEG frames stay byte for byte.
VBMP3_API int32_t vbmp3_convertToRmp(const char* source, const char* destination);
VBMP3_API int32_t vbmp3_convertToMp3(const char* source, const char* destination);

#ifdef __cplusplus
}
#endif

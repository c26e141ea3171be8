// The C interface of vbmp3.dll: decoding, playing, tags, lyrics, equalizer, pitch and conversion jobs of MPEG audio,
// RMP and WAVE files.
//
// Texts are UTF-8. What a caller gives ends with a NUL; null counts as an empty text. Texts in fields of fixed length
// end with a NUL and are cut at a character border; the calls that give them whole are vbmp3_readTagTexts and
// vbmp3_getLyricsText.
//
// Records begin with their size, which the caller sets before each call (sizeof, as his compiler knows it). The library
// reads and writes that many bytes and no more, so that a caller built with an older header goes on working. A record
// that is null (where null is not allowed) or whose size is below 4 gives VBMP3_ERROR_ARGUMENT, and nothing happens. A
// record is filled also by a call that fails, with what is known then; where it says nothing else that is zeros, and
// 255 as the number of the genre.
//
// Results. Calls that return int32_t give nonzero for success and 0 for failure, unless they say otherwise;
// vbmp3_getLastErrorNo then tells why, and after a success VBMP3_OK. Calls that cannot fail leave that number alone. No
// exception leaves the library.
//
// Before vbmp3_init, and after vbmp3_free, every call that plays, asks what plays, runs a job or keeps lyrics gives 0,
// or does nothing, with VBMP3_ERROR_NOT_INITIALISED. These need no vbmp3_init: vbmp3_getLastErrorNo, vbmp3_getVersion,
// vbmp3_getFileType, vbmp3_getFileInfo, vbmp3_getGenre, vbmp3_readTag, vbmp3_readTagTexts, vbmp3_writeTag,
// vbmp3_writeTagTexts, vbmp3_removeTag, vbmp3_convertToRmp, vbmp3_convertToMp3, vbmp3_decodeFile.
//
// Threads. All calls are made from one thread, the caller's, save these: vbmp3_open may be called on another thread,
// and the caller's goes on calling everything else meanwhile; those that need no vbmp3_init may be called on any, as
// long as no two of them write one file. The number of the last error is kept for each thread by itself. The library's
// own threads never call back, save for the listener, which says so; vbmp3_decodeFile calls back on its caller's.
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
    VBMP3_OK                    = 0,
    VBMP3_ERROR_NOT_FOUND       = 1,   // file missing or unreadable
    VBMP3_ERROR_FORMAT          = 2,   // not a file that this library can decode, or not one that can have this tag
    VBMP3_ERROR_NOT_OPEN        = 3,   // no file is open; vbmp3_pause and vbmp3_restart: none is playing or paused
    VBMP3_ERROR_MEMORY          = 4,
    VBMP3_ERROR_WRITE           = 5,   // destination cannot be written, disk full
    VBMP3_ERROR_SAME_FILE       = 6,   // destination is the source, by whatever name
    VBMP3_ERROR_NO_CODEC        = 7,   // the operating system has no MP3 encoder
    VBMP3_ERROR_BUSY            = 8,   // a job runs already
    VBMP3_ERROR_ARGUMENT        = 9,   // out of the range that the call names, a null that is not allowed
    VBMP3_ERROR_LOCKED          = 10,  // file locked by another program, or read-only
    VBMP3_ERROR_SUPERSEDED      = 11,  // another file was opened, or this one closed, while it was being opened
    VBMP3_ERROR_TAG             = 12,  // a tag that cannot be edited without losing what it holds, or too large with it
    VBMP3_ERROR_NOT_INITIALISED = 13,  // before vbmp3_init or after vbmp3_free
    VBMP3_ERROR_SIZE            = 14,  // the caller's buffer is too small; the call has told which size it needs
    VBMP3_ERROR_CANCELLED       = 15,  // vbmp3_decodeFile: given up by its caller
    VBMP3_ERROR_DEVICE_BUSY     = 25   // the sound device is in use
};
// clang-format on

// What is known about one file. Filled by vbmp3_open and vbmp3_getFileInfo.
// clang-format off
typedef struct vbmp3_FileInfo {
    uint32_t size;             // sizeof(vbmp3_FileInfo)
    int32_t  fileType;         // flags as of vbmp3_getFileType
    int32_t  seconds;          // length in whole seconds, the fraction dropped
    int32_t  milliseconds;     // the fraction of that length, 0 to 999
    int64_t  frames;           // length in sample frames at sampleRate, -1 when only estimated
    int32_t  sampleRate;       // Hz
    int32_t  channels;         // as in the file
    int32_t  bitsPerSample;    // WAVE: 8, 16, 24, 32; MPEG: 0
    int32_t  bitRate;          // bit/s (not kbit/s); for variable bit rate the average
    int32_t  variableBitRate;  // 1 for VBR, 0 for CBR
    int32_t  mpegVersion;      // 10 MPEG-1, 20 MPEG-2, 25 MPEG-2.5, 0 no MPEG
    int32_t  layer;            // 1 to 3, 0 no MPEG
    int32_t  genreNumber;      // ID3v1 genre, 255 none or not in the list
    char     format[128];      // "WAVE_FORMAT_PCM" for plain WAVE; "MPEG1 Layer3 44100Hz 128kbit/s Stereo" kind of text
    char     title[512];       // these seven from whichever tags the file carries: SI (INFO), ID3v2, ID3v1, APE, each
    char     artist[512];      // filling in what those before it lack
    char     album[512];
    char     comment[1024];
    char     year[32];
    char     genre[128];
    char     track[32];        // "5" or "5/12"
} vbmp3_FileInfo;
// clang-format on

// Life.

// Twice is once. vbmp3_free undoes it, however often it was called.
VBMP3_API int32_t vbmp3_init(void);
// Closes what is open, ends every thread and job; forgets every setting. A vbmp3_open on another thread may be under
// way: it gives 0 when its file answers.
VBMP3_API void vbmp3_free(void);
VBMP3_API int32_t vbmp3_getLastErrorNo(void);  // of the calls made on this thread
// "1.1.0", of a build that is no release "1.1.0-dev+" and its commit, into `text` of `size` bytes (64 are enough), cut
// to it; a null text or size 0 does nothing.
VBMP3_API void vbmp3_getVersion(char* text, uint32_t size);

// Files.

// Flags of the file, or a negative error number when it is none that this library decodes. A WAVE in a coding other
// than plain PCM that the library can decode gives 0. Reads head and tail only.
VBMP3_API int32_t vbmp3_getFileType(const char* path);
// Reads tags and length without decoding; touches head and tail of the file only. `info` must not be null.
VBMP3_API int32_t vbmp3_getFileInfo(const char* path, vbmp3_FileInfo* info);
// The name of ID3v1 genre `number` (0 to 191) into `text` of `size` bytes (64 hold every one), cut to it; 0, and an
// empty text, when there is none. `text` may be null. Sets no error number.
VBMP3_API int32_t vbmp3_getGenre(int32_t number, char* text, uint32_t size);

// Playing.

// Closes what is open, playing or not, and opens the file, stopped at its beginning; a failure leaves nothing open,
// save VBMP3_ERROR_ARGUMENT, which changes nothing. `info` may be null; a failure leaves it as it was. Lyrics and the
// settings of sound and lyrics stay. The file is opened once: what `info` and the calls for lyrics tell of it has been
// read then. May be called on another thread than the caller's, even while it is under way on a third. A later
// vbmp3_open, a vbmp3_close or vbmp3_free supersedes it: it then changes nothing, `info` neither, and gives 0 with
// VBMP3_ERROR_SUPERSEDED once its file answers.
VBMP3_API int32_t vbmp3_open(const char* path, vbmp3_FileInfo* info);
// Stops, too. Afterwards the file can be replaced or removed, unless it does not answer. Nothing open is no error.
VBMP3_API void vbmp3_close(void);
// From the beginning of the open file, playing, paused or not. Without a sound device it plays in silence, by the
// clock, until there is one; VBMP3_ERROR_DEVICE_BUSY when there is one that others hold. Waits 1.5 seconds at most.
VBMP3_API int32_t vbmp3_play(void);
VBMP3_API int32_t vbmp3_stop(void);     // back to the beginning; the file stays open. Ends the job of playDecodeWave
VBMP3_API int32_t vbmp3_pause(void);    // paused it stays so
VBMP3_API int32_t vbmp3_restart(void);  // goes on after a pause; playing it goes on playing
// Moves to `seconds` from the beginning, exact to the sample frame; before it is the beginning, past the end is the
// end, what is no finite number is the beginning. Works while paused and stopped: the next play after a stop still
// begins at the beginning.
VBMP3_API int32_t vbmp3_seek(double seconds);
// 0 stopped (also: has reached the end, nothing is open, VBMP3_ERROR_NOT_INITIALISED), 1 playing, 2 paused. `seconds`
// (may be null) receives the position of the sound being heard, in whole seconds, the fraction dropped.
VBMP3_API int32_t vbmp3_getState(int32_t* seconds);
VBMP3_API int64_t vbmp3_getPositionMs(void);  // position of the sound being heard, milliseconds; 0 when nothing is open

// The file that follows the playing one. When the playing track reaches its end the library goes on with this file
// without a gap, reports VBMP3_EVENT_NEXT_TRACK, and is from then on as if that file had been opened and played. A null
// or empty path takes it back. Returns 0 when the file cannot be opened. One that needs more than 50 ms to open counts
// as taken; when it then cannot be opened nothing follows. vbmp3_open and vbmp3_close take the next file back.
VBMP3_API int32_t vbmp3_setNextFile(const char* path);

// clang-format off
enum {
    VBMP3_EVENT_END_OF_TRACK = 1,  // the last sample of the last track has been heard
    VBMP3_EVENT_NEXT_TRACK   = 2,  // the first sample of the next file is being heard
    VBMP3_EVENT_DEVICE_LOST  = 3,  // the sound device has gone: the clock stands in for it
    VBMP3_EVENT_JOB_DONE     = 4   // done or failed, not cancelled: vbmp3_getEncodeState tells
};
// clang-format on
// Called on one of the library's threads, of a track the moment its last sample has been heard. It must not call the
// library; post a message and return. Null takes it back; after the call returns no callback is running.
typedef void (*vbmp3_Listener)(int32_t event, void* context);
VBMP3_API void vbmp3_setListener(vbmp3_Listener listener, void* context);

// Output. `device` counts from 0 as the system does for waveOut; -1, the default, is the system's default device. One
// that is not there is done without, as when there is none. `bufferMs` in milliseconds, 50 to 2000, default 250.
// VBMP3_ERROR_ARGUMENT below and beyond. What is playing goes on with them where it is; paused it stays paused.
VBMP3_API int32_t vbmp3_setOutput(int32_t device, int32_t bufferMs);
// 1 when there is a sound device, 0 when the library runs on its silent clock because there is none.
VBMP3_API int32_t vbmp3_hasOutputDevice(void);

// Sound.

// Gains of ten bands (60, 170, 310, 600, 1k, 3k, 6k, 12k, 14k, 16k Hz) in tenths of a decibel; what is beyond -120 and
// +120 counts as these. Null switches the equalizer off, and the sound is then bit-exact. Taken over at the next play
// or vbmp3_reload; while a WAVE file in any coding but MPEG is playing or paused, at once.
VBMP3_API int32_t vbmp3_setEqualizer(const int32_t* gains);
VBMP3_API int32_t vbmp3_reload(void);  // takes the equalizer setting over into the sound being played, smoothly
// The pitch in percent, 100 is normal, 50 to 200 (VBMP3_ERROR_ARGUMENT else); the speed is kept. At once.
VBMP3_API int32_t vbmp3_setPitch(int32_t percent);
// The speed 1 + (factor - 1) / base, with the pitch kept: (1, 5) is normal, (6, 5) double. `base` at least 1, the speed
// 0.25 to 4 (VBMP3_ERROR_ARGUMENT else). At once.
VBMP3_API int32_t vbmp3_setStepPitch(int32_t factor, int32_t base);
// How carefully pitch and speed are changed; at normal it makes no difference. At once, also while playing.
// clang-format off
enum {
    VBMP3_QUALITY_STANDARD = 0,
    VBMP3_QUALITY_HIGH     = 1,
    VBMP3_QUALITY_LIGHT    = 2   // the least work for the processor
};
// clang-format on
VBMP3_API int32_t vbmp3_setQuality(int32_t quality);
// The sound being heard: `count` samples (1 to 1024) a channel, left in `left`, right in `right`, -32768 to 32767.
// Zeros unless something is playing.
VBMP3_API int32_t vbmp3_getWave(int16_t* left, int16_t* right, int32_t count);
// Levels of `count` (1 to 256) bands, low to high, logarithmically spaced from 40 Hz to 16 kHz, 0 to 1000. Zeros unless
// something is playing.
VBMP3_API int32_t vbmp3_getSpectrum(int32_t* levels, int32_t count);

// Lyrics.

// clang-format off
enum {
    VBMP3_LYRICS_TEXT = 60000,  // bytes of a whole text, its NUL included
    VBMP3_LYRICS_ROWS = 6,
    VBMP3_LYRICS_ROW  = 128     // bytes of a row, its NUL included
};

typedef struct vbmp3_Lyrics3Info {
    uint32_t size;                       // sizeof(vbmp3_Lyrics3Info)
    int32_t  version;                    // of the Lyrics3 block, 1 or 2; 0 none: the lyrics are those of an ID3v2 tag
    int32_t  hasTimeTags;                // 1 or 0
    char     title[256];
    char     artist[256];
    char     album[256];
    char     author[256];
    char     lyrics[VBMP3_LYRICS_TEXT];  // the text without its time tags, lines parted by CR LF
    // From here on since 1.1.0: the same text at any length.
    char*    text;                       // in: a buffer for it, or null
    uint32_t textSize;                   // in: bytes of the buffer, 0 without
    uint32_t textNeeded;                 // out: bytes of the whole text, its NUL included; the buffer gets what fits
} vbmp3_Lyrics3Info;

typedef struct vbmp3_LyricsLines {
    uint32_t size;           // sizeof(vbmp3_LyricsLines)
    int32_t  current;        // number of the current line from 0, -1 before the first
    int32_t  total;          // number of lines
    int32_t  progress;       // how much of the current line has been sung, 0 to 1000
    int32_t  progressBytes;  // the same as bytes of row 2, for drawing; -1 when the line has no word stamps
    int32_t  stampMs[5];     // time of rows 0 to 4 in milliseconds, -1 for an empty row
    char     rows[VBMP3_LYRICS_ROWS][VBMP3_LYRICS_ROW];  // 0 to 4 lines around the position, 2 the current; 5 its
                                                         // translation, or the next line where there is none
} vbmp3_LyricsLines;
// clang-format on

// Reads the Lyrics3 block of the open file into two buffers of 60000 bytes (the raw block, and its text; each may be
// null) and makes it the current lyrics. 0: none, and the current ones stay. Lyrics of an ID3v2 tag (SYLT, USLT) serve
// when there is no Lyrics3 block.
VBMP3_API int32_t vbmp3_readLyrics3Data(char* raw, char* text);
// The lyrics inside a file, which need not be open. 0: none, with VBMP3_OK when the file could be read.
VBMP3_API int32_t vbmp3_getFileLyrics3InfoVB(const char* path, vbmp3_Lyrics3Info* info);
// A file in kra, lrc or txt, of at most 1 MiB, in UTF-8, UTF-16 or Shift-JIS; of its lines the first 20000 count. 0:
// not loaded, the lyrics stay as they were.
VBMP3_API int32_t vbmp3_setLyricsFile(const char* path);
VBMP3_API int32_t vbmp3_checkTimeTag(void);  // 1: the current lyrics carry time tags; 0: they do not, or there are none
// For the position being heard. 0, and no rows, when there are no lyrics or none that run.
VBMP3_API int32_t vbmp3_getLyrics2(vbmp3_LyricsLines* lines);
// Row `row` (0 to 5) as vbmp3_getLyrics2 gave it last, at any length, into `text` of `size` bytes; cut to it at a
// character border. Gives the bytes that the whole row needs, its NUL included: 1 for an empty row. 0 with
// VBMP3_ERROR_ARGUMENT when there is no such row. `text` may be null when `size` is 0.
VBMP3_API uint32_t vbmp3_getLyricsText(int32_t row, char* text, uint32_t size);
VBMP3_API void vbmp3_clearLyrics(void);
VBMP3_API void vbmp3_setKaraokeUse(int32_t use);  // 0: `progressBytes` is always -1; default 1
// 0, the default, or less: untimed lyrics do not run; n: they are spread over the track, n lines at a step.
VBMP3_API void vbmp3_setNotTagLyricsLine(int32_t lines);
VBMP3_API void vbmp3_useAtMarkTag(int32_t use);             // 1, the default: lines such as "@Title=" are not shown
VBMP3_API void vbmp3_setSeekPlay(int32_t use);              // 1, the default: lyrics follow a seek at once
VBMP3_API void vbmp3_setLyricsShift(int32_t milliseconds);  // positive shows lines later; default 0

// Jobs. One at a time: VBMP3_ERROR_BUSY while one runs. What a call can find out at once (the source, the name of the
// destination) it answers itself; what goes wrong later vbmp3_getEncodeState tells. The destination appears, or is
// replaced, when the job is done; one that fails or is cancelled leaves what was there before.

VBMP3_API int32_t vbmp3_decodeWave(const char* source, const char* destination);  // in the background
// Opens the source, as vbmp3_open does, plays it, and writes what is decoded; done when the track is through. Stopping
// it, or opening another file, makes the job fail.
VBMP3_API int32_t vbmp3_playDecodeWave(const char* source, const char* destination);
// The source, a WAVE file, of the encodes to come; a failure leaves none.
VBMP3_API int32_t vbmp3_encodeOpen(const char* source);
// In the background, with the MP3 codec of the operating system at the highest bit rate it has, up to 320 kbit/s.
VBMP3_API int32_t vbmp3_encodeStart(const char* destination);
// Cancels whichever job runs, and waits for it, two seconds at most. There is no job then (state 0) and no file that it
// has begun, and what stood at the destination before stands there still. The source of vbmp3_encodeOpen stays, and a
// track that is playing plays on. No job is no error.
VBMP3_API int32_t vbmp3_encodeStop(void);
// 0 no job, 1 running, 2 done, 3 failed (vbmp3_getLastErrorNo tells why); 2 and 3 stay until the next job or
// vbmp3_encodeStop. `permille` (may be null) gets 0 to 1000.
VBMP3_API int32_t vbmp3_getEncodeState(int32_t* permille);

// Called now and then with what is done, 0 to 1000 permille; 0 gives the work up.
typedef int32_t (*vbmp3_Progress)(int32_t permille, void* context);
// The same as vbmp3_decodeWave for a file that holds MPEG audio, on the calling thread: any thread, any number at once,
// before vbmp3_init too. Uses up to `threads` processors, 0: as many as vbmp3_decodeWave. `progress` (may be null) is
// called on the calling thread; when it gives the work up, the result is 0 with VBMP3_ERROR_CANCELLED, and what stood
// at the destination before stands there still. Since 1.1.0.
VBMP3_API int32_t vbmp3_decodeFile(const char* source, const char* destination, int32_t threads,
                                   vbmp3_Progress progress, void* context);

// Tag editing. Writing goes into a new file that takes the place of the old one in one step: a failure leaves the file
// as it was. What is not edited (pictures, unknown frames, lyrics, a field that is handed back as it was read) is kept.
// One that is open, in this library too, may give VBMP3_ERROR_LOCKED: vbmp3_close first.

// clang-format off
enum {
    VBMP3_TAG_ID3V1 = 1,  // title, artist, album 30 bytes of Shift-JIS, comment 28 to 30, year 4: longer texts are cut
    VBMP3_TAG_ID3V2 = 2,
    VBMP3_TAG_SI    = 4,  // the INFO fields of RMP and WAVE
    VBMP3_TAG_APE   = 8   // read and taken off, never written
};

typedef struct vbmp3_Tag {
    uint32_t size;         // sizeof(vbmp3_Tag)
    int32_t  present;      // out: bit mask of VBMP3_TAG_*: which tags the file carries
    int32_t  genreNumber;  // 0 to 191, 255 none
    char     title[512];
    char     artist[512];
    char     album[512];
    char     comment[1024];
    char     year[32];
    char     genre[128];
    char     track[32];    // "5" or "5/12"
} vbmp3_Tag;

// The texts of a vbmp3_TagTexts, in this order.
enum {
    VBMP3_TEXT_TITLE   = 0,
    VBMP3_TEXT_ARTIST  = 1,
    VBMP3_TEXT_ALBUM   = 2,
    VBMP3_TEXT_COMMENT = 3,
    VBMP3_TEXT_YEAR    = 4,
    VBMP3_TEXT_GENRE   = 5,
    VBMP3_TEXT_TRACK   = 6,
    VBMP3_TEXTS        = 7
};

// The same fields at any length. Since 1.1.0.
typedef struct vbmp3_TagTexts {
    uint32_t    size;                // sizeof(vbmp3_TagTexts)
    int32_t     present;             // as in vbmp3_Tag
    int32_t     genreNumber;         // as in vbmp3_Tag
    uint32_t    needed;              // out: bytes of all seven texts, their NULs included
    char*       buffer;              // in: where the texts are put; may be null when bufferSize is 0
    uint32_t    bufferSize;          // in: bytes of the buffer
    const char* texts[VBMP3_TEXTS];  // out of a reading: into the buffer. In for a writing; null is an empty text
} vbmp3_TagTexts;
// clang-format on

// Reads the fields of one tag kind (one VBMP3_TAG_* bit). 0 when the file does not carry it, with VBMP3_OK; the fields
// are then empty.
VBMP3_API int32_t vbmp3_readTag(const char* path, int32_t kind, vbmp3_Tag* tag);
// The same at any length; `kind` 0: the texts that vbmp3_getFileInfo shows of the file. VBMP3_ERROR_SIZE when the
// buffer is too small: `needed` then says how large it must be, and the texts are null.
VBMP3_API int32_t vbmp3_readTagTexts(const char* path, int32_t kind, vbmp3_TagTexts* texts);
// Writes the fields into the tags named by the mask `kinds`; an empty text takes the field away. A text that filled its
// field when it was read, and comes back as it was, keeps the rest that the field could not show.
VBMP3_API int32_t vbmp3_writeTag(const char* path, int32_t kinds, const vbmp3_Tag* tag);
VBMP3_API int32_t vbmp3_writeTagTexts(const char* path, int32_t kinds, const vbmp3_TagTexts* texts);
// Takes the tags of the mask off; those that are not there are no failure.
VBMP3_API int32_t vbmp3_removeTag(const char* path, int32_t kinds);
// Wraps and unwraps without encoding anew; tag and lyrics are carried over, the MPEG frames stay byte for byte. A
// destination that exists is replaced.
VBMP3_API int32_t vbmp3_convertToRmp(const char* source, const char* destination);
VBMP3_API int32_t vbmp3_convertToMp3(const char* source, const char* destination);
// What the tags of one kind hold beyond the fields of vbmp3_Tag, and what taking them off would lose: the number of
// pictures and of other frames or items (either pointer may be null). A tag that cannot be read counts as one.
VBMP3_API int32_t vbmp3_countTagExtras(const char* path, int32_t kind, int32_t* pictures, int32_t* others);

// Every function by its name, for who loads the library at run time: VBMP3_FUNCTIONS(F) is F(vbmp3_init) F(vbmp3_free)
// and so on.
// clang-format off
#define VBMP3_FUNCTIONS(F)                                                                                      \
    F(vbmp3_init) F(vbmp3_free) F(vbmp3_getLastErrorNo) F(vbmp3_getVersion)                                     \
    F(vbmp3_getFileType) F(vbmp3_getFileInfo) F(vbmp3_getGenre)                                                 \
    F(vbmp3_open) F(vbmp3_close) F(vbmp3_play) F(vbmp3_stop) F(vbmp3_pause) F(vbmp3_restart) F(vbmp3_seek)      \
    F(vbmp3_getState) F(vbmp3_getPositionMs) F(vbmp3_setNextFile) F(vbmp3_setListener)                          \
    F(vbmp3_setOutput) F(vbmp3_hasOutputDevice)                                                                 \
    F(vbmp3_setEqualizer) F(vbmp3_reload) F(vbmp3_setPitch) F(vbmp3_setStepPitch) F(vbmp3_setQuality)           \
    F(vbmp3_getWave) F(vbmp3_getSpectrum)                                                                       \
    F(vbmp3_readLyrics3Data) F(vbmp3_getFileLyrics3InfoVB) F(vbmp3_setLyricsFile) F(vbmp3_checkTimeTag)         \
    F(vbmp3_getLyrics2) F(vbmp3_getLyricsText) F(vbmp3_clearLyrics) F(vbmp3_setKaraokeUse)                      \
    F(vbmp3_setNotTagLyricsLine) F(vbmp3_useAtMarkTag) F(vbmp3_setSeekPlay) F(vbmp3_setLyricsShift)             \
    F(vbmp3_decodeWave) F(vbmp3_playDecodeWave) F(vbmp3_encodeOpen) F(vbmp3_encodeStart) F(vbmp3_encodeStop)    \
    F(vbmp3_decodeFile)                                                                                         \
    F(vbmp3_getEncodeState)                                                                                     \
    F(vbmp3_readTag) F(vbmp3_readTagTexts) F(vbmp3_writeTag) F(vbmp3_writeTagTexts) F(vbmp3_removeTag)          \
    F(vbmp3_convertToRmp) F(vbmp3_convertToMp3) F(vbmp3_countTagExtras)
// clang-format on

#ifdef __cplusplus
}
#endif

// The C interface of gogo.dll: encodes one WAVE file into one MP3 file, frame by frame, with LAME.
//
// A run is MPGE_initializeWorkVB, any MPGE_setConfigureVB, MPGE_detectConfigureVB, MPGE_processFrameVB until it gives
// GOGO_FINISHED, MPGE_closeCoderVB, MPGE_endCoderVB. Every thread has a work area of its own: all calls of a run come
// from one thread, which ends its work area before it ends itself, and several threads may encode at the same time.
// MPGE_getUnitStatesVB and MPGE_getVersionVB may be called on any thread and at any time.
// Texts are UTF-8. Every call returns GOGO_OK or an error, unless it says otherwise; without a work area that is
// GOGO_ERROR_STATE. An error of MPGE_setConfigureVB changes nothing. No exception leaves the library.
//
// A run encodes on several processor cores, ahead of the frames that are asked for. The destination appears, or is
// replaced, only with the last frame; a run that is closed before, or that fails, leaves what was there before.
#pragma once

#include <stdint.h>

#if defined(_WIN32) && defined(GOGO_BUILD)
#define GOGO_API __declspec(dllexport)
#elif defined(_WIN32) && !defined(GOGO_STATIC)
#define GOGO_API __declspec(dllimport)
#else
#define GOGO_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

// clang-format off
enum {
    GOGO_OK                = 0,
    GOGO_FINISHED          = 1,  // MPGE_processFrameVB only
    GOGO_ERROR_STATE       = 2,  // the call does not belong here: no work area, nothing running, running already
    GOGO_ERROR_ARGUMENT    = 3,  // unknown item, value out of range
    GOGO_ERROR_SOURCE      = 4,  // missing, unreadable, or it ends before its time
    GOGO_ERROR_FORMAT      = 5,  // not a WAVE file with samples, or a coding that is not read
    GOGO_ERROR_DESTINATION = 6,  // cannot be written: none or no such folder, a folder, read-only, in use, disk full;
                                 // all but the last two are told by MPGE_detectConfigureVB
    GOGO_ERROR_SAME_FILE   = 7,  // destination is the source, by whatever name
    GOGO_ERROR_MEMORY      = 8,
    GOGO_ERROR_ENCODER     = 9   // the encoder refuses the settings
};
// clang-format on

// Items of MPGE_setConfigureVB and MPGE_getConfigureVB.
// clang-format off
enum {
    GOGO_ITEM_SOURCE      = 1,   // text: WAVE file; integer PCM of 8 to 32 bits, float, A-law, mu-law, ADPCM; any rate
                                 // and channels (more than two are mixed down)
    GOGO_ITEM_DESTINATION = 2,   // text: MP3 file
    GOGO_ITEM_CHANNELS    = 3,   // 0 mono, 1 stereo, 2 joint stereo (default); a mono source stays mono
    GOGO_ITEM_BIT_RATE    = 4,   // kbit/s, 8 to 320 (default 128): the nearest that the output frequency allows, 320 at
                                 // most from 32 kHz on, 160 from 16 kHz on, 64 below; with VBR the least. After
                                 // MPGE_detectConfigureVB get gives what is written
    GOGO_ITEM_FREQUENCY   = 6,   // Hz of the output, one of the nine of MPEG audio: 8000, 11025, 12000, 16000, 22050,
                                 // 24000, 32000, 44100 (default), 48000
    GOGO_ITEM_FRAMES      = 15,  // get only, after MPGE_detectConfigureVB: number of MPEG frames of the whole run
    GOGO_ITEM_VBR_QUALITY = 18,  // 0 best to 9 smallest; -1, the default, is a constant bit rate
    GOGO_ITEM_CORES       = 32   // processor cores that the run uses at most, 1 to 64; 0, the default: all of them
};
// clang-format on

// Number of processor cores that an encode uses, at least 1, into `state`.
GOGO_API int32_t MPGE_getUnitStatesVB(int32_t* state);
// Makes the thread's work area, with the defaults; GOGO_ERROR_STATE when it has one already.
GOGO_API int32_t MPGE_initializeWorkVB(void);
// `text` counts for items 1 and 2, and must not be empty; `value` for the others: one that is out of the item's range
// is GOGO_ERROR_ARGUMENT. GOGO_ERROR_STATE between MPGE_detectConfigureVB and MPGE_closeCoderVB. Of several settings of
// one item the last counts.
GOGO_API int32_t MPGE_setConfigureVB(int32_t item, int32_t value, const char* text);
// Opens source and destination as configured, which is when their errors are told. After an error it may be called
// again, with another configuration.
GOGO_API int32_t MPGE_detectConfigureVB(void);
// The value of an item of numbers; GOGO_ERROR_ARGUMENT for a text, GOGO_ERROR_STATE for the frames when nothing runs.
GOGO_API int32_t MPGE_getConfigureVB(int32_t item, int32_t* value);
// One frame further: GOGO_OK there are more, GOGO_FINISHED the file is complete and in its place, else an error, and
// the run is over. Waits no longer than one frame takes to encode.
GOGO_API int32_t MPGE_processFrameVB(void);
// Ends the run; an unfinished destination is removed. The configuration stays, for another run. Nothing open is no
// error.
GOGO_API int32_t MPGE_closeCoderVB(void);
// Releases the work area, and closes what is open. No work area is no error.
GOGO_API int32_t MPGE_endCoderVB(void);
// "1.1.0", of a build that is no release "1.1.0-dev+" and its commit, into `text` of `size` bytes (64 are enough), cut
// to it; GOGO_ERROR_ARGUMENT for a null text or size 0.
GOGO_API int32_t MPGE_getVersionVB(char* text, uint32_t size);

// Every function by its name, for who loads the library at run time: GOGO_FUNCTIONS(F) is F(MPGE_getUnitStatesVB) and
// so on.
// clang-format off
#define GOGO_FUNCTIONS(F)                                                                   \
    F(MPGE_getUnitStatesVB) F(MPGE_initializeWorkVB) F(MPGE_setConfigureVB)                 \
    F(MPGE_detectConfigureVB) F(MPGE_getConfigureVB) F(MPGE_processFrameVB)                 \
    F(MPGE_closeCoderVB) F(MPGE_endCoderVB) F(MPGE_getVersionVB)
// clang-format on

#ifdef __cplusplus
}
#endif

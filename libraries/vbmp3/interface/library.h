// Everything that lives between vbmp3_init and vbmp3_free. The C interface (api_*.cpp) is a thin skin over it, one file
// for each concern. All of it is used on the caller's thread, save the opening of a file; what has threads of its own
// has them inside.
#pragma once

#include <memory>
#include <new>
#include <string>

#include "libraries/vbmp3/dsp/sound_settings.h"
#include "libraries/vbmp3/dsp/spectrum.h"
#include "libraries/vbmp3/jobs/jobs.h"
#include "libraries/vbmp3/lyrics/lyrics_show.h"
#include "libraries/vbmp3/player/player.h"
#include "libraries/vbmp3/vbmp3.h"

namespace vbmp3 {

struct Library {
    Library(const FileOpener& openFile, const OutputSystem& output) : player(sound, output, openFile) {}

    SoundSettings sound;
    Player player;
    Jobs jobs{[this] { player.notify(VBMP3_EVENT_JOB_DONE); }};
    std::string encodeSource;
    SpectrumAnalyzer spectrum;
    LyricsShow lyrics;
};

// What vbmp3_init does; tests have files and devices of their own.
void StartLibrary(const FileOpener& openFile = vbmp3::OpenFile, const OutputSystem& output = {});
// The one between init and free; null outside.
Library* RunningLibrary();

// Number for vbmp3_getLastErrorNo on this thread; returns 1 for VBMP3_OK and 0 otherwise, as most calls do.
int32_t Report(int error);

// Runs `body`, which returns the call's result, with the library; `otherwise` is the result when there is none or the
// body throws. No exception gets out.
template <typename Result, typename Body>
Result withLibrary(Result otherwise, Body body) noexcept {
    try {
        if (Library* self = RunningLibrary()) return body(*self);
        Report(VBMP3_ERROR_NOT_INITIALISED);
    } catch (const std::bad_alloc&) {
        Report(VBMP3_ERROR_MEMORY);
    } catch (...) {
        Report(VBMP3_ERROR_FORMAT);
    }
    return otherwise;
}

// The same for calls that need no library.
template <typename Result, typename Body>
Result Guarded(Result otherwise, Body body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        Report(VBMP3_ERROR_MEMORY);
    } catch (...) {
        Report(VBMP3_ERROR_FORMAT);
    }
    return otherwise;
}

}  // namespace vbmp3

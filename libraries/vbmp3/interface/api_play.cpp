// Life, files, playing and output of the C interface.
#include <algorithm>
#include <mutex>
#include <string>

#include "libraries/files/file_source.h"
#include "libraries/vbmp3/interface/library.h"
#include "libraries/vbmp3/interface/records.h"
#include "libraries/vbmp3/player/track.h"
#include "libraries/vbmp3/tags/file_record.h"
#include "text/encoding.h"

namespace vbmp3 {
namespace {

std::unique_ptr<Library>& Slot() {
    // Never destroyed at process exit: by then the system has ended the threads, and joining them would hang.
    static auto* const theLibrary = new std::unique_ptr<Library>;
    return *theLibrary;
}

// Held where the library is made and taken down, and where another thread than the caller's uses it.
std::mutex& LifeMutex() {
    static auto* const theMutex = new std::mutex;
    return *theMutex;
}

thread_local int lastError = VBMP3_OK;

}  // namespace

Library* RunningLibrary() { return Slot().get(); }

void StartLibrary(const FileOpener& openFile, const OutputSystem& output) {
    const std::lock_guard lock(LifeMutex());
    if (!Slot()) Slot() = std::make_unique<Library>(openFile, output);
}

int32_t Report(int error) {
    lastError = error;
    return error == VBMP3_OK ? 1 : 0;
}

namespace {

// The library may be taken down while the file is being opened, which may take for ever.
int OpenOnAnyThread(const std::string& path, vbmp3_FileInfo* info) {
    if (info != nullptr && !IsRecord(info)) return VBMP3_ERROR_ARGUMENT;
    Ticket ticket;
    FileOpener opener;
    {
        const std::lock_guard lock(LifeMutex());
        if (!RunningLibrary()) return VBMP3_ERROR_NOT_INITIALISED;
        ticket = RunningLibrary()->player.beginOpen();
        opener = RunningLibrary()->player.fileOpener();
    }
    int error = VBMP3_OK;
    vbmp3_FileInfo record{};
    TrackPtr track = OpenTrack(opener, path, ticket, error, &record);
    {
        const std::lock_guard lock(LifeMutex());
        if (!RunningLibrary() || RunningLibrary()->player.finishOpen(ticket, track) != VBMP3_OK)
            return VBMP3_ERROR_SUPERSEDED;
    }
    if (error == VBMP3_OK && info != nullptr) Give(info, record);
    return error;
}

}  // namespace
}  // namespace vbmp3

using namespace vbmp3;

int32_t vbmp3_init(void) {
    return Guarded<int32_t>(0, [] {
        StartLibrary();
        return Report(VBMP3_OK);
    });
}

void vbmp3_free(void) {
    Guarded(0, [] {
        const std::lock_guard lock(LifeMutex());
        Slot().reset();
        return 0;
    });
}

int32_t vbmp3_getLastErrorNo(void) { return lastError; }

void vbmp3_getVersion(char* text, uint32_t size) {
    if (text != nullptr) quenlox::PutUtf8(text, size, QUENLOX_VERSION);
}

int32_t vbmp3_getFileType(const char* path) {
    return Guarded<int32_t>(-VBMP3_ERROR_FORMAT, [&] {
        const auto file = OpenFile(TextOf(path));
        if (!file) {
            Report(VBMP3_ERROR_NOT_FOUND);
            return -VBMP3_ERROR_NOT_FOUND;
        }
        const auto info = Probe(*file, ScanFileLayout(*file));
        Report(info ? VBMP3_OK : VBMP3_ERROR_FORMAT);
        return info ? FileTypeOf(*info) : -VBMP3_ERROR_FORMAT;
    });
}

int32_t vbmp3_open(const char* path, vbmp3_FileInfo* info) {
    return Guarded<int32_t>(0, [&] { return Report(OpenOnAnyThread(TextOf(path), info)); });
}

void vbmp3_close(void) {
    withLibrary(0, [](Library& self) {
        self.player.close();
        return 0;
    });
}

int32_t vbmp3_play(void) {
    return withLibrary<int32_t>(0, [](Library& self) {
        self.sound.applyEqualizer();
        return Report(self.player.play());
    });
}

int32_t vbmp3_stop(void) {
    return withLibrary<int32_t>(0, [](Library& self) { return Report(self.player.stop()); });
}

int32_t vbmp3_pause(void) {
    return withLibrary<int32_t>(0, [](Library& self) { return Report(self.player.pause()); });
}

int32_t vbmp3_restart(void) {
    return withLibrary<int32_t>(0, [](Library& self) { return Report(self.player.restart()); });
}

int32_t vbmp3_seek(double seconds) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        self.lyrics.noteSeek();
        return Report(self.player.seek(seconds));
    });
}

int32_t vbmp3_getState(int32_t* seconds) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        const Player::Snapshot snapshot = self.player.snapshot();
        if (seconds != nullptr) *seconds = static_cast<int32_t>(std::min(snapshot.seconds, 2e9));
        return static_cast<int32_t>(snapshot.state);
    });
}

int64_t vbmp3_getPositionMs(void) {
    return withLibrary<int64_t>(
        0, [](Library& self) { return static_cast<int64_t>(self.player.snapshot().seconds * 1000); });
}

int32_t vbmp3_setNextFile(const char* path) {
    return withLibrary<int32_t>(0, [&](Library& self) { return Report(self.player.setNext(TextOf(path))); });
}

void vbmp3_setListener(vbmp3_Listener listener, void* context) {
    withLibrary(0, [&](Library& self) {
        if (listener == nullptr)
            self.player.setListener(nullptr);
        else
            self.player.setListener([listener, context](int event) { listener(event, context); });
        return 0;
    });
}

int32_t vbmp3_setOutput(int32_t device, int32_t bufferMs) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        if (device < -1 || bufferMs < 50 || bufferMs > 2000) return Report(VBMP3_ERROR_ARGUMENT);
        self.player.setOutput({device, bufferMs});
        return Report(VBMP3_OK);
    });
}

int32_t vbmp3_hasOutputDevice(void) {
    return withLibrary<int32_t>(0, [](Library& self) { return self.player.hasDevice() ? 1 : 0; });
}

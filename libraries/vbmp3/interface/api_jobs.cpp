// Jobs of the C interface: decoding to WAVE, with and without playing, and encoding with the system's codec.
#include <algorithm>
#include <string>

#include "libraries/files/file_source.h"
#include "libraries/files/transaction.h"
#include "libraries/vbmp3/interface/library.h"
#include "libraries/vbmp3/interface/records.h"
#include "libraries/vbmp3/jobs/wave_writer.h"

namespace vbmp3 {
namespace {

// More gain little: the file is written by one.
constexpr unsigned kMostThreads = 4;

int ThreadsOfDecode() { return static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1u, kMostThreads)); }

// What can be said before a job begins, so that the caller hears of it at once.
int Check(Library& self, const std::string& source, const std::string& destination) {
    if (destination.empty()) return VBMP3_ERROR_ARGUMENT;
    if (self.jobs.state() == Jobs::State::Running) return VBMP3_ERROR_BUSY;
    const auto file = OpenFile(source);
    if (!file) return VBMP3_ERROR_NOT_FOUND;
    if (!Probe(*file, ScanFileLayout(*file))) return VBMP3_ERROR_FORMAT;
    return IsSameFile(source, destination) ? VBMP3_ERROR_SAME_FILE : VBMP3_OK;
}

// Writes what the recorder hears until the track has ended. Whatever ends it earlier ends the recorder too.
int Record(Recorder& recorder, WaveWriter& writer, int64_t frames, JobControl& control) {
    const struct AtTheEnd {
        Recorder& recorder;
        ~AtTheEnd() { recorder.abort(); }
    } atTheEnd{recorder};
    std::vector<int16_t> samples;
    int64_t done = 0;
    for (;;) {
        const Recorder::State state = recorder.take(samples);
        if (!writer.write(samples)) return VBMP3_ERROR_WRITE;
        done += static_cast<int64_t>(samples.size() / 2);
        control.progress(frames > 0 ? static_cast<double>(done) / static_cast<double>(frames) : 0);
        if (control.cancelled() || state == Recorder::State::Aborted) return VBMP3_ERROR_NOT_OPEN;
        if (state == Recorder::State::Ended && samples.empty()) break;
    }
    const FileTransaction::Error error = writer.commit();
    return error == FileTransaction::Error::None     ? VBMP3_OK
           : error == FileTransaction::Error::Locked ? VBMP3_ERROR_LOCKED
                                                     : VBMP3_ERROR_WRITE;
}

int PlayAndRecord(Library& self, const std::string& source, const std::string& destination) {
    if (const int error = self.player.open(source); error != VBMP3_OK) return error;
    const TrackPtr track = self.player.current();
    std::shared_ptr<WaveWriter> writer = WaveWriter::begin(destination, track->sampleRate, 2);
    if (!writer) return VBMP3_ERROR_WRITE;
    const auto recorder = std::make_shared<Recorder>();
    self.jobs.start([recorder, writer, frames = track->info.frames](JobControl& control) {
        return Record(*recorder, *writer, frames, control);
    });
    self.player.setRecorder(recorder);
    writer.reset();
    self.sound.applyEqualizer();
    const int error = self.player.play();
    if (error != VBMP3_OK) self.jobs.cancel();
    return error;
}

}  // namespace
}  // namespace vbmp3

using namespace vbmp3;

int32_t vbmp3_decodeWave(const char* source, const char* destination) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        const std::string from = TextOf(source), to = TextOf(destination);
        if (const int error = Check(self, from, to); error != VBMP3_OK) return Report(error);
        self.jobs.start([=](JobControl& control) { return DecodeToWave(from, to, ThreadsOfDecode(), control); });
        return Report(VBMP3_OK);
    });
}

int32_t vbmp3_playDecodeWave(const char* source, const char* destination) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        const std::string from = TextOf(source), to = TextOf(destination);
        const int error = Check(self, from, to);
        return Report(error != VBMP3_OK ? error : PlayAndRecord(self, from, to));
    });
}

int32_t vbmp3_encodeOpen(const char* source) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        self.encodeSource.clear();
        const auto file = OpenFile(TextOf(source));
        if (!file) return Report(VBMP3_ERROR_NOT_FOUND);
        const auto info = Probe(*file, ScanFileLayout(*file));
        if (!info || info->mpeg) return Report(VBMP3_ERROR_FORMAT);
        self.encodeSource = TextOf(source);
        return Report(VBMP3_OK);
    });
}

int32_t vbmp3_encodeStart(const char* destination) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        const std::string from = self.encodeSource, to = TextOf(destination);
        if (from.empty()) return Report(VBMP3_ERROR_NOT_OPEN);
        if (const int error = Check(self, from, to); error != VBMP3_OK) return Report(error);
        if (!HasSystemCodec()) return Report(VBMP3_ERROR_NO_CODEC);
        self.jobs.start([=](JobControl& control) { return EncodeWithSystemCodec(from, to, control); });
        return Report(VBMP3_OK);
    });
}

int32_t vbmp3_encodeStop(void) {
    return withLibrary<int32_t>(0, [](Library& self) {
        self.player.stopRecording();
        self.jobs.cancel();
        return Report(VBMP3_OK);
    });
}

int32_t vbmp3_getEncodeState(int32_t* permille) {
    return withLibrary<int32_t>(0, [&](Library& self) {
        if (permille != nullptr) *permille = self.jobs.permille();
        const Jobs::State state = self.jobs.state();
        if (state == Jobs::State::Failed) Report(self.jobs.error());
        return static_cast<int32_t>(state);
    });
}

int32_t vbmp3_decodeFile(const char* source, const char* destination, int32_t threads, vbmp3_Progress progress,
                         void* context) {
    return Guarded<int32_t>(0, [&] {
        const std::string to = TextOf(destination);
        if (threads < 0 || to.empty()) return Report(VBMP3_ERROR_ARGUMENT);
        const int most = ThreadsOfDecode();
        const auto told = [=](int permille) { return progress == nullptr || progress(permille, context) != 0; };
        return Report(DecodeHere(TextOf(source), to, threads == 0 ? most : std::min(threads, most), told));
    });
}

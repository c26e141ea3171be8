// Decoding to WAVE: in sections on several processors where the stream allows it, else from front to back.
#include <algorithm>
#include <condition_variable>
#include <exception>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "libraries/files/file_source.h"
#include "libraries/formats/wave_format.h"
#include "libraries/vbmp3/decoder/mpeg_sections.h"
#include "libraries/vbmp3/decoder/mpeg_source.h"
#include "libraries/vbmp3/decoder/open_source.h"
#include "libraries/vbmp3/jobs/jobs.h"
#include "libraries/vbmp3/jobs/wave_writer.h"
#include "libraries/vbmp3/vbmp3.h"

namespace vbmp3 {
namespace {

enum class Outcome { Done, Cancelled, WriteFailed, CannotDecode };

// The part of the decoder's samples that is the sound.
std::span<const int16_t> Trimmed(std::span<const int16_t> samples, int channels, int64_t first, const MpegTrim& trim) {
    const int64_t frames = static_cast<int64_t>(samples.size()) / channels;
    const int64_t end = trim.length == INT64_MAX ? INT64_MAX : trim.skip + trim.length;
    const int64_t from = std::clamp<int64_t>(trim.skip - first, 0, frames);
    const int64_t to = std::clamp<int64_t>(end - first, from, frames);
    return samples.subspan(static_cast<size_t>(from * channels), static_cast<size_t>((to - from) * channels));
}

// Workers decode sections in any order, at most a few ahead; the caller's thread writes them in theirs.
class SectionDecode {
  public:
    SectionDecode(const MpegSections& sections, int threads)
        : sections_(sections), list_(sections.sections()), ahead_(static_cast<size_t>(std::max(threads, 0)) + 2) {
        try {
            for (int i = 0; i < threads; ++i) workers_.emplace_back([this] { work(); });
        } catch (const std::exception&) {
            if (workers_.empty()) failed_ = true;  // else fewer than were asked for do as well
        }
    }

    ~SectionDecode() {
        {
            const std::lock_guard lock(mutex_);
            stop_ = true;
        }
        changed_.notify_all();
        for (std::thread& worker : workers_) worker.join();
    }

    // The next section in order; nothing when it could not be decoded.
    std::optional<std::vector<int16_t>> take() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return ready_.contains(taken_) || failed_; });
        const auto found = ready_.find(taken_);
        if (found == ready_.end()) return std::nullopt;
        std::vector<int16_t> samples = std::move(found->second);
        ready_.erase(found);
        ++taken_;
        lock.unlock();
        changed_.notify_all();
        return samples;
    }

    void giveBack(std::vector<int16_t> samples) {
        const std::lock_guard lock(mutex_);
        spare_.push_back(std::move(samples));
    }

  private:
    void work() {
        std::unique_lock lock(mutex_);
        std::vector<int16_t> samples;
        for (;;) {
            changed_.wait(lock, [&] { return stop_ || failed_ || next_ >= list_.size() || next_ < taken_ + ahead_; });
            if (stop_ || failed_ || next_ >= list_.size()) return;
            const size_t number = next_++;
            if (!spare_.empty()) {
                samples = std::move(spare_.back());
                spare_.pop_back();
            }
            lock.unlock();
            bool good = false;
            try {
                good = sections_.decode(list_[number], samples);
            } catch (const std::bad_alloc&) {
            }
            lock.lock();
            if (good)
                ready_[number] = std::move(samples);
            else
                failed_ = true;
            changed_.notify_all();
        }
    }

    const MpegSections& sections_;
    const std::vector<MpegSection>& list_;
    const size_t ahead_;  // sections that may wait to be written
    std::mutex mutex_;
    std::condition_variable changed_;
    size_t next_ = 0;
    size_t taken_ = 0;
    std::map<size_t, std::vector<int16_t>> ready_;
    std::vector<std::vector<int16_t>> spare_;  // memory of sections that have been written
    bool failed_ = false;
    bool stop_ = false;
    std::vector<std::thread> workers_;
};

Outcome DecodeSections(const MpegSections& sections, const MpegScan& scan, int threads, WaveWriter& writer,
                       JobControl& control) {
    const MpegTrim trim = TrimOf(scan);
    const size_t count = sections.sections().size();
    SectionDecode decode(sections, threads);
    for (size_t i = 0; i < count; ++i) {
        if (control.cancelled()) return Outcome::Cancelled;
        auto samples = decode.take();
        if (!samples) return Outcome::CannotDecode;
        const int64_t first = sections.sections()[i].firstFrame * scan.first.samplesPerFrame;
        if (!writer.write(Trimmed(*samples, sections.channels(), first, trim))) return Outcome::WriteFailed;
        decode.giveBack(std::move(*samples));
        control.progress(static_cast<double>(i + 1) / static_cast<double>(count));
    }
    return Outcome::Done;
}

// From front to back; CannotDecode when the rate changes within the stream, which a WAVE file cannot.
Outcome DecodeStraight(std::shared_ptr<const ByteSource> file, const MpegScan& scan, int channels, WaveWriter& writer,
                       JobControl& control) {
    const auto decoder =
        MpegDecoder::open(std::move(file), {scan.soundBegin, scan.end}, MpegDecoder::Samples::Int16, channels);
    if (!decoder) return Outcome::CannotDecode;
    const MpegTrim trim = TrimOf(scan);
    int64_t first = 0;
    for (auto piece = decoder->next(); piece.frames > 0; piece = decoder->next()) {
        if (control.cancelled()) return Outcome::Cancelled;
        if (piece.sampleRate != scan.first.sampleRate) return Outcome::CannotDecode;
        const std::span samples(reinterpret_cast<const int16_t*>(piece.bytes.data()),
                                piece.frames * static_cast<size_t>(channels));
        if (!writer.write(Trimmed(samples, channels, first, trim))) return Outcome::WriteFailed;
        first += static_cast<int64_t>(piece.frames);
        control.progress(scan.samples > 0 ? static_cast<double>(first) / static_cast<double>(scan.samples) : 0);
    }
    return Outcome::Done;
}

// Any source, through floats.
Outcome DecodeSource(Source& source, int64_t frames, int channels, WaveWriter& writer, JobControl& control) {
    std::vector<float> block(2 * 8192);
    std::vector<int16_t> samples;
    int64_t done = 0;
    while (const size_t count = source.read(block)) {
        if (control.cancelled()) return Outcome::Cancelled;
        samples.clear();
        for (size_t i = 0; i < 2 * count; i += channels == 1 ? 2 : 1) samples.push_back(ToInt16(block[i]));
        if (!writer.write(samples)) return Outcome::WriteFailed;
        done += static_cast<int64_t>(count);
        control.progress(frames > 0 ? static_cast<double>(done) / static_cast<double>(frames) : 0);
    }
    return Outcome::Done;
}

}  // namespace

int DecodeToWave(const std::string& sourcePath, const std::string& destination, int threads, JobControl& control,
                 int64_t sectionFrames) {
    std::shared_ptr<const ByteSource> file = OpenFile(sourcePath);
    if (!file) return VBMP3_ERROR_NOT_FOUND;
    // No walk through the file goes on after a cancel.
    file = std::make_shared<StoppableSource>(std::move(file), [&control] { return control.cancelled(); });
    const auto info = Probe(*file, ScanFileLayout(*file), INT64_MAX);
    if (!info) return VBMP3_ERROR_FORMAT;
    if (IsSameFile(sourcePath, destination)) return VBMP3_ERROR_SAME_FILE;

    // Each way of decoding begins the file anew; the plainer one takes over when the faster one cannot.
    std::unique_ptr<WaveWriter> writer;
    Outcome outcome = Outcome::CannotDecode;
    const auto begin = [&](int sampleRate, int channels) {
        writer.reset();
        writer = WaveWriter::begin(destination, sampleRate, channels);
        outcome = writer ? Outcome::CannotDecode : Outcome::WriteFailed;
        return writer != nullptr;
    };
    const int channels = std::min(info->channels, 2);
    if (info->mpeg) {
        const MpegSections sections(file, *info->mpeg, sectionFrames);
        if (threads > 1 && !sections.sections().empty() && begin(info->sampleRate, sections.channels()))
            outcome = DecodeSections(sections, *info->mpeg, threads, *writer, control);
        const int mpegChannels = std::max(channels, sections.channels());
        if (outcome == Outcome::CannotDecode && begin(info->sampleRate, mpegChannels))
            outcome = DecodeStraight(file, *info->mpeg, mpegChannels, *writer, control);
    }
    if (outcome == Outcome::CannotDecode) {
        const auto source = OpenSource(file, *info);
        if (!source) return VBMP3_ERROR_FORMAT;
        if (begin(source->sampleRate(), channels))
            outcome = DecodeSource(*source, info->frames, channels, *writer, control);
    }
    if (control.cancelled()) outcome = Outcome::Cancelled;  // what was read may have ended for that
    if (outcome == Outcome::Done) {
        const FileTransaction::Error error = writer->commit();
        return error == FileTransaction::Error::None     ? VBMP3_OK
               : error == FileTransaction::Error::Locked ? VBMP3_ERROR_LOCKED
                                                         : VBMP3_ERROR_WRITE;
    }
    return outcome == Outcome::WriteFailed ? VBMP3_ERROR_WRITE : VBMP3_ERROR_FORMAT;
}

int DecodeHere(const std::string& source, const std::string& destination, int threads,
               const std::function<bool(int permille)>& progress) {
    const auto file = OpenFile(source);
    if (!file) return VBMP3_ERROR_NOT_FOUND;
    const auto info = Probe(*file, ScanFileLayout(*file));
    if (!info || !info->mpeg) return VBMP3_ERROR_FORMAT;
    JobControl control(progress);
    const int error = DecodeToWave(source, destination, threads, control);
    return error != VBMP3_OK && control.cancelled() ? VBMP3_ERROR_CANCELLED : error;
}

}  // namespace vbmp3

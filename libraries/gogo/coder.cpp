#include "libraries/gogo/coder.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <system_error>

namespace gogo {
namespace {

// Keeps the last `count` samples.
void KeepEnd(Pcm& pcm, size_t count) {
    for (std::vector<float>* side : {&pcm.left, &pcm.right}) {
        if (side->size() > count) side->erase(side->begin(), side->end() - static_cast<long>(count));
    }
}

}  // namespace

std::unique_ptr<Coder> Coder::open(const Settings& settings, int threads, Error& error) {
    std::unique_ptr<Coder> self(new Coder);
    self->settings_ = settings;
    self->reader_ = PcmReader::open(settings.source, settings.frequency, settings.channels == ChannelMode::Mono, error);
    if (!self->reader_) return nullptr;
    if (vbmp3::IsSameFile(settings.source, settings.destination)) {
        error = Error::SameFile;
        return nullptr;
    }
    if (!vbmp3::MayReplace(settings.destination)) {
        error = Error::Destination;
        return nullptr;
    }
    self->channels_ = self->reader_->channels();
    if (!AskEncoder(settings, self->channels_, self->facts_)) {
        error = Error::Encoder;
        return nullptr;
    }
    self->frames_ = FrameCount(self->reader_->length(), self->facts_);
    self->parts_ = PartCount(self->frames_);
    self->file_ = vbmp3::FileTransaction::begin(settings.destination);
    if (!self->file_) {
        error = Error::Destination;
        return nullptr;
    }
    const int cores = threads > 0 ? threads : static_cast<int>(std::thread::hardware_concurrency());
    const auto count = std::clamp<int64_t>(cores, 1, std::min<int64_t>(kMostThreads, self->parts_));
    self->allowedPart_ = count + 2;
    try {
        for (int64_t i = 0; i < count; ++i) self->threads_.emplace_back(&Coder::work, self.get());
    } catch (const std::system_error&) {
        if (self->threads_.empty()) throw;  // else fewer than were asked for do as well
    }
    error = Error::None;
    return self;
}

Coder::~Coder() {
    file_.reset();  // at once: a thread that reads from a slow disk is waited for
    stop();
}

void Coder::stop() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    room_.notify_all();
    for (std::thread& thread : threads_) thread.join();
    threads_.clear();
}

void Coder::work() noexcept {
    Error error = Error::None;
    try {
        bool more = true;
        while (more && error == Error::None) error = encodeNext(more);
    } catch (...) {
        error = Error::Memory;
    }
    if (error == Error::None) return;
    {
        const std::lock_guard lock(mutex_);
        if (workError_ == Error::None) workError_ = error;
        stopping_ = true;
    }
    progress_.notify_all();
    room_.notify_all();
}

// Not taken: there is nothing left to do.
Error Coder::takePart(bool& taken, int64_t& index, Part& part, Pcm& pcm) {
    taken = false;
    const std::lock_guard lock(reading_);
    if (nextPart_ >= parts_ || unreadable_) return Error::None;
    {
        std::unique_lock wait(mutex_);
        room_.wait(wait, [&] { return stopping_ || nextPart_ < allowedPart_; });
        if (stopping_) return Error::None;
    }
    index = nextPart_++;
    part = PartAt(index, frames_);
    // LAME gives a frame when it has seen the one after it.
    const int64_t begin = (part.first - part.lead()) * facts_.samplesPerFrame;
    const int64_t end = part.last ? reader_->length()
                                  : std::min(reader_->length(),
                                             (part.first + part.frames + part.overlap() + 1) * facts_.samplesPerFrame);
    pcm = std::move(carry_);
    carry_ = {};
    if (!read(end - begin - static_cast<int64_t>(pcm.size()), pcm)) {
        unreadable_ = true;
        return stopping_ ? Error::None : Error::Source;
    }
    if (!part.last) {
        const int64_t nextBegin = (part.first + part.frames - kLeadIn) * facts_.samplesPerFrame;
        carry_ = pcm;
        KeepEnd(carry_, static_cast<size_t>(std::max<int64_t>(0, end - nextBegin)));
    }
    taken = true;
    return Error::None;
}

// In pieces, so that whoever stops the threads does not wait for a whole part. False: stopped, or the source ends
// early.
bool Coder::read(int64_t samples, Pcm& pcm) {
    constexpr int64_t kPiece = 32768;
    pcm.left.reserve(pcm.left.size() + static_cast<size_t>(samples));
    if (channels_ > 1) pcm.right.reserve(pcm.right.size() + static_cast<size_t>(samples));
    for (; samples > 0; samples -= kPiece) {
        if (stopping_ || !reader_->read(std::min(samples, kPiece), pcm)) return false;
    }
    return true;
}

Error Coder::encodeNext(bool& more) {
    int64_t index = 0;
    Part part;
    Pcm pcm;
    if (const Error error = takePart(more, index, part, pcm); error != Error::None || !more) return error;
    const auto frameDone = [&] {
        {
            const std::lock_guard lock(mutex_);
            ++encoded_;
        }
        progress_.notify_one();
        return !stopping_.load();
    };
    FrameRun run;
    const Error error = EncodePart(settings_, channels_, part, pcm, frameDone, run);
    if (error != Error::None || stopping_) return error;
    {
        const std::lock_guard lock(mutex_);
        ready_.emplace(index, std::move(run));
    }
    progress_.notify_one();
    return Error::None;
}

Error Coder::processFrame() {
    if (error_ != Error::None || finished_) return Error::State;
    try {
        ++processed_;
        error_ = awaitFrame();
        if (error_ == Error::None && processed_ == frames_) error_ = finish();
    } catch (...) {
        error_ = Error::Memory;
    }
    if (error_ != Error::None) {
        file_.reset();
        stop();
    }
    return error_;
}

// Until as many frames are encoded, in whatever part; for the last one until all are collected. Meanwhile parts are
// collected whenever they are ready: the threads may be waiting for just that.
Error Coder::awaitFrame() {
    const auto reached = [&] { return processed_ < frames_ ? encoded_ >= processed_ : collected_ == parts_; };
    for (;;) {
        {
            std::unique_lock lock(mutex_);
            progress_.wait(lock, [&] { return workError_ != Error::None || ready_.contains(collected_) || reached(); });
            if (workError_ != Error::None) return workError_;
            if (!ready_.contains(collected_)) return Error::None;
        }
        if (const Error error = collect(); error != Error::None) return error;
    }
}

Error Coder::collect() {
    for (;;) {
        FrameRun run;
        {
            const std::lock_guard lock(mutex_);
            const auto found = ready_.find(collected_);
            if (found == ready_.end()) return Error::None;
            run = std::move(found->second);
            ready_.erase(found);
            ++collected_;
            ++allowedPart_;
        }
        room_.notify_all();
        if (collected_ > 1) {
            if (!held_.join(run, run.first() + kOverlap)) return Error::Encoder;
            if (const Error error = write(held_); error != Error::None) return error;
        }
        held_ = std::move(run);
        if (collected_ == parts_) return write(held_);
    }
}

Error Coder::write(const FrameRun& run) {
    if (infoBytes_ == 0) {
        std::copy_n(run.bytes().begin(), 4, info_.firstHeader.begin());
        info_.variableBitRate = settings_.vbrQuality >= 0;
        info_.vbrQuality = settings_.vbrQuality;
        info_.bitRate = facts_.bitRate;
        info_.sourceRate = reader_->sourceRate();
        info_.lowpass = facts_.lowpass;
        info_.encoderDelay = facts_.delay;
        info_.encoderPadding = static_cast<int>(frames_ * facts_.samplesPerFrame - facts_.delay - reader_->length());
        const auto placeholder = MakeInfoFrame(info_);
        infoBytes_ = placeholder.size();
        if (infoBytes_ == 0) return Error::Encoder;
        if (!file_->write(placeholder)) return Error::Destination;
    }
    for (int64_t frame = run.first(); frame < run.end(); ++frame)
        info_.frameSizes.push_back(static_cast<uint16_t>(run.frameBytes(frame)));
    info_.soundBytes += run.bytes().size();
    info_.soundCrc = Crc16(info_.soundCrc, run.bytes());
    return file_->write(run.bytes()) ? Error::None : Error::Destination;
}

Error Coder::finish() {
    stop();
    const auto info = MakeInfoFrame(info_);
    if (info.size() != infoBytes_ || static_cast<int64_t>(info_.frameSizes.size()) != frames_) return Error::Encoder;
    if (!file_->writeAt(0, info) || file_->commit() != vbmp3::FileTransaction::Error::None) return Error::Destination;
    file_.reset();
    finished_ = true;
    return Error::None;
}

}  // namespace gogo

#include "convert/conversion_run.h"

#include <algorithm>
#include <utility>

#include "state/global_state.h"
#include "platform/file_system.h"
#include "platform/gogo.h"
#include "platform/vbmp3.h"
#include "state/media_formats.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

bool IsRmp(const std::string& path) { return FamilyOf(LastFour(path)) == MediaFamily::Rmp; }

}  // namespace

ConversionRun::ConversionRun(GlobalState& state, Vbmp3& vbmp3, std::shared_ptr<Gogo> gogo, FileSystem& files,
                             WindowSystem& windows)
    : state_(state),
      vbmp3_(vbmp3),
      gogo_(std::move(gogo)),
      files_(files),
      windows_(windows),
      encoderThere_(gogo_->available()) {}

// What is to be converted.

void ConversionRun::setOperation(Operation operation) {
    if (running()) return;
    if (Encodes(operation) != Encodes(operation_)) jobs_.clear();
    operation_ = operation;
    onChanged();
}

void ConversionRun::setSettings(const EncoderSettings& settings) {
    if (running()) return;
    settings_ = settings;
    onChanged();
}

void ConversionRun::setSources(const std::vector<std::string>& sources) {
    if (running()) return;
    jobs_ = JobsFor(sources, operation_, {});
    replaceAgreed_ = false;
    onChanged();
}

void ConversionRun::setDestination(const std::string& path) {
    if (running()) return;
    jobs_.resize(1);
    jobs_.front().destination = path;
    replaceAgreed_ = true;
    onChanged();
}

void ConversionRun::setDestinationFolder(const std::string& folder) {
    if (running()) return;
    std::vector<std::string> sources;
    for (const ConversionJob& job : jobs_) sources.push_back(job.source);
    jobs_ = JobsFor(sources, operation_, folder);
    replaceAgreed_ = false;
    onChanged();
}

std::vector<std::string> ConversionRun::replaced() const {
    std::vector<std::string> there;
    for (const ConversionJob& job : jobs_) {
        if (!replaceAgreed_ && files_.fileExists(job.destination)) there.push_back(job.destination);
    }
    return there;
}

// The run.

bool ConversionRun::canStart() const {
    const bool complete = !jobs_.empty() && !jobs_.front().source.empty() && !jobs_.front().destination.empty();
    return complete && !running() && !encode_;
}

void ConversionRun::start() {
    if (!canStart()) return;
    state_.Actions.note("convert", static_cast<std::int64_t>(jobs_.size()));
    progress_ = {};
    progress_.files = jobs_.size();
    outcome_ = Outcome::None;
    started_ = std::chrono::steady_clock::now();
    hooks_.stopPlayback();
    for (const ConversionJob& job : jobs_) hooks_.letGo(job.destination);
    const bool withGogo = Encodes(operation_) && encoderThere_;
    run_ = withGogo ? Run::Encoder : operation_ == Operation::PlayDecode ? Run::PlayedJob : Run::Job;
    startFile();
}

void ConversionRun::startFile() {
    showProgress(0);
    if (run_ == Run::Encoder) {
        startEncoder();
    } else {
        startJob();
    }
}

PlayStatus ConversionRun::expectedStatus() const { return Encodes(operation_) ? kEncode : kDecode; }

// The user has begun something else.
bool ConversionRun::playedOver() const {
    return state_.PlayerStatus == kPlay || state_.PlayerStatus == kPause || state_.PlayerStatus == kWait;
}

void ConversionRun::poll() {
    if (encode_) {
        followEncoder();
    } else if (running() && state_.PlayerStatus != expectedStatus()) {
        // Stopped from the main window, or something else is played by now.
        stopWork();
        leave(Outcome::None);
    } else if (running()) {
        followJob(run_ == Run::Job);
    }
}

void ConversionRun::cancel() {
    if (!running()) return;
    hooks_.showStatus(kStop);
    stopWork();
    leave(Outcome::Cancelled);
    hooks_.stopPlayback();
    hooks_.showStatus(kStop);
}

void ConversionRun::abandon(std::chrono::milliseconds limit) {
    if (running()) {
        stopWork();
        leave(Outcome::Cancelled);
        hooks_.showStatus(kStop);
    }
    if (encode_ && encode_->waitUntilOver(limit)) followEncoder();
    encode_.reset();
}

void ConversionRun::stopWork() {
    if (encode_) {
        encode_->cancel();
    } else {
        vbmp3_.vbmp3_encodeStop();
    }
}

void ConversionRun::leave(Outcome outcome) {
    run_ = Run::None;
    outcome_ = outcome;
    progress_.permille = outcome == Outcome::Made ? 1000 : 0;
    hooks_.setPolling(false);
    onChanged();
}

// Jobs of the library.

void ConversionRun::startJob() {
    const ConversionJob job = jobs_.front();
    if (operation_ == Operation::PlayDecode) {
        // First, so that the main window shows what is heard. Messages are handled meanwhile.
        const auto begun = started_;
        hooks_.setPolling(false);
        hooks_.openHeard(job.source);
        if (!running() || started_ != begun) return;
        if (playedOver()) {
            leave(Outcome::None);
            return;
        }
    }
    if (const LibraryError error = startLibraryJob(job); error != LibraryError::None) return failWithLibrary(error);
    hooks_.showStatus(expectedStatus());
    hooks_.setPolling(true);
}

LibraryError ConversionRun::startLibraryJob(const ConversionJob& job) {
    if (Encodes(operation_)) {
        const LibraryError error = vbmp3_.vbmp3_encodeOpen(job.source);
        return error == LibraryError::None ? vbmp3_.vbmp3_encodeStart(job.destination) : error;
    }
    const auto type = vbmp3_.vbmp3_getFileType(job.source);
    if (!type) return type.error();
    if (!type->mpeg && !type->rmp) return LibraryError::Format;
    return operation_ == Operation::Decode ? vbmp3_.vbmp3_decodeWave(job.source, job.destination)
                                           : vbmp3_.vbmp3_playDecodeWave(job.source, job.destination);
}

void ConversionRun::decodeEnded() {
    if (run_ != Run::PlayedJob) return;
    hooks_.showStatus(kDecode);  // the track's end has stopped the playback, not the run
    followJob(true);
}

// `heard`: nothing of a job that is done is still to be heard.
void ConversionRun::followJob(bool heard) {
    const JobReport report = vbmp3_.vbmp3_getEncodeState();
    switch (report.state) {
        case JobReport::State::Running: showProgress(report.permille / 1000.0); break;
        case JobReport::State::Done:
            if (heard) fileMade();
            break;
        default: failWithLibrary(report.error);
    }
}

// Encoding with gogo.dll.

void ConversionRun::startEncoder() {
    ConversionJob job = jobs_.front();
    toWrap_.clear();
    if (IsRmp(job.destination)) {
        do {
            job.destination += ".mp3";
        } while (files_.fileExists(job.destination));
        toWrap_ = job.destination;
    }
    encodeStatus_ = state_.PlayerStatus;
    hooks_.setPolling(true);
    encode_ = std::make_unique<GogoEncode>(gogo_, job, settings_, windows_, [this] { followEncoder(); });
}

void ConversionRun::followEncoder() {
    if (!encode_) return;
    const GogoEncode::Report report = encode_->report();
    if (running() && state_.PlayerStatus != encodeStatus_) {
        // Something else is played by now.
        stopWork();
        leave(Outcome::None);
    } else if (running() && report.begun && encodeStatus_ != kEncode) {
        encodeStatus_ = kEncode;
        hooks_.showStatus(kEncode);
    }
    if (!report.over) {
        if (running()) showProgress(report.frames > 0 ? static_cast<double>(report.frame) / report.frames : 0);
        return;
    }
    encode_.reset();
    if (!running()) {
        // The cancel came with the last frame. A destination that is complete stays.
        if (report.finished && !toWrap_.empty()) files_.remove(toWrap_);
        onChanged();
    } else if (report.finished) {
        encoderFinished();
    } else {
        fail(report.error, report.reason);
    }
}

void ConversionRun::encoderFinished() {
    if (!toWrap_.empty()) {
        const LibraryError error = vbmp3_.vbmp3_convertToRmp(toWrap_, jobs_.front().destination);
        files_.remove(toWrap_);
        if (error != LibraryError::None) return fail(ConversionError::Other, error);
    }
    fileMade();
}

// The ends of a file and of a run.

void ConversionRun::fileMade() {
    const ConversionJob job = jobs_.front();
    if (Encodes(operation_)) carryTags(job);
    ++progress_.done;
    jobs_.erase(jobs_.begin());
    if (!jobs_.empty()) {
        startFile();
        return;
    }
    leave(Outcome::Made);
    hooks_.made(job.destination);  // messages are handled meanwhile
    if (!playedOver()) hooks_.showStatus(kStop);
    hooks_.refreshBrowserFiles();
}

void ConversionRun::carryTags(const ConversionJob& job) {
    const auto info = vbmp3_.vbmp3_getFileInfo(job.source);
    if (!info || std::ranges::all_of(kTrackTexts, [&](auto text) { return (info->texts.*text).empty(); })) return;
    const int kinds = IsRmp(job.destination) ? int{kTagSi} : kTagId3v1 | kTagId3v2;
    vbmp3_.vbmp3_writeTag(job.destination, kinds, info->texts);
}

void ConversionRun::failWithLibrary(LibraryError error) { fail(ErrorOfJob(operation_, error), error); }

void ConversionRun::fail(ConversionError error, LibraryError why) {
    const std::string reason(TextOf(why));
    error_ = error;
    reason_ = FileNameOf(jobs_.front().source) + (reason.empty() ? "" : ": ") + reason;
    leave(Outcome::Failed);
    hooks_.stopPlayback();
    hooks_.showStatus(kError);
    hooks_.failed();
    onFailed();
}

void ConversionRun::showProgress(double doneOfFile) {
    const double done =
        std::min(1.0, (static_cast<double>(progress_.done) + doneOfFile) / static_cast<double>(progress_.files));
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - started_;
    progress_.permille = static_cast<int>(done * 1000);
    progress_.left = TimeLeft(passed.count(), done);
    onChanged();
}

}  // namespace quenlox

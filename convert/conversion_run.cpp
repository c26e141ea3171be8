#include "convert/conversion_run.h"

#include <algorithm>
#include <iterator>
#include <thread>
#include <utility>

#include "platform/file_system.h"
#include "platform/gogo.h"
#include "platform/vbmp3.h"
#include "state/global_state.h"
#include "state/media_formats.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

bool IsRmp(const std::string& path) { return FamilyOf(LastFour(path)) == MediaFamily::Rmp; }

bool IsMade(const ConversionRun::File& file) { return file.state == ConversionRun::State::Made; }
bool IsFailed(const ConversionRun::File& file) { return file.state == ConversionRun::State::Failed; }
bool IsUnderWay(const ConversionRun::File& file) {
    return file.state == ConversionRun::State::Waiting || file.state == ConversionRun::State::Running;
}

double Seconds(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

}  // namespace

ConversionRun::ConversionRun(GlobalState& state, Vbmp3& vbmp3, std::shared_ptr<Gogo> gogo, FileSystem& files,
                             WindowSystem& windows, int cores)
    : state_(state),
      vbmp3_(vbmp3),
      gogo_(std::move(gogo)),
      files_(files),
      windows_(windows),
      cores_(cores > 0 ? static_cast<std::size_t>(cores) : std::max(1u, std::thread::hardware_concurrency())),
      encoderThere_(gogo_->available()) {}

// What is to be converted.

void ConversionRun::setOperation(Operation operation) {
    if (running()) return;
    if (Encodes(operation) != Encodes(operation_)) list_.clear();
    operation_ = operation;
    onChanged();
}

void ConversionRun::setSettings(const EncoderSettings& settings) {
    if (running()) return;
    settings_ = settings;
    onChanged();
}

std::vector<ConversionJob> ConversionRun::jobs() const {
    std::vector<ConversionJob> open;
    for (const File& file : list_) {
        if (!IsMade(file)) open.push_back(file.job);
    }
    return open;
}

void ConversionRun::setSources(const std::vector<std::string>& sources) {
    if (running()) return;
    list_.clear();
    for (const std::string& source : sources) list_.push_back({{source, {}}});
    proposeDestinations();
}

void ConversionRun::setPlace(bool besideSource, const std::string& folder) {
    if (running()) return;
    besideSource_ = besideSource;
    folder_ = folder;
    std::erase_if(list_, IsMade);
    proposeDestinations();
}

void ConversionRun::proposeDestinations() {
    std::vector<std::string> sources;
    for (const File& file : list_) sources.push_back(file.job.source);
    const auto proposed = JobsFor(sources, operation_, besideSource_ ? std::string() : folder_);
    for (std::size_t i = 0; i < list_.size(); ++i) {
        if (!sources[i].empty()) list_[i] = {proposed[i]};
    }
    replaceAgreed_ = false;
    onChanged();
}

void ConversionRun::setDestination(const std::string& path) {
    if (running()) return;
    std::erase_if(list_, IsMade);
    list_.resize(1);
    list_.front().job.destination = path;
    folder_ = FolderOf(path);
    replaceAgreed_ = true;
    onChanged();
}

void ConversionRun::removeFiles(const std::vector<bool>& which) {
    if (running()) return;
    std::vector<File> kept;
    for (std::size_t i = 0; i < list_.size(); ++i) {
        if (i >= which.size() || !which[i]) kept.push_back(std::move(list_[i]));
    }
    list_ = std::move(kept);
    onChanged();
}

std::vector<std::string> ConversionRun::replaced() const {
    std::vector<std::string> there;
    for (const ConversionJob& job : jobs()) {
        if (!replaceAgreed_ && files_.fileExists(job.destination)) there.push_back(job.destination);
    }
    return there;
}

// The run.

bool ConversionRun::canStart() const {
    const auto first = std::ranges::find_if_not(list_, IsMade);
    const bool complete = first != list_.end() && !first->job.source.empty() && !first->job.destination.empty();
    return complete && !running() && lanes_.empty();
}

ConversionRun::Run ConversionRun::kindOfRun() const {
    if (operation_ == Operation::PlayDecode) return Run::PlayedJob;
    const bool threads = Encodes(operation_) ? encoderThere_ : list_.size() > 1;
    return threads ? Run::Threads : Run::Job;
}

void ConversionRun::start() {
    if (!canStart()) return;
    std::erase_if(list_, IsMade);
    for (File& file : list_) file = {file.job};
    state_.Actions.note("convert", static_cast<std::int64_t>(list_.size()));
    progress_ = {};
    progress_.files = list_.size();
    outcome_ = Outcome::None;
    started_ = Clock::now();
    hooks_.stopPlayback();
    for (const File& file : list_) hooks_.letGo(file.job.destination);
    run_ = kindOfRun();
    side_ = std::min(cores_, list_.size());
    runStatus_ = state_.PlayerStatus;
    if (run_ == Run::Threads) hooks_.setPolling(true);
    goOn();
    onChanged();
}

std::vector<ConversionRun::File>::iterator ConversionRun::nextWaiting() {
    return std::ranges::find(list_, State::Waiting, &File::state);
}

// Begins what can be begun now; with nothing left to do the run is over.
void ConversionRun::goOn() {
    for (auto next = nextWaiting(); running() && next != list_.end(); next = nextWaiting()) {
        const auto file = static_cast<std::size_t>(next - list_.begin());
        if (run_ != Run::Threads) {
            if (startJob(file)) return;
        } else if (lanes_.size() < side_) {
            startLane(file);
        } else {
            break;
        }
    }
    if (!running()) return;
    if (lanes_.empty()) {
        finish();
    } else {
        showProgress();
    }
}

PlayStatus ConversionRun::expectedStatus() const { return Encodes(operation_) ? kEncode : kDecode; }

// The user has begun something else.
bool ConversionRun::playedOver() const {
    return state_.PlayerStatus == kPlay || state_.PlayerStatus == kPause || state_.PlayerStatus == kWait;
}

void ConversionRun::poll() {
    if (!lanes_.empty()) {
        std::vector<std::size_t> files;
        for (const Lane& lane : lanes_) files.push_back(lane.file);
        for (const std::size_t file : files) follow(file);
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

void ConversionRun::cancelFile(std::size_t file) {
    if (!running() || file >= list_.size() || !IsUnderWay(list_[file])) return;
    const bool waiting = list_[file].state == State::Waiting;
    if (const auto lane = std::ranges::find(lanes_, file, &Lane::file); lane != lanes_.end()) {
        lane->cancelled = true;
        lane->work->cancel();
        return onChanged();
    }
    if (!waiting) vbmp3_.vbmp3_encodeStop();
    endFile(file, State::Cancelled);
    if (waiting) return showProgress();
    goOn();
}

void ConversionRun::abandon(std::chrono::milliseconds limit) {
    if (running()) {
        stopWork();
        leave(Outcome::Cancelled);
        hooks_.showStatus(kStop);
    }
    const auto until = Clock::now() + limit;
    while (!lanes_.empty()) {
        if (lanes_.back().work->waitUntilOver(until)) {
            follow(lanes_.back().file);
        } else {
            leftBehind_ = true;
            lanes_.pop_back();
        }
    }
}

void ConversionRun::stopWork() {
    for (const Lane& lane : lanes_) lane.work->cancel();
    if (run_ != Run::Threads) vbmp3_.vbmp3_encodeStop();
}

void ConversionRun::leave(Outcome outcome) {
    run_ = Run::None;
    outcome_ = outcome;
    progress_.permille = outcome == Outcome::Made ? 1000 : 0;
    for (File& file : list_) {
        if (IsUnderWay(file)) file.state = State::Cancelled;
    }
    hooks_.setPolling(false);
    onChanged();
}

// Files with a thread of their own.

void ConversionRun::startLane(std::size_t file) {
    Lane lane;
    lane.file = file;
    lane.started = Clock::now();
    FileConversion::Task task{operation_, list_[file].job, list_[file].job.destination, settings_};
    if (Encodes(operation_) && IsRmp(task.encoded)) {
        do {
            task.encoded += ".mp3";
        } while (files_.fileExists(task.encoded));
        lane.toWrap = task.encoded;
    }
    // Those that go on side by side share the cores; the last ones of a run have more each.
    const auto waiting = static_cast<std::size_t>(std::ranges::count(list_, State::Waiting, &File::state));
    const std::size_t side = std::min(side_, lanes_.size() + waiting);
    if (side > 1) task.cores = static_cast<int>(std::max<std::size_t>(1, cores_ / side));
    list_[file].state = State::Running;
    lane.work = std::make_unique<FileConversion>(FileConversion::Libraries{gogo_, vbmp3_}, std::move(task), windows_,
                                                 [this, file] { follow(file); });
    lanes_.push_back(std::move(lane));
}

void ConversionRun::follow(std::size_t file) {
    const auto found = std::ranges::find(lanes_, file, &Lane::file);
    if (found == lanes_.end()) return;
    const FileConversion::Report report = found->work->report();
    if (running() && state_.PlayerStatus != runStatus_) {
        // Something else is played by now.
        stopWork();
        leave(Outcome::None);
    } else if (running() && report.begun && runStatus_ != expectedStatus()) {
        runStatus_ = expectedStatus();
        hooks_.showStatus(runStatus_);
    }
    if (report.over) {
        Lane lane = std::move(*found);
        lanes_.erase(found);
        laneOver(std::move(lane), report);
    } else if (running()) {
        list_[file].permille = static_cast<int>(std::clamp(report.done, 0.0, 1.0) * 1000);
        found->left = found->cancelled ? -1 : SecondsLeft(Seconds(found->started), report.done);
        list_[file].left = TimeText(found->left);
        showProgress();
    }
}

void ConversionRun::laneOver(Lane lane, const FileConversion::Report& report) {
    if (report.encoded && !lane.toWrap.empty()) files_.remove(lane.toWrap);
    // A cancel may have come with the last frame. A destination that is complete stays.
    if (!running()) return onChanged();
    if (report.finished) {
        endFile(lane.file, State::Made);
    } else if (lane.cancelled) {
        endFile(lane.file, State::Cancelled);
    } else {
        failFile(lane.file, report.error, report.reason);
    }
    goOn();
}

// Jobs of the library.

// False: it has failed, and the next one is to be begun.
bool ConversionRun::startJob(std::size_t file) {
    const ConversionJob job = list_[file].job;
    current_ = file;
    jobStarted_ = Clock::now();
    list_[file].state = State::Running;
    onChanged();
    if (run_ == Run::PlayedJob) {
        // First, so that the main window shows what is heard. Messages are handled meanwhile.
        const auto begun = started_;
        hooks_.setPolling(false);
        hooks_.openHeard(job.source);
        if (!running() || started_ != begun) return true;
        if (playedOver()) {
            leave(Outcome::None);
            return true;
        }
    }
    if (const LibraryError error = startLibraryJob(job); error != LibraryError::None) {
        failFile(file, ErrorOfJob(operation_, error), error);
        return false;
    }
    hooks_.showStatus(expectedStatus());
    hooks_.setPolling(true);
    return true;
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
    File& file = list_[current_];
    if (report.state == JobReport::State::Running) {
        file.permille = report.permille;
        return showProgress();
    }
    if (report.state == JobReport::State::Done) {
        if (!heard) return;
        if (Encodes(operation_)) CarryTags(vbmp3_, file.job);
        endFile(current_, State::Made);
    } else {
        failFile(current_, ErrorOfJob(operation_, report.error), report.error);
    }
    goOn();
}

// The ends of a file and of a run.

void ConversionRun::endFile(std::size_t file, State state) {
    list_[file].state = state;
    list_[file].permille = 0;
    list_[file].left.clear();
    ++progress_.done;
}

void ConversionRun::failFile(std::size_t file, ConversionError error, LibraryError why) {
    list_[file].error = error;
    list_[file].reason = TextOf(why);
    endFile(file, State::Failed);
}

void ConversionRun::finish() {
    if (std::ranges::any_of(list_, IsFailed)) return fail();
    const auto last = std::find_if(list_.rbegin(), list_.rend(), IsMade);
    if (last == list_.rend()) return cancel();
    const std::string made = last->job.destination;
    leave(Outcome::Made);
    hooks_.made(made);  // messages are handled meanwhile
    if (!playedOver()) hooks_.showStatus(kStop);
    hooks_.refreshBrowserFiles();
}

// Told of the first file that has failed.
void ConversionRun::fail() {
    const auto first = std::ranges::find_if(list_, IsFailed);
    const auto others = std::ranges::count_if(list_, IsFailed) - 1;
    error_ = first->error;
    reason_ = FileNameOf(first->job.source) + (first->reason.empty() ? "" : ": ") + first->reason +
              (others > 0 ? "（ほか" + std::to_string(others) + "個も失敗）" : "");
    const bool anyMade = std::ranges::any_of(list_, IsMade);
    leave(Outcome::Failed);
    hooks_.stopPlayback();
    hooks_.showStatus(kError);
    hooks_.failed();
    if (anyMade) hooks_.refreshBrowserFiles();
    onFailed();
}

// All of it takes as long as the slowest file at least.
void ConversionRun::showProgress() {
    double done = static_cast<double>(progress_.done), slowest = -1;
    for (const Lane& lane : lanes_) {
        done += list_[lane.file].permille / 1000.0;
        slowest = std::max(slowest, lane.left);
    }
    if (run_ != Run::Threads) {
        done += list_[current_].permille / 1000.0;
        list_[current_].left = TimeText(SecondsLeft(Seconds(jobStarted_), list_[current_].permille / 1000.0));
    }
    done = std::min(1.0, done / static_cast<double>(progress_.files));
    progress_.permille = static_cast<int>(done * 1000);
    progress_.left = TimeText(std::max(slowest, SecondsLeft(Seconds(started_), done)));
    onProgress();
}

}  // namespace quenlox

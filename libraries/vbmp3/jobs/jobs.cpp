#include "libraries/vbmp3/jobs/jobs.h"

#include <chrono>
#include <utility>

#include "libraries/vbmp3/vbmp3.h"

namespace vbmp3 {

namespace {

constexpr std::chrono::seconds kPatience{2};

}  // namespace

bool Jobs::start(std::function<int(JobControl&)> work) {
    if (state() == State::Running) return false;
    cancel();
    const auto job = std::make_shared<Job>();
    job->finished = finished_;
    thread_ = std::make_unique<SideThread>([job, work = std::move(work)] { run(*job, work); }, kPatience);
    job_ = job;
    return true;
}

void Jobs::run(Job& job, const std::function<int(JobControl&)>& work) {
    int error = VBMP3_ERROR_FORMAT;
    try {
        error = work(job.control);
    } catch (const std::bad_alloc&) {
        error = VBMP3_ERROR_MEMORY;
    } catch (...) {
    }
    job.error = error;
    if (error == VBMP3_OK) job.control.progress(1);
    job.state = error == VBMP3_OK ? State::Done : State::Failed;
    const std::lock_guard lock(job.mutex);
    if (job.finished && !job.control.cancelled()) job.finished();
}

void Jobs::cancel() {
    if (job_) job_->control.cancelled_ = true;
    thread_.reset();
    if (job_) {
        const std::lock_guard lock(job_->mutex);
        job_->finished = nullptr;
    }
    job_.reset();
}

#ifndef _WIN32
int EncodeWithSystemCodec(const std::string&, const std::string&, JobControl&) { return VBMP3_ERROR_NO_CODEC; }
bool HasSystemCodec() { return false; }
#endif

}  // namespace vbmp3

#include "libraries/vbmp3/jobs.h"

#include "libraries/vbmp3/vbmp3.h"

namespace vbmp3 {

bool Jobs::start(std::function<int(JobControl&)> work) {
    if (state_ == State::Running) return false;
    cancel();
    control_ = std::make_shared<JobControl>();
    error_ = VBMP3_OK;
    state_ = State::Running;
    thread_ = std::thread([this, work = std::move(work), control = control_] {
        int error = VBMP3_ERROR_FORMAT;
        try {
            error = work(*control);
        } catch (const std::bad_alloc&) {
            error = VBMP3_ERROR_MEMORY;
        } catch (...) {
        }
        error_ = error;
        if (error == VBMP3_OK) control->progress(1);
        state_ = error == VBMP3_OK ? State::Done : State::Failed;
        if (!control->cancelled()) finished_();
    });
    return true;
}

void Jobs::cancel() {
    if (control_) control_->cancelled_ = true;
    if (thread_.joinable()) thread_.join();
    state_ = State::None;
    control_.reset();
}

#ifndef _WIN32
int encodeWithSystemCodec(const std::string&, const std::string&, JobControl&) { return VBMP3_ERROR_NO_CODEC; }
bool hasSystemCodec() { return false; }
#endif

}  // namespace vbmp3

#include "convert/gogo_encode.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/gogo.h"
#include "forms/window_host.h"

namespace quenlox {
namespace {

// Often enough for a bar that moves evenly, seldom enough not to keep the window busy.
constexpr std::chrono::milliseconds kReportEvery{50};

}  // namespace

struct GogoEncode::Shared {
    std::shared_ptr<Gogo> gogo;
    ConversionJob job;
    EncoderSettings settings;
    std::atomic<bool> cancelled = false;

    std::function<void()> reported;  // of the user-interface thread

    std::mutex mutex;
    std::condition_variable over;
    WindowSystem* windows = nullptr;  // null: nobody listens any more
    bool posted = false;              // a call of `reported` is on its way
    Report report;
};

GogoEncode::GogoEncode(std::shared_ptr<Gogo> gogo, ConversionJob job, const EncoderSettings& settings,
                       WindowSystem& windows, std::function<void()> reported)
    : shared_(std::make_shared<Shared>()) {
    shared_->gogo = std::move(gogo);
    shared_->job = std::move(job);
    shared_->settings = settings;
    shared_->reported = std::move(reported);
    shared_->windows = &windows;
    try {
        std::thread([self = shared_] { work(self); }).detach();
    } catch (const std::system_error&) {
        Report report;
        report.over = true;
        publish(shared_, report);
    }
}

GogoEncode::~GogoEncode() {
    cancel();
    shared_->reported = nullptr;
    const std::lock_guard lock(shared_->mutex);
    shared_->windows = nullptr;
}

void GogoEncode::cancel() { shared_->cancelled = true; }

GogoEncode::Report GogoEncode::report() const {
    const std::lock_guard lock(shared_->mutex);
    return shared_->report;
}

bool GogoEncode::waitUntilOver(std::chrono::milliseconds limit) {
    std::unique_lock lock(shared_->mutex);
    return shared_->over.wait_for(lock, limit, [this] { return shared_->report.over; });
}

void GogoEncode::work(const std::shared_ptr<Shared>& self) noexcept {
    Report report;
    try {
        encode(self, report);
    } catch (...) {
        report.finished = false;  // no memory
    }
    self->gogo->MPGE_closeCoderVB();
    self->gogo->MPGE_endCoderVB();
    report.over = true;
    publish(self, report);
}

void GogoEncode::encode(const std::shared_ptr<Shared>& self, Report& report) {
    using Clock = std::chrono::steady_clock;
    Gogo& gogo = *self->gogo;
    const EncoderSettings& settings = self->settings;
    report.error = ConversionError::GogoStart;
    report.result = gogo.MPGE_initializeWorkVB();
    if (report.result != 0) return;
    report.begun = true;
    publish(self, report);
    gogo.MPGE_setConfigureVB(kGogoSource, 0, self->job.source);
    gogo.MPGE_setConfigureVB(kGogoDestination, 0, self->job.destination);
    gogo.MPGE_setConfigureVB(kGogoFrequency, settings.frequency, {});
    gogo.MPGE_setConfigureVB(kGogoMode, kGogoModeValue, {});
    if (settings.vbrQuality != kNoVbr) gogo.MPGE_setConfigureVB(kGogoVbrQuality, settings.vbrQuality, {});
    gogo.MPGE_setConfigureVB(kGogoBitRate, BitRateAt(settings.frequency, settings.bitRate), {});
    report.error = ConversionError::GogoFile;
    report.result = gogo.MPGE_detectConfigureVB();
    if (report.result != 0) return;
    gogo.MPGE_getConfigureVB(kGogoFrames, report.frames);
    report.error = ConversionError::GogoEncode;
    for (auto next = Clock::now(); report.result == 0 && !self->cancelled;) {
        report.result = gogo.MPGE_processFrameVB();
        ++report.frame;
        if (const auto now = Clock::now(); now >= next) {
            publish(self, report);
            next = now + kReportEvery;
        }
    }
    report.finished = report.result == 1;
}

void GogoEncode::publish(const std::shared_ptr<Shared>& self, const Report& report) noexcept {
    const std::lock_guard lock(self->mutex);
    self->report = report;
    if (report.over) self->over.notify_all();
    if (!self->windows || self->posted) return;
    self->posted = true;
    try {
        self->windows->post([self] {
            {
                const std::lock_guard taken(self->mutex);
                self->posted = false;
            }
            const auto reported = self->reported;  // it may end this encode
            if (reported) reported();
        });
    } catch (...) {
        self->posted = false;  // no memory: the timer asks too
    }
}

}  // namespace quenlox

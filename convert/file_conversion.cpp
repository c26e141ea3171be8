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
constexpr std::int32_t kJointStereo = 2;

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
    report.reason = gogo.MPGE_initializeWorkVB();
    if (report.reason != LibraryError::None) return;
    report.begun = true;
    publish(self, report);
    gogo.MPGE_setConfigureVB(GogoItem::Source, self->job.source);
    gogo.MPGE_setConfigureVB(GogoItem::Destination, self->job.destination);
    gogo.MPGE_setConfigureVB(GogoItem::Frequency, settings.frequency);
    gogo.MPGE_setConfigureVB(GogoItem::Channels, kJointStereo);
    if (settings.vbrQuality != kNoVbr) gogo.MPGE_setConfigureVB(GogoItem::VbrQuality, settings.vbrQuality);
    gogo.MPGE_setConfigureVB(GogoItem::BitRate, BitRateAt(settings.frequency, settings.bitRate));
    report.error = ConversionError::GogoFile;
    report.reason = gogo.MPGE_detectConfigureVB();
    if (report.reason != LibraryError::None) return;
    report.frames = gogo.MPGE_getConfigureVB(GogoItem::Frames).value_or(0);
    report.error = ConversionError::GogoEncode;
    GogoFrame frame;
    for (auto next = Clock::now(); !frame.finished && frame.error == LibraryError::None && !self->cancelled;) {
        frame = gogo.MPGE_processFrameVB();
        report.reason = frame.error;
        ++report.frame;
        if (const auto now = Clock::now(); now >= next) {
            publish(self, report);
            next = now + kReportEvery;
        }
    }
    report.finished = frame.finished;
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

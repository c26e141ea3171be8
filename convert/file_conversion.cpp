#include "convert/file_conversion.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "forms/window_host.h"
#include "platform/gogo.h"
#include "platform/vbmp3.h"

namespace quenlox {
namespace {

using Clock = std::chrono::steady_clock;

// Often enough for a bar that moves evenly, seldom enough not to keep the window busy.
constexpr std::chrono::milliseconds kReportEvery{50};
constexpr std::int32_t kJointStereo = 2;

}  // namespace

struct FileConversion::Shared {
    Shared(const Libraries& of, Task what) : libraries(of), task(std::move(what)) {}

    Libraries libraries;
    Task task;
    std::atomic<bool> cancelled = false;
    Clock::time_point nextReport = Clock::now();  // of the thread

    std::function<void()> reported;  // of the user-interface thread

    std::mutex mutex;
    std::condition_variable over;
    WindowSystem* windows = nullptr;  // null: nobody listens any more
    bool posted = false;              // a call of `reported` is on its way
    Report report;

    bool isDue() {
        const auto now = Clock::now();
        if (now < nextReport) return false;
        nextReport = now + kReportEvery;
        return true;
    }
};

FileConversion::FileConversion(const Libraries& libraries, Task task, WindowSystem& windows,
                               std::function<void()> reported)
    : shared_(std::make_shared<Shared>(libraries, std::move(task))) {
    shared_->reported = std::move(reported);
    shared_->windows = &windows;
    try {
        std::thread([self = shared_] { work(self); }).detach();
    } catch (const std::system_error&) {
        Report report;
        report.over = true;
        report.reason = LibraryError::Memory;
        publish(shared_, report);
    }
}

FileConversion::~FileConversion() {
    cancel();
    shared_->reported = nullptr;
    const std::lock_guard lock(shared_->mutex);
    shared_->windows = nullptr;
}

void FileConversion::cancel() { shared_->cancelled = true; }

FileConversion::Report FileConversion::report() const {
    const std::lock_guard lock(shared_->mutex);
    return shared_->report;
}

bool FileConversion::waitUntilOver(Clock::time_point limit) {
    std::unique_lock lock(shared_->mutex);
    return shared_->over.wait_until(lock, limit, [this] { return shared_->report.over; });
}

void FileConversion::work(const std::shared_ptr<Shared>& self) noexcept {
    Report report;
    try {
        if (Encodes(self->task.operation)) {
            encode(self, report);
        } else {
            decode(self, report);
        }
    } catch (...) {
        report.finished = false;
        report.reason = LibraryError::Memory;
    }
    report.over = true;
    publish(self, report);
}

void FileConversion::decode(const std::shared_ptr<Shared>& self, Report& report) {
    const ConversionJob& job = self->task.job;
    report.begun = true;
    publish(self, report);
    report.reason =
        self->libraries.vbmp3.vbmp3_decodeFile(job.source, job.destination, self->task.cores, [&](double done) {
            report.done = done;
            if (self->isDue()) publish(self, report);
            return !self->cancelled;
        });
    report.finished = report.reason == LibraryError::None;
    report.error = ErrorOfJob(self->task.operation, report.reason);
}

void FileConversion::encode(const std::shared_ptr<Shared>& self, Report& report) {
    const ConversionJob& job = self->task.job;
    encodeFrames(self, report);
    self->libraries.gogo->MPGE_closeCoderVB();
    self->libraries.gogo->MPGE_endCoderVB();
    if (!report.finished) return;
    Vbmp3& vbmp3 = self->libraries.vbmp3;
    if (self->task.encoded != job.destination) {
        report.reason =
            self->cancelled ? LibraryError::None : vbmp3.vbmp3_convertToRmp(self->task.encoded, job.destination);
        report.finished = !self->cancelled && report.reason == LibraryError::None;
        report.error = ConversionError::Other;
    }
    if (report.finished) CarryTags(vbmp3, job);
}

void FileConversion::encodeFrames(const std::shared_ptr<Shared>& self, Report& report) {
    Gogo& gogo = *self->libraries.gogo;
    const EncoderSettings& settings = self->task.settings;
    report.error = ConversionError::GogoStart;
    report.reason = gogo.MPGE_initializeWorkVB();
    if (report.reason != LibraryError::None) return;
    report.begun = true;
    publish(self, report);
    gogo.MPGE_setConfigureVB(GogoItem::Source, self->task.job.source);
    gogo.MPGE_setConfigureVB(GogoItem::Destination, self->task.encoded);
    gogo.MPGE_setConfigureVB(GogoItem::Frequency, settings.frequency);
    gogo.MPGE_setConfigureVB(GogoItem::Channels, kJointStereo);
    if (settings.vbrQuality != kNoVbr) gogo.MPGE_setConfigureVB(GogoItem::VbrQuality, settings.vbrQuality);
    gogo.MPGE_setConfigureVB(GogoItem::BitRate, BitRateAt(settings.frequency, settings.bitRate));
    if (self->task.cores > 0) gogo.MPGE_setConfigureVB(GogoItem::Cores, self->task.cores);
    report.error = ConversionError::GogoFile;
    report.reason = gogo.MPGE_detectConfigureVB();
    if (report.reason != LibraryError::None) return;
    const std::int32_t frames = gogo.MPGE_getConfigureVB(GogoItem::Frames).value_or(0);
    report.error = ConversionError::GogoEncode;
    GogoFrame frame;
    for (std::int64_t count = 1; !frame.finished && frame.error == LibraryError::None && !self->cancelled; ++count) {
        frame = gogo.MPGE_processFrameVB();
        report.reason = frame.error;
        report.done = frames > 0 ? static_cast<double>(count) / frames : 0;
        if (self->isDue()) publish(self, report);
    }
    report.encoded = report.finished = frame.finished;
}

void FileConversion::publish(const std::shared_ptr<Shared>& self, const Report& report) noexcept {
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
            const auto reported = self->reported;  // it may end this conversion
            if (reported) reported();
        });
    } catch (...) {
        self->posted = false;  // no memory: the timer asks too
    }
}

}  // namespace quenlox

// The C interface over one work area for each thread.
#include <cstdio>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <thread>

#include "libraries/gogo/coder.h"
#include "libraries/gogo/gogo.h"

namespace gogo {
namespace {

constexpr int kFrequencies[] = {48000, 44100, 32000, 24000, 22050, 16000, 12000, 11025, 8000};

struct Work {
    Settings settings;
    std::unique_ptr<Coder> coder;
    int64_t frames = 0;
};

// The work areas by their threads, which alone use them. Never destroyed: at the end of a process its threads are gone
// before the library is told, and there is nothing to wait for.
class WorkAreas {
  public:
    static WorkAreas& all() {
        static auto* const instance = new WorkAreas;
        return *instance;
    }
    // Of this thread; null: it has none.
    Work* mine() {
        const std::lock_guard lock(mutex_);
        const auto found = areas_.find(std::this_thread::get_id());
        return found == areas_.end() ? nullptr : found->second.get();
    }
    bool make() {
        const std::lock_guard lock(mutex_);
        std::unique_ptr<Work>& area = areas_[std::this_thread::get_id()];
        if (area) return false;
        area = std::make_unique<Work>();
        return true;
    }
    void end() {
        std::unique_ptr<Work> area;  // ended outside the lock: its threads are waited for
        const std::lock_guard lock(mutex_);
        const auto found = areas_.find(std::this_thread::get_id());
        if (found == areas_.end()) return;
        area = std::move(found->second);
        areas_.erase(found);
    }

  private:
    std::mutex mutex_;
    std::map<std::thread::id, std::unique_ptr<Work>> areas_;
};

template <class Body>
int32_t Guarded(Body body) noexcept {
    try {
        return body();
    } catch (...) {
        return GOGO_ERROR_MEMORY;
    }
}

template <class Body>
int32_t WithWork(Body body) noexcept {
    return Guarded([&]() -> int32_t {
        Work* const area = WorkAreas::all().mine();
        return area ? body(*area) : int32_t{GOGO_ERROR_STATE};
    });
}

bool IsFrequency(int value) {
    for (const int frequency : kFrequencies) {
        if (frequency == value) return true;
    }
    return false;
}

int32_t Set(Settings& settings, int32_t item, int32_t value, const char* text) {
    const bool path = item == GOGO_ITEM_SOURCE || item == GOGO_ITEM_DESTINATION;
    if (path) {
        if (text == nullptr || *text == '\0') return GOGO_ERROR_ARGUMENT;
        (item == GOGO_ITEM_SOURCE ? settings.source : settings.destination) = text;
        return GOGO_OK;
    }
    switch (item) {
        case GOGO_ITEM_CHANNELS:
            if (value < 0 || value > 2) return GOGO_ERROR_ARGUMENT;
            settings.channels = ChannelMode(value);
            return GOGO_OK;
        case GOGO_ITEM_BIT_RATE:
            if (value < 8 || value > 320) return GOGO_ERROR_ARGUMENT;
            settings.bitRate = value;
            return GOGO_OK;
        case GOGO_ITEM_FREQUENCY:
            if (!IsFrequency(value)) return GOGO_ERROR_ARGUMENT;
            settings.frequency = value;
            return GOGO_OK;
        case GOGO_ITEM_VBR_QUALITY:
            if (value < -1 || value > 9) return GOGO_ERROR_ARGUMENT;
            settings.vbrQuality = value;
            return GOGO_OK;
        case GOGO_ITEM_CORES:
            if (value < 0 || value > Coder::kMostThreads) return GOGO_ERROR_ARGUMENT;
            settings.cores = value;
            return GOGO_OK;
        default: return GOGO_ERROR_ARGUMENT;
    }
}

int32_t Get(const Work& self, int32_t item, int32_t& value) {
    switch (item) {
        case GOGO_ITEM_CHANNELS: value = static_cast<int32_t>(self.settings.channels); return GOGO_OK;
        case GOGO_ITEM_BIT_RATE: value = self.coder ? self.coder->bitRate() : self.settings.bitRate; return GOGO_OK;
        case GOGO_ITEM_FREQUENCY: value = self.settings.frequency; return GOGO_OK;
        case GOGO_ITEM_VBR_QUALITY: value = self.settings.vbrQuality; return GOGO_OK;
        case GOGO_ITEM_CORES: value = self.settings.cores; return GOGO_OK;
        case GOGO_ITEM_FRAMES:
            value = static_cast<int32_t>(std::min<int64_t>(self.frames, INT32_MAX));
            return self.frames > 0 ? GOGO_OK : GOGO_ERROR_STATE;
        default: return GOGO_ERROR_ARGUMENT;
    }
}

}  // namespace
}  // namespace gogo

using namespace gogo;

int32_t MPGE_getUnitStatesVB(int32_t* state) {
    if (state == nullptr) return GOGO_ERROR_ARGUMENT;
    *state = static_cast<int32_t>(std::max(1u, std::thread::hardware_concurrency()));
    return GOGO_OK;
}

int32_t MPGE_initializeWorkVB(void) {
    return Guarded([]() -> int32_t { return WorkAreas::all().make() ? int32_t{GOGO_OK} : int32_t{GOGO_ERROR_STATE}; });
}

int32_t MPGE_setConfigureVB(int32_t item, int32_t value, const char* text) {
    return WithWork([&](Work& self) -> int32_t {
        return self.coder ? int32_t{GOGO_ERROR_STATE} : Set(self.settings, item, value, text);
    });
}

int32_t MPGE_detectConfigureVB(void) {
    return WithWork([](Work& self) -> int32_t {
        if (self.coder) return GOGO_ERROR_STATE;
        Error error = Error::None;
        self.coder = Coder::open(self.settings, self.settings.cores, error);
        self.frames = self.coder ? self.coder->frames() : 0;
        return static_cast<int32_t>(error);
    });
}

int32_t MPGE_getConfigureVB(int32_t item, int32_t* value) {
    return WithWork([&](Work& self) -> int32_t {
        return value == nullptr ? int32_t{GOGO_ERROR_ARGUMENT} : Get(self, item, *value);
    });
}

int32_t MPGE_processFrameVB(void) {
    return WithWork([](Work& self) -> int32_t {
        if (!self.coder) return GOGO_ERROR_STATE;
        const Error error = self.coder->processFrame();
        if (error != Error::None) return static_cast<int32_t>(error);
        return self.coder->finished() ? GOGO_FINISHED : GOGO_OK;
    });
}

int32_t MPGE_closeCoderVB(void) {
    return WithWork([](Work& self) -> int32_t {
        self.coder.reset();
        self.frames = 0;
        return GOGO_OK;
    });
}

int32_t MPGE_endCoderVB(void) {
    return Guarded([]() -> int32_t {
        WorkAreas::all().end();
        return GOGO_OK;
    });
}

int32_t MPGE_getVersionVB(char* text, uint32_t size) {
    if (text == nullptr || size == 0) return GOGO_ERROR_ARGUMENT;
    std::snprintf(text, size, "%s", QUENLOX_VERSION);
    return GOGO_OK;
}

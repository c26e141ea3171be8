// A count of frames that goes on with time between two looks at it, so that nobody has to look often. A
// plain value: who shares one between threads guards it.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace vbmp3 {

struct RunningCount {
    using Clock = std::chrono::steady_clock;

    int64_t frames = 0;  // at `at`
    Clock::time_point at{};
    double rate = 0;    // frames a second; 0: it stands
    int64_t limit = 0;  // where it stands at the latest

    int64_t atTime(Clock::time_point now) const {
        if (rate <= 0 || now <= at) return frames;
        const double passed = std::chrono::duration<double>(now - at).count() * rate;
        return std::max(
            frames, static_cast<int64_t>(std::min(static_cast<double>(frames) + passed, static_cast<double>(limit))));
    }
    int64_t now() const { return atTime(Clock::now()); }
};

}  // namespace vbmp3

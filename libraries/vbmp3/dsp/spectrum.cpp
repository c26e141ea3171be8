#include "libraries/vbmp3/dsp/spectrum.h"

#include <kissfft/kiss_fft.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <vector>

namespace vbmp3 {
namespace {

constexpr double kLowest = 40.0;
constexpr double kHighest = 16000.0;
constexpr double kRangeDb = 72.0;

}  // namespace

struct SpectrumAnalyzer::Plan {
    explicit Plan(int rate)
        : sampleRate(rate),
          // About 46 ms at every rate, 2048 points at 44.1 kHz.
          size(static_cast<int>(std::bit_ceil(static_cast<unsigned>(rate * 0.035)))),
          fft(kiss_fft_alloc(size, 0, nullptr, nullptr), kiss_fft_free) {
        window.resize(size);
        for (int i = 0; i < size; ++i)
            window[i] = static_cast<float>(0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * i / size));
        left.resize(size);
        right.resize(size);
        in.resize(size);
        out.resize(size);
        power.resize(size / 2 + 1);
    }

    int sampleRate;
    int size;
    std::unique_ptr<kiss_fft_state, void (*)(void*)> fft;
    std::vector<float> window;
    std::vector<int16_t> left, right;
    std::vector<kiss_fft_cpx> in, out;
    std::vector<float> power;
};

SpectrumAnalyzer::SpectrumAnalyzer() = default;
SpectrumAnalyzer::~SpectrumAnalyzer() = default;

void SpectrumAnalyzer::read(const Tap& tap, int64_t frame, std::span<int32_t> levels) {
    if (!plan_ || plan_->sampleRate != tap.sampleRate()) plan_ = std::make_unique<Plan>(tap.sampleRate());
    Plan& plan = *plan_;
    const int size = plan.size;
    tap.read(frame - size / 2, size, plan.left.data(), plan.right.data());
    for (int i = 0; i < size; ++i) {
        plan.in[i].r = static_cast<float>(plan.left[i]) * plan.window[i];
        plan.in[i].i = static_cast<float>(plan.right[i]) * plan.window[i];
    }
    // One complex transform serves both channels: the power at k and at -k together is that of left and right.
    kiss_fft(plan.fft.get(), plan.in.data(), plan.out.data());
    for (int k = 0; k <= size / 2; ++k) {
        const kiss_fft_cpx a = plan.out[k];
        const kiss_fft_cpx b = plan.out[(size - k) & (size - 1)];
        plan.power[k] = a.r * a.r + a.i * a.i + b.r * b.r + b.i * b.i;
    }
    // A sine of full scale in both channels has the height 32768 · size / 4 in each (Hann halves it); the sum above
    // counts every channel twice.
    const double full = 4.0 * std::pow(32768.0 * size / 4.0, 2);
    const double perHz = static_cast<double>(size) / plan.sampleRate;
    const auto count = static_cast<double>(levels.size());
    for (size_t band = 0; band < levels.size(); ++band) {
        const double low = kLowest * std::pow(kHighest / kLowest, static_cast<double>(band) / count) * perHz;
        const double high = kLowest * std::pow(kHighest / kLowest, static_cast<double>(band + 1) / count) * perHz;
        // The strongest bin inside, and between two bins what lies on the line from one to the other, so that narrow
        // low bands do not jump.
        const auto at = [&plan, size](double bin) {
            if (bin >= size / 2) return 0.0;
            const int k = static_cast<int>(bin);
            const double part = bin - k;
            return plan.power[k] * (1.0 - part) + plan.power[k + 1] * part;
        };
        double power = at((low + high) / 2.0);
        for (int k = static_cast<int>(std::ceil(low)); k < high && k <= size / 2; ++k)
            power = std::max(power, static_cast<double>(plan.power[k]));
        const double db = 10.0 * std::log10(power / full + 1e-12);
        levels[band] = static_cast<int32_t>(std::lround(std::clamp(1.0 + db / kRangeDb, 0.0, 1.0) * 1000.0));
    }
}

}  // namespace vbmp3

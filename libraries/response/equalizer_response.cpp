#include "libraries/response/equalizer_response.h"

#include <algorithm>
#include <cmath>

namespace quenlox {

EqualizerResponse::EqualizerResponse(std::span<const double> values)
    : bands_(std::min(values.size(), kEqualizerBands)) {
    for (std::size_t i = 0; i < bands_; ++i) {
        x_[i] = std::log(kEqualizerHz[i]);
        y_[i] = values[i];
    }
    // Slopes at the inner points: the weighted harmonic mean of the two secants, 0 at a peak or dip.
    for (std::size_t i = 1; i + 1 < bands_; ++i) {
        const double left = x_[i] - x_[i - 1], right = x_[i + 1] - x_[i];
        const double before = (y_[i] - y_[i - 1]) / left, after = (y_[i + 1] - y_[i]) / right;
        if (before * after > 0.0) {
            const double w1 = 2.0 * right + left, w2 = right + 2.0 * left;
            slope_[i] = (w1 + w2) / (w1 / before + w2 / after);
        }
    }
}

double EqualizerResponse::atLog(double logHz) const {
    const auto end = x_.begin() + static_cast<std::ptrdiff_t>(bands_);
    if (bands_ == 0) return 0;
    if (logHz <= x_[0]) return y_[0];
    if (logHz >= x_[bands_ - 1]) return y_[bands_ - 1];
    const auto i = static_cast<std::size_t>(std::upper_bound(x_.begin(), end, logHz) - x_.begin() - 1);
    const double width = x_[i + 1] - x_[i], t = (logHz - x_[i]) / width, s = 1.0 - t;
    return (1.0 + 2.0 * t) * s * s * y_[i] + t * t * (3.0 - 2.0 * t) * y_[i + 1] +
           width * t * s * (s * slope_[i] - t * slope_[i + 1]);
}

}  // namespace quenlox

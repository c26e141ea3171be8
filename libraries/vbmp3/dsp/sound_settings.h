// What the caller has asked of the sound: equalizer, pitch, tempo and their quality. Written by the caller's thread,
// read by the output thread without a lock; a set of values is seen whole or not at all. Outlives every Chain that
// reads it.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>

namespace vbmp3 {

inline constexpr int kBands = 10;
// Gains of the ten bands in tenths of a decibel, -120 to +120.
using BandGains = std::array<int32_t, kBands>;

// How carefully pitch and tempo are changed.
enum class Quality : int32_t { Standard, High, Light };

struct SoundValues {
    bool equalizer = false;  // false: the equalizer is off and the sound passes bit-exact
    BandGains gains{};
    int pitchPercent = 100;  // 50 to 200
    double tempo = 1.0;      // 0.25 to 4, speed relative to normal
    Quality quality = Quality::Standard;
    friend bool operator==(const SoundValues&, const SoundValues&) = default;
};

class SoundSettings {
  public:
    // Kept until applyEqualizer; gains are limited to ±120. Nothing is off.
    void setEqualizer(const std::optional<BandGains>& gains);
    // Hands the gains last set to the sound (at the start of a play, and on a reload).
    void applyEqualizer();
    // False when out of 50 to 200 percent.
    bool setPitch(int percent);
    // Speed 1 + (factor - 1) / base; false when base is not positive or the speed is out of 0.25 to 4.
    bool setStepPitch(int factor, int base);

    // A Quality; false for another number.
    bool setQuality(int quality);

    // Output thread. Grows with every change that read() has to give.
    uint32_t version() const { return version_.load(std::memory_order_acquire); }
    // The values as of one version; nothing while the caller is just writing (ask again with the next block).
    std::optional<SoundValues> read() const;

  private:
    void publish(const SoundValues& values);

    std::optional<BandGains> pending_;
    SoundValues current_;
    std::atomic<uint32_t> version_{0};  // odd while the values are being written
    std::atomic<bool> equalizer_{false};
    std::array<std::atomic<int32_t>, kBands> gains_{};
    std::atomic<int32_t> pitchPercent_{100};
    std::atomic<double> tempo_{1.0};
    std::atomic<Quality> quality_{Quality::Standard};
};

}  // namespace vbmp3

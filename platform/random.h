// Chance: the random orders and the random equalizer pattern draw from it. On the user-interface thread; never fails.
#pragma once

#include <cstdint>
#include <random>

namespace quenlox {

class Random {
  public:
    virtual ~Random() = default;
    virtual double next() = 0;  // uniform in [0, 1)
};

class SeededRandom : public Random {
  public:
    explicit SeededRandom(std::uint64_t seed) : engine_(seed) {}
    double next() override { return static_cast<double>(engine_() >> 11) * 0x1p-53; }

  private:
    std::mt19937_64 engine_;
};

}  // namespace quenlox

// Chance that the test has laid ready; when it is used up it begins again.
#pragma once

#include <utility>
#include <vector>

#include "platform/random.h"

namespace quenlox {

class FakeRandom : public Random {
  public:
    explicit FakeRandom(std::vector<double> values = {0.5}) : values_(std::move(values)) {}
    double next() override { return values_[place_++ % values_.size()]; }

  private:
    std::vector<double> values_;
    std::size_t place_ = 0;
};

}  // namespace quenlox

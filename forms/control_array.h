// Controls that share a name and are told apart by their index; the indexes may have gaps.
#pragma once

#include <cassert>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "forms/control.h"

namespace quenlox {

template <class T>
class ControlArray {
  public:
    // Elements first to last; further arguments go to each element's constructor between name and index.
    template <class... Arguments>
    void fill(Form& form, const std::string& name, int first, int last, const Arguments&... arguments) {
        if (last >= static_cast<int>(elements_.size())) elements_.resize(static_cast<std::size_t>(last) + 1);
        for (int i = first; i <= last; ++i) {
            elements_[static_cast<std::size_t>(i)] = std::make_unique<T>(form, name, arguments..., i);
        }
    }
    T& operator[](int index) const {
        assert(has(index));
        return *elements_[static_cast<std::size_t>(index)];
    }
    bool has(int index) const {
        return index >= 0 && index < static_cast<int>(elements_.size()) && elements_[static_cast<std::size_t>(index)];
    }

  private:
    std::vector<std::unique_ptr<T>> elements_;
};

}  // namespace quenlox

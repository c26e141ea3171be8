// Owns the options. Every change goes through here, and whoever is concerned by one of the fields hears of it, whether
// the options window, a menu or a skin made the change. On the user-interface thread.
#pragma once

#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

#include "state/options.h"

namespace quenlox {

class OptionStore {
  public:
    using Listener = std::function<void()>;

    OptionStore() = default;
    OptionStore(const OptionStore&) = delete;
    OptionStore& operator=(const OptionStore&) = delete;

    const Options& values() const { return values_; }
    const Options* operator->() const { return &values_; }
    operator const Options&() const { return values_; }

    template <class Value>
    void set(Value Options::*field, std::type_identity_t<Value> value) {
        if (values_.*field == value) return;
        values_.*field = std::move(value);
        tell({field});
    }
    // Several fields in one step; who is concerned by any that differ hears of it once.
    void assign(const Options& values);

    // `listener` is told after a change of any of the fields, in the order of listening. What it refers to must outlive
    // the last change.
    void listen(std::vector<OptionField> fields, Listener listener);

    // A skin without a place for something takes its option away. The value stays, and can be set by the program.
    void setAvailable(const OptionField& field, bool available);
    bool available(const OptionField& field) const;
    void listenToAvailability(Listener listener) { availabilityListeners_.push_back(std::move(listener)); }

  private:
    struct Concern {
        std::vector<OptionField> fields;
        Listener listener;
    };
    void tell(const std::vector<OptionField>& changed);

    Options values_;
    std::vector<Concern> concerns_;
    std::vector<OptionField> unavailable_;
    std::vector<Listener> availabilityListeners_;
};

}  // namespace quenlox

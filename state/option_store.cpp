#include "state/option_store.h"

#include <algorithm>

#include "state/option_table.h"

namespace quenlox {

void OptionStore::assign(const Options& values) {
    const Options before = std::exchange(values_, values);
    std::vector<OptionField> changed;
    for (const OptionRow& row : OptionRows()) {
        const bool same = std::visit([&](auto field) { return before.*field == values.*field; }, row.field);
        if (!same) changed.push_back(row.field);
    }
    tell(changed);
}

void OptionStore::listen(std::vector<OptionField> fields, Listener listener) {
    concerns_.push_back({std::move(fields), std::move(listener)});
}

void OptionStore::tell(const std::vector<OptionField>& changed) {
    for (const Concern& concern : concerns_) {
        const bool concerned = std::ranges::any_of(concern.fields, [&](const OptionField& field) {
            return std::ranges::find(changed, field) != changed.end();
        });
        if (concerned) concern.listener();
    }
}

void OptionStore::setAvailable(const OptionField& field, bool available) {
    if (available == this->available(field)) return;
    if (available) {
        std::erase(unavailable_, field);
    } else {
        unavailable_.push_back(field);
    }
    for (const Listener& listener : availabilityListeners_) listener();
}

bool OptionStore::available(const OptionField& field) const {
    return std::ranges::find(unavailable_, field) == unavailable_.end();
}

}  // namespace quenlox

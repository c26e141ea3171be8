#include "playlist/list_history.h"

#include <utility>

namespace quenlox {
namespace {

// As many steps as anybody takes back, or as fit: the latest twenty always stay.
constexpr std::size_t kMostSteps = 50, kFewestSteps = 20;
constexpr std::size_t kMostMemory = 32u << 20;  // bytes

std::size_t MemoryOf(const ListHistory::Step& step) {
    std::size_t memory = 0;
    for (const ListChange& change : step.changes)
        memory += change.places.capacity() * sizeof(std::int32_t) + change.rows.memory();
    return memory;
}

}  // namespace

void ListHistory::begin(std::string_view name) {
    name_ = name;
    open_ = false;
}

void ListHistory::goOn(std::string_view name) {
    if (name_ != name) begin(name);
}

void ListHistory::keep(ListChange change) {
    undone_.clear();
    if (!std::exchange(open_, true)) {
        done_.push_back({name_, {}, false});
        trim();
    }
    std::vector<ListChange>& changes = done_.back().changes;
    // Rows that are added one after the other are one change.
    if (!changes.empty() && change.kind == ListChange::Kind::Came) {
        ListChange& last = changes.back();
        if (last.kind == change.kind && last.list == change.list && last.places.back() < change.places.front()) {
            last.places.insert(last.places.end(), change.places.begin(), change.places.end());
            return;
        }
    }
    changes.push_back(std::move(change));
}

void ListHistory::mark() {
    if (open_) done_.back().marked = true;
}

void ListHistory::clear() {
    done_.clear();
    undone_.clear();
    open_ = false;
}

ListHistory::Step ListHistory::take(std::vector<Step>& steps) {
    begin({});
    Step step = std::move(steps.back());
    steps.pop_back();
    return step;
}

void ListHistory::trim() {
    std::size_t memory = 0, kept = 0;
    while (kept < done_.size() && kept < kMostSteps) {
        memory += MemoryOf(done_[done_.size() - 1 - kept]);
        if (kept >= kFewestSteps && memory > kMostMemory) break;
        ++kept;
    }
    done_.erase(done_.begin(), done_.end() - static_cast<std::ptrdiff_t>(kept));
}

void ListHistory::forEachRows(const auto& change) {
    for (std::vector<Step>* steps : {&done_, &undone_}) {
        for (Step& step : *steps) {
            for (ListChange& one : step.changes) change(one.rows);
        }
    }
}

void ListHistory::renamePath(std::string_view from, std::string_view to) {
    forEachRows([&](EntryRows& rows) {
        for (int row = 0; row < rows.count(); ++row) {
            if (rows.path(row) == from) rows.setPath(row, to);
        }
    });
}

void ListHistory::forgetTexts() {
    forEachRows([](EntryRows& rows) { rows.forgetTexts(); });
}

}  // namespace quenlox

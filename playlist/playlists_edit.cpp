// Order, removal and renaming of rows.
#include <algorithm>
#include <cstring>
#include <numeric>
#include <utility>

#include "platform/random.h"
#include "playlist/playlists.h"
#include "playlist/sort_key.h"
#include "text/paths.h"

namespace quenlox {
namespace {

// A place in the order together with the first bytes of its key, which decide nearly every comparison.
struct SortItem {
    std::uint64_t prefix = 0;
    std::uint32_t key = 0;  // where its key begins
    std::uint32_t length = 0;
    std::int32_t row = 0;
};

std::uint64_t PrefixOf(std::string_view key) {
    std::uint64_t prefix = 0;
    for (std::size_t i = 0; i < sizeof prefix; ++i)
        prefix = prefix << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0u);
    return prefix;
}

// As bytes that compare as the numbers do; -1 is the least.
void AppendNumber(std::string& keys, std::int32_t number) {
    const auto rank = static_cast<std::uint32_t>(number + 1);
    for (int shift = 24; shift >= 0; shift -= 8) keys += static_cast<char>(rank >> shift & 0xFF);
}

std::vector<std::int32_t> OldOrder(int count) {
    std::vector<std::int32_t> order(static_cast<std::size_t>(count));
    std::iota(order.begin(), order.end(), 0);
    return order;
}

}  // namespace

std::size_t Playlists::randomIndex(std::size_t count) {
    const double drawn = random_.next() * static_cast<double>(count);
    return drawn > 0 && count > 0 ? std::min(static_cast<std::size_t>(drawn), count - 1) : 0;
}

RandomOrder Playlists::drawOrder(int list) {
    return RandomOrder::Draw(count(list), [this](std::size_t entries) { return randomIndex(entries); });
}

void Playlists::BuildShuffleOrder(int list) {
    if (list >= 0 && list < kListCount) state_.ShuffleOrder[static_cast<std::size_t>(list)] = drawOrder(list);
}

bool Playlists::RemoveCurrentFileFromLists() {
    bool removed = false;
    beginStep("削除");
    for (int list = 0; list < 2; ++list) {
        Selection which(static_cast<std::size_t>(rows(list).count()));
        bool any = false;
        for (int row = 0; row < rows(list).count(); ++row)
            any |= which[static_cast<std::size_t>(row)] = rows(list).path(row) == state_.CurrentFile;
        if (!any) continue;
        state_.ShuffleOrder[static_cast<std::size_t>(list)].remove(which);
        history_.keep(removeRows(list, which));
        removed = true;
        markChanged();
    }
    return removed;
}

void Playlists::renamePath(const std::string& from, const std::string& to) {
    history_.renamePath(from, to);
    for (int list = 0; list < 2; ++list) {
        for (int row = 0; row < rows(list).count(); ++row) {
            if (rows(list).path(row) != from) continue;
            rows(list).setPath(row, to);
            markChanged();
            report(list, row, row);
        }
    }
}

void Playlists::reorder(int list, const std::vector<std::int32_t>& order, Selection& selection) {
    Selection moved(order.size());
    int current = -1;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const auto from = static_cast<std::size_t>(order[i]);
        moved[i] = from < selection.size() && selection[from];
        if (order[i] == currentIndex(list)) current = static_cast<int>(i);
    }
    if (current >= 0) setCurrentIndex(list, current);
    rows(list).permute(order);
    selection = std::move(moved);
    fillFrom_[static_cast<std::size_t>(list)] = 0;
    if (!order.empty()) report(list, 0, static_cast<int>(order.size()) - 1);
}

void Playlists::sort(int list, int column, bool descending, Selection& selection, SortBy by) {
    if (!persisted(list) || column < 0 || column >= kEntryColumns) return;
    const int n = rows(list).count();
    std::string keys;
    std::vector<SortItem> items(static_cast<std::size_t>(n));
    for (int row = 0; row < n; ++row) {
        SortItem& item = items[static_cast<std::size_t>(row)];
        const std::size_t begin = keys.size();
        if (column != kFileColumn) know(list, row);
        switch (column) {
            case kTitleColumn: AppendSortKey(keys, rows(list).texts(row).title); break;
            case kNameColumn: AppendSortKey(keys, rows(list).texts(row).name); break;
            case kAlbumColumn: AppendSortKey(keys, rows(list).texts(row).album); break;
            case kTimeColumn:
                if (by == SortBy::Text) {
                    AppendSortKey(keys, PlayTimeText(rows(list).seconds(row)));
                } else {
                    AppendNumber(keys, rows(list).seconds(row));
                }
                break;
            default: AppendSortKey(keys, rows(list).path(row));
        }
        item = {0, static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(keys.size() - begin), row};
    }
    const auto keyOf = [&](const SortItem& item) { return std::string_view(keys).substr(item.key, item.length); };
    for (SortItem& item : items) item.prefix = PrefixOf(keyOf(item));
    std::sort(items.begin(), items.end(), [&](const SortItem& a, const SortItem& b) {
        if (a.prefix != b.prefix) return (a.prefix < b.prefix) != descending;
        if (const int compared = keyOf(a).compare(keyOf(b))) return (compared < 0) != descending;
        return a.row < b.row;  // rows of the same text keep their order
    });
    std::vector<std::int32_t> order;
    order.reserve(items.size());
    for (const SortItem& item : items) order.push_back(item.row);
    reorder(list, order, selection);
    keepOrder(list, std::move(order));
}

// After rows a and b have changed places: if one of them now holds the current file, it is the current entry.
void Playlists::followCurrentFile(int list, int a, int b) {
    for (const int row : {a, b}) {
        if (rows(list).path(row) == state_.CurrentFile) setCurrentIndex(list, row);
    }
}

void Playlists::randomize(int list, Selection& selection) {
    if (!persisted(list)) return;
    const int n = rows(list).count();
    selection.assign(static_cast<std::size_t>(n), false);
    std::vector<std::int32_t> order = OldOrder(n);
    for (int row = 0; row < n; ++row) {
        const int other = static_cast<int>(randomIndex(static_cast<std::size_t>(n)));
        if (other == row) continue;
        rows(list).swap(row, other);
        std::swap(order[static_cast<std::size_t>(row)], order[static_cast<std::size_t>(other)]);
        followCurrentFile(list, row, other);
    }
    fillFrom_[static_cast<std::size_t>(list)] = 0;
    keepOrder(list, std::move(order));
    markChanged();
    if (n > 0) report(list, 0, n - 1);
}

void Playlists::moveDown(int list, Selection& selection) {
    if (!persisted(list)) return;
    selection.resize(static_cast<std::size_t>(rows(list).count()));
    const Batch batch(*this);
    std::vector<std::int32_t> order = OldOrder(rows(list).count());
    for (int row = rows(list).count() - 2; row >= 0; --row) exchangeSelected(list, row, row + 1, selection, order);
    keepOrder(list, std::move(order));
    markChanged();
}

void Playlists::moveUp(int list, Selection& selection) {
    if (!persisted(list)) return;
    selection.resize(static_cast<std::size_t>(rows(list).count()));
    const Batch batch(*this);
    std::vector<std::int32_t> order = OldOrder(rows(list).count());
    for (int row = 1; row < rows(list).count(); ++row) exchangeSelected(list, row, row - 1, selection, order);
    keepOrder(list, std::move(order));
    markChanged();
}

void Playlists::exchangeSelected(int list, int row, int neighbour, Selection& selection,
                                 std::vector<std::int32_t>& order) {
    const auto from = static_cast<std::size_t>(row), to = static_cast<std::size_t>(neighbour);
    if (!selection[from] || selection[to]) return;
    rows(list).swap(row, neighbour);
    std::swap(order[from], order[to]);
    selection[from] = false;
    selection[to] = true;
    followCurrentFile(list, row, neighbour);
    const auto [first, last] = std::minmax(row, neighbour);
    int& fillFrom = fillFrom_[static_cast<std::size_t>(list)];
    fillFrom = std::min(fillFrom, first);
    report(list, first, last);
}

void Playlists::moveBefore(int list, int row, Selection& selection) {
    if (!persisted(list)) return;
    const int n = rows(list).count();
    row = std::clamp(row, 0, n);
    selection.resize(static_cast<std::size_t>(n));
    std::vector<std::int32_t> order, block, behind;
    for (int i = 0; i < n; ++i) {
        const bool moves = selection[static_cast<std::size_t>(i)];
        (moves ? block : i < row ? order : behind).push_back(i);
    }
    if (block.empty()) return;
    order.insert(order.end(), block.begin(), block.end());
    order.insert(order.end(), behind.begin(), behind.end());
    if (std::is_sorted(order.begin(), order.end())) return;  // dropped where it was
    reorder(list, order, selection);
    keepOrder(list, std::move(order));
    markChanged();
}

void Playlists::removeSelected(int list, Selection selection) {
    if (!persisted(list)) return;
    selection.resize(static_cast<std::size_t>(rows(list).count()));
    if (ListChange went = removeRows(list, selection); !went.places.empty()) history_.keep(std::move(went));
    BuildShuffleOrder(list);
    markChanged();
}

// The rows themselves are given back.
ListChange Playlists::removeRows(int list, const Selection& which) {
    ListChange went{list, ListChange::Kind::Went, {}, {}};
    const auto first = std::find(which.begin(), which.end(), true);
    if (first == which.end()) return went;
    for (int row = static_cast<int>(first - which.begin()); row < rows(list).count(); ++row) {
        if (!which[static_cast<std::size_t>(row)]) continue;
        went.places.push_back(row);
        went.rows.append(rows(list), row);
    }
    const int current = currentIndex(list);
    if (current >= 0 && current < rows(list).count()) {
        // When the current entry goes, the entry before it takes its place, so that the next step plays what followed.
        const auto end = which.begin() + current + 1;
        setCurrentIndex(list, current - static_cast<int>(std::count(which.begin(), end, true)));
    }
    if (onRemove) onRemove(list, which);
    went.queued = queue_.removed(list, which);
    rows(list).remove(which);
    fillFrom_[static_cast<std::size_t>(list)] = 0;
    report(list, static_cast<int>(first - which.begin()), rows(list).count() - 1, true);
    return went;
}

// Rows that had gone come back to their places, and the current entry to its file when it was among them.
ListChange Playlists::insertRows(const ListChange& went) {
    const int list = went.list, before = rows(list).count(), after = before + went.rows.count();
    std::vector<std::int32_t> order;
    order.reserve(static_cast<std::size_t>(after));
    const int held = currentIndex(list);
    int fileCame = -1;
    const bool found = hasRow(list, held) && rows(list).path(held) == state_.CurrentFile;
    int current = held;
    for (int place = 0, came = 0; place < after; ++place) {
        if (came == went.rows.count() || went.places[static_cast<std::size_t>(came)] != place) {
            const int row = place - came;
            if (row == held) current = place;
            order.push_back(row);
            continue;
        }
        if (!found && went.rows.path(came) == state_.CurrentFile) fileCame = place;
        order.push_back(before + came++);
    }
    if (fileCame >= 0) current = fileCame;
    for (int i = 0; i < went.rows.count(); ++i) rows(list).append(went.rows, i);
    rows(list).permute(order);
    queue_.moved(list, order);
    queue_.cameBack(list, went.queued);
    setCurrentIndex(list, current);
    fillFrom_[static_cast<std::size_t>(list)] = 0;
    report(list, went.places.front(), after - 1, true);
    return {list, ListChange::Kind::Came, went.places, {}};
}

void Playlists::keepOrder(int list, std::vector<std::int32_t> order) {
    if (std::is_sorted(order.begin(), order.end())) return;
    queue_.moved(list, order);
    history_.keep({list, ListChange::Kind::Order, std::move(order), {}});
}

// Takes the change back and gives what would make it again.
ListChange Playlists::turnRound(const ListChange& change) {
    if (change.kind == ListChange::Kind::Went) return insertRows(change);
    Selection marks(static_cast<std::size_t>(rows(change.list).count()));
    if (change.kind == ListChange::Kind::Came) {
        for (const std::int32_t place : change.places) marks[static_cast<std::size_t>(place)] = true;
        return removeRows(change.list, marks);
    }
    std::vector<std::int32_t> order(change.places.size());
    for (std::size_t i = 0; i < order.size(); ++i)
        order[static_cast<std::size_t>(change.places[i])] = static_cast<std::int32_t>(i);
    reorder(change.list, order, marks);
    queue_.moved(change.list, order);
    return {change.list, ListChange::Kind::Order, std::move(order), {}};
}

Playlists::Restored Playlists::turnRound(bool undo) {
    ListHistory::Step step = undo ? history_.takeUndo() : history_.takeRedo();
    ListHistory::Step turned{step.name, {}, step.marked};
    Restored restored;
    const Batch batch(*this);
    while (!step.changes.empty()) {
        const ListChange change = std::move(step.changes.back());
        step.changes.pop_back();
        turned.changes.push_back(turnRound(change));
        if (change.kind != ListChange::Kind::Order) BuildShuffleOrder(change.list);
        restored.list = change.list;
        restored.rows.assign(static_cast<std::size_t>(rows(change.list).count()), false);
        if (change.kind != ListChange::Kind::Went) continue;
        for (const std::int32_t place : change.places) restored.rows[static_cast<std::size_t>(place)] = true;
    }
    if (turned.marked) markChanged();
    history_.turned(std::move(turned), undo);
    return restored;
}

int Playlists::findTitle(int list, std::string_view beginning, int from) const {
    const auto textOf = [&](int row) {
        return rows(list).known(row) ? std::string(rows(list).texts(row).title)
                                     : FileNameOf(std::string(rows(list).path(row)));
    };
    return persisted(list) ? FindByBeginning(rows(list).count(), textOf, beginning, std::max(from, 0)) : -1;
}

void Playlists::appendSearchKey(std::string& key, int list, int row) const {
    if (!hasRow(list, row)) return;
    const auto append = [&key](std::string_view text) {
        AppendSortKey(key, text);
        key += '\n';
    };
    append(rows(list).path(row));
    if (!rows(list).known(row)) return;
    const EntryTexts texts = rows(list).texts(row);
    for (const std::string_view text : {texts.title, texts.name, texts.album}) append(text);
}

void Playlists::clear(int list) {
    if (!persisted(list)) return;
    if (const int n = rows(list).count(); n > 0) {
        auto queued = queue_.removed(list, Selection(static_cast<std::size_t>(n), true));
        history_.keep(
            {list, ListChange::Kind::Went, OldOrder(n), std::exchange(rows(list), EntryRows()), std::move(queued)});
    }
    fillFrom_[static_cast<std::size_t>(list)] = 0;
    setCurrentIndex(list, -1);
    markChanged();
    report(list, 0, -1, true);
}

}  // namespace quenlox

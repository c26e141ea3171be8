// What has been done to the play lists, as steps that can be taken back and done again. It only keeps them; Playlists
// turns them round. A step holds just what that takes: an order of the rows, the places of rows that came, or the rows
// that went with their places. On the user-interface thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "playlist/entry_rows.h"
#include "playlist/row_queue.h"

namespace quenlox {

// One change of one list. Places count from 0, rise, and are those of the longer list: before rows went, after they
// came.
struct ListChange {
    enum class Kind { Order, Came, Went };
    int list = 0;
    Kind kind = Kind::Order;
    std::vector<std::int32_t> places;  // Order: the row at places[i] came to place i
    EntryRows rows;                    // Went: one for each place
    std::vector<GoneFromQueue> queued = {};  // Went: those of them that were to be played next
};

class ListHistory {
  public:
    struct Step {
        std::string name;                 // as menus show it: 削除
        std::vector<ListChange> changes;  // in the order in which they were made
        bool marked = false;              // the lists counted as changed by it
    };

    // What is kept from now on makes one step of this name.
    void begin(std::string_view name);
    // The same, but goes on with the last step when that has this name and nothing else has begun since.
    void goOn(std::string_view name);
    void keep(ListChange change);  // what had been taken back cannot be done again any more
    void mark();                   // the step in which something was kept last counts as a change of the lists
    void clear();

    // The names of the steps that come next; empty when there is none.
    std::string_view undoName() const { return done_.empty() ? std::string_view{} : done_.back().name; }
    std::string_view redoName() const { return undone_.empty() ? std::string_view{} : undone_.back().name; }
    // Takes that step out; `turned` puts it, turned round by the caller, on the other side.
    Step takeUndo() { return take(done_); }
    Step takeRedo() { return take(undone_); }
    void turned(Step step, bool undo) { (undo ? undone_ : done_).push_back(std::move(step)); }

    // Rows that went know files as the lists do.
    void renamePath(std::string_view from, std::string_view to);
    void forgetTexts();

  private:
    Step take(std::vector<Step>& steps);
    void trim();
    void forEachRows(const auto& change);

    std::vector<Step> done_, undone_;
    std::string name_;
    bool open_ = false;  // the last of done_ still grows
};

}  // namespace quenlox

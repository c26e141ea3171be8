// The rows of one play list, packed: a row knows its path at once and its texts when somebody has read them. It only
// stores; what a text is and when it is read is decided by Playlists.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "playlist/text_store.h"

namespace quenlox {

struct EntryTexts {
    std::string_view title;
    std::string_view name;
    std::string_view album;
    std::int32_t seconds = kNoLength;

    static constexpr std::int32_t kNoLength = -1;  // the length is not known
};

// Row numbers are from 0 to count() - 1; anything else is a mistake of the caller. Texts stay valid until the next call
// that changes the rows.
class EntryRows {
  public:
    int count() const { return static_cast<int>(rows_.size()); }
    int unknownCount() const { return unknown_; }  // rows whose texts nobody has read
    std::string_view path(int row) const;
    bool known(int row) const { return at(row).texts != nullptr; }
    EntryTexts texts(int row) const;                                 // of a known row
    std::int32_t seconds(int row) const { return at(row).seconds; }  // kNoLength while it is not known

    void reserve(int count) { rows_.reserve(static_cast<std::size_t>(count)); }
    void append(std::string_view path);
    void append(const EntryRows& from, int row);  // with what is known of it
    void setPath(int row, std::string_view path);
    void setTexts(int row, const EntryTexts& texts);  // each text is cut at 65535 bytes
    void forgetTexts();
    void forgetTexts(int row);
    void clear();

    void swap(int a, int b) { std::swap(at(a), at(b)); }
    // The row at order[i] comes to place i; `order` is a permutation of all rows.
    void permute(const std::vector<std::int32_t>& order);
    // One pass, whatever is removed. `which` is as long as there are rows.
    void remove(const std::vector<bool>& which);

    std::size_t memory() const { return store_.reserved() + rows_.capacity() * sizeof(Row); }  // bytes

  private:
    struct Row {
        const char* path = nullptr;   // length in 4 bytes, then the path
        const char* texts = nullptr;  // three lengths of 2 bytes, then the texts
        std::int32_t seconds = EntryTexts::kNoLength;
    };

    Row& at(int row) { return rows_[static_cast<std::size_t>(row)]; }
    const Row& at(int row) const { return rows_[static_cast<std::size_t>(row)]; }
    void compact();

    std::vector<Row> rows_;
    TextStore store_;
    std::size_t live_ = 0;  // bytes of the store that a row still uses
    int unknown_ = 0;
};

}  // namespace quenlox

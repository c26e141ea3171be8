// The order of texts in the columns of a list.
#pragma once

#include <string>
#include <string_view>

namespace quenlox {

// Appends the bytes of a text by which it is sorted: comparing two keys byte by byte compares the texts without regard
// to case, to full or half width and to the kind of kana; signs come before digits, digits before letters, Latin before
// kana, kana before kanji, as in a list of Windows. A key holds no NUL.
void AppendSortKey(std::string& key, std::string_view utf8);

// The first of `count` rows at or behind `from`, going round, whose text begins so by these rules; -1 none.
template <typename TextOf>
int FindByBeginning(int count, TextOf textOf, std::string_view beginning, int from) {
    std::string wanted, key;
    AppendSortKey(wanted, beginning);
    for (int i = 0; i < count; ++i) {
        const int row = (from + i) % count;
        key.clear();
        AppendSortKey(key, textOf(row));
        if (key.starts_with(wanted)) return row;
    }
    return -1;
}

}  // namespace quenlox

// The order of texts in the columns of a list.
#pragma once

#include <string>
#include <string_view>

namespace quenlox {

// Appends the bytes of a text by which it is sorted: comparing two keys byte by byte compares the texts without regard
// to case, to full or half width and to the kind of kana; signs come before digits, digits before letters, Latin before
// kana, kana before kanji, as in a list of Windows. A key holds no NUL.
void AppendSortKey(std::string& key, std::string_view utf8);

}  // namespace quenlox

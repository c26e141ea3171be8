// Which rows of a list hold certain words, in title, artist, album or path, whatever their case and width and in either
// kana. What is compared is made once for all rows, so that every further letter typed is answered at once.
// On the user-interface thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quenlox {

class Playlists;

class ListSearch {
  public:
    // The rows, from the first, that hold every word of `words`, which blanks part; all when there is none. Texts that
    // have not been read yet are not found.
    std::vector<int> find(const Playlists& lists, int list, std::string_view words);
    void forget();  // the rows have changed

  private:
    void make(const Playlists& lists, int list);

    int list_ = -1;                   // whose keys these are, -1 none
    std::string keys_;                // of all rows, one behind the other
    std::vector<std::size_t> begin_;  // of each row, and the end of the last
};

}  // namespace quenlox

#include "playlist/list_search.h"

#include <algorithm>
#include <utility>

#include "playlist/playlists.h"
#include "playlist/sort_key.h"

namespace quenlox {
namespace {

constexpr std::size_t kUsualKey = 120;  // bytes

// Folded; the longest first, as it sorts out most.
std::vector<std::string> WordsOf(std::string_view text) {
    std::string folded, blank;
    AppendSortKey(folded, text);
    AppendSortKey(blank, " ");  // a wide one has become the same
    std::vector<std::string> words;
    for (std::size_t at = 0; at < folded.size();) {
        const std::size_t end = std::min(folded.find(blank, at), folded.size());
        if (end > at) words.push_back(folded.substr(at, end - at));
        at = end + 1;
    }
    std::stable_sort(words.begin(), words.end(),
                     [](const std::string& a, const std::string& b) { return a.size() > b.size(); });
    return words;
}

}  // namespace

void ListSearch::forget() {
    list_ = -1;
    std::string().swap(keys_);
    begin_.clear();
}

void ListSearch::make(const Playlists& lists, int list) {
    forget();
    list_ = list;
    keys_.reserve(static_cast<std::size_t>(lists.count(list)) * kUsualKey);
    begin_.reserve(static_cast<std::size_t>(lists.count(list)) + 1);
    for (int row = 0; row < lists.count(list); ++row) {
        begin_.push_back(keys_.size());
        lists.appendSearchKey(keys_, list, row);
    }
    begin_.push_back(keys_.size());
}

std::vector<int> ListSearch::find(const Playlists& lists, int list, std::string_view text) {
    if (list != list_) make(lists, list);
    const std::vector<std::string> words = WordsOf(text);
    std::vector<int> found;
    if (words.empty()) {
        for (int row = 0; row < lists.count(list); ++row) found.push_back(row);
        return found;
    }
    // One walk over all keys for the first word; the others are looked for in the rows that hold it.
    const std::string_view keys = keys_;
    for (std::size_t at = keys.find(words[0]); at != keys.npos; at = keys.find(words[0], at)) {
        const auto next = std::upper_bound(begin_.begin(), begin_.end(), at);
        const std::string_view key = keys.substr(*(next - 1), *next - *(next - 1));
        const bool all = std::all_of(words.begin(), words.end(),
                                     [&](const std::string& word) { return key.find(word) != key.npos; });
        if (all) found.push_back(static_cast<int>(next - begin_.begin()) - 1);
        at = *next;
    }
    return found;
}

}  // namespace quenlox

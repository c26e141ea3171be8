// The numbered genres of ID3v1: the original 80 and the extensions that players have added up to 191.
#pragma once

#include <string>
#include <string_view>

namespace vbmp3 {

constexpr int kGenreCount = 192;

std::string_view GenreName(int number);  // empty when there is none
int FindGenre(std::string_view name);    // without regard to case; kNoGenre when it is not in the list

// The content type of an ID3v2 frame: "(17)", "(52)(53)", "(4)Eurodisco", "17", "(RX)", "((text" or plain text. `name`
// is what to show, several with " / " between them; `number` is that of the first in the list, or kNoGenre.
struct Genre {
    std::string name;
    int number;
};
Genre ReadGenre(std::string_view text);

}  // namespace vbmp3

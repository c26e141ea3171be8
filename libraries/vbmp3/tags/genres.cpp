#include "libraries/vbmp3/tags/genres.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <vector>

#include "libraries/vbmp3/tags/tag_fields.h"

namespace vbmp3 {
namespace {

constexpr std::string_view kGenres[] = {"Blues",
                                        "Classic Rock",
                                        "Country",
                                        "Dance",
                                        "Disco",
                                        "Funk",
                                        "Grunge",
                                        "Hip-Hop",
                                        "Jazz",
                                        "Metal",
                                        "New Age",
                                        "Oldies",
                                        "Other",
                                        "Pop",
                                        "R&B",
                                        "Rap",
                                        "Reggae",
                                        "Rock",
                                        "Techno",
                                        "Industrial",
                                        "Alternative",
                                        "Ska",
                                        "Death Metal",
                                        "Pranks",
                                        "Soundtrack",
                                        "Euro-Techno",
                                        "Ambient",
                                        "Trip-Hop",
                                        "Vocal",
                                        "Jazz+Funk",
                                        "Fusion",
                                        "Trance",
                                        "Classical",
                                        "Instrumental",
                                        "Acid",
                                        "House",
                                        "Game",
                                        "Sound Clip",
                                        "Gospel",
                                        "Noise",
                                        "AlternRock",
                                        "Bass",
                                        "Soul",
                                        "Punk",
                                        "Space",
                                        "Meditative",
                                        "Instrumental Pop",
                                        "Instrumental Rock",
                                        "Ethnic",
                                        "Gothic",
                                        "Darkwave",
                                        "Techno-Industrial",
                                        "Electronic",
                                        "Pop-Folk",
                                        "Eurodance",
                                        "Dream",
                                        "Southern Rock",
                                        "Comedy",
                                        "Cult",
                                        "Gangsta",
                                        "Top 40",
                                        "Christian Rap",
                                        "Pop/Funk",
                                        "Jungle",
                                        "Native American",
                                        "Cabaret",
                                        "New Wave",
                                        "Psychedelic",
                                        "Rave",
                                        "Showtunes",
                                        "Trailer",
                                        "Lo-Fi",
                                        "Tribal",
                                        "Acid Punk",
                                        "Acid Jazz",
                                        "Polka",
                                        "Retro",
                                        "Musical",
                                        "Rock & Roll",
                                        "Hard Rock",
                                        "Folk",
                                        "Folk-Rock",
                                        "National Folk",
                                        "Swing",
                                        "Fast Fusion",
                                        "Bebob",
                                        "Latin",
                                        "Revival",
                                        "Celtic",
                                        "Bluegrass",
                                        "Avantgarde",
                                        "Gothic Rock",
                                        "Progressive Rock",
                                        "Psychedelic Rock",
                                        "Symphonic Rock",
                                        "Slow Rock",
                                        "Big Band",
                                        "Chorus",
                                        "Easy Listening",
                                        "Acoustic",
                                        "Humour",
                                        "Speech",
                                        "Chanson",
                                        "Opera",
                                        "Chamber Music",
                                        "Sonata",
                                        "Symphony",
                                        "Booty Bass",
                                        "Primus",
                                        "Porn Groove",
                                        "Satire",
                                        "Slow Jam",
                                        "Club",
                                        "Tango",
                                        "Samba",
                                        "Folklore",
                                        "Ballad",
                                        "Power Ballad",
                                        "Rhythmic Soul",
                                        "Freestyle",
                                        "Duet",
                                        "Punk Rock",
                                        "Drum Solo",
                                        "A Capella",
                                        "Euro-House",
                                        "Dance Hall",
                                        "Goa",
                                        "Drum & Bass",
                                        "Club-House",
                                        "Hardcore",
                                        "Terror",
                                        "Indie",
                                        "BritPop",
                                        "Negerpunk",
                                        "Polsk Punk",
                                        "Beat",
                                        "Christian Gangsta Rap",
                                        "Heavy Metal",
                                        "Black Metal",
                                        "Crossover",
                                        "Contemporary Christian",
                                        "Christian Rock",
                                        "Merengue",
                                        "Salsa",
                                        "Thrash Metal",
                                        "Anime",
                                        "JPop",
                                        "Synthpop",
                                        "Abstract",
                                        "Art Rock",
                                        "Baroque",
                                        "Bhangra",
                                        "Big Beat",
                                        "Breakbeat",
                                        "Chillout",
                                        "Downtempo",
                                        "Dub",
                                        "EBM",
                                        "Eclectic",
                                        "Electro",
                                        "Electroclash",
                                        "Emo",
                                        "Experimental",
                                        "Garage",
                                        "Global",
                                        "IDM",
                                        "Illbient",
                                        "Industro-Goth",
                                        "Jam Band",
                                        "Krautrock",
                                        "Leftfield",
                                        "Lounge",
                                        "Math Rock",
                                        "New Romantic",
                                        "Nu-Breakz",
                                        "Post-Punk",
                                        "Post-Rock",
                                        "Psytrance",
                                        "Shoegaze",
                                        "Space Rock",
                                        "Trop Rock",
                                        "World Music",
                                        "Neoclassical",
                                        "Audiobook",
                                        "Audio Theatre",
                                        "Neue Deutsche Welle",
                                        "Podcast",
                                        "Indie Rock",
                                        "G-Funk",
                                        "Dubstep",
                                        "Garage Rock",
                                        "Psybient"};
static_assert(std::size(kGenres) == kGenreCount);

bool SameText(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return lower(x) == lower(y); });
}

// A number from 0 to 255 that is the whole text, else -1.
int WholeNumber(std::string_view text) {
    int number = -1;
    const auto end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, number);
    return parsed.ec == std::errc{} && parsed.ptr == end && number >= 0 && number <= 255 ? number : -1;
}

}  // namespace

std::string_view GenreName(int number) {
    return number >= 0 && number < kGenreCount ? kGenres[number] : std::string_view{};
}

int FindGenre(std::string_view name) {
    for (int i = 0; i < kGenreCount; ++i)
        if (SameText(kGenres[i], name)) return i;
    return kNoGenre;
}

// The references in brackets at the front, "(52)(RX)"; `rest` begins behind them.
static std::vector<Genre> TakeReferences(std::string_view& rest) {
    std::vector<Genre> all;
    while (rest.starts_with('(') && !rest.starts_with("((")) {
        const size_t close = rest.find(')');
        if (close == std::string_view::npos) break;
        const std::string_view inner = rest.substr(1, close - 1);
        const int number = WholeNumber(inner);
        if (inner == "RX" || inner == "CR")
            all.push_back({inner == "RX" ? "Remix" : "Cover", kNoGenre});
        else if (number >= 0)
            all.push_back({std::string(GenreName(number)), number < kGenreCount ? number : kNoGenre});
        else
            break;
        rest = rest.substr(close + 1);
    }
    return all;
}

Genre ReadGenre(std::string_view text) {
    if (text.starts_with("((")) return {std::string(text.substr(1)), kNoGenre};
    if (const int number = WholeNumber(text); number >= 0 && number < kGenreCount)
        return {std::string(GenreName(number)), number};
    std::string_view rest = text;
    std::vector<Genre> all = TakeReferences(rest);
    if (all.empty()) return {std::string(text), FindGenre(text)};
    // A text behind a number refines it, "(4)Eurodisco"; one in brackets has a second in front.
    if (rest.starts_with('(')) rest = rest.starts_with("((") ? rest.substr(1) : std::string_view{};
    if (!rest.empty()) all.back() = {std::string(rest), FindGenre(rest)};
    Genre genre{{}, all.front().number};
    for (const Genre& one : all)
        if (!one.name.empty()) genre.name += (genre.name.empty() ? "" : " / ") + one.name;
    return genre;
}

}  // namespace vbmp3

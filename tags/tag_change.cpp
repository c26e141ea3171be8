#include "tags/tag_change.h"

#include <algorithm>
#include <charconv>

#include "text/format_file_name.h"
#include "text/letter_case.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr int kId3Kinds = kTagId3v1 | kTagId3v2;
constexpr int kGenres = 192;

// "01" at place 9 is "10", "1/" of 12 files is "10/12".
std::string NumberAt(std::string_view first, std::size_t position, std::size_t count) {
    const std::string_view digits = first.substr(0, first.find('/'));
    std::size_t number = 1;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    std::string text = std::to_string(number + position);
    if (text.size() < digits.size()) text.insert(0, digits.size() - text.size(), '0');
    return digits.size() < first.size() ? text + "/" + std::to_string(count) : text;
}

std::string InCase(TagAction action, const std::string& text) {
    switch (action) {
        case TagAction::UpperCase: return UpperCase(text);
        case TagAction::LowerCase: return FoldCase(text);
        default: return WithCapitals(text);
    }
}

bool TakeFromName(TrackTexts& texts, const std::string& path, const std::string& format) {
    const std::string name = BaseNameOf(path);
    const auto fields = FieldsOfFileName(name, format);
    if (!fields) return false;
    for (const auto& [text, found] : {std::pair{&TrackTexts::title, FormatField::Title},
                                      {&TrackTexts::artist, FormatField::Artist},
                                      {&TrackTexts::album, FormatField::Album},
                                      {&TrackTexts::genre, FormatField::Genre},
                                      {&TrackTexts::track, FormatField::Track},
                                      {&TrackTexts::year, FormatField::Year}}) {
        const std::string_view value = (*fields)[static_cast<std::size_t>(found)];
        if (!value.empty()) texts.*text = value;
    }
    return true;
}

}  // namespace

std::optional<TrackTexts> Changed(const TagChange& change, TrackTexts texts, const std::string& path,
                                  std::size_t position, std::size_t count) {
    switch (change.action) {
        case TagAction::SetField: texts.*change.field = change.value; break;
        case TagAction::Number: texts.track = NumberAt(change.value, position, count); break;
        case TagAction::Swap: std::swap(texts.*change.field, texts.*change.other); break;
        case TagAction::FromName:
            if (!TakeFromName(texts, path, change.value)) return std::nullopt;
            break;
        default: texts.*change.field = InCase(change.action, texts.*change.field);
    }
    return texts;
}

TrackTexts ReadFields(Vbmp3& vbmp3, const std::string& path, int kinds, int& present) {
    TrackTexts all;
    present = 0;
    for (const int kind : {kTagId3v2, kTagId3v1, kTagApe, kTagSi}) {
        const auto read = kinds & kind ? vbmp3.vbmp3_readTag(path, kind) : LibraryError::None;
        if (!read) continue;
        if (all.genre.empty()) all.genreNumber = read->genreNumber;
        for (const auto text : kTrackTexts) {
            if ((all.*text).empty()) all.*text = (*read).*text;
        }
        present |= kind;
    }
    return all;
}

TagsBefore ReadTags(Vbmp3& vbmp3, const std::string& path) {
    TagsBefore before{path, {}};
    for (const int kind : {int{kTagId3v2}, int{kTagId3v1}, int{kTagSi}}) {
        if (const auto read = vbmp3.vbmp3_readTag(path, kind)) before.tags.emplace_back(kind, *read);
    }
    return before;
}

int GenreNumberOf(Vbmp3& vbmp3, const std::string& genre) {
    for (int number = 0; number < kGenres && !genre.empty(); ++number) {
        if (EqualsNoCase(vbmp3.vbmp3_getGenre(number), genre)) return number;
    }
    return kNoGenre;
}

LibraryError ChangeTags(Vbmp3& vbmp3, const TagChange& change, const std::string& path, std::size_t position,
                        std::size_t count, std::optional<TagsBefore>& before) {
    const auto type = vbmp3.vbmp3_getFileType(path);
    if (!type) return type.error();
    const bool id3 = type->mpeg && !type->rmp;
    const int kinds = id3 ? kId3Kinds : int{kTagSi};
    int present = 0;
    const TrackTexts old = ReadFields(vbmp3, path, id3 ? kinds | kTagApe : kinds, present);
    auto texts = Changed(change, old, path, position, count);
    if (!texts) return LibraryError::Argument;
    if (*texts == old) return LibraryError::None;
    if (texts->genre != old.genre) texts->genreNumber = GenreNumberOf(vbmp3, texts->genre);
    TagsBefore tags = ReadTags(vbmp3, path);
    const LibraryError error = vbmp3.vbmp3_writeTag(path, present & kinds ? present & kinds : kinds, *texts);
    if (error == LibraryError::None) before = std::move(tags);
    return error;
}

LibraryError RestoreTags(Vbmp3& vbmp3, const TagsBefore& before) {
    int had = 0, has = 0;
    for (const auto& [kind, texts] : before.tags) {
        had |= kind;
        if (const auto error = vbmp3.vbmp3_writeTag(before.path, kind, texts); error != LibraryError::None)
            return error;
    }
    ReadFields(vbmp3, before.path, kId3Kinds | kTagSi, has);
    const int added = has & ~had;
    return added == 0 ? LibraryError::None : vbmp3.vbmp3_removeTag(before.path, added);
}

}  // namespace quenlox

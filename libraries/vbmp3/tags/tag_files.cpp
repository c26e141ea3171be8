#include "libraries/vbmp3/tags/tag_files.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <optional>

#include "libraries/files/file_source.h"
#include "libraries/files/transaction.h"
#include "libraries/formats/mpeg_header.h"
#include "libraries/vbmp3/tags/tag_edit.h"
#include "text/encoding.h"

namespace vbmp3 {
namespace {

template <size_t size>
std::string cut(const std::string& text, const char (&)[size]) {
    return std::string(quenlox::CutUtf8(text, size - 1));
}

TagFields asShown(const TagFields& fields) {
    static const vbmp3_Tag sizes{};
    return {cut(fields.title, sizes.title), cut(fields.artist, sizes.artist),
            cut(fields.album, sizes.album), cut(fields.comment, sizes.comment),
            cut(fields.year, sizes.year),   cut(fields.genre, sizes.genre),
            cut(fields.track, sizes.track), fields.genreNumber};
}

template <size_t size>
std::string given(const char (&text)[size]) {
    return {text, strnlen(text, size)};
}

TagFields fieldsOf(const vbmp3_Tag& tag) {
    return {given(tag.title), given(tag.artist), given(tag.album), given(tag.comment),
            given(tag.year),  given(tag.genre),  given(tag.track), tag.genreNumber};
}

// What a caller gives need not be whole characters.
TagFields wellFormed(TagFields fields) {
    for (const auto field : kTextFields)
        if (!quenlox::IsValidUtf8(fields.*field))
            fields.*field = quenlox::Utf16ToUtf8(quenlox::Utf8ToUtf16(fields.*field));
    return fields;
}

template <class Record>
void fillTexts(Record& record, const TagFields& fields) {
    quenlox::PutUtf8(record.title, fields.title);
    quenlox::PutUtf8(record.artist, fields.artist);
    quenlox::PutUtf8(record.album, fields.album);
    quenlox::PutUtf8(record.comment, fields.comment);
    quenlox::PutUtf8(record.year, fields.year);
    quenlox::PutUtf8(record.genre, fields.genre);
    quenlox::PutUtf8(record.track, fields.track);
    record.genreNumber = fields.genreNumber;
}

bool exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(std::filesystem::path(std::u8string(path.begin(), path.end())), error);
}

int errorOfMissing(const std::string& path) { return exists(path) ? VBMP3_ERROR_LOCKED : VBMP3_ERROR_NOT_FOUND; }

// A tag is put only on files that hold sound: a text file given by mistake stays as it is.
bool holdsSound(const ByteSource& file, const FileLayout& layout) {
    return layout.container == Container::Wave ? layout.findChunk("fmt ") != nullptr
                                               : scanMpeg(file, layout.audio).has_value();
}

int save(std::unique_ptr<ByteSource> source, const Recipe& recipe, const std::string& target,
         const BeforeStep& before) {
    const auto allowed = [&](SaveStep step) { return !before || before(step); };
    auto transaction = allowed(SaveStep::Begin) ? FileTransaction::begin(target) : nullptr;
    if (!transaction) return VBMP3_ERROR_WRITE;
    const bool written = recipe.carryOut(
        *source, [&](std::span<const uint8_t> bytes) { return allowed(SaveStep::Write) && transaction->write(bytes); });
    // A file that is open, even by us, may refuse to be replaced.
    source.reset();
    if (!written || int64_t(transaction->size()) != recipe.size() || !allowed(SaveStep::Commit))
        return VBMP3_ERROR_WRITE;
    switch (transaction->commit()) {
        case FileTransaction::Error::None: return VBMP3_OK;
        case FileTransaction::Error::Locked: return VBMP3_ERROR_LOCKED;
        default: return VBMP3_ERROR_WRITE;
    }
}

bool isReadOnly(const std::string& path) {
    using std::filesystem::perms;
    std::error_code error;
    const auto status = std::filesystem::status(std::filesystem::path(std::u8string(path.begin(), path.end())), error);
    const perms writable = perms::owner_write | perms::group_write | perms::others_write;
    return !error && exists(status) && (status.permissions() & writable) == perms::none;
}

// What the new file is made of, or nothing and why.
using Plan = std::function<std::optional<Recipe>(HeadTailReader&, const FileLayout&, int& error)>;

int rewrite(const std::string& path, const std::string& target, const Plan& plan, const BeforeStep& before) {
    auto file = openFile(path);
    if (!file) return errorOfMissing(path);
    if (isReadOnly(target)) return VBMP3_ERROR_LOCKED;
    std::optional<Recipe> recipe;
    int error = VBMP3_ERROR_FORMAT;
    {
        HeadTailReader reader(*file);
        const FileLayout layout = scanFileLayout(reader);
        if (!holdsSound(*file, layout)) return VBMP3_ERROR_FORMAT;
        recipe = plan(reader, layout, error);
    }
    return recipe ? save(std::move(file), *recipe, target, before) : error;
}

bool isOneKind(int kind) {
    return kind == kTagId3v1 || kind == kTagId3v2 || kind == kTagSi || kind == kTagApe;
}

}  // namespace

void fillTags(HeadTailReader& reader, const FileLayout& layout, vbmp3_FileInfo& record) {
    fillTexts(record, readTags(reader, layout));
}

void fillTags(const ByteSource& file, const FileLayout& layout, vbmp3_FileInfo& record) {
    HeadTailReader reader(file);
    fillTags(reader, layout, record);
}

int readTagFields(const std::string& path, int kind, int& present, TagFields& fields) {
    present = 0;
    fields = {};
    if (kind != 0 && !isOneKind(kind)) return VBMP3_ERROR_ARGUMENT;
    const auto file = openFile(path);
    if (!file) return errorOfMissing(path);
    HeadTailReader reader(*file);
    const FileLayout layout = scanFileLayout(reader);
    present = presentTags(layout);
    fields = kind != 0 ? readTagKind(reader, layout, kind) : readTags(reader, layout);
    return VBMP3_OK;
}

int readTagFile(const std::string& path, int kind, vbmp3_Tag& tag) {
    TagFields fields;
    const int error = kind != 0 ? readTagFields(path, kind, tag.present, fields) : int{VBMP3_ERROR_ARGUMENT};
    fillTexts(tag, fields);
    return error;
}

int writeTagFields(const std::string& path, int kinds, const TagFields& given, AsShown shown,
                   const BeforeStep& before) {
    if (kinds == 0 || (kinds & ~kTagAll) != 0) return VBMP3_ERROR_ARGUMENT;
    const TagFields fields = wellFormed(given);
    return rewrite(
        path, path,
        [&](HeadTailReader& reader, const FileLayout& layout, int& error) {
            if (canHold(reader, layout, kinds)) error = VBMP3_ERROR_TAG;
            return planWrite(reader, layout, kinds, fields, shown);
        },
        before);
}

int writeTagFile(const std::string& path, int kinds, const vbmp3_Tag& tag, const BeforeStep& before) {
    return writeTagFields(path, kinds, fieldsOf(tag), asShown, before);
}

int removeTagFile(const std::string& path, int kinds, const BeforeStep& before) {
    if (kinds == 0 || (kinds & ~(kTagAll | kTagApe)) != 0) return VBMP3_ERROR_ARGUMENT;
    return rewrite(
        path, path,
        [&](HeadTailReader& reader, const FileLayout& layout, int&) { return planRemove(reader, layout, kinds); },
        before);
}

int countExtrasInFile(const std::string& path, int kind, TagExtras& extras) {
    extras = {};
    if (!isOneKind(kind)) return VBMP3_ERROR_ARGUMENT;
    const auto file = openFile(path);
    if (!file) return errorOfMissing(path);
    HeadTailReader reader(*file);
    extras = readTagExtras(reader, scanFileLayout(reader), kind);
    return VBMP3_OK;
}

int convertFile(const std::string& source, const std::string& destination, WrapAs form, const BeforeStep& before) {
    if (source.empty() || destination.empty()) return VBMP3_ERROR_ARGUMENT;
    if (isSameFile(source, destination)) return VBMP3_ERROR_SAME_FILE;
    return rewrite(
        source, destination,
        [&](HeadTailReader& reader, const FileLayout& layout, int&) {
            return form == WrapAs::Rmp ? planRmp(reader, layout) : planMp3(reader, layout);
        },
        before);
}

}  // namespace vbmp3

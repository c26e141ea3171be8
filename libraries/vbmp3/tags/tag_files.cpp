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
std::string Cut(const std::string& text, const char (&)[size]) {
    return std::string(quenlox::CutUtf8(text, size - 1));
}

TagFields ShownFields(const TagFields& fields) {
    static const vbmp3_Tag sizes{};
    return {Cut(fields.title, sizes.title), Cut(fields.artist, sizes.artist),
            Cut(fields.album, sizes.album), Cut(fields.comment, sizes.comment),
            Cut(fields.year, sizes.year),   Cut(fields.genre, sizes.genre),
            Cut(fields.track, sizes.track), fields.genreNumber};
}

template <size_t size>
std::string Given(const char (&text)[size]) {
    return {text, strnlen(text, size)};
}

TagFields FieldsOf(const vbmp3_Tag& tag) {
    return {Given(tag.title), Given(tag.artist), Given(tag.album), Given(tag.comment),
            Given(tag.year),  Given(tag.genre),  Given(tag.track), tag.genreNumber};
}

// What a caller gives need not be whole characters.
TagFields WellFormed(TagFields fields) {
    for (const auto field : kTextFields)
        if (!quenlox::IsValidUtf8(fields.*field))
            fields.*field = quenlox::Utf16ToUtf8(quenlox::Utf8ToUtf16(fields.*field));
    return fields;
}

template <class Record>
void FillTexts(Record& record, const TagFields& fields) {
    quenlox::PutUtf8(record.title, fields.title);
    quenlox::PutUtf8(record.artist, fields.artist);
    quenlox::PutUtf8(record.album, fields.album);
    quenlox::PutUtf8(record.comment, fields.comment);
    quenlox::PutUtf8(record.year, fields.year);
    quenlox::PutUtf8(record.genre, fields.genre);
    quenlox::PutUtf8(record.track, fields.track);
    record.genreNumber = fields.genreNumber;
}

bool Exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(std::filesystem::path(std::u8string(path.begin(), path.end())), error);
}

int ErrorOfMissing(const std::string& path) { return Exists(path) ? VBMP3_ERROR_LOCKED : VBMP3_ERROR_NOT_FOUND; }

// A tag is put only on files that hold sound: a text file given by mistake stays as it is.
bool HoldsSound(const ByteSource& file, const FileLayout& layout) {
    return layout.container == Container::Wave ? layout.findChunk("fmt ") != nullptr
                                               : ScanMpeg(file, layout.audio).has_value();
}

int Save(std::unique_ptr<ByteSource> source, const Recipe& recipe, const std::string& target,
         const BeforeStep& before) {
    const auto allowed = [&](SaveStep step) { return !before || before(step); };
    auto transaction = allowed(SaveStep::Begin) ? FileTransaction::begin(target) : nullptr;
    if (!transaction) return VBMP3_ERROR_WRITE;
    const bool written = recipe.carryOut(
        *source, [&](std::span<const uint8_t> bytes) { return allowed(SaveStep::Write) && transaction->write(bytes); });
    // A file that is open, even by us, may refuse to be replaced.
    source.reset();
    if (!written || static_cast<int64_t>(transaction->size()) != recipe.size() || !allowed(SaveStep::Commit))
        return VBMP3_ERROR_WRITE;
    switch (transaction->commit()) {
        case FileTransaction::Error::None: return VBMP3_OK;
        case FileTransaction::Error::Locked: return VBMP3_ERROR_LOCKED;
        default: return VBMP3_ERROR_WRITE;
    }
}

bool IsReadOnly(const std::string& path) {
    using std::filesystem::perms;
    std::error_code error;
    const auto status = std::filesystem::status(std::filesystem::path(std::u8string(path.begin(), path.end())), error);
    const perms writable = perms::owner_write | perms::group_write | perms::others_write;
    return !error && std::filesystem::exists(status) && (status.permissions() & writable) == perms::none;
}

// What the new file is made of, or nothing and why.
using Plan = std::function<std::optional<Recipe>(HeadTailReader&, const FileLayout&, int& error)>;

int Rewrite(const std::string& path, const std::string& target, const Plan& plan, const BeforeStep& before) {
    auto file = OpenFile(path);
    if (!file) return ErrorOfMissing(path);
    if (IsReadOnly(target)) return VBMP3_ERROR_LOCKED;
    std::optional<Recipe> recipe;
    int error = VBMP3_ERROR_FORMAT;
    {
        HeadTailReader reader(*file);
        const FileLayout layout = ScanFileLayout(reader);
        if (!HoldsSound(*file, layout)) return VBMP3_ERROR_FORMAT;
        recipe = plan(reader, layout, error);
    }
    return recipe ? Save(std::move(file), *recipe, target, before) : error;
}

bool IsOneKind(int kind) { return kind == kTagId3v1 || kind == kTagId3v2 || kind == kTagSi || kind == kTagApe; }

}  // namespace

void FillTags(HeadTailReader& reader, const FileLayout& layout, vbmp3_FileInfo& record) {
    FillTexts(record, ReadTags(reader, layout));
}

void FillTags(const ByteSource& file, const FileLayout& layout, vbmp3_FileInfo& record) {
    HeadTailReader reader(file);
    FillTags(reader, layout, record);
}

int ReadTagFields(const std::string& path, int kind, int& present, TagFields& fields) {
    present = 0;
    fields = {};
    if (kind != 0 && !IsOneKind(kind)) return VBMP3_ERROR_ARGUMENT;
    const auto file = OpenFile(path);
    if (!file) return ErrorOfMissing(path);
    HeadTailReader reader(*file);
    const FileLayout layout = ScanFileLayout(reader);
    present = PresentTags(layout);
    fields = kind != 0 ? ReadTagKind(reader, layout, kind) : ReadTags(reader, layout);
    return VBMP3_OK;
}

int ReadTagFile(const std::string& path, int kind, vbmp3_Tag& tag) {
    TagFields fields;
    const int error = kind != 0 ? ReadTagFields(path, kind, tag.present, fields) : int{VBMP3_ERROR_ARGUMENT};
    FillTexts(tag, fields);
    return error;
}

int WriteTagFields(const std::string& path, int kinds, const TagFields& given, AsShown shown,
                   const BeforeStep& before) {
    if (kinds == 0 || (kinds & ~kTagAll) != 0) return VBMP3_ERROR_ARGUMENT;
    const TagFields fields = WellFormed(given);
    return Rewrite(
        path, path,
        [&](HeadTailReader& reader, const FileLayout& layout, int& error) {
            if (CanHold(reader, layout, kinds)) error = VBMP3_ERROR_TAG;
            return PlanWrite(reader, layout, kinds, fields, shown);
        },
        before);
}

int WriteTagFile(const std::string& path, int kinds, const vbmp3_Tag& tag, const BeforeStep& before) {
    return WriteTagFields(path, kinds, FieldsOf(tag), ShownFields, before);
}

int RemoveTagFile(const std::string& path, int kinds, const BeforeStep& before) {
    if (kinds == 0 || (kinds & ~(kTagAll | kTagApe)) != 0) return VBMP3_ERROR_ARGUMENT;
    return Rewrite(
        path, path,
        [&](HeadTailReader& reader, const FileLayout& layout, int&) { return PlanRemove(reader, layout, kinds); },
        before);
}

int CountExtrasInFile(const std::string& path, int kind, TagExtras& extras) {
    extras = {};
    if (!IsOneKind(kind)) return VBMP3_ERROR_ARGUMENT;
    const auto file = OpenFile(path);
    if (!file) return ErrorOfMissing(path);
    HeadTailReader reader(*file);
    extras = ReadTagExtras(reader, ScanFileLayout(reader), kind);
    return VBMP3_OK;
}

int ConvertFile(const std::string& source, const std::string& destination, WrapAs form, const BeforeStep& before) {
    if (source.empty() || destination.empty()) return VBMP3_ERROR_ARGUMENT;
    if (IsSameFile(source, destination)) return VBMP3_ERROR_SAME_FILE;
    return Rewrite(
        source, destination,
        [&](HeadTailReader& reader, const FileLayout& layout, int&) {
            return form == WrapAs::Rmp ? PlanRmp(reader, layout) : PlanMp3(reader, layout);
        },
        before);
}

}  // namespace vbmp3

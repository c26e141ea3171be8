// Information on files, genres, tags and the change between MP3 and RMP of the C interface.
#include <algorithm>
#include <string>
#include <string_view>

#include "libraries/files/file_source.h"
#include "libraries/formats/stream_info.h"
#include "libraries/vbmp3/interface/library.h"
#include "libraries/vbmp3/interface/records.h"
#include "libraries/vbmp3/tags/file_record.h"
#include "libraries/vbmp3/tags/genres.h"
#include "libraries/vbmp3/tags/tag_files.h"
#include "text/encoding.h"

namespace vbmp3 {
namespace {

constexpr std::string TagFields::*kTexts[VBMP3_TEXTS] = {&TagFields::title,   &TagFields::artist, &TagFields::album,
                                                         &TagFields::comment, &TagFields::year,   &TagFields::genre,
                                                         &TagFields::track};

// A record that is newer than its first version has no caller with an older one yet.
bool IsWhole(const vbmp3_TagTexts* texts) { return texts != nullptr && texts->size >= sizeof *texts; }

int GiveTexts(vbmp3_TagTexts& to, const TagFields& fields) {
    size_t needed = 0;
    for (const auto text : kTexts) needed += (fields.*text).size() + 1;
    to.needed = static_cast<uint32_t>(std::min<size_t>(needed, UINT32_MAX));
    to.genreNumber = fields.genreNumber;
    std::fill_n(to.texts, VBMP3_TEXTS, nullptr);
    if (to.buffer == nullptr || needed > to.bufferSize) return VBMP3_ERROR_SIZE;
    char* at = to.buffer;
    for (int i = 0; i < VBMP3_TEXTS; ++i) {
        const std::string& text = fields.*kTexts[i];
        to.texts[i] = at;
        at = std::copy(text.begin(), text.end(), at);
        *at++ = '\0';
    }
    return VBMP3_OK;
}

// A tag that is not there is no error, but there is nothing to show either.
int32_t ReportTag(int error, bool there) { return Report(error) != 0 && there ? 1 : 0; }

}  // namespace
}  // namespace vbmp3

using namespace vbmp3;

int32_t vbmp3_getFileInfo(const char* path, vbmp3_FileInfo* info) {
    return Guarded<int32_t>(0, [&] {
        if (!IsRecord(info)) return Report(VBMP3_ERROR_ARGUMENT);
        vbmp3_FileInfo record{};
        record.genreNumber = 255;
        const auto file = OpenFile(TextOf(path));
        if (!file) {
            Give(info, record);
            return Report(VBMP3_ERROR_NOT_FOUND);
        }
        HeadTailReader reader(*file);
        const CachedSource cached(reader);
        const FileLayout layout = ScanFileLayout(reader);
        const auto stream = Probe(cached, layout);
        if (stream) {
            FillFormat(*stream, record);
            FillTags(reader, layout, record);
        }
        Give(info, record);
        return Report(stream ? VBMP3_OK : VBMP3_ERROR_FORMAT);
    });
}

int32_t vbmp3_getGenre(int32_t number, char* text, uint32_t size) {
    const std::string_view name = GenreName(number);
    if (text != nullptr) quenlox::PutUtf8(text, size, name);
    return name.empty() ? 0 : 1;
}

int32_t vbmp3_readTag(const char* path, int32_t kind, vbmp3_Tag* tag) {
    return Guarded<int32_t>(0, [&] {
        if (!IsRecord(tag)) return Report(VBMP3_ERROR_ARGUMENT);
        vbmp3_Tag record{};
        const int error = ReadTagFile(TextOf(path), kind, record);
        Give(tag, record);
        return ReportTag(error, (record.present & kind) != 0);
    });
}

int32_t vbmp3_readTagTexts(const char* path, int32_t kind, vbmp3_TagTexts* texts) {
    return Guarded<int32_t>(0, [&] {
        if (!IsWhole(texts)) return Report(VBMP3_ERROR_ARGUMENT);
        TagFields fields;
        int error = ReadTagFields(TextOf(path), kind, texts->present, fields);
        const int given = GiveTexts(*texts, fields);
        if (error == VBMP3_OK) error = given;
        return ReportTag(error, kind == 0 ? fields != TagFields{} : (texts->present & kind) != 0);
    });
}

int32_t vbmp3_writeTag(const char* path, int32_t kinds, const vbmp3_Tag* tag) {
    return Guarded<int32_t>(0, [&] {
        if (!IsRecord(tag)) return Report(VBMP3_ERROR_ARGUMENT);
        return Report(WriteTagFile(TextOf(path), kinds, Take(tag)));
    });
}

int32_t vbmp3_writeTagTexts(const char* path, int32_t kinds, const vbmp3_TagTexts* texts) {
    return Guarded<int32_t>(0, [&] {
        if (!IsWhole(texts)) return Report(VBMP3_ERROR_ARGUMENT);
        TagFields fields;
        for (int i = 0; i < VBMP3_TEXTS; ++i) fields.*kTexts[i] = TextOf(texts->texts[i]);
        fields.genreNumber = texts->genreNumber;
        return Report(WriteTagFields(TextOf(path), kinds, fields));
    });
}

int32_t vbmp3_removeTag(const char* path, int32_t kinds) {
    return Guarded<int32_t>(0, [&] { return Report(RemoveTagFile(TextOf(path), kinds)); });
}

int32_t vbmp3_convertToRmp(const char* source, const char* destination) {
    return Guarded<int32_t>(0, [&] { return Report(ConvertFile(TextOf(source), TextOf(destination), WrapAs::Rmp)); });
}

int32_t vbmp3_convertToMp3(const char* source, const char* destination) {
    return Guarded<int32_t>(0, [&] { return Report(ConvertFile(TextOf(source), TextOf(destination), WrapAs::Mp3)); });
}

int32_t vbmp3_countTagExtras(const char* path, int32_t kind, int32_t* pictures, int32_t* others) {
    return Guarded<int32_t>(0, [&] {
        TagExtras extras;
        const int error = CountExtrasInFile(TextOf(path), kind, extras);
        if (pictures != nullptr) *pictures = extras.pictures;
        if (others != nullptr) *others = extras.others;
        return Report(error);
    });
}

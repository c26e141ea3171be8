// Information on files, genres, tags and the change between MP3 and RMP of the C interface.
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "libraries/files/file_source.h"
#include "libraries/formats/stream_info.h"
#include "libraries/vbmp3/interface/library.h"
#include "libraries/vbmp3/tags/file_record.h"
#include "libraries/vbmp3/tags/genres.h"
#include "libraries/vbmp3/tags/tag_files.h"

namespace vbmp3 {
namespace {

std::string pathOf(const char* path) { return path != nullptr ? path : ""; }

// Records begin with the size that the caller knows of.
template <class Record>
bool isRecord(const Record* record) {
    return record != nullptr && record->size >= sizeof record->size;
}

template <class Record>
void give(Record* to, Record from) {
    from.size = to->size;
    std::memcpy(to, &from, std::min<size_t>(to->size, sizeof from));
}

template <class Record>
Record take(const Record* from) {
    Record record{};
    std::memcpy(&record, from, std::min<size_t>(from->size, sizeof record));
    return record;
}

}  // namespace
}  // namespace vbmp3

using namespace vbmp3;

int32_t vbmp3_getFileInfo(const char* path, vbmp3_FileInfo* info) {
    return guarded<int32_t>(0, [&] {
        if (!isRecord(info)) return report(VBMP3_ERROR_ARGUMENT);
        vbmp3_FileInfo record{};
        record.genreNumber = 255;
        const auto file = openFile(pathOf(path));
        if (!file) {
            give(info, record);
            return report(VBMP3_ERROR_NOT_FOUND);
        }
        HeadTailReader reader(*file);
        const CachedSource cached(reader);
        const FileLayout layout = scanFileLayout(reader);
        const auto stream = probe(cached, layout);
        if (stream) {
            fillFormat(*stream, record);
            fillTags(reader, layout, record);
        }
        give(info, record);
        return report(stream ? VBMP3_OK : VBMP3_ERROR_FORMAT);
    });
}

int32_t vbmp3_getGenre(int32_t number, char* text, uint32_t size) {
    const std::string_view name = genreName(number);
    if (text != nullptr) copyText(text, size, name);
    return name.empty() ? 0 : 1;
}

int32_t vbmp3_readTag(const char* path, int32_t kind, vbmp3_Tag* tag) {
    return guarded<int32_t>(0, [&] {
        if (!isRecord(tag)) return report(VBMP3_ERROR_ARGUMENT);
        vbmp3_Tag record{};
        const int error = readTagFile(pathOf(path), kind, record);
        give(tag, record);
        // A file that lacks the tag is no error, but there is nothing to show either.
        return report(error) != 0 && (record.present & kind) != 0 ? 1 : 0;
    });
}

int32_t vbmp3_writeTag(const char* path, int32_t kinds, const vbmp3_Tag* tag) {
    return guarded<int32_t>(0, [&] {
        if (!isRecord(tag)) return report(VBMP3_ERROR_ARGUMENT);
        return report(writeTagFile(pathOf(path), kinds, take(tag)));
    });
}

int32_t vbmp3_removeTag(const char* path, int32_t kinds) {
    return guarded<int32_t>(0, [&] { return report(removeTagFile(pathOf(path), kinds)); });
}

int32_t vbmp3_convertToRmp(const char* source, const char* destination) {
    return guarded<int32_t>(0, [&] { return report(convertFile(pathOf(source), pathOf(destination), WrapAs::Rmp)); });
}

int32_t vbmp3_convertToMp3(const char* source, const char* destination) {
    return guarded<int32_t>(0, [&] { return report(convertFile(pathOf(source), pathOf(destination), WrapAs::Mp3)); });
}

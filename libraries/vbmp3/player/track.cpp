#include "libraries/vbmp3/player/track.h"

#include <utility>

#include "libraries/vbmp3/decoder/open_source.h"
#include "libraries/vbmp3/tags/file_record.h"
#include "libraries/vbmp3/tags/tag_files.h"

namespace vbmp3 {

bool Stream::open(std::shared_ptr<const ByteSource> file, const StreamInfo& info) {
    source =
        OpenSource(std::make_shared<StoppableSource>(std::move(file), [up = givenUp] { return up->load(); }), info);
    return source != nullptr;
}

TrackPtr OpenTrack(const FileOpener& openFile, const std::string& path, const Ticket& ticket, int& error,
                   vbmp3_FileInfo* record) {
    static std::atomic<int64_t> lastId = 0;
    auto track = std::make_shared<Track>();
    std::shared_ptr<const ByteSource> file = openFile(path);
    error = VBMP3_ERROR_NOT_FOUND;
    if (!file) return nullptr;
    track->file = std::make_shared<StoppableSource>(std::move(file), [ticket] { return ticket->load(); });

    HeadTailReader reader(*track->file);
    const CachedSource cached(reader);
    const FileLayout layout = ScanFileLayout(reader);
    auto info = Probe(cached, layout, INT64_MAX);
    error = VBMP3_ERROR_FORMAT;
    if (!info) return nullptr;
    RefineLength(*track->file, *info);
    if (!track->stream.open(track->file, *info)) return nullptr;
    if (record != nullptr) {
        FillFormat(*info, *record);
        FillTags(reader, layout, *record);
    }
    track->lyrics = LyricsInTags(cached, layout, info);
    track->id = ++lastId;
    track->path = path;
    track->info = std::move(*info);
    track->sampleRate = track->stream.source->sampleRate();
    error = VBMP3_OK;
    return track;
}

std::optional<EmbeddedLyrics> LyricsInTags(const ByteSource& file, const FileLayout& layout,
                                           const std::optional<StreamInfo>& info) {
    const bool mpeg = info && info->mpeg && info->mpeg->first.sampleRate > 0;
    const auto msPerFrame = mpeg ? info->mpeg->first.samplesPerFrame * 1000.0 / info->mpeg->first.sampleRate : 0.0;
    return ReadEmbeddedLyrics(file, layout, msPerFrame);
}

}  // namespace vbmp3

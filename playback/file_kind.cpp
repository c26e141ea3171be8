#include "playback/file_kind.h"

#include "platform/vbmp3.h"

namespace quenlox {

MediaKind KindOfFileType(const FileType& type) {
    MediaKind kind;
    kind.base = type.rmp ? kRmp : type.wave ? kWavePcm : type.mpeg ? kMp3 : kWaveOther;
    kind.tag = type.id3v2 ? TagKind::Id3v2 : type.id3v1 ? TagKind::Id3v1 : TagKind::None;
    kind.lyrics = type.lyrics;
    return kind;
}

}  // namespace quenlox

#include "playback/file_kind.h"

#include "platform/vbmp3.h"

namespace quenlox {

MediaKind KindOfFileType(int fileType) {
    MediaKind kind;
    kind.base = fileType & VBMP3_TYPE_RMP    ? kRmp
                : fileType & VBMP3_TYPE_WAVE ? kWavePcm
                : fileType & VBMP3_TYPE_MPEG ? kMp3
                                             : kWaveOther;
    kind.tag = fileType & VBMP3_TYPE_ID3V2   ? TagKind::Id3v2
               : fileType & VBMP3_TYPE_ID3V1 ? TagKind::Id3v1
                                             : TagKind::None;
    kind.lyrics = (fileType & VBMP3_TYPE_LYRICS) != 0;
    return kind;
}

}  // namespace quenlox

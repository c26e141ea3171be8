#include "state/media_kind.h"

#include "libraries/vbmp3/vbmp3.h"

namespace quenlox {

int MediaKind::code() const {
    const int tags = tag == TagKind::Id3v2 ? 100 : tag == TagKind::Id3v1 ? 200 : 0;
    return base + tags + (lyrics ? 1000 : 0);
}

std::string_view MediaKind::name() const {
    switch (base) {
        case kWavePcm:
        case kWaveOther:
        case kWaveMci: return "WAV";
        case kMp3: return "MP3";
        case kRmp: return "RMP";
        case kMidi: return "MIDI";
        case kCdAudio: return "CD-DA";
        case kWma: return "WMA";
        case kUnknownKind: break;
    }
    return "";
}

MediaKind KindOfExtension(std::string_view lastFour) {
    if (lastFour == ".rmi" || lastFour == ".mid") return {kMidi};
    if (lastFour == ".cda") return {kCdAudio};
    if (lastFour == ".wma") return {kWma};
    return {};
}

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

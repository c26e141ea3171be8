#include "state/media_kind.h"

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

}  // namespace quenlox

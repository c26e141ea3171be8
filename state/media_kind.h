// What a media file is: the base kind, which says what plays it, and what else the decoding library knows of it.
#pragma once

#include <string_view>

namespace quenlox {

enum BaseKind : int {
    kUnknownKind = 0,
    kWavePcm = 1,
    kWaveOther = 2,
    kMp3 = 3,
    kRmp = 4,
    kMidi = 10,
    kCdAudio = 20,
    kWma = 30,
    kWaveMci = 40
};

enum class TagKind { None, Id3v1, Id3v2 };

struct MediaKind {
    BaseKind base = kUnknownKind;
    TagKind tag = TagKind::None;  // the newer of those in the file
    bool lyrics = false;          // lyrics can be shown for it

    // The number that the kind is known by: the base kind, 100 more with an ID3v2 tag, 200 more with an ID3v1 tag
    // alone, 1000 more where lyrics can be shown.
    int code() const;
    std::string_view name() const;  // "MP3"; empty for an unknown kind

    bool playedByVbmp3() const { return base >= kWavePcm && base <= kRmp; }
    bool playedByMediaControl() const { return base >= kMidi; }
    bool operator==(const MediaKind&) const = default;
};

}  // namespace quenlox

#include "libraries/vbmp3/tags/file_record.h"

#include <algorithm>

#include "text/encoding.h"

namespace vbmp3 {

int FileTypeOf(const StreamInfo& info) {
    int type = (info.id3v1 ? VBMP3_TYPE_ID3V1 : 0) | (info.id3v2 ? VBMP3_TYPE_ID3V2 : 0);
    if (info.mpeg) {
        type |= VBMP3_TYPE_MPEG | VBMP3_TYPE_LYRICS;
        if (info.container == Container::Rmp) type |= VBMP3_TYPE_RMP;
    } else if (info.wave && info.wave->plainPcm()) {
        type |= VBMP3_TYPE_WAVE;
    }
    return type;
}

void FillFormat(const StreamInfo& info, vbmp3_FileInfo& record) {
    const int64_t milliseconds = info.milliseconds();
    record.fileType = FileTypeOf(info);
    record.seconds = static_cast<int32_t>(std::min<int64_t>(milliseconds / 1000, INT32_MAX));
    record.milliseconds = static_cast<int32_t>(milliseconds % 1000);
    record.frames = info.exact ? info.frames : -1;
    record.sampleRate = info.sampleRate;
    record.channels = info.channels;
    record.bitsPerSample = info.mpeg || !info.wave ? 0 : info.wave->bitsPerSample;
    record.bitRate = info.bitRate;
    record.variableBitRate = info.mpeg && info.mpeg->variableBitRate ? 1 : 0;
    record.mpegVersion = info.mpeg ? info.mpeg->first.version : 0;
    record.layer = info.mpeg ? info.mpeg->first.layer : 0;
    quenlox::PutUtf8(record.format, info.format);
}

}  // namespace vbmp3

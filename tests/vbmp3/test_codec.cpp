#include "tests/vbmp3/test_codec.h"

#include <algorithm>
#include <iterator>

#include <lame/lame.h>

namespace vbmp3::test {
namespace {

// What the audio compression manager says to its drivers; documented with the Windows driver kit, in no header of
// MinGW.
enum : UINT {
    kDriverDetails = 0x6000 + 10,
    kFormatTagDetails = 0x6000 + 25,
    kStreamOpen = 0x6000 + 76,
    kStreamClose,
    kStreamSize,
    kStreamConvert,
    kStreamReset,
    kStreamPrepare,
    kStreamUnprepare
};

struct StreamInstance {
    DWORD size;
    WAVEFORMATEX* source;
    WAVEFORMATEX* target;
    void* filter;
    DWORD_PTR callback, callbackInstance;
    DWORD open;
    DWORD driverFlags;
    DWORD_PTR driver;
    HACMSTREAM stream;
};

struct StreamHeader {
    DWORD size;
    DWORD status;
    DWORD_PTR user;
    BYTE* source;
    DWORD sourceLength, sourceUsed;
    DWORD_PTR sourceUser;
    BYTE* target;
    DWORD targetLength, targetUsed;
    DWORD_PTR targetUser;
    DWORD convert;
};

struct StreamSize {
    DWORD size;
    DWORD which;
    DWORD source;
    DWORD target;
};

constexpr DWORD kFrameBytes = 1152 * 4;

LRESULT DriverDetails(ACMDRIVERDETAILSW& details) {
    const DWORD size = details.cbStruct;
    details = {};
    details.cbStruct = size;
    details.fccType = ACMDRIVERDETAILS_FCCTYPE_AUDIOCODEC;
    details.fccComp = ACMDRIVERDETAILS_FCCCOMP_UNDEFINED;
    details.vdwACM = 0x03320000;
    details.fdwSupport = ACMDRIVERDETAILS_SUPPORTF_CODEC;
    details.cFormatTags = 2;
    lstrcpyW(details.szShortName, L"Test MP3");
    lstrcpyW(details.szLongName, L"MP3 encoder of the tests");
    return MMSYSERR_NOERROR;
}

LRESULT FormatTagDetails(ACMFORMATTAGDETAILSW& details, LPARAM query) {
    constexpr DWORD kTags[] = {WAVE_FORMAT_PCM, WAVE_FORMAT_MPEGLAYER3};
    DWORD index = details.dwFormatTagIndex;
    if (query != ACM_FORMATTAGDETAILSF_INDEX) index = details.dwFormatTag == WAVE_FORMAT_MPEGLAYER3 ? 1 : 0;
    if (index > 1 || (query == ACM_FORMATTAGDETAILSF_FORMATTAG && details.dwFormatTag != kTags[index]))
        return ACMERR_NOTPOSSIBLE;
    details.dwFormatTagIndex = index;
    details.dwFormatTag = kTags[index];
    details.cbFormatSize = index == 0 ? sizeof(PCMWAVEFORMAT) : sizeof(MPEGLAYER3WAVEFORMAT);
    details.fdwSupport = ACMDRIVERDETAILS_SUPPORTF_CODEC;
    details.cStandardFormats = 1;
    lstrcpyW(details.szFormatTag, index == 0 ? L"PCM" : L"MP3");
    return MMSYSERR_NOERROR;
}

LRESULT OpenStream(StreamInstance& stream) {
    const WAVEFORMATEX &from = *stream.source, &to = *stream.target;
    const int bitRate = static_cast<int>(to.nAvgBytesPerSec * 8 / 1000);
    if (from.wFormatTag != WAVE_FORMAT_PCM || from.wBitsPerSample != 16 || from.nChannels != 2 ||
        to.wFormatTag != WAVE_FORMAT_MPEGLAYER3 || to.nChannels != 2 || from.nSamplesPerSec != 44100 ||
        to.nSamplesPerSec != 44100 || bitRate > 128)
        return ACMERR_NOTPOSSIBLE;
    if ((stream.open & ACM_STREAMOPENF_QUERY) != 0) return MMSYSERR_NOERROR;
    lame_t lame = lame_init();
    lame_set_in_samplerate(lame, 44100);
    lame_set_out_samplerate(lame, 44100);
    lame_set_brate(lame, bitRate);
    lame_set_bWriteVbrTag(lame, 0);
    lame_set_quality(lame, 7);
    if (lame_init_params(lame) < 0) return MMSYSERR_NOMEM;
    stream.driver = DWORD_PTR(lame);
    return MMSYSERR_NOERROR;
}

LRESULT Convert(StreamInstance& stream, StreamHeader& header) {
    const auto lame = reinterpret_cast<lame_t>(stream.driver);
    const bool last = (header.convert & ACM_STREAMCONVERTF_END) != 0;
    header.sourceUsed = last ? header.sourceLength : header.sourceLength / kFrameBytes * kFrameBytes;
    int written = lame_encode_buffer_interleaved(lame, reinterpret_cast<short*>(header.source),
                                                 static_cast<int>(header.sourceUsed / 4), header.target,
                                                 static_cast<int>(header.targetLength));
    if (last && written >= 0)
        written += std::max(
            0, lame_encode_flush(lame, header.target + written, static_cast<int>(header.targetLength) - written));
    header.targetUsed = static_cast<DWORD>(std::max(0, written));
    return written >= 0 ? MMSYSERR_NOERROR : ACMERR_NOTPOSSIBLE;
}

LRESULT CALLBACK DriverProc(DWORD_PTR id, HDRVR driver, UINT message, LPARAM a, LPARAM b) {
    switch (message) {
        case DRV_LOAD:
        case DRV_FREE:
        case DRV_OPEN:
        case DRV_CLOSE:
        case DRV_ENABLE:
        case DRV_DISABLE: return 1;
        case kDriverDetails: return DriverDetails(*reinterpret_cast<ACMDRIVERDETAILSW*>(a));
        case kFormatTagDetails:
            return FormatTagDetails(*reinterpret_cast<ACMFORMATTAGDETAILSW*>(a), b & ACM_FORMATTAGDETAILSF_QUERYMASK);
        case kStreamOpen: return OpenStream(*reinterpret_cast<StreamInstance*>(a));
        case kStreamClose:
            lame_close(reinterpret_cast<lame_t>(reinterpret_cast<StreamInstance*>(a)->driver));
            return MMSYSERR_NOERROR;
        case kStreamSize: {
            auto& size = *reinterpret_cast<StreamSize*>(b);
            if (size.which != ACM_STREAMSIZEF_SOURCE) return MMSYSERR_NOTSUPPORTED;
            size.target = size.source / 4 * 5 / 4 + 16384;
            return MMSYSERR_NOERROR;
        }
        case kStreamConvert: return Convert(*reinterpret_cast<StreamInstance*>(a), *reinterpret_cast<StreamHeader*>(b));
        case kStreamReset:
        case kStreamPrepare:
        case kStreamUnprepare: return MMSYSERR_NOERROR;
        default: return message >= 0x6000 ? MMSYSERR_NOTSUPPORTED : DefDriverProc(id, driver, message, a, b);
    }
}

}  // namespace

TestCodec::TestCodec() {
    if (acmDriverAddW(&id_, GetModuleHandleW(nullptr), reinterpret_cast<LPARAM>(&DriverProc), 0,
                      ACM_DRIVERADDF_FUNCTION | ACM_DRIVERADDF_LOCAL) != MMSYSERR_NOERROR)
        id_ = nullptr;
}

TestCodec::~TestCodec() {
    if (id_ != nullptr) acmDriverRemove(id_, 0);
}

}  // namespace vbmp3::test

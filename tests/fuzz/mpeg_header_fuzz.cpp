// Frame headers, information frames and the length of a stream.
#include <cassert>
#include <cstdint>
#include <cstdlib>

#include "libraries/formats/mpeg_header.h"
#include "libraries/formats/stream_info.h"
#include "libraries/vbmp3/tags/file_record.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace vbmp3;
    const MemorySource file({data, size});
    if (auto scan = ScanMpeg(file, {0, file.size()})) {
        if (scan->begin < 0 || scan->soundBegin < scan->begin || scan->soundBegin > file.size() || scan->samples < 0)
            std::abort();
        CountFrames(file, *scan);
        if (scan->frames > file.size()) std::abort();
    }
    if (auto info = Probe(file, ScanFileLayout(file))) {
        vbmp3_FileInfo record{};
        FillFormat(*info, record);
        if (record.seconds < 0 || info->data.begin < 0 || info->data.end > file.size()) std::abort();
    }
    return 0;
}

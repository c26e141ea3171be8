// The way of every file that is played: found out, opened, decoded, sent to places that its own last bytes name.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "libraries/vbmp3/decoder/open_source.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace vbmp3;
    const auto file = std::make_shared<MemorySource>(std::span(data, size));
    const auto info = Probe(*file, ScanFileLayout(*file));
    if (!info) return 0;
    const auto source = OpenSource(file, *info);
    if (!source) return 0;
    std::vector<float> block(2 * 1000);
    const auto listen = [&](int blocks) {
        for (int i = 0; i < blocks; ++i) {
            const size_t frames = source->read(block);
            if (frames == 0) return;
            for (size_t k = 0; k < 2 * frames; ++k)
                if (std::isnan(block[k])) std::abort();
        }
    };
    listen(20);
    for (size_t i = 0; i < 4 && i < size; ++i) {
        source->seek(info->frames * data[size - 1 - i] / 250);
        listen(2);
    }
    return 0;
}

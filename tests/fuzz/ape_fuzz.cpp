#include <cstdlib>

#include "libraries/vbmp3/tags/ape.h"

using namespace vbmp3;

// Any bytes are read as a tag, in the whole and cut short; what is read is no longer than what was there.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const MemorySource source({data, size});
    HeadTailReader reader(source);
    for (const size_t end : {size, size / 2}) {
        const ByteRange range{0, static_cast<int64_t>(end)};
        const TagFields fields = ReadApe(reader, range);
        size_t length = 0;
        for (const auto field : kTextFields) length += (fields.*field).size();
        // A byte of Latin-1 takes two, one that is no character three, and values are parted by three.
        if (length > 4 * end) std::abort();
        const TagExtras extras = ReadApeExtras(reader, range);
        if (extras.pictures + extras.others > 1 + static_cast<int>(end / 9)) std::abort();
    }
    return 0;
}

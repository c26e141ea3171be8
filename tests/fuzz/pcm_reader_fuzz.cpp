// What the encoder is given to read: never more samples than were promised, at any rate, and all of them are numbers.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "libraries/gogo/pcm_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const int file = memfd_create("wave", 0);
    static const std::string path = "/proc/self/fd/" + std::to_string(file);
    if (ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) != static_cast<ssize_t>(size)) std::abort();
    for (const int rate : {8000, 44100, 48000}) {
        gogo::Error error{};
        const auto reader = gogo::PcmReader::open(path, rate, rate == 8000, error);
        if (!reader != (error != gogo::Error::None)) std::abort();
        if (!reader) return 0;
        gogo::Pcm pcm;
        const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(reader->length(), 100'000));
        while (pcm.size() < wanted && reader->read(1152, pcm)) continue;
        if (pcm.size() > static_cast<std::size_t>(reader->length())) std::abort();
        if (pcm.right.size() != (reader->channels() == 2 ? pcm.size() : 0)) std::abort();
        for (const float sample : pcm.left)
            if (!std::isfinite(sample)) std::abort();
    }
    return 0;
}

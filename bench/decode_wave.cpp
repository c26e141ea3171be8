// Decodes a file to memory or to WAVE, for comparison with other programs: bench/report.py runs it.
// decode_wave memory FILE | decode_wave wave FILE DESTINATION THREADS
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "libraries/files/file_source.h"
#include "libraries/vbmp3/decoder/open_source.h"
#include "libraries/vbmp3/jobs/jobs.h"

int main(int argc, char** argv) {
    using namespace vbmp3;
    const std::string mode = argc > 2 ? argv[1] : "";
    if (mode == "wave" && argc == 5) {
        JobControl control;
        return DecodeToWave(argv[2], argv[3], std::atoi(argv[4]), control);
    }
    if (mode != "memory") return 2;
    const std::shared_ptr<const ByteSource> file = OpenFile(argv[2]);
    const auto info = file ? Probe(*file, ScanFileLayout(*file)) : std::nullopt;
    const auto source = info ? OpenSource(file, *info) : nullptr;
    if (!source) return 1;
    std::vector<float> block(2 * 4096);
    long long frames = 0;
    while (const size_t count = source->read(block)) frames += static_cast<long long>(count);
    std::printf("%lld\n", frames);
    return 0;
}

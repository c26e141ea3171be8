// Both directions of the converter beside the programs that people use for it: WAVE to MP3 against lame, MP3 to WAVE
// against mpg123, with the same settings, taking turns on the same files. Prints the best wall-clock time of each, its
// processor time, and the ratio. Ten minutes of sound, or as many as the first argument says; rounds: the second.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <sys/resource.h>

#include "libraries/vbmp3/vbmp3.h"
#include "tests/gogo/support.h"

namespace {

using namespace gogo;
using Clock = std::chrono::steady_clock;

struct Times {
    double wall = 1e9;
    double processor = 1e9;
};

double ProcessorSeconds() {
    double sum = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(who, &usage);
        for (const timeval& time : {usage.ru_utime, usage.ru_stime})
            sum += static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    }
    return sum;
}

void Measure(Times& best, const std::function<void()>& work) {
    const double before = ProcessorSeconds();
    const auto start = Clock::now();
    work();
    best.wall = std::min(best.wall, std::chrono::duration<double>(Clock::now() - start).count());
    best.processor = std::min(best.processor, ProcessorSeconds() - before);
}

void Run(const std::string& command) {
    if (std::system(command.c_str()) != 0) {
        std::fprintf(stderr, "failed: %s\n", command.c_str());
        std::exit(1);
    }
}

void Decode(const std::string& source, const std::string& destination) {
    if (!vbmp3_decodeWave(source.c_str(), destination.c_str())) std::exit(1);
    int32_t permille = 0;
    while (vbmp3_getEncodeState(&permille) == 1) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void Report(const char* what, const Times& other, const Times& ours) {
    std::printf("%-28s %7.2f s (%6.2f s cpu)   %7.2f s (%6.2f s cpu)   %5.2f times as fast\n", what, other.wall,
                other.processor, ours.wall, ours.processor, other.wall / ours.wall);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    const int minutes = argc > 1 ? std::atoi(argv[1]) : 10, rounds = argc > 2 ? std::atoi(argv[2]) : 3;
    const vbmp3::test::TempDir dir;
    const std::string wav = dir.path("source.wav"), mp3 = dir.path("ours.mp3"), other = dir.path("other.mp3");
    {
        // One minute over and over; more is no other work for an encoder.
        const test::Samples minute = test::Music(44100, 2, 44100 * 60);
        test::Samples all;
        for (int i = 0; i < minutes; ++i) all.insert(all.end(), minute.begin(), minute.end());
        dir.write(wav, test::Wave(all, 44100, 2));
    }
    std::printf("%d minutes, best of %d, %u cores%24s%30s\n", minutes, rounds, std::thread::hardware_concurrency(),
                "theirs", "ours");

    const struct {
        const char* name;
        const char* options;
        int bitRate, vbrQuality;
    } settings[] = {
        {"lame -b 128", "-b 128", 128, -1}, {"lame -b 320", "-b 320", 320, -1}, {"lame -V 2", "-V 2 -b 32", 32, 2}};
    for (const auto& setting : settings) {
        Settings s;
        s.source = wav;
        s.destination = mp3;
        s.bitRate = setting.bitRate;
        s.vbrQuality = setting.vbrQuality;
        Times theirs, ours;
        for (int round = 0; round < rounds; ++round) {
            Measure(theirs, [&] {
                Run("lame --quiet --noreplaygain " + std::string(setting.options) + " '" + wav + "' '" + other + "'");
            });
            Measure(ours, [&] { test::Encode(s, 0); });
        }
        Report(setting.name, theirs, ours);
    }

    vbmp3_init();
    Times theirs, ours;
    for (int round = 0; round < rounds; ++round) {
        Measure(theirs, [&] { Run("mpg123 -q -w '" + dir.path("other.wav") + "' '" + mp3 + "'"); });
        Measure(ours, [&] { Decode(mp3, dir.path("ours.wav")); });
    }
    Report("mpg123 -w", theirs, ours);
    vbmp3_free();
}

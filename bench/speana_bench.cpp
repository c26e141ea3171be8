// Time of one frame of the panel: the mean and the dearest view of each drawing procedure.
#include <benchmark/benchmark.h>

#include "speana/speana.h"
#include "tests/speana/sound.h"

namespace quenlox {
namespace {

void OneFrame(benchmark::State& run) {
    std::array<SoundFrame, 16> sounds;
    for (int n = 0; n < 16; ++n) sounds[static_cast<std::size_t>(n)] = SoundOf(n, 85);
    Speana speana;
    const int view = static_cast<int>(run.range(0));
    std::size_t n = 0;
    for (auto _ : run) {
        speana.draw(view, sounds[n++ % sounds.size()]);
        benchmark::DoNotOptimize(speana.frame().pixels().data());
    }
    run.SetLabel("group " + std::to_string(view / kPanelVariants) + " variant " +
                 std::to_string(view % kPanelVariants));
}
BENCHMARK(OneFrame)->DenseRange(0, kPanelViews - 1)->Unit(benchmark::kMicrosecond)->MinTime(0.05);

}  // namespace
}  // namespace quenlox

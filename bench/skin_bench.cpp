// The main window with the shipped default skin: loading a package, composing the whole picture, and the small repaints
// that a second of playing costs. Text is painted by the tests' block painter, so its cost is not in the figures.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "skin/form_top.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_system.h"
#include "state/option_store.h"
#include "tests/fakes/fake_shell.h"
#include "tests/fakes/fake_text_painter.h"
#include "tests/fakes/fake_window_system.h"

namespace quenlox {
namespace {

// Forgets what is written: an endless list would be measured otherwise.
class Painter : public FakeTextPainter {
  public:
    void draw(Surface& on, const Rect& where, std::string_view utf8, const TextStyle& style) override {
        FakeTextPainter::draw(on, where, utf8, style);
        drawn.clear();
    }
};

struct Bench {
    GlobalState state;
    OptionStore options;
    FakeFileSystem files;
    FakeDialogs dialogs;
    FakeShell shell;
    Painter painter;
    FakeWindowSystem windows;
    SplitValues values;
    FormTop top{state, options, files, dialogs, shell, painter, values};

    explicit Bench(const std::string& skin, int zoom = 100) {
        options.set(&Options::SkinZoom, zoom);
        files.add("C:\\Quenlox\\Quenlox.ini", "");
        for (const auto& entry :
             std::filesystem::directory_iterator(QUENLOX_SOURCE_DIR "/skins/" + skin + "/package")) {
            std::ifstream file(entry.path(), std::ios::binary);
            files.add(folder(skin) + entry.path().filename().string(), {std::istreambuf_iterator<char>(file), {}});
        }
        options.set(&Options::TitleAnimation, true);
        options.set(&Options::SpectrumShown, true);
        top.realise(windows);
        load(skin);
        top.showTitle("とても長い曲の名前がここを右から左へゆっくりと流れていき、そしてまた始まる", "演奏する人");
        top.showInformation("MPEG-1 Layer3 44.1kHz 128kbps");
        top.picture();
    }
    static std::string folder(const std::string& skin) { return "C:\\Quenlox\\skin\\" + skin + "\\"; }
    void load(const std::string& skin) { top.LoadSkin(folder(skin) + skin + ".tsk"); }
    // The host of the tests only takes notes.
    void forget() { windows.hostOf(top)->invalidated.clear(), windows.hostOf(top)->controlChanges.clear(); }
};

void LoadSkin(benchmark::State& run, const char* skin) {
    Bench bench(skin);
    for (auto _ : run) {
        bench.load(skin);
        bench.forget();
    }
}

void ComposeAll(benchmark::State& run, const char* skin, int zoom) {
    Bench bench(skin, zoom);
    for (auto _ : run) {
        bench.top.refreshDisplay();
        benchmark::DoNotOptimize(bench.top.picture());
        bench.forget();
    }
}

void TitleTick(benchmark::State& run) {
    Bench bench("default");
    for (auto _ : run) {
        bench.top.TimerTitle.onTimer();
        benchmark::DoNotOptimize(bench.top.picture());
        bench.forget();
    }
}

void PanelTick(benchmark::State& run, int zoom) {
    Bench bench("default", zoom);
    for (auto _ : run) {
        bench.top.DisplayB.surface().fill({9, 9, 9});
        bench.top.DisplayB.refresh();
        benchmark::DoNotOptimize(bench.top.picture());
        bench.forget();
    }
}

void SecondOfPlaying(benchmark::State& run) {
    Bench bench("default");
    int second = 0;
    for (auto _ : run) {
        ++second;
        bench.top.showTime(second % 2 ? "01:15" : "01:16");
        bench.top.showBar(second % 240 / 240.0);
        benchmark::DoNotOptimize(bench.top.picture());
        bench.forget();
    }
}

BENCHMARK_CAPTURE(LoadSkin, default, "default")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadSkin, hakuji, "hakuji")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(LoadSkin, obi, "obi")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ComposeAll, default, "default", 100)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ComposeAll, fine, "default", 200)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ComposeAll, between, "default", 150)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(ComposeAll, hakuji, "hakuji", 100)->Unit(benchmark::kMicrosecond);
BENCHMARK(TitleTick)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(PanelTick, once, 100)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(PanelTick, twice, 200)->Unit(benchmark::kMicrosecond);
BENCHMARK(SecondOfPlaying)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace quenlox

// The list model with 100 000 rows, and for some with a million: what start-up, shutdown and the commands of the
// play-list window cost.
#include <benchmark/benchmark.h>

#include <string>

#include "platform/random.h"
#include "playlist/list_search.h"
#include "playlist/playlists.h"
#include "state/global_state.h"
#include "state/options.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_vbmp3.h"

namespace quenlox {
namespace {

constexpr int kRows = 100'000, kManyRows = 1'000'000;
const char* const kListPath = "C:\\Quenlox\\Quenlox.m3u";

// Paths and texts of usual length, Japanese for the most part: 10 tracks an album, 10 albums an artist.
std::string PathOf(int i) {
    return "D:\\音楽\\アーティスト" + std::to_string(i / 100) + "\\アルバム" + std::to_string(i / 10) + "\\" +
           std::to_string(i % 10 + 1) + " 曲の名前 " + std::to_string(i * 7919 % kRows) + ".mp3";
}

class Library : public FakeVbmp3 {
  public:
    LibraryResult<TrackInfo> vbmp3_getFileInfo(const std::string& path) override {
        const auto number = std::to_string(std::hash<std::string>{}(path) % kRows);
        TrackInfo info;
        info.texts.title = "曲の名前 " + number;
        info.texts.artist = "アーティスト " + number.substr(0, 2);
        info.texts.album = "アルバム " + number.substr(0, 3);
        info.seconds = 215;
        return info;
    }
};

struct Bench {
    GlobalState state;
    Options options;
    FakeFileSystem files;
    Library vbmp3;
    SeededRandom random{1};
    Playlists lists{state, options, files, vbmp3, random};

    explicit Bench(bool withTexts = false, int rows = kRows) {
        state.ListType = 1;
        for (int i = 0; i < rows; ++i) lists.AddEntry(PathOf(i), 0);
        while (withTexts && lists.fillSome(std::chrono::seconds(1))) {
        }
    }
};

void ReadListFile(benchmark::State& run, bool unicode, int rows) {
    Bench bench(false, rows);
    if (unicode) bench.lists.AddEntry("D:\\한국.mp3", 0);
    bench.state.ListDirty = true;
    bench.lists.SaveListFile();
    for (auto _ : run) {
        GlobalState state;
        state.CurrentFile = PathOf(77);
        Playlists lists(state, bench.options, bench.files, bench.vbmp3, bench.random);
        lists.LoadListFile();
        if (lists.count(0) != bench.lists.count(0)) run.SkipWithError("not all rows were read");
    }
}
BENCHMARK_CAPTURE(ReadListFile, shift_jis, false, kRows)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadListFile, utf_16, true, kRows)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ReadListFile, million, false, kManyRows)->Unit(benchmark::kMillisecond);

void WriteListFile(benchmark::State& run, bool unicode) {
    Bench bench;
    if (unicode) bench.lists.AddEntry("D:\\한국.mp3", 0);
    for (auto _ : run) {
        bench.state.ListDirty = true;
        bench.lists.SaveListFile();
    }
    run.counters["bytes"] = static_cast<double>(bench.files.bytesOf(kListPath).size());
}
BENCHMARK_CAPTURE(WriteListFile, shift_jis, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(WriteListFile, utf_16, true)->Unit(benchmark::kMillisecond);

void RandomOrder(benchmark::State& run) {
    Bench bench;
    for (auto _ : run) bench.lists.BuildShuffleOrder(0);
}
BENCHMARK(RandomOrder)->Unit(benchmark::kMillisecond);

void SortByTitle(benchmark::State& run) {
    const auto rows = static_cast<int>(run.range(0));
    Bench bench(true, rows);
    Playlists::Selection selection(static_cast<std::size_t>(rows));
    bool byPath = false;
    for (auto _ : run) {
        run.PauseTiming();
        bench.lists.sort(0, (byPath = !byPath) ? kFileColumn : kNameColumn, false, selection);
        run.ResumeTiming();
        bench.lists.sort(0, kTitleColumn, false, selection);
    }
}
BENCHMARK(SortByTitle)->Arg(kRows)->Arg(kManyRows)->Unit(benchmark::kMillisecond);

void RandomizeRows(benchmark::State& run) {
    Bench bench(true);
    bench.state.CurrentFile = PathOf(77);
    Playlists::Selection selection(kRows);
    for (auto _ : run) bench.lists.randomize(0, selection);
}
BENCHMARK(RandomizeRows)->Unit(benchmark::kMillisecond);

void MoveHalfOfTheRowsDown(benchmark::State& run) {
    Bench bench(true);
    Playlists::Selection selection(kRows);
    for (auto _ : run) {
        for (std::size_t row = 0; row < selection.size(); ++row) selection[row] = row % 4 < 2;
        bench.lists.moveDown(0, selection);
    }
}
BENCHMARK(MoveHalfOfTheRowsDown)->Unit(benchmark::kMillisecond);

void RemoveHalfOfTheRows(benchmark::State& run) {
    Playlists::Selection selection(kRows);
    for (std::size_t row = 0; row < selection.size(); row += 2) selection[row] = true;
    for (auto _ : run) {
        run.PauseTiming();
        auto bench = std::make_unique<Bench>(true);
        run.ResumeTiming();
        bench->lists.removeSelected(0, selection);
        run.PauseTiming();
        bench.reset();
        run.ResumeTiming();
    }
}
BENCHMARK(RemoveHalfOfTheRows)->Unit(benchmark::kMillisecond);

// The removal and its taking back.
void TakeBackARemoval(benchmark::State& run) {
    Bench bench(true);
    Playlists::Selection selection(kRows);
    for (std::size_t row = 0; row < selection.size(); row += 2) selection[row] = true;
    bench.lists.beginStep("");
    bench.lists.removeSelected(0, selection);
    for (auto _ : run) {
        bench.lists.undo();
        run.PauseTiming();
        bench.lists.redo();
        run.ResumeTiming();
    }
}
BENCHMARK(TakeBackARemoval)->Unit(benchmark::kMillisecond);

// One letter more in the search field; the keys are there from the letter before.
void SearchWords(benchmark::State& run) {
    Bench bench(true, static_cast<int>(run.range(1)));
    ListSearch search;
    search.find(bench.lists, 0, "x");
    for (auto _ : run) benchmark::DoNotOptimize(search.find(bench.lists, 0, run.range(0) == 0 ? "a" : "9 mp3 title"));
}
BENCHMARK(SearchWords)->Args({0, kRows})->Args({1, kRows})->Args({1, kManyRows})->Unit(benchmark::kMillisecond);

void MakeSearchKeys(benchmark::State& run) {
    Bench bench(true, static_cast<int>(run.range(0)));
    for (auto _ : run) {
        ListSearch search;
        benchmark::DoNotOptimize(search.find(bench.lists, 0, "x"));
    }
}
BENCHMARK(MakeSearchKeys)->Arg(kRows)->Arg(kManyRows)->Unit(benchmark::kMillisecond);

// The rows of the queue stay on their rows while all of them move.
void SortWithAQueue(benchmark::State& run) {
    Bench bench(true);
    Playlists::Selection selection(kRows);
    for (int row = 0; row < 1000; ++row) selection[static_cast<std::size_t>(row) * 97] = true;
    bench.lists.toggleQueued(0, selection);
    bool up = false;
    for (auto _ : run) bench.lists.sort(0, kFileColumn, up = !up, selection);
}
BENCHMARK(SortWithAQueue)->Unit(benchmark::kMillisecond);

// The work without the library's part: what the idle slices themselves cost, and what a row holds afterwards.
void TextsInIdleSlices(benchmark::State& run) {
    const auto rows = static_cast<int>(run.range(0));
    Bench bench(false, rows);
    for (auto _ : run) {
        bench.lists.forgetTexts();
        while (bench.lists.fillSome(std::chrono::milliseconds(8))) {
        }
    }
    run.counters["bytes_per_row"] = static_cast<double>(bench.lists.memory(0)) / rows;
}
BENCHMARK(TextsInIdleSlices)->Arg(kRows)->Arg(kManyRows)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quenlox

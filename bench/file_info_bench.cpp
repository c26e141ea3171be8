// Tags and length of 10 000 files: vbmp3_getFileInfo beside TagLib's reader, on the same files in one run. The files
// are made in a folder of their own: 4 MB each as far as the file system is concerned, holes where nobody looks.
#include <benchmark/benchmark.h>
#include <taglib/fileref.h>
#include <taglib/tag.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "libraries/vbmp3/vbmp3.h"
#include "tests/vbmp3_tags/tag_bytes.h"

using namespace tagbytes;
using namespace std::string_literals;

namespace {

constexpr int kFiles = 10000;
constexpr int64_t kSize = 4'000'000;

enum Kind { kWithInfoFrame, kConstantRate, kWithPicture };

std::string HeadOf(Kind kind, int number) {
    const auto text = [](const std::string& s) { return "\0"s + s; };
    std::string frames = Frame3("TIT2", text("Title number " + std::to_string(number))) +
                         Frame3("TPE1", text("The Artist")) + Frame3("TALB", "\1\xFF\xFE\x1C\x59\xF2\x66"s) +
                         Frame3("TYER", text("2001")) + Frame3("TRCK", text("5/12")) + Frame3("TCON", text("(17)")) +
                         Frame3("COMM", "\0eng\0a comment"s);
    if (kind == kWithPicture) frames += Frame3("APIC", "\0image/jpeg\0\3\0"s + std::string(60000, '\x11'));
    const std::string info =
        Padded("\xFF\xFB\x90\x44"s + std::string(32, '\0') + "Info" + Be32(3) + Be32(9568) + Be32(kSize), 417);
    return Id3v2(3, frames + std::string(1024, '\0')) + (kind == kConstantRate ? "" : info) + MpegFrames(20);
}

// The folder lives as long as the process.
const std::vector<std::string>& FilesOf(Kind kind) {
    static struct Folder {
        std::filesystem::path path;
        std::vector<std::string> files[3];
        ~Folder() { std::filesystem::remove_all(path); }
    } folder;
    if (folder.path.empty()) {
        std::string pattern = (std::filesystem::temp_directory_path() / "file_info_bench_XXXXXX").string();
        folder.path = mkdtemp(pattern.data());
    }
    auto& files = folder.files[kind];
    for (int i = static_cast<int>(files.size()); i < kFiles; ++i) {
        files.push_back((folder.path / (std::to_string(kind) + "-" + std::to_string(i) + ".mp3")).string());
        std::ofstream out(files.back(), std::ios::binary);
        const std::string tail = MpegFrames(3) + Id3v1("Title number " + std::to_string(i), "The Artist");
        out << HeadOf(kind, i);
        out.seekp(kSize - static_cast<int64_t>(tail.size()));
        out << tail;
    }
    return files;
}

void Library(benchmark::State& state) {
    const auto& files = FilesOf(static_cast<Kind>(state.range(0)));
    int64_t length = 0;
    for (auto _ : state) {
        for (const std::string& path : files) {
            vbmp3_FileInfo info;
            info.size = sizeof info;
            if (vbmp3_getFileInfo(path.c_str(), &info) == 0 || info.title[0] != 'T') state.SkipWithError("not read");
            length += info.seconds * 1000 + info.milliseconds;
        }
    }
    benchmark::DoNotOptimize(length);
}

void Peer(benchmark::State& state) {
    const auto& files = FilesOf(static_cast<Kind>(state.range(0)));
    int64_t length = 0;
    for (auto _ : state) {
        for (const std::string& path : files) {
            const TagLib::FileRef file(path.c_str());
            if (file.isNull() || file.tag()->title().isEmpty()) state.SkipWithError("not read");
            // The same fields as the record has.
            const TagLib::Tag& tag = *file.tag();
            benchmark::DoNotOptimize(tag.artist().size() + tag.album().size() + tag.comment().size() +
                                     tag.genre().size() + tag.year() + tag.track());
            length += file.audioProperties()->lengthInMilliseconds();
        }
    }
    benchmark::DoNotOptimize(length);
}

}  // namespace

BENCHMARK(Library)
    ->ArgName("kind")
    ->Arg(kWithInfoFrame)
    ->Arg(kConstantRate)
    ->Arg(kWithPicture)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Peer)
    ->ArgName("kind")
    ->Arg(kWithInfoFrame)
    ->Arg(kConstantRate)
    ->Arg(kWithPicture)
    ->Unit(benchmark::kMillisecond);

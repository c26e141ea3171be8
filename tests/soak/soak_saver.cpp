// Writes the lists and a settings file again and again in the folder where it lies, as the program does, until it is
// killed: soak_saver ROWS The rows of every write carry its number, so that a mixture of two can be told.
#include <cstdio>
#include <cstdlib>

#include "platform/win32/platform.h"
#include "playlist/playlists.h"
#include "tests/fakes/fake_options.h"
#include "tests/fakes/fake_random.h"
#include "tests/fakes/fake_vbmp3.h"

namespace quenlox {
namespace {

int Save(int rows) {
    const std::unique_ptr<FileSystem> files = MakeFileSystem();
    FakeOptions options;
    FakeVbmp3 library;
    FakeRandom random;
    GlobalState state;
    Playlists lists(state, options, *files, library, random);
    for (int number = 1;; ++number) {
        for (int list = 0; list < Playlists::kPersistedLists; ++list) {
            lists.clear(list);
            for (int row = 0; row < rows; ++row)
                lists.AddEntry("C:\\音楽\\" + std::to_string(number) + "\\" + std::to_string(row) + ".mp3", list);
        }
        lists.markChanged();
        // In turn as in the middle of a run and as at its end.
        if (!(number % 2 ? lists.saveQuietly() : lists.SaveListFile())) std::puts("lists not written");
        std::string settings;
        for (int key = 0; key < 200; ++key)
            settings += "Key" + std::to_string(key) + "=" + std::to_string(number) + "\r\n";
        if (!files->write(files->programFolder() + "\\Quenlox.ini",
                          "[Main]\r\n" + settings + "End=" + std::to_string(number) + "\r\n"))
            std::puts("settings not written");
        if (number == 1) std::puts("begun");
        std::fflush(stdout);
    }
}

}  // namespace
}  // namespace quenlox

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    return quenlox::Save(std::atoi(argv[1]));
}

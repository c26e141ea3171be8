// Writes the lists and a settings file again and again, as the program does, until it is killed: soak_saver FOLDER ROWS
// The rows of every write carry its number, so that a mixture of two can be told.
#include <cstdio>
#include <cstdlib>

#include "platform/win32/platform.h"
#include "playlist/playlists.h"
#include "tests/fakes/fake_options.h"
#include "tests/fakes/fake_random.h"
#include "tests/fakes/fake_vbmp3.h"

namespace quenlox {
namespace {

// The files of the system, with another folder as that of the program.
class Elsewhere : public FileSystem {
  public:
    explicit Elsewhere(std::string folder) : folder_(std::move(folder)), real_(MakeFileSystem()) {}
    bool fileExists(const std::string& path) override { return real_->fileExists(path); }
    bool folderExists(const std::string& path) override { return real_->folderExists(path); }
    bool isReadOnly(const std::string& path) override { return real_->isReadOnly(path); }
    std::optional<std::string> read(const std::string& path, std::uint64_t limit) override { return real_->read(path, limit); }
    bool write(const std::string& path, std::string_view bytes) override { return real_->write(path, bytes); }
    bool rename(const std::string& from, const std::string& to) override { return real_->rename(from, to); }
    bool remove(const std::string& path) override { return real_->remove(path); }
    std::vector<std::string> files(const std::string& folder) override { return real_->files(folder); }
    std::vector<std::string> folders(const std::string& folder) override { return real_->folders(folder); }
    void eachFile(const std::string& folder, const std::function<bool(const std::string&)>& listener) override { real_->eachFile(folder, listener); }
    std::vector<std::string> drives() override { return real_->drives(); }
    DriveType driveType(const std::string& root) override { return real_->driveType(root); }
    std::string programFolder() override { return folder_; }
    std::string currentFolder() override { return folder_; }

  private:
    std::string folder_;
    std::unique_ptr<FileSystem> real_;
};

int Save(const std::string& folder, int rows) {
    Elsewhere files(folder);
    FakeOptions options;
    FakeVbmp3 library;
    FakeRandom random;
    GlobalState state;
    Playlists lists(state, options, files, library, random);
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
        for (int key = 0; key < 200; ++key) settings += "Key" + std::to_string(key) + "=" + std::to_string(number) + "\r\n";
        if (!files.write(folder + "\\Quenlox.ini", "[Main]\r\n" + settings + "End=" + std::to_string(number) + "\r\n")) std::puts("settings not written");
        if (number == 1) std::puts("begun");
        std::fflush(stdout);
    }
}

}  // namespace
}  // namespace quenlox

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    return quenlox::Save(argv[1], std::atoi(argv[2]));
}

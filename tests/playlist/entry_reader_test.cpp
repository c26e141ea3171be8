#include "playlist/entry_reader.h"

#include <gtest/gtest.h>

#include "tests/playlist/lists_fixture.h"

namespace quenlox {
namespace {

using EntryTexts = ListsTest;

// One MIDI track with a name.
std::string MidiFile(const std::string& name) {
    std::string track =
        std::string("\0\xFF\x03", 3) + static_cast<char>(name.size()) + name + std::string("\0\xFF\x2F\0", 4);
    std::string file("MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0", 21);
    return file + static_cast<char>(track.size()) + track;
}

TEST_F(EntryTexts, ComeFromTheTagsOfTheFile) {
    vbmp3.addFile("C:\\m\\a.mp3", kMpegFile, 185, "Title", "Artist", "Album");
    vbmp3.addFile("C:\\m\\bare.wav", kWaveFile, 4500);
    vbmp3.addFile("C:\\m\\long.mp3", kMpegFile, 59, std::string(600, 'x'));
    files.add("C:\\m\\song.MID", MidiFile("Etude"));
    files.add("C:\\m\\empty.rmi", "no MIDI at all");
    const struct {
        const char* path;
        PlaylistEntry entry;
    } cases[] = {
        {"C:\\m\\a.mp3", {"Title", "Artist", "Album", "3:05", "C:\\m\\a.mp3"}},
        {"C:\\m\\bare.wav", {"- no title -", "- no name -", "", "75:00", "C:\\m\\bare.wav"}},
        {"C:\\m\\song.MID", {"Etude", "-----------", "----", "----", "C:\\m\\song.MID"}},
        {"C:\\m\\empty.rmi", {"- no title -", "-----------", "----", "----", "C:\\m\\empty.rmi"}},
        {"C:\\m\\gone.mid", {"- no title -", "-----------", "----", "----", "C:\\m\\gone.mid"}},
        // The library knows nothing of these: the name of the file serves as their title.
        {"C:\\m\\some.wma", {"some", "-----------", "----", "----", "C:\\m\\some.wma"}},
        {"C:\\m\\gone.mp3", {"gone", "-----------", "----", "----", "C:\\m\\gone.mp3"}},
    };
    for (const auto& c : cases) {
        lists.AddEntry(c.path, 1);
        EXPECT_EQ(lists.entry(1, lists.count(1) - 1), c.entry) << c.path;
    }
    lists.AddEntry("C:\\m\\long.mp3", 1);
    EXPECT_EQ(lists.entry(1, lists.count(1) - 1).Title, std::string(600, 'x'));
    EXPECT_EQ(lists.entry(1, 99), PlaylistEntry{});
}

TEST_F(EntryTexts, AreEstimatedFromTheFileNameOnlyInFileNameModeWithTheOption) {
    const std::string path = "C:\\(Who) What.mp3";
    const struct {
        int listType;
        bool estimate;
        const char* format;
        PlaylistEntry entry;
    } cases[] = {
        {1, true, "(*N) *T", {"Tag", "Tagger", "Tags", "1:00", path}},
        {0, false, "(*N) *T", {"Tag", "Tagger", "Tags", "1:00", path}},
        {0, true, "(*N) *T", {"What", "Who", "", "1:00", path}},
        {0, true, "*B) *T", {"What", "- no name -", "(Who", "1:00", path}},
        {0, true, "*N", {"- no title -", "(Who) What", "", "1:00", path}},
        {0, true, "-", {"Tag", "Tagger", "Tags", "1:00", path}},
    };
    for (const auto& c : cases) {
        Lists fresh;
        fresh.vbmp3.addFile(path, kMpegFile, 60, "Tag", "Tagger", "Tags");
        fresh.state.ListType = c.listType;
        fresh.options.EstimateFromFileName = c.estimate;
        fresh.options.RenameFormat = c.format;
        fresh.lists.AddEntry(path, 0);
        EXPECT_EQ(fresh.lists.entry(0, 0), c.entry) << c.listType << c.estimate << c.format;
    }
    Lists fresh;
    fresh.state.ListType = 0;
    fresh.options.EstimateFromFileName = true;
    fresh.lists.AddEntry("C:\\(Who) What.mid", 0);
    EXPECT_EQ(fresh.lists.entry(0, 0), (PlaylistEntry{"What", "Who", "", "----", "C:\\(Who) What.mid"}));
}

TEST_F(EntryTexts, AreReadInSlicesTheWantedRowsFirst) {
    using std::chrono::microseconds;
    addLetters(0, "ab");
    addLetters(1, "cdef");
    state.ListNo = 1;
    lists.want(1, 2);
    lists.want(1, 2);
    lists.want(1, 77);
    EXPECT_TRUE(lists.fillSome(microseconds(0)));
    EXPECT_EQ(vbmp3.infoReads, Paths{"C:\\e.mp3"});
    int slices = 1;
    while (lists.fillSome(microseconds(0))) ++slices;
    EXPECT_EQ(slices, 5) << "a slice without time reads one row";
    EXPECT_EQ(vbmp3.infoReads, (Paths{"C:\\e.mp3", "C:\\c.mp3", "C:\\d.mp3", "C:\\f.mp3", "C:\\a.mp3", "C:\\b.mp3"}));
    EXPECT_FALSE(lists.fillSome(std::chrono::seconds(1)));
    lists.forgetTexts();
    EXPECT_EQ(lists.unknownCount(1), 4);
    EXPECT_FALSE(lists.fillSome(std::chrono::seconds(10)));
    EXPECT_EQ(vbmp3.infoReads.size(), 12u);
}

// A switched-off server is waited for once a minute and not once a file; a disk that wakes up is no such place.
TEST_F(EntryTexts, OfAPlaceThatDoesNotAnswerAreAskedForOnceInAWhile) {
    struct SlowLibrary : FakeVbmp3 {
        EntryReader::Clock::time_point now{};
        int asked = 0;
        LibraryResult<TrackInfo> vbmp3_getFileInfo(const std::string& path) override {
            ++asked;
            now += path.starts_with("D:") ? std::chrono::milliseconds(1) : std::chrono::seconds(20);
            return FakeVbmp3::vbmp3_getFileInfo(path);
        }
    } library;
    files.driveList.emplace_back("E:\\", DriveType::Fixed);
    EntryReader reader(state, options, files, library, [&] { return library.now; });
    const auto askedFor = [&](std::initializer_list<const char*> asked) {
        const int before = library.asked;
        for (const char* path : asked) EXPECT_EQ(reader.read(path).name, "-----------") << path;
        return library.asked - before;
    };
    EXPECT_EQ(askedFor({"\\\\nas\\music\\a.mp3", "\\\\NAS\\Music\\b.mp3", "\\\\nas\\music\\sub\\c.mp3"}), 1);
    EXPECT_EQ(askedFor({"\\\\nas\\other\\a.mp3", "D:\\a.mp3", "D:\\b.mp3", "E:\\a.mp3", "E:\\b.mp3"}), 5);
    library.now += std::chrono::minutes(1);
    EXPECT_EQ(askedFor({"\\\\nas\\music\\a.mp3", "\\\\nas\\music\\b.mp3"}), 1);
}

}  // namespace
}  // namespace quenlox

#include "lyrics/lyrics_lookup.h"

#include <gtest/gtest.h>

#include "lyrics/form_lyrics.h"
#include "playback/status_display.h"
#include "state/global_state.h"
#include "state/options.h"
#include "tests/fakes/fake_display.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_text_painter.h"
#include "tests/fakes/fake_vbmp3.h"

namespace quenlox {
namespace {

constexpr const char* kTrack = "C:\\music\\01. a.b.mp3";

struct Room {
    GlobalState state;
    Options options;
    FakeVbmp3 vbmp3;
    FakeFileSystem files;
    FakeDisplay display;
    FakeTextPainter painter;
    FormLyrics form{state, options, painter};
    StatusDisplay status{state, display};
    LyricsLookup lookup{state, options, vbmp3, files, status, form};

    Room() {
        state.CurrentFile = kTrack;
        state.MediaKind = {kMp3, TagKind::Id3v2, true};
        status.showFormat("MPEG1 Layer3");
        options.LyricsFolder = "D:\\words\\";
    }
    void addSideFile(const std::string& path, const std::string& bytes = "la") {
        files.add(path, bytes);
        vbmp3.lyricsFiles.push_back(path);
    }
};

struct LyricsLookupTest : testing::Test, Room {};

TEST_F(LyricsLookupTest, TheSettingAndTheOrderOfTheSixPlacesDecideWhichLyricsCount) {
    const std::vector<std::string> places{"D:\\words\\01. a.b.kra", "C:\\music\\01. a.b.kra", "D:\\words\\01. a.b.lrc",
                                          "C:\\music\\01. a.b.lrc", "D:\\words\\01. a.b.txt", "C:\\music\\01. a.b.txt"};
    for (const bool embeddedFirst : {false, true}) {
        for (const bool embedded : {false, true}) {
            // Every place with all that come behind it, and the case of none.
            for (std::size_t from = 0; from <= places.size(); ++from) {
                Room room;
                room.options.Lyrics3First = embeddedFirst;
                if (embedded) room.vbmp3.lyrics3Data = "words";
                for (std::size_t i = from; i < places.size(); ++i) room.addSideFile(places[i]);
                room.vbmp3.timeTag = true;
                room.lookup.LoadLyrics();
                const bool file = from < places.size() && !(embedded && embeddedFirst);
                const std::string expected = file ? places[from] : "";
                EXPECT_EQ(room.vbmp3.lyricsFile, expected) << embeddedFirst << embedded << from;
                EXPECT_EQ(room.display.info, file ? "MPEG1 Layer3+W" : embedded ? "MPEG1 Layer3+L" : "MPEG1 Layer3");
                EXPECT_EQ(room.state.LyricsKind, file || embedded ? kTimedLyrics : kNoLyrics);
            }
        }
    }
}

TEST_F(LyricsLookupTest, LookingAgainMarksTheSourceOfNowOnce) {
    vbmp3.timeTag = true;
    addSideFile("D:\\words\\01. a.b.lrc");
    lookup.LoadLyrics();
    status.showDevice(false);
    vbmp3.lyrics3Data = "words";
    options.Lyrics3First = true;
    lookup.lookAgain();
    EXPECT_EQ(display.info, "MPEG1 Layer3+L ﾃﾞﾊﾞｲｽなし");
    vbmp3.lyrics3Data.reset();
    options.LyricsFolder = "";
    lookup.lookAgain();
    EXPECT_EQ(display.info, "MPEG1 Layer3 ﾃﾞﾊﾞｲｽなし");
    EXPECT_EQ(state.LyricsKind, kNoLyrics);
}

TEST_F(LyricsLookupTest, ThePictureHasTheNameOfTheTrackOrOfItsFolder) {
    using Paths = std::vector<std::string>;
    EXPECT_EQ(LyricsPictures("C:\\music\\夜\\01. a.b.mp3", "D:\\pic"),
              (Paths{"D:\\pic\\01. a.b.bmp", "D:\\pic\\夜.bmp"}));
    EXPECT_EQ(LyricsPictures("C:\\a.mp3", "D:\\"), Paths{"D:\\a.bmp"});
    EXPECT_EQ(LyricsPictures("C:\\music\\a.mp3", ""), Paths{});
    EXPECT_EQ(LyricsPictures("", "D:\\pic"), Paths{});
}

TEST_F(LyricsLookupTest, AKindOfFileWithoutLyricsIsNotAsked) {
    state.MediaKind.lyrics = false;
    state.LyricsKind = kPlainLyrics;
    form.setText("of the last track");
    vbmp3.lyrics3Data = "words";
    lookup.LoadLyrics();
    EXPECT_EQ(state.LyricsKind, kNoLyrics);
    EXPECT_EQ(form.Text2.text(), "");
    EXPECT_TRUE(vbmp3.calls.empty());
}

TEST_F(LyricsLookupTest, ASideFileWithoutTimeTagsIsShownWholeWhateverItsCodingAndLineEnds) {
    const struct {
        const char *bytes, *shown;
    } cases[] = {
        {"one\ntwo\n\nthree", "one\r\ntwo\r\n\r\nthree"},
        {"one\r\ntwo\rthree", "one\r\ntwo\r\nthree"},
        {"  kept\nlines  ", "kept\r\nlines"},
        {"\x89\xCC\n", "歌\r\n"},  // Shift-JIS
        {"\xEF\xBB\xBF歌", "歌"},  // UTF-8 with its mark
        {"歌詞", "歌詞"},
        {"", ""},
    };
    for (const auto& c : cases) {
        Room room;
        room.addSideFile("C:\\music\\01. a.b.txt", c.bytes);
        room.lookup.LoadLyrics();
        EXPECT_EQ(room.state.LyricsKind, kPlainLyrics);
        EXPECT_EQ(room.form.Text2.text(), c.shown);
    }
    Room room;
    room.addSideFile("C:\\music\\01. a.b.txt", std::string("before\0behind", 13));
    room.lookup.LoadLyrics();
    EXPECT_EQ(room.form.Text2.text(), "before");
}

TEST_F(LyricsLookupTest, LyricsOfTheSoundFileWithoutTimeTagsAreShownWhole) {
    vbmp3.lyrics3Data = "from the buffer";
    lookup.LoadLyrics();
    EXPECT_EQ(form.Text2.text(), "from the buffer") << "when the library gives no more of it";
    vbmp3.lyrics3Info = "朝の\nレコード";
    lookup.LoadLyrics();
    EXPECT_EQ(form.Text2.text(), "朝の\r\nレコード");
    EXPECT_EQ(state.LyricsKind, kPlainLyrics);
}

}  // namespace
}  // namespace quenlox

#include "app/settings_file.h"

#include <gtest/gtest.h>

#include "convert/conversion_run.h"
#include "equalizer/form_gra.h"
#include "lyrics/form_lyrics.h"
#include "options/form_opt.h"
#include "playback/status_display.h"
#include "playlist/form_list.h"
#include "skin/main_window_handlers.h"
#include "state/global_state.h"
#include "tags/form_tag.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_manager.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_gogo.h"
#include "tests/fakes/fake_random.h"
#include "tests/fakes/fake_text_painter.h"
#include "tests/fakes/fake_vbmp3.h"
#include "tests/fakes/fake_window_system.h"
#include "text/encoding.h"

namespace quenlox {
namespace {

// The main window's handlers, as far as the settings see them.
class TopHandlers : public MainWindowHandlers {
  public:
    explicit TopHandlers(GlobalState& state) : state_(state) {}
    void PlayModeLabel_Click(int button) override {
        if (button == 1) state_.PlayMode = state_.PlayMode >= kRandom ? kSingle : state_.PlayMode + 1;
        modeShown = PlayModeWord(state_.PlayMode);
    }
    void TitleLabel_DblClick() override { state_.TitleMode = state_.TitleMode == 0; }
    void TimeLabel_Click(int index, int button) override {
        if (index == 2 && button == 1) state_.TimeMode = state_.TimeMode == 0;
    }
    bool alwaysOnTop() const override { return onTop_; }
    void setAlwaysOnTop(bool on) override { onTop_ = on; }
    void moveTo(int left, int top) override { left_ = left, top_ = top; }
    int leftTwips() const override { return left_; }
    int topTwips() const override { return top_; }
    std::string modeShown;

  private:
    GlobalState& state_;
    int left_ = -1;
    int top_ = -1;
    bool onTop_ = false;
};

// One run of the program, as far as its settings go.
struct Program {
    explicit Program(FakeFileSystem& f) : files(f) {}

    FakeFileSystem& files;
    GlobalState state;
    TopHandlers top{state};
    FakeVbmp3 vbmp3;
    FakeDialogs dialogs;
    FakeRandom random;
    FakeWindowSystem windows;
    OptionStore options;
    FormOpt opt{state, options};
    Playlists lists{state, options, files, vbmp3, random};
    FakeFileManager fileManager;
    FormList list{state, options, lists, files, dialogs, fileManager};
    FormGra gra{state, vbmp3, dialogs, random, files};
    FakeTextPainter painter;
    FormLyrics lyrics{state, options, painter};
    FormTag tag{state, options, vbmp3, files, dialogs};
    ConversionRun conversion{state, vbmp3, std::make_shared<FakeGogo>(), files, windows};
    SplitValues splitValues;
    SettingsFile settings{{state, options, splitValues, files,
                           [this](const std::string& file) { state.CurrentFile = file; }, top, list, opt, gra, lyrics,
                           tag, conversion}};
};

constexpr const char* kPath = "C:\\Quenlox\\Quenlox.ini";

// What a run leaves in its file, which held `stored` before; `act` is what the user does in between.
IniDocument SavedBy(const std::string& stored, const std::function<void(Program&)>& act = {}) {
    FakeFileSystem files;
    files.add(kPath, stored);
    Program run(files);
    run.settings.LoadSettings();
    if (act) act(run);
    run.settings.SaveSettings();
    return IniDocument::Parse(files.bytesOf(kPath));
}

// What a fresh run writes.
constexpr const char* kFreshFile =
    "[Main]\r\nX=0\r\nY=0\r\nPlayMode=0\r\nViewType=0\r\nFileName=\r\nSkinName=\r\nTitleMode=0\r\nTimeMode="
    "0\r\nTopMost=0\r\n"
    "[List]\r\nX=0\r\nY=0\r\nSX=5175\r\nSY=6015\r\nShow=0\r\n"
    "[Option]\r\nListNo=0\r\nCurDir=C:\\Quenlox\r\ndefCdDrv=\r\nX=0\r\nY=0\r\nAnimeMode=0\r\nAnimeTime=0\r\n"
    "SpeanaMode=0\r\nSpeanaTime=0\r\nSpeanaIntro=0\r\nFft=0\r\nQuality=0\r\nHiPitch=130\r\nLowPitch=80\r\n"
    "IntroPlay=0\r\nIntroTime=10\r\nVolume=0\r\nDispLyrics=1\r\nLyricsSelf=0\r\nLyricsTime=1\r\nLyricsLine=5\r\n"
    "LyricsMain=0\r\nTimeTag=0\r\nLyricsDir=\r\nBmpDir=\r\nPanelMode=0\r\nReName=0\r\nReNameS=(*N) *T\r\n"
    "ListType=0\r\nListTypeS=0\r\nDelList=0\r\n"
    "ListTime=1\r\nStepPitch=6\r\nGapless=1\r\nPassOver=1\r\n"
    "OutputDevice=-1\r\nOutputDeviceName=\r\nOutputBuffer=250\r\n"
    "LyricsBold=0\r\nLyricsColor2=0\r\nReNameFiles=0\r\nSaveCheck=0\r\nSkinZoom=0\r\nLyricsSmooth=0\r\n"
    "[Lyrics]\r\nFont=ＭＳ Ｐゴシック\r\nX=0\r\nY=0\r\nW=4500\r\nH=3000\r\nColor=1\r\n"
    "[Equalizer]\r\nX=0\r\nY=0\r\n0Eq=FLAT,0,0,0,0,0,0,0,0,0,0\r\n1Eq=ROCK,20,50,0,-20,30,10,-20,50,30,10\r\n"
    "2Eq=POPS,-30,0,40,0,0,-30,60,40,0,-30\r\n3Eq=LIGHT,-20,-40,0,0,-20,40,50,10,40,20\r\n"
    "4Eq=BGM,-70,-20,-30,40,-20,30,-30,0,-50,-70\r\n5Eq=Custom,0,0,0,0,0,0,0,0,0,0\r\nEqMode=0\r\n"
    "Fine=0,0,0,0,0,0,0,0,0,0\r\n"
    "[Tag]\r\nX=0\r\nY=0\r\n"
    "[Convert]\r\nKind=0\r\nFolder=\r\nBeside=1\r\nFrequency=44100\r\nBitRate=128\r\nVbr=-1\r\n";

TEST(SettingsFile, AFreshStartHasTheDefaultsAndWritesEveryKeyInOrder) {
    FakeFileSystem files;
    Program run(files);
    run.settings.LoadSettings();
    EXPECT_EQ(run.top.leftTwips(), 0);
    EXPECT_EQ(run.top.modeShown, "SINGLE");
    EXPECT_EQ(run.gra.geLabel[1].caption(), "ROCK");
    EXPECT_EQ(run.state.EqPresetTable[1][1], 50);
    EXPECT_EQ(run.vbmp3.calls, std::vector<std::string>{});
    EXPECT_TRUE(run.settings.SaveSettings());
    EXPECT_EQ(ShiftJisToUtf8(files.bytesOf(kPath)), kFreshFile);
    EXPECT_EQ(files.writes, 1);
}

TEST(SettingsFile, WhatIsWrittenIsReadBackAndWrittenTheSame) {
    FakeFileSystem files;
    Program first(files);
    first.settings.LoadSettings();
    first.settings.SaveSettings();
    // Every number of the fresh file, moved by one where its control allows that, every text changed.
    IniDocument changed = IniDocument::Parse(files.bytesOf(kPath));
    for (const std::string& section : changed.sections()) {
        for (const std::string& key : changed.keys(section)) {
            const std::string value = changed.text(section, key, "");
            if (key == "CurDir") {
                changed.set(section, key, "C:\\音楽");
            } else if (key.size() == 3 && key.ends_with("Eq")) {
                changed.set(
                    section, key,
                    (key == "5Eq" ? "Custom" : "名" + key) + std::string(",10,20,-30,40,-50,60,70,-80,90,-120"));
            } else if (key == "Fine") {
                changed.set(section, key, "1,-2,3,0,0,4,0,0,0,0");
            } else if (value == "0" || value == "1") {
                changed.set(section, key, value == "0" ? "1" : "0");
            } else if (!value.empty() && value.find_first_not_of("0123456789") == std::string::npos) {
                changed.set(section, key, std::to_string(std::stoi(value) + 1));
            } else {
                changed.set(section, key, value + "曲é");
            }
        }
    }
    for (const auto& [section, key, value] : {std::tuple{"Option", "SpeanaIntro", "8"},
                                              {"Option", "LyricsLine", "3"},
                                              {"Lyrics", "Color", "4"},
                                              {"Option", "OutputDevice", "2"},
                                              {"Option", "ColumnTitle", "201"},
                                              {"Option", "ColumnName", "202"},
                                              {"Option", "ColumnAlbum", "203"},
                                              {"Option", "ColumnTime", "0"},
                                              {"Option", "ColumnFile", "205"},
                                              {"Convert", "Frequency", "8000"},
                                              {"Convert", "BitRate", "320"},
                                              {"Convert", "Vbr", "9"}}) {
        changed.set(section, key, value);
    }
    files.add(kPath, changed.serialise());

    Program second(files);
    second.settings.LoadSettings();
    EXPECT_EQ(second.state.PlayMode, kRepeat);
    EXPECT_EQ(second.list.columnWidths(0), (std::array{201, 202, 203, 0, 205}));
    EXPECT_EQ(second.gra.gains(), (std::array{11, 18, -27, 40, -50, 64, 70, -80, 90, -120}));
    EXPECT_EQ(second.vbmp3.count("equalizer"), 1);
    second.settings.SaveSettings();
    EXPECT_EQ(DecodeText(files.bytesOf(kPath)), DecodeText(changed.serialise()));
    EXPECT_TRUE(files.bytesOf(kPath).starts_with("\xFF\xFE"));  // an é does not fit Shift-JIS and is not lost
}

TEST(SettingsFile, StoredValuesAreTakenAsTheRulesOfEachKeySay) {
    const std::string path200(200, 'a');
    const struct {
        const char *section, *key;
        std::string stored;
        std::string saved;
    } cases[] = {
        {"Main", "PlayMode", "4", "0"},
        {"Main", "PlayMode", "x", "0"},
        {"Main", "TimeMode", "-1", "1"},
        {"Main", "TimeMode", "7", "1"},
        {"Main", "TitleMode", "2", "1"},
        {"Main", "FileName", path200, path200.substr(0, 127)},
        {"Main", "FileName", std::string(126, 'a') + "😀", std::string(126, 'a')},
        {"Main", "FileName", "\"C:\\a b.mp3\"", "C:\\a b.mp3"},
        {"Main", "X", "42A", "42"},
        {"List", "Show", "-1", "0"},
        {"Option", "SpeanaIntro", "7", "6"},
        {"Option", "AnimeMode", "2", "2"},  // a check box keeps the number
        {"Option", "HiPitch", "999", "200"},
        {"Option", "LowPitch", "0", "50"},
        {"Option", "Volume", "9", "0"},
        {"Option", "ListNo", "9", "0"},
        {"Option", "LyricsLine", "7", "7"},
        {"Equalizer", "2Eq", " Mine ,1,2",
         "Mine,1,2,0,-20,30,10,-20,50,30,10"},  // short: the numbers of the preset before
        {"Equalizer", "5Eq", "x,15,-28,999,-999,25,0,0,0,0,0", "Custom,20,-30,120,-120,20,0,0,0,0,0"},
        {"Equalizer", "Fine", "3,-2,9,x", "3,-2,5,0,0,0,0,0,0,0"},
        {"Lyrics", "Color", "0", "1"},  // nothing chosen yet: the first scheme
        {"Lyrics", "Color", "8", "8"},
        {"Lyrics", "Color", "99", "1"},
        {"Lyrics", "Color", "-5", "1"},
        {"Lyrics", "Font", "", ""},
    };
    for (const auto& c : cases) {
        const std::string text = "[" + std::string(c.section) + "]\r\n" + c.key + "=" + c.stored + "\r\n";
        const IniDocument saved = SavedBy(EncodeText(text));
        EXPECT_EQ(saved.find(c.section, c.key), c.saved) << c.key << '=' << c.stored;
    }
}

TEST(SettingsFile, ColumnsFollowTheModeOfTheLists) {
    constexpr std::array<bool, 6> byFile{false, false, false, true, true, true};
    constexpr std::array<bool, 6> byTag{true, true, true, false, true, true};
    const struct {
        const char* options;
        std::array<int, 5> widths;
        std::optional<std::string> titleSaved;
        std::optional<std::string> timeSaved;
        std::array<bool, 6> sortItems;
    } cases[] = {
        {"ColumnTitle=7\r\nColumnTime=8\r\n", {9000, 0, 0, 0, 0}, "7", "8", byFile},
        {"ListType=1\r\n", {162, 113, 162, 40, 300}, "162", "40", byTag},
        {"ListTypeS=1\r\nColumnTitle=7\r\n", {7, 113, 162, 40, 300}, "7", "40", byFile},
        {"ListType=1\r\nListTime=0\r\n", {162, 113, 162, 0, 300}, "162", std::nullopt, byTag},
    };
    for (const auto& c : cases) {
        const IniDocument saved = SavedBy(std::string("[Option]\r\n") + c.options, [&](Program& run) {
            for (int view = 0; view < FormList::kViews; ++view) {
                EXPECT_EQ(run.list.columnWidths(view), c.widths) << c.options;
            }
            for (std::size_t i = 0; i < c.sortItems.size(); ++i) {
                EXPECT_EQ(run.list.menuSort.items[i].visible, c.sortItems[i]) << i;
            }
        });
        EXPECT_EQ(saved.find("Option", "ColumnTitle"), c.titleSaved) << c.options;
        EXPECT_EQ(saved.find("Option", "ColumnTime"), c.timeSaved) << c.options;
    }
}

TEST(SettingsFile, WidthsAreThoseOfTheCurrentListsViewAndNotOfTheOneWideColumn) {
    const auto titleWidth = [](const IniDocument& saved) { return saved.find("Option", "ColumnTitle"); };
    const auto widen = [](Program& run) { run.list.PlayView[1].setColumnWidth(0, 55); };
    EXPECT_EQ(titleWidth(SavedBy("[Option]\r\nListType=1\r\nListNo=1\r\n", widen)), "55");
    const auto showColumns = [](Program& run) { run.opt.CheckListTypeS.setValue(1); };
    EXPECT_EQ(titleWidth(SavedBy("[Option]\r\nColumnTitle=77\r\n", showColumns)), "77");
}

TEST(SettingsFile, TheBrowserOpensTheNearestFolderThatIsThereAndTheOtherIsKept) {
    for (const bool there : {true, false}) {
        FakeFileSystem files;
        files.driveList.push_back({"D:\\", DriveType::Fixed});
        if (there) files.add("D:\\music\\a.mp3");
        files.add(kPath, "[Option]\r\nCurDir=D:\\music\r\n");
        Program run(files);
        run.settings.LoadSettings();
        EXPECT_EQ(run.state.CurrentFolder, "D:\\music");
        EXPECT_EQ(run.list.Dir1.path(), there ? "D:\\music" : "D:\\");
    }
}

TEST(SettingsFile, AFileThatCannotBeReadOrWrittenIsLeftAlone) {
    FakeFileSystem files;
    files.add(kPath, "[Main]\r\nX=5\r\n");
    {
        files.unreadable.insert(kPath);
        Program run(files);
        run.settings.LoadSettings();
        EXPECT_EQ(run.top.leftTwips(), 0);
        files.unreadable.clear();
        EXPECT_FALSE(run.settings.SaveSettings());
    }
    {
        files.writesFail = true;
        Program run(files);
        run.settings.LoadSettings();
        EXPECT_FALSE(run.settings.SaveSettings());
    }
    EXPECT_EQ(files.bytesOf(kPath), "[Main]\r\nX=5\r\n");
}

}  // namespace
}  // namespace quenlox

#include "tags/form_tag.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "playlist/playlists.h"
#include "state/option_store.h"
#include "tags/tag_limits.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_random.h"
#include "tests/playback/player.h"

namespace quenlox {
namespace {

using testing::ElementsAre;

constexpr const char* kSong = "C:\\music\\song.mp3";
constexpr const char* kOther = "C:\\music\\other.mp3";
constexpr const char* kWrapped = "C:\\music\\wrapped.rmp";

struct Editor : Player {
    Editor() {
        for (const char* path : {kSong, kOther}) {
            files.add(path, "sound");
            vbmp3.addFile(path, FileType{.mpeg = true, .id3v2 = true});
        }
        files.add(kWrapped, "sound");
        vbmp3.addFile(kWrapped, kRmpFile);
        tag(kSong, kTagId3v2, "夜明け", "歌手");
        tag(kOther, kTagId3v1, "Other", "Band");
        tag(kWrapped, kTagSi, "包み", "店");
        for (int list = 0; list < 3; ++list) lists.AddEntry(kSong, list);
        transport.onTrackChanged = [this] { form.currentFileOpened(); };
        form.connect({&transport,
                      {[this](const std::string& from, const std::string& to) { lists.renamePath(from, to); },
                       [this] { seenByBrowser.push_back(state.CurrentFile); }},
                      [this](const std::string& path) { written.push_back(path); },
                      [this] { return selected; },
                      &windows});
        form.fillGenres();
        transport.open({kSong}, kNoIntent, Transport::Start::Open);
        form.show();
        form.fill();
        vbmp3.calls.clear();
    }
    void tag(const std::string& path, int kind, const std::string& title, const std::string& artist) {
        TrackTexts& made = vbmp3.tags[{path, kind}] = {};
        made.title = title;
        made.artist = artist;
    }
    // Takes them into the list.
    void select(std::vector<std::string> paths) {
        selected = std::move(paths);
        form.cmdTake.click();
    }
    void act(TagAction action, FormTag::Field field, const std::string& with = {}) {
        form.ComboField.setListIndex(field);
        form.ComboAction.setListIndex(static_cast<int>(action));
        form.ComboWith.setText(with);
        dialogs.confirms = {true};
        form.cmdApply.click();
    }
    std::string title(const std::string& path, int kind) { return vbmp3.tags[{path, kind}].title; }
    // What the library knows follows the name on the disk.
    void rename(const std::string& name) {
        vbmp3.files["C:\\music\\" + std::string(TrimBlanks(name))] = vbmp3.files[kSong];
        form.TextFileName.setText(name);
        form.cmdRename.click();
    }
    std::vector<std::string> said() const {
        std::vector<std::string> texts;
        for (const auto& message : dialogs.messages) texts.push_back(message.text);
        return texts;
    }

    FakeDialogs dialogs;
    FakeRandom random;
    Playlists lists{state, options, files, vbmp3, random};
    std::vector<std::string> selected, written, seenByBrowser;
    OptionStore chosen;
    FormTag form{state, chosen, vbmp3, files, dialogs};
};

struct FormTagTest : testing::Test, Editor {};

TEST_F(FormTagTest, ARenamedFileIsFollowedInListsAAndBAndNotInListC) {
    rename("  (歌手) 夜明け.mp3 ");
    const std::string renamed = "C:\\music\\(歌手) 夜明け.mp3";
    EXPECT_TRUE(files.fileExists(renamed));
    EXPECT_FALSE(files.fileExists(kSong));
    EXPECT_EQ(lists.path(0, 0), renamed);
    EXPECT_EQ(lists.path(1, 0), renamed);
    EXPECT_EQ(lists.path(2, 0), kSong);
    EXPECT_EQ(state.CurrentFile, renamed);
    EXPECT_EQ(vbmp3.openFile, renamed);
    EXPECT_EQ(form.file(), renamed);
    EXPECT_THAT(seenByBrowser, ElementsAre(renamed)) << "it looks for the current file in its folder";
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(FormTagTest, ARenameThatIsRefusedIsSaidAndChangesNothing) {
    const struct {
        const char *name, *message;
        bool closed;
    } cases[] = {
        {"", "ファイル名が不正です", false},        {"   ", "ファイル名が不正です", false},
        {"() .mp3", "ファイル名が不正です", false}, {"  () a.mp3", "ファイル名が不正です", false},
        {"a?.mp3", "ファイル名変換エラー", true},   {"other.mp3", "ファイル名変換エラー", true},
        {"x\\a.mp3", "ファイル名変換エラー", true}, {"../a.mp3", "ファイル名変換エラー", true},
    };
    for (const auto& c : cases) {
        Editor e;
        e.transport.play();
        e.form.TextFileName.setText(c.name);
        e.form.cmdRename.click();
        EXPECT_THAT(e.said(), ElementsAre(c.message)) << c.name;
        EXPECT_EQ(e.dialogs.messages.at(0).icon, MessageIcon::Stop);
        EXPECT_TRUE(e.files.fileExists(kSong));
        EXPECT_EQ(e.state.CurrentFile, kSong);
        EXPECT_EQ(e.lists.path(0, 0), kSong);
        EXPECT_EQ(e.vbmp3.openFile.empty(), c.closed);
        // A player that has lost its file does not go on to the next one.
        EXPECT_EQ(e.state.PlayerStatus, c.closed ? kStop : kPlay);
    }
}

TEST_F(FormTagTest, FilesOfTheSameNameGoAlongWhenTheUserHasSaidSoOnce) {
    chosen.set(&Options::LyricsFolder, "D:\\words");
    for (const char* path :
         {"C:\\music\\song.lrc", "D:\\words\\song.txt", "C:\\music\\song.kra", "C:\\music\\song.doc"})
        files.add(path);
    files.add("C:\\music\\new.kra");  // stands in the way
    rename("D\\new.mp3");
    EXPECT_TRUE(dialogs.questions.empty()) << "what is refused is not asked about";
    dialogs.confirms = {true};
    rename("new.mp3");
    EXPECT_TRUE(files.fileExists("C:\\music\\new.lrc") && files.fileExists("D:\\words\\new.txt"));
    EXPECT_TRUE(files.fileExists("C:\\music\\song.kra") && files.fileExists("C:\\music\\song.doc"));
    EXPECT_NE(form.LabelState.caption(), "名前を変更しました");
    vbmp3.files["C:\\music\\third.mp3"] = vbmp3.files[kSong];
    form.TextFileName.setText("third.mp3");
    form.cmdRename.click();
    EXPECT_TRUE(files.fileExists("C:\\music\\third.lrc"));
    EXPECT_EQ(dialogs.questions.size(), 1U);
    EXPECT_EQ(chosen->RenameSideFiles, kTakeSideFiles);
}

TEST_F(FormTagTest, EveryViewProposesTheNameWithItsExtension) {
    EXPECT_EQ(form.TextFileName.text(), "(歌手) 夜明け.mp3");
    form.TextTitle.setText("朝");
    EXPECT_EQ(form.TextFileName.text(), "(歌手) 朝.mp3");
    form.cmdRevert.click();
    EXPECT_EQ(form.TextTitle.text(), "夜明け");
    select({kWrapped});
    form.step(1);
    EXPECT_EQ(form.TabView.value(), FormTag::kSiView);
    EXPECT_EQ(form.TextFileName.text(), "(店) 包み.rmp");
    EXPECT_FALSE(form.CheckV1.visible());
}

TEST_F(FormTagTest, SavingWhileItPlaysClosesWritesAndGoesOnWhereItWas) {
    struct Case {
        bool pause, works;
    };
    for (const Case& c : {Case{false, true}, {true, true}, {false, false}}) {
        Editor e;
        e.transport.play();
        if (c.pause) e.transport.pause();
        e.vbmp3.positionMs = 12345;
        e.vbmp3.tagWritesWork = c.works;
        e.vbmp3.error = LibraryError::Locked;
        e.form.TextTitle.setText("新しい");
        e.vbmp3.calls.clear();
        e.form.cmdSave.click();
        const auto at = [&](const std::string& call) {
            return std::ranges::find(e.vbmp3.calls, call) - e.vbmp3.calls.begin();
        };
        const std::string write = "writeTag " + std::string(kSong) + " 2";
        EXPECT_LT(at("close"), at(write));
        EXPECT_LT(at(write), at("open " + std::string(kSong)));
        EXPECT_LT(at("play"), at("seek 12.345000"));
        EXPECT_EQ(e.vbmp3.count("seek 12.345000"), 1);
        EXPECT_EQ(e.state.PlayerStatus, c.pause ? kPause : kPlay);
        EXPECT_EQ(e.vbmp3.playing.state, c.pause ? PlayReport::State::Paused : PlayReport::State::Playing);
        EXPECT_EQ(e.title(kSong, kTagId3v2), c.works ? "新しい" : "夜明け");
        EXPECT_EQ(e.form.TextTitle.text(), "新しい");
        EXPECT_EQ(e.form.edited(), !c.works);
        if (!c.works) {
            EXPECT_THAT(
                e.said(),
                ElementsAre("タグを書き込めませんでした\r\nファイルが読み取り専用か、ほかのプログラムで使用中です"));
        }
    }
}

TEST_F(FormTagTest, TheTicksSayWhichTagsAreWrittenAndWhichGo) {
    EXPECT_TRUE(form.CheckV2.checked());
    EXPECT_FALSE(form.CheckV1.checked());
    form.CheckV1.setValue(1);
    form.cmdSave.click();
    EXPECT_EQ(title(kSong, kTagId3v1), "夜明け");
    form.CheckV2.setValue(0);
    form.cmdSave.click();
    EXPECT_FALSE(vbmp3.tags.contains({kSong, kTagId3v2}));
    form.CheckV1.setValue(0);
    form.cmdSave.click();  // the question is answered with no
    EXPECT_EQ(dialogs.questions.size(), 1U);
    EXPECT_TRUE(vbmp3.tags.contains({kSong, kTagId3v1}));
}

TEST_F(FormTagTest, ATagThatHoldsMoreThanTheOthersGoesOnlyWithAYes) {
    tag(kSong, kTagApe, "", "");
    vbmp3.tags[{kSong, kTagApe}].album = "APEの題";
    vbmp3.tagExtras[{kSong, kTagId3v2}] = {1, 3};
    form.fill();
    EXPECT_EQ(form.TextAlbum.text(), "APEの題");
    EXPECT_TRUE(form.CheckApe.visible() && form.CheckApe.checked());
    form.CheckV1.setValue(1);
    form.CheckV2.setValue(0);
    form.cmdSave.click();  // no
    ASSERT_EQ(dialogs.questions.size(), 1U);
    EXPECT_NE(dialogs.questions[0].find("画像 1枚\nそのほかの項目 3個"), std::string::npos);
    EXPECT_EQ(vbmp3.calls.size(), 0U);
    dialogs.confirms = {true};
    form.CheckApe.setValue(0);
    form.cmdSave.click();
    EXPECT_TRUE(vbmp3.tags.contains({kSong, kTagId3v1}));
    EXPECT_FALSE(vbmp3.tags.contains({kSong, kTagId3v2}) || vbmp3.tags.contains({kSong, kTagApe}));
    EXPECT_FALSE(form.CheckApe.visible());
}

TEST_F(FormTagTest, TheFieldsOfAWaveHaveAPageOfTheirOwn) {
    const std::string wave = "C:\\music\\take.wav";
    files.add(wave);
    vbmp3.addFile(wave, kWaveFile);
    select({wave});
    form.step(1);
    EXPECT_EQ(form.TabView.value(), FormTag::kInfoView);
    EXPECT_EQ(form.TextFileName.text(), "take.wav");
    form.TextTitle.setText("録音");
    EXPECT_EQ(form.TextFileName.text(), "() 録音.wav");
    form.cmdSave.click();
    EXPECT_EQ(title(wave, kTagSi), "録音");
    form.TabView.setValue(FormTag::kId3View);
    EXPECT_EQ(form.LabelState.caption(), "WAVEファイルのタグはINFOで編集します");
    EXPECT_FALSE(form.TextTitle.enabled());
}

TEST_F(FormTagTest, UnsavedEditsAreAskedAboutAndKeptWhenTheTrackChanges) {
    form.TextAlbum.setText("アルバム");
    open(kOther);
    EXPECT_EQ(form.file(), kSong);
    EXPECT_EQ(form.TextAlbum.text(), "アルバム");
    EXPECT_TRUE(dialogs.questions.empty());

    form.cmdClose.click();  // cancelled: it stays
    EXPECT_TRUE(form.visible());
    dialogs.confirmsOrCancels = {false};
    form.cmdClose.click();
    EXPECT_FALSE(form.visible());
    EXPECT_EQ(vbmp3.tags.at({kSong, kTagId3v2}).album, "");

    form.fill();
    form.show();
    EXPECT_EQ(form.file(), kOther);
    form.TextTitle.setText("T");
    dialogs.confirmsOrCancels = {true};
    form.cmdClose.click();
    EXPECT_EQ(title(kOther, kTagId3v1), "T");
}

TEST_F(FormTagTest, ItFollowsTheTrackWhileItShowsThatAndNothingIsUnsaved) {
    transport.open({kOther}, kNoIntent, Transport::Start::Open);
    EXPECT_EQ(form.TextTitle.text(), "Other");
    EXPECT_TRUE(form.CheckV1.checked());
    EXPECT_FALSE(form.CheckV2.checked());
    form.edit(kWrapped);  // one that the user has chosen stays
    transport.open({kSong}, kNoIntent, Transport::Start::Open);
    EXPECT_EQ(form.file(), kWrapped);
}

TEST_F(FormTagTest, ANameThatWasTypedStaysUntilAnotherFileIsShown) {
    form.TextFileName.setText("my name.mp3");
    form.TextTitle.setText("朝");
    form.cmdSave.click();
    EXPECT_EQ(form.TextFileName.text(), "my name.mp3");
    form.edit(kOther);
    EXPECT_EQ(form.TextFileName.text(), "(Band) Other.mp3");
}

TEST_F(FormTagTest, WhatIsDoneWithTheWholeListIsTakenBackStepByStep) {
    const auto before = vbmp3.tags;
    select({kSong, kOther, kWrapped});
    act(TagAction::Number, FormTag::Title, "01");
    EXPECT_EQ((vbmp3.tags[{kOther, kTagId3v1}].track + vbmp3.tags[{kWrapped, kTagSi}].track), "0203");
    act(TagAction::UpperCase, FormTag::Title);
    EXPECT_EQ(title(kOther, kTagId3v1), "OTHER");
    act(TagAction::Swap, FormTag::Title, "アーティスト");
    EXPECT_EQ(title(kOther, kTagId3v1), "Band");
    EXPECT_EQ(title(kSong, kTagId3v2), "歌手");
    act(TagAction::FromName, FormTag::Title, "s*T");
    EXPECT_EQ(title(kSong, kTagId3v2), "ong");
    EXPECT_EQ(form.FileView.textOf(1, 1), "書式に合いません");
    EXPECT_EQ(form.TextTitle.text(), "ong") << "what is shown follows";
    vbmp3.tags.erase({kSong, kTagId3v2});  // its tag is made anew, and goes again
    act(TagAction::SetField, FormTag::Title);
    vbmp3.tagWritesWork = false;
    form.cmdUndo.click();
    EXPECT_EQ(dialogs.messages.size(), 1U);
    vbmp3.tagWritesWork = true;
    for (int step = 0; step < 5; ++step) {
        EXPECT_TRUE(form.cmdUndo.enabled()) << step;
        form.cmdUndo.click();
    }
    EXPECT_FALSE(form.cmdUndo.enabled());
    EXPECT_TRUE(vbmp3.tags == before);
}

TEST_F(FormTagTest, AWorkThatIsGivenUpLeavesTheOthersAlone) {
    select({kSong, kOther, kWrapped});
    windows.onPump = [this] {
        windows.onPump = nullptr;
        form.cmdApply.click();  // it stops by now
    };
    act(TagAction::UpperCase, FormTag::Artist);
    EXPECT_EQ(form.LabelState.caption(), "中止しました（3曲のうち1曲に書き込みました）");
    EXPECT_EQ((vbmp3.tags[{kOther, kTagId3v1}].artist), "Band");
    EXPECT_EQ(form.cmdApply.caption(), "実行(&D)");
}

TEST_F(FormTagTest, OneFieldIsGivenToEverySelectedFileAndTheOthersStay) {
    select({kSong, kWrapped, kOther, kSong});
    files.add("C:\\a.wav");
    tag(kSong, kTagApe, "", "");
    form.fill();
    form.CheckApe.setValue(0);
    form.TextAlbum.setText("全集");
    form.TextYear.setText("1999");
    dialogs.confirms = {true};
    form.cmdApply_Click();
    EXPECT_EQ(form.TextYear.text(), "1999");
    EXPECT_FALSE(form.CheckApe.checked());
    EXPECT_TRUE(form.edited());
    form.cmdRevert.click();
    EXPECT_EQ(form.TextAlbum.text(), "全集");
    for (const auto& [path, kind] : {std::pair{kSong, kTagId3v2}, {kOther, kTagId3v1}, {kWrapped, kTagSi}}) {
        EXPECT_EQ(vbmp3.tags.at({path, kind}).album, "全集") << path;
        EXPECT_NE(vbmp3.tags.at({path, kind}).title, "") << path;
    }
    EXPECT_EQ(written.size(), 3U);
    EXPECT_FALSE(vbmp3.tags.contains({kOther, kTagId3v2}));
    form.TextAlbum.setText("別の全集");
    dialogs.confirms = {true};
    form.cmdApply_Click();
    EXPECT_FALSE(form.edited());  // nothing is left to save

    select({kSong, "C:\\a.wav"});
    dialogs.confirms = {true};
    form.cmdApply_Click();
    EXPECT_THAT(said(), ElementsAre("2曲のうち1曲に書き込めませんでした\r\n対応していない形式のファイルです"));
}

TEST_F(FormTagTest, StepsGoRoundTheSelectedRows) {
    select({kOther, kSong, kWrapped});
    form.step(1);
    EXPECT_EQ(form.file(), kWrapped);
    EXPECT_EQ(form.LabelPlace.caption(), "3 / 3");
    form.step(1);
    EXPECT_EQ(form.file(), kOther);
    form.step(-1);
    EXPECT_EQ(form.file(), kWrapped);
    form.cmdCurrent.click();
    EXPECT_EQ(form.file(), kSong);
}

TEST_F(FormTagTest, WrappingProposesTheOtherExtensionAndSaysWhyItFailed) {
    dialogs.fileAnswers = {"C:\\music\\new.rmp", "C:\\music\\song.mp3"};
    form.cmdConvert.click();
    EXPECT_EQ(dialogs.fileDialogs.at(0).fileName, "song.rmp");
    EXPECT_EQ(vbmp3.count("toRmp C:\\music\\song.mp3 > C:\\music\\new.rmp"), 1);
    vbmp3.jobsWork = false;
    vbmp3.error = LibraryError::SameFile;
    form.cmdConvert.click();
    EXPECT_THAT(said(), ElementsAre("変換できませんでした\r\n変換元と保存先が同じファイルです"));
}

TEST(TagLimits, ShortTagsHoldThirtyBytesOfShiftJis) {
    const std::string fifteen = "あいうえおかきくけこさしすせそ";
    const struct {
        int field;
        std::string text;
        bool track, fits;
    } cases[] = {
        {FormTag::Title, fifteen, false, true},   {FormTag::Title, fifteen + "a", false, false},
        {FormTag::Title, "😀", false, false},      {FormTag::Comment, fifteen, false, true},
        {FormTag::Comment, fifteen, true, false}, {FormTag::Year, "2026", false, true},
        {FormTag::Year, "2026-11", false, false}, {FormTag::Track, "3/12", false, true},
        {FormTag::Track, "256", false, false},    {FormTag::Track, "A1", false, false},
        {FormTag::Track, "", false, true},
    };
    for (const auto& c : cases) EXPECT_EQ(FitsId3v1(c.field, c.text, c.track), c.fits) << c.field << ' ' << c.text;
}

}  // namespace
}  // namespace quenlox

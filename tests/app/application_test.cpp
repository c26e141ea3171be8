#include "app/application.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "state/option_table.h"
#include "tests/fakes/bmp_of.h"
#include "tests/fakes/fake_services.h"

namespace quenlox {
namespace {

class ApplicationTest : public ::testing::Test, protected FakeServices {
  protected:
    void start(const std::string& commandLine = "") {
        application = std::make_unique<Application>(all(), commandLine);
        application->load();
    }
    GlobalState& state() { return application->state(); }
    FormTop& top() { return application->top(); }
    void addSong(const std::string& path) {
        files.add(path);
        vbmp3.addFile(path, kMpegFile, 90, "Title");
    }
    void SetUp() override { mixer.lines[Mixer::kSpeakers].value = 32768; }
    std::size_t placeOf(const std::string& call) const {
        return static_cast<std::size_t>(std::ranges::find(vbmp3.calls, call) - vbmp3.calls.begin());
    }

    // Shows the window of an item of the main menu.
    Form& opened(std::string_view item) {
        const auto items = top().menuMain().items;
        const auto before = windows.hosts.size();
        std::ranges::find_if(items, [item](const MenuItem& i) { return i.caption.starts_with(item); })->click();
        EXPECT_EQ(windows.hosts.size(), before + 1) << item;
        return *windows.hosts.back().first;
    }

    std::unique_ptr<Application> application;
};

TEST_F(ApplicationTest, AFreshStartShowsTheDefaultSkinAndPlaysNothing) {
    start();
    EXPECT_TRUE(dialogs.messages.empty());
    EXPECT_TRUE(top().visible());
    EXPECT_EQ(top().caption(), "Quenlox  Ver " QUENLOX_VERSION_NUMBERS);
    EXPECT_EQ(top().picture()->width(), 100);
    EXPECT_EQ(state().VolumePercent, 50);
    EXPECT_EQ(state().PlayerStatus, kStop);
    EXPECT_EQ(placeOf("init"), 0u);
    EXPECT_EQ(vbmp3.count("play"), 0);
}

TEST_F(ApplicationTest, SettingsSkinListsAndFileComeUpTogether) {
    addSong("C:\\music\\a.mp3");
    files.add("C:\\Quenlox\\skin\\wide\\w.tsk", "[Main]\nVer=4\nBox=1\nSize=300\n");
    files.add(
        "C:\\Quenlox\\Quenlox.ini",
        "[Main]\r\nX=1500\r\nY=750\r\nPlayMode=2\r\nFileName=C:\\music\\a.mp3\r\nSkinName=wide\r\n[List]\r\nShow=1\r\n"
        "[Equalizer]\r\n5Eq=Custom,10,50\r\n");
    files.add("C:\\Quenlox\\Quenlox.m3u", "#ListA\r\nC:\\x.mp3\r\nC:\\music\\a.mp3\r\n");
    start();
    EXPECT_EQ(top().left(), 1500);
    EXPECT_EQ(top().picture()->width(), 300);
    EXPECT_EQ(top().picture()->height(), 50) << "a short list of the skin keeps numbers of the settings";
    EXPECT_EQ(state().PlayMode, kProgram);
    EXPECT_EQ(vbmp3.openFile, "C:\\music\\a.mp3");
    EXPECT_EQ(state().CurrentIndex[0], 1);
    EXPECT_EQ(vbmp3.count("play"), 0) << "the file of the last time is only opened";
    EXPECT_FALSE(state().ListDirty);
}

TEST_F(ApplicationTest, RepeatPlaysAFileOfTheCommandLineOnce) {
    addSong("C:\\Users\\b.mp3");
    files.current = "C:\\Users";
    const struct {
        const char* commandLine;
        int plays;
    } cases[] = {{"b.mp3 /pm1", 1}, {"/pm1", 2}};
    for (const auto& c : cases) {
        start(c.commandLine);
        EXPECT_EQ(state().CurrentFile, "C:\\Users\\b.mp3");
        vbmp3.playing.state = PlayReport::State::Stopped;
        top().Timer1.onTimer();
        EXPECT_EQ(vbmp3.count("play"), c.plays) << c.commandLine;
        top().unload();  // remembers the file
        vbmp3.calls.clear();
    }
}

TEST_F(ApplicationTest, TheMainWindowComesUpBeforeTheFirstFileUnlessItWaitsInTheNotificationArea) {
    addSong("C:\\b.mp3");
    files.add("C:\\Quenlox\\Quenlox.ini", "[List]\r\nShow=1\r\n");
    for (const auto& [commandLine, hidden] : {std::pair{"C:\\b.mp3", false}, {"C:\\b.mp3 /t", true}}) {
        bool seen = hidden;
        windows.onPump = [&] { seen = top().visible(); };
        start(commandLine);
        windows.onPump = {};
        EXPECT_EQ(seen, !hidden);
        EXPECT_EQ(top().visible(), !hidden);
        EXPECT_EQ(application->list().visible(), !hidden);
        EXPECT_TRUE(state().ListShown);
    }
    shell.works = false;
    start("/t");
    EXPECT_TRUE(top().visible() && application->list().visible()) << "there is no such area";
}

TEST_F(ApplicationTest, TheEndStopsReleasesAndSavesInOrder) {
    addSong("C:\\b.mp3");
    files.add("C:\\Quenlox\\Quenlox.m3u", "C:\\b.mp3\r\n; kept as it is");
    start("C:\\b.mp3 /p");
    mci.commands.clear();
    top().move(300, 450);
    state().ListDirty = true;
    std::vector<int> writes;
    mci.onCommand = vbmp3.onClose = [&] { writes.push_back(files.writes); };
    top().unload();
    EXPECT_EQ(writes, (std::vector<int>{2, 2, 2})) << "written before anything is waited for";
    EXPECT_EQ(files.writes, 2) << "and not once more";
    EXPECT_EQ(mci.commands, (std::vector<std::string>{"stop MediaFile", "close MediaFile"}));
    EXPECT_EQ(vbmp3.calls[vbmp3.calls.size() - 1], "free");
    EXPECT_EQ(vbmp3.calls[vbmp3.calls.size() - 2], "close");
    EXPECT_EQ(shell.helps.back(), "C:\\Quenlox\\Quenlox.hlp 2 0");
    EXPECT_NE(files.bytesOf("C:\\Quenlox\\Quenlox.ini").find("X=300\r\nY=450"), std::string::npos);
    EXPECT_FALSE(mixer.opened);
    EXPECT_TRUE(windows.hasQuit);
}

TEST_F(ApplicationTest, WhatCannotBeWrittenAtTheEndIsAskedAboutWhenTheUserWantsItAndNotAtTheEndOfTheSession) {
    const struct { bool tell, session; } cases[] = {{true, false}, {false, false}, {true, true}};
    for (const auto& [tell, session] : cases) {
        files.writesFail = true;
        files.add("C:\\Quenlox\\Quenlox.ini", tell ? "[Option]\r\nSaveCheck=1\r\n" : "");
        start();
        top().move(300, 450);
        application->list().Form_FilesDropped({"C:\\b.mp3"}, {});
        state().ListDirty = true;
        dialogs.questions.clear();
        // The settings: once more, then on without. The lists: not again, but elsewhere.
        dialogs.confirms = {true, false, false, true};
        dialogs.fileAnswers = {"D:\\saved"};
        files.writes = 0;
        session ? windows.onSessionEnd() : (void)top().unload();
        EXPECT_GE(files.writes, 2) << "it is tried";
        if (!tell || session) {
            EXPECT_TRUE(dialogs.questions.empty() && dialogs.messages.empty());
            continue;
        }
        ASSERT_EQ(dialogs.questions.size(), 5u);
        EXPECT_EQ(dialogs.questions[0], dialogs.questions[1]);
        EXPECT_NE(dialogs.questions[0].find("C:\\Quenlox\\Quenlox.ini\rディスクに書き込めません"), std::string::npos);
        EXPECT_NE(dialogs.questions[2].find("C:\\Quenlox\\Quenlox.m3u"), std::string::npos);
        EXPECT_EQ(dialogs.questions[4].find("プレイリストは保存されていません"), 0u) << "nor there";
        EXPECT_TRUE(windows.hasQuit);
    }
}

// Each option by its key in the settings file, the only one that the control may change, with what it changes in the
// running program: a text that must be another one behind the change, and the first one again when the option is put
// back.
TEST_F(ApplicationTest, EveryOptionActsAtOnceAndCanBePutBack) {
    const std::string song = "C:\\m\\(N) T.mp3";
    files.add("C:\\Quenlox\\skin\\default\\default.tsk",
              "[Main]\nVer=4\nSize=300,100\nBox=1\n[Label]\nLabelA=5,20,60,10,6,255,255,255\n[Disp]\nDispA=10,"
              "80\nDispB=100,60\n");
    files.add("C:\\Quenlox\\Quenlox.m3u", "#ListA\r\n" + song + "\r\nC:\\m\\2.mp3\r\n");
    files.add("D:\\words\\(N) T.lrc");
    files.add("D:\\pic\\m.bmp", BmpOf(Surface(1, 1, {})));
    addSong(song), addSong("C:\\m\\2.mp3");
    vbmp3.addFile(song, FileType{.mpeg = true, .lyrics = true}, 90, "A title that is longer than its place");
    vbmp3.timeTag = true;
    vbmp3.lyrics3Data = "[00:01]la";
    vbmp3.lyricsFiles = {"D:\\words\\(N) T.lrc"};
    vbmp3.lines.total = 1, vbmp3.lines.stampMs[2] = 1000;
    vbmp3.lines.rows[2] = "la";
    vbmp3.waveLeft = vbmp3.waveRight = {0, 9000};
    vbmp3.spectrum = {900, 500};
    start("\"" + song + "\" /pm2");
    windows.pumpMessages();
    state().CurrentIndex[0] = 0, state().ViewType = 30;
    top().TitleLabel_DblClick();  // the title of the tag
    FormOpt& o = application->optionsWindow();
    FormLyrics& lyrics = application->lyrics();
    ListView& list = application->list().PlayView[0];
    lyrics.Form_Resize({300, 200});

    const auto check = [](CheckBox& box) { return [&box](bool on) { box.setValue(on); }; };
    const auto uncheck = [](CheckBox& box) { return [&box](bool on) { box.setValue(!on); }; };
    const auto slide = [](ScrollBar& bar, int to) {
        return [&bar, to, from = bar.value()](bool on) { bar.setValue(on ? to : from); };
    };
    const auto choose = [](ControlArray<OptionButton>& group, int to, int from = 0) {
        return [&group, to, from](bool on) { group[on ? to : from].setValue(true); };
    };
    const auto pick = [](ComboBox& box, int to) { return [&box, to](bool on) { box.setListIndex(on ? to : 0); }; };
    const auto type = [](TextBox& box, const char* text) {
        return [&box, text, before = box.text()](bool on) {
            box.setText(on ? text : before);
            if (box.onLeave) box.onLeave();
        };
    };
    const auto last = [this](const std::string& begin) {
        return [this, begin] {
            const auto found = std::ranges::find_if(vbmp3.calls.rbegin(), vbmp3.calls.rend(),
                                                    [&](const std::string& c) { return c.starts_with(begin); });
            return found == vbmp3.calls.rend() ? std::string() : *found;
        };
    };
    const auto pitch = [this, &last](int mode, const char* call) {
        return [this, mode, seen = last(call)] {
            state().PitchMode = mode;
            return seen();
        };
    };
    const auto number = [](auto value) { return [value] { return std::to_string(static_cast<int>(value())); }; };
    const auto sum = [](const Surface& surface) {
        std::uint32_t total = 0;
        for (const Surface::Pixel pixel : surface.pixels()) total = total * 31 + pixel;
        return std::to_string(total);
    };
    const auto source = [this] { return top().mainLabel[kInformationLabel].caption(); };
    const auto row = [&list] { return list.textOf(0, 0) + "|" + list.textOf(0, 1); };
    const auto columns = [this] {
        std::string text;
        for (const int width : application->list().columnWidths(0)) text += std::to_string(width) + " ";
        return text;
    };
    const auto lyricsPicture = [&] { return sum(lyrics.Picture7.surface()); };
    const auto nothing = [] { return std::string(); };
    const auto changedFrom = [this](const Options& before) {
        std::string keys;
        for (const OptionRow& option : OptionRows()) {
            IniDocument was, is;
            WriteOption(option, before, was), WriteOption(option, application->options(), is);
            if (was.serialise() != is.serialise()) keys += option.key;
        }
        return keys;
    };

    const struct {
        const char* what;
        std::function<void(bool)> change;
        std::function<std::string()> seen;
    } cases[] = {
        {"AnimeMode", check(o.CheckAnime), number([this] { return top().TimerTitle.enabled(); })},
        {"SpeanaMode", check(o.CheckSpeana), number([this] { return top().DisplayB.visible(); })},
        {"SpeanaTime", slide(o.HScrollSpeana, 10), number([this] { return top().Timer2.interval(); })},
        {"Fft", choose(o.FftOption, 2),
         [this, &o, sum] {
             o.CheckSpeana.setValue(1);
             for (int frame = 0; frame < 60; ++frame) top().Timer2.onTimer();
             return sum(top().DisplayB.surface());
         }},
        {"PanelMode", check(o.CheckPanel), number([this] { return top().DisplayA.visible(); })},
        {"SkinZoom", pick(o.ComboSkinScale, 3), number([this] { return windows.hostOf(top())->scale.percent(); })},
        {"HiPitch", slide(o.HScrollHiPitch, 150), pitch(kHighPitch, "pitch")},
        {"LowPitch", slide(o.HScrollLowPitch, 60), pitch(kLowPitch, "pitch")},
        {"StepPitch", slide(o.HScrollStepPitch, 3), pitch(kStepPitch, "step")},
        {"Quality", choose(o.QualityOption, 1), last("quality")},
        {"OutputBuffer", slide(o.HScrollBuffer, 900), last("output")},
        {"Gapless", uncheck(o.CheckGapless),
         [this] {
             top().Timer1.onTimer();
             return vbmp3.nextFile;
         }},
        {"DispLyrics", uncheck(o.CheckLyrics), number([&] { return lyrics.visible(); })},
        {"LyricsSelf", check(o.CheckLyricsSelf), last("notTagLyricsLine")},
        {"LyricsTime", slide(o.HScrollLyricsTime, -9), last("lyricsShift")},
        {"LyricsLine", choose(o.LyricsOption, 1, 5), number([&] { return lyrics.Picture7.font().points; })},
        {"Font", type(o.TextLyricsFont, "メイリオ"), [&] { return lyrics.Picture7.font().face; }},
        {"TimeTag", check(o.CheckTimeTag), lyricsPicture},
        {"LyricsBold", check(o.CheckLyricsBold), number([this] { return painter.drawn.back().style.font.bold; })},
        {"LyricsDir", type(o.TextLyricsDir, "D:\\words"), source},
        {"BmpDir", type(o.TextBmpDir, "D:\\pic"), lyricsPicture},
        {"ReName", check(o.CheckReName), row},
        {"ReNameS", type(o.TextReName, "(*T) *N"),
         [&o, row] {
             o.CheckReName.setValue(1);
             return row();
         }},
        {"ListTypeS", check(o.CheckListTypeS), columns},
        {"ListTime", uncheck(o.CheckListTime),
         [&o, columns] {
             o.CheckListTypeS.setValue(1);
             return columns();
         }},
        {"AnimeTime", slide(o.HScrollAnime, 7), nothing},
        {"SpeanaIntro", slide(o.HScrollSpeanaIntro, 15), nothing},
        {"IntroPlay", check(o.CheckIntro), nothing},
        {"IntroTime", slide(o.HScrollIntro, 25), nothing},
        {"PassOver", uncheck(o.CheckPassOver), nothing},
        {"LyricsMain", check(o.CheckLyricsMain), nothing},
        {"ListType", check(o.CheckListType), nothing},
        {"DelList", check(o.CheckDelList), nothing},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        c.seen(), c.change(true), c.change(false);  // so that what is seen is that of the option's first value
        const std::string before = c.seen();
        const Options options = application->options();
        c.change(true);
        EXPECT_EQ(changedFrom(options), c.what);
        EXPECT_TRUE(c.seen() != before || before.empty());
        c.change(false);
        EXPECT_EQ(c.seen(), before);
    }
    // What cannot be put back: a source that has been made as loud as the master, the end of an introduction.
    const Options options = application->options();
    o.VolumeOption[1].setValue(true);
    EXPECT_EQ(changedFrom(options), "Volume");
    EXPECT_EQ(mixer.lines[Mixer::kWaveOut].value, mixer.lines[Mixer::kSpeakers].value);
    o.TextLyricsDir.setText("D:\\words"), o.TextLyricsDir.onLeave();
    EXPECT_TRUE(source().ends_with("+W"));
    o.CheckLyricsMain.setValue(1);
    EXPECT_TRUE(source().ends_with("+L"));
    vbmp3.playing.seconds = 12;
    o.CheckIntro.setValue(1);
    top().Timer1.onTimer();
    EXPECT_EQ(state().CurrentFile, "C:\\m\\2.mp3");
}

TEST_F(ApplicationTest, WindowsLieAroundTheMainWindowOnAFirstStartAndWhereTheyWereLater) {
    for (const bool first : {true, false}) {
        if (!first) files.add("C:\\Quenlox\\Quenlox.ini", "[Option]\r\nX=30\r\n");
        windows.hosts.clear();
        start();
        std::vector<std::pair<int, int>> places{{top().left(), top().top()}};
        for (const char* item : {"プレイリスト", "オプション", "グライコ", "タグ情報"}) {
            const Form& form = opened(item);
            places.emplace_back(form.left(), form.top());
        }
        const std::vector<std::pair<int, int>> kept{{0, 0}, {0, 0}, {30, 0}, {0, 0}, {0, 0}};
        EXPECT_EQ(places == kept, !first);
        std::ranges::sort(places);
        EXPECT_EQ(std::ranges::adjacent_find(places) == places.end(), first);
        application.reset();
    }
}

TEST_F(ApplicationTest, TheTimeColumnGoesAndComesWithItsOptionAndTheUsersOwnWidthsStay) {
    start();
    auto& list = dynamic_cast<FormList&>(opened("プレイリスト"));
    auto& options = dynamic_cast<FormOpt&>(opened("オプション"));
    options.CheckListTime.setValue(0);
    EXPECT_EQ(list.columnWidths(2), (std::array{9000, 0, 0, 0, 0}));
    options.CheckListTypeS.setValue(1);
    EXPECT_EQ(list.columnWidths(2), (std::array{162, 113, 162, 0, 300}));
    list.TabList.setValue(1);  // a list other than the first
    const std::array own{50, 60, 70, 0, 80};
    for (int column = 0; column < 5; ++column)
        list.PlayView[1].setColumnWidth(column, own[static_cast<std::size_t>(column)]);
    options.CheckListTypeS.setValue(0);
    EXPECT_EQ(list.columnWidths(2), (std::array{9000, 0, 0, 0, 0}));
    options.CheckListTypeS.setValue(1);
    options.CheckListTime.setValue(1);
    for (int view = 0; view < FormList::kViews; ++view) {
        EXPECT_EQ(list.columnWidths(view), (std::array{50, 60, 70, 40, 80})) << view;
    }
}

TEST_F(ApplicationTest, AHelpFileGoesFirstThenTheGuide) {
    start();
    const auto help = [&] { top().taskPicture_MouseUp(kHelpCommand, 1, 0, {0, 0}); };
    top().taskPicture[kHelpCommand].setBounds({0, 0, 10, 10});
    help();
    files.add("C:\\Quenlox\\Quenlox.html");
    help();
    EXPECT_EQ(shell.opened, std::vector<std::string>{"C:\\Quenlox\\Quenlox.html"});
    files.add("C:\\Quenlox\\Quenlox.hlp");
    help();
    EXPECT_EQ(shell.helps,
              (std::vector<std::string>{"C:\\Quenlox\\Quenlox.hlp 11 1", "C:\\Quenlox\\Quenlox.hlp 11 1"}));
}

TEST_F(ApplicationTest, TheAboutWindowNamesTheVersionsAndOpensLicencesAndGuideOrSaysThatTheyAreMissing) {
    start();
    auto& about = dynamic_cast<FormInfo&>(opened("バージョン情報"));
    EXPECT_EQ(about.LabelVersion.caption() + about.LabelGogo.caption(), "Ver " QUENLOX_VERSION "gogo.dll  Ver 1.0.0");
    const auto open = [&] { about.CommandLicence.click(), about.CommandHelp.click(), about.onHelp(); };
    open();
    EXPECT_EQ(dialogs.messages.size(), 2u);
    files.add("C:\\Quenlox\\licences\\LICENSE"), files.add("C:\\Quenlox\\Quenlox.html");
    open();
    const std::string guide = "C:\\Quenlox\\Quenlox.html";
    EXPECT_EQ(shell.opened, (std::vector<std::string>{"C:\\Quenlox\\licences", guide, guide}));
    about.setVersions({"", "", ""});
    EXPECT_EQ(about.LabelGogo.caption(), "gogo.dll  見つかりません");
    EXPECT_FALSE(about.unload() || about.visible());
    FormInfo linked(dialogs, files, shell, "https://example.invalid/");
    linked.CommandPage.click();
    EXPECT_EQ(shell.opened.back(), "https://example.invalid/");
    EXPECT_EQ(linked.CommandPage.visible(), true);
    EXPECT_EQ(about.CommandPage.visible(), !FormInfo::Page().empty());
}

TEST_F(ApplicationTest, TheListLabelTellsWhatThereIs) {
    start();
    const struct {
        int count, current;
        const char* text;
    } cases[] = {{0, -1, "A 0曲"}, {2, -1, "A 2曲"}, {2, 1, "A 2/2"}};
    for (const auto& c : cases) {
        files.add("C:\\Quenlox\\Quenlox.m3u", c.count ? "#ListA\r\nC:\\x.mp3\r\nC:\\y.mp3\r\n" : "");
        start();
        state().CurrentIndex[0] = c.current;
        top().Timer3.onTimer();
        EXPECT_EQ(top().mainLabel[kListLabel].caption(), c.text);
    }
}

TEST_F(ApplicationTest, WithoutMixerOrSkinItStillStartsAndAMixerThatComesIsFound) {
    mixer.opens = false;
    files.all.clear();
    start();
    EXPECT_TRUE(top().visible());
    top().Form_Wheel(2, {});
    EXPECT_EQ(state().VolumePercent, 10);
    mixer.opens = true;
    top().Timer4.onTimer();
    EXPECT_EQ(state().VolumePercent, 50);
}

TEST_F(ApplicationTest, LibraryAndMixerFollowTheChosenDeviceWhenNumbersShift) {
    devices.list = {"Speakers", "USB"};
    files.add("C:\\Quenlox\\Quenlox.ini", "[Option]\r\nOutputDevice=0\r\nOutputDeviceName=USB\r\n");
    start();
    const std::pair<std::vector<std::string>, int> later[] = {
        {{"Speakers", "USB"}, 1}, {{"New", "Speakers", "USB"}, 2}, {{"New"}, -1}, {{"USB", "New"}, 0}, {{"USB"}, 0}};
    for (const auto& [list, number] : later) {
        devices.list = list;
        windows.onDevicesChanged();
        EXPECT_EQ(mixer.device, number);
    }
    EXPECT_EQ(std::ranges::count_if(vbmp3.calls, [](const std::string& c) { return c.starts_with("output "); }), 4);
    application->optionsWindow().ComboDevice.setListIndex(0);
    EXPECT_EQ(mixer.device, -1);
}

}  // namespace
}  // namespace quenlox

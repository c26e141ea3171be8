#include <algorithm>

#include "tests/skin/skin_fixture.h"

namespace quenlox {
namespace {

class FormTopTest : public SkinTest {
  protected:
    void SetUp() override {
        SkinTest::SetUp();
        load();
    }
    FormTop::Hooks hooks() override {
        FormTop::Hooks all;
        all.unload = [this] { ++unloads; };
        all.fillTagWindow = [this] { ++tagFills; };
        all.panelClicked = [this](int button) { panelClicks.push_back(button); };
        return all;
    }
    int unloads = 0;
    int tagFills = 0;
    std::vector<int> panelClicks;
};

// What the doors to one command do in one status: played, paused, stopped, and which file is the current one.
struct Door {
    const char* command;
    const char* name;
    std::function<void(FormTop&)> open;
};

const MenuItem* Find(const std::vector<MenuItem>& items, const std::string& caption) {
    for (const MenuItem& item : items) {
        if (item.caption.starts_with(caption)) return &item;
        if (const MenuItem* found = Find(item.items, caption)) return found;
    }
    return nullptr;
}

std::vector<Door> Doors() {
    const auto button = [](int n) {
        return [n](FormTop& top) {
            const Point at{12 + 10 * n, 62};
            top.Form_MouseDown(1, 0, at);
            top.Form_MouseUp(1, 0, at);
        };
    };
    const auto panel = [](int n) {
        return [n](FormTop& top) {
            top.DisplayA.setVisible(true);
            const Point at{top.DisplayA.bounds().left + 10 * n + 5, top.DisplayA.bounds().top + 5};
            top.Form_MouseDown(1, 0, at);
            top.Form_MouseUp(1, 0, at);
        };
    };
    const auto menu = [](const char* caption) {
        return [caption](FormTop& top) { Find(top.menuMain().items, caption)->click(); };
    };
    const auto key = [](int code) {
        return [code](FormTop& top) {
            top.Form_KeyDown(code, 4);
            top.Form_KeyUp(code, 4);
        };
    };
    const auto tray = [](std::size_t item) { return [item](FormTop& top) { top.menuTray().items[item].click(); }; };
    const auto media = [](int code) { return [code](FormTop& top) { top.Form_AppCommand(code); }; };
    const auto spoken = [](const char* name) {
        return [name](FormTop& top) {
            for (const AccessiblePart& part : top.accessibleParts()) {
                if (part.name == name && part.act) return part.act();
            }
        };
    };
    return {{"play or stop", "button", button(0)},     {"play or stop", "panel", panel(0)},
            {"play or stop", "menu", menu("再生／停止")}, {"play or stop", "assistive", spoken("再生／停止")},
            {"pause", "button", button(1)},            {"pause", "panel", panel(1)},
            {"pause", "menu", menu("一時停止")},           {"pause", "assistive", spoken("一時停止")},
            {"previous", "button", button(2)},         {"previous", "panel", panel(2)},
            {"previous", "menu", menu("前の曲")},         {"previous", "key", key(37)},
            {"previous", "media key", media(12)},      {"next", "button", button(3)},
            {"next", "panel", panel(3)},               {"next", "menu", menu("次の曲")},
            {"next", "key", key(39)},                  {"next", "media key", media(11)},
            {"play", "key", key(38)},                  {"stop", "media key", media(13)},
            {"play or stop", "tray", tray(2)},         {"previous", "tray", tray(4)},
            {"next", "tray", tray(5)},                 {"pause", "key", [](FormTop& top) { top.Form_KeyDown(32, 0); }}};
}

TEST_F(FormTopTest, EveryDoorToACommandDoesWhatTheCommandDoes) {
    fillList();
    for (const Door& door : Doors()) {
        for (const PlayStatus status : {kStop, kPlay, kPause, kError, kLoad, kWait, kDecode, kEncode}) {
            const auto outcome = [&](const std::function<void()>& act) {
                state.PlayerStatus = kStop;
                transport->open({"C:\\2.mp3", 0, 1}, kForward, Transport::Start::Play);
                state.PlayerStatus = status;
                act();
                return state.CurrentFile + " " + std::to_string(state.PlayerStatus) + " " +
                       std::to_string(state.PlayIntent) + " " + std::to_string(state.CurrentIndex[0]);
            };
            const std::string command = door.command;
            const std::string expected = outcome([&] {
                command == "play"           ? transport->play()
                : command == "stop"         ? transport->stop()
                : command == "play or stop" ? transport->playOrStop()
                : command == "pause"        ? transport->pause()
                : command == "next"         ? transport->NextTrack()
                                            : transport->PreviousTrack();
            });
            EXPECT_EQ(outcome([&] { door.open(*top); }), expected) << command << " by " << door.name << ' ' << status;
        }
    }
}

TEST_F(FormTopTest, WhileAConversionRunsNothingElseActsEitherAndADropSaysSo) {
    openFile("C:\\a.mp3");
    state.PlayerStatus = kEncode;
    top->Form_MouseDown(1, 0, kPlayAt);
    EXPECT_EQ(at(10, 60), pixel(playback(0, false)));
    click({72, 4});  // close
    click({100, 51});
    top->Form_MouseDown(2, 0, {150, 90});
    top->Form_KeyDown(39, 4);
    EXPECT_FALSE(state.KeyLatch);
    EXPECT_FALSE(top->Form_AppCommand(11)) << "the system may offer the key to another program";
    EXPECT_EQ(unloads, 0);
    EXPECT_TRUE(host->popups.empty());
    top->Form_FilesDropped({"C:\\a.mp3"}, {});
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(dialogs.messages[0].text, "ファイル変換中は再生できません");
    EXPECT_EQ(state.PlayerStatus, kEncode);
}

TEST_F(FormTopTest, CommandsShowAndHideTheirWindows) {
    click({12, 4});
    EXPECT_TRUE(list.visible());
    EXPECT_TRUE(state.ListShown);
    click({12, 4});
    EXPECT_FALSE(list.visible());
    EXPECT_FALSE(state.ListShown);
    click({22, 4});
    EXPECT_TRUE(optionsWindow.visible());
    click({32, 4});
    EXPECT_TRUE(tag.visible());
    EXPECT_EQ(tagFills, 1);
    click({32, 4});
    EXPECT_FALSE(tag.visible());
    EXPECT_EQ(tagFills, 1) << "only a window that is shown is filled";
    click({42, 4});
    click({42, 4});
    EXPECT_TRUE(convert.visible()) << "the converter is shown, never hidden";
    click({72, 4});
    EXPECT_EQ(unloads, 1);
    EXPECT_TRUE(top->unloaded());
}

TEST_F(FormTopTest, AlwaysOnTopReachesOpenWindowsAndThoseShownLater) {
    click({12, 4});
    top->menuMain().items[0].click();
    EXPECT_TRUE(top->topmost());
    EXPECT_TRUE(list.topmost());
    EXPECT_FALSE(optionsWindow.topmost());
    click({22, 4});
    EXPECT_TRUE(optionsWindow.topmost());
    EXPECT_TRUE(top->menuMain().items[0].checked);
    top->menuMain().items[8].click();
    EXPECT_TRUE(about.topmost());
    top->menuMain().items[0].click();
    EXPECT_FALSE(top->topmost() || list.topmost() || optionsWindow.topmost() || about.topmost());
}

TEST_F(FormTopTest, TheBackgroundDragsTheWindowAndTheRightButtonOpensTheMenu) {
    top->Form_MouseDown(1, 0, {150, 90});
    EXPECT_EQ(host->drags, 1);
    top->Form_MouseDown(2, 0, {150, 90});
    EXPECT_EQ(host->popups, std::vector<std::string>{"menuMain"});
}

TEST_F(FormTopTest, TheTitleDragsOnlyWhenThePointerMovesSoThatADoubleClickReachesIt) {
    openFile("C:\\a.mp3");
    EXPECT_EQ(top->mainLabel[kTitleLabel].caption(), "a.mp3");
    click({10, 25});
    top->Form_DoubleClick(1, 0, {10, 25});
    EXPECT_EQ(state.TitleMode, 1);
    EXPECT_EQ(top->mainLabel[kTitleLabel].caption(), "Title");
    EXPECT_EQ(host->drags, 0);
    top->Form_MouseDown(1, 0, {10, 25});
    top->Form_MouseMove(1, 0, {20, 25});
    EXPECT_EQ(host->drags, 1);
}

TEST_F(FormTopTest, LabelsStepPlayModeAndTimeMode) {
    for (const char* word : {"REPEAT", "PROGRAM", "RANDOM", "SINGLE"}) {
        click({75, 25});
        EXPECT_EQ(top->mainLabel[kPlayModeLabel].caption(), word);
    }
    click({10, 36});
    EXPECT_EQ(state.TimeMode, 1);
    click({10, 36}, 2);
    EXPECT_EQ(state.TimeMode, 1);
}

TEST_F(FormTopTest, TheVolumeBarFollowsADragAndTheWheelStepsIt) {
    top->Form_MouseDown(1, 0, {181, 10});
    EXPECT_EQ(state.VolumePercent, 100);
    top->Form_MouseMove(1, 0, {5, 60});
    EXPECT_EQ(state.VolumePercent, 0) << "the pointer may leave the bar to the side";
    top->Form_MouseUp(1, 0, {5, 60});
    top->Form_MouseMove(1, 0, {181, 10});
    EXPECT_EQ(state.VolumePercent, 0);
    top->Form_Wheel(3, {0, 0});
    EXPECT_EQ(state.VolumePercent, 15);
    top->Form_Wheel(-9, {0, 0});
    EXPECT_EQ(state.VolumePercent, 0);
}

TEST_F(FormTopTest, TheSeekBarFollowsADragAndTheTrackGoesWhereItIsLetGo) {
    openFile("C:\\a.mp3");
    transport->play();
    top->Form_MouseMove(0, 0, {100, 51});
    EXPECT_EQ(host->tip, "00:50");
    top->Form_MouseDown(1, 0, kBarAt);
    top->Form_MouseMove(1, 0, {75, 90});
    EXPECT_EQ(host->tip, "00:25");
    top->showBar(0.9);
    EXPECT_EQ(at(74, 51), pixel(kBar));
    EXPECT_EQ(at(76, 51), pixel(kBack)) << "the bar stays where the pointer is";
    EXPECT_EQ(state.PositionSeconds, 0);
    top->Form_MouseUp(1, 0, {75, 90});
    EXPECT_EQ(state.PositionSeconds, 25);
    EXPECT_EQ(host->tip, "");
    top->Form_Wheel(2, kBarAt);
    EXPECT_EQ(state.PositionSeconds, 35);
    for (const AccessiblePart& part : top->accessibleParts()) {
        if (part.name == "再生位置") part.setPercent(50);
    }
    top->showBar(0.9);
    EXPECT_EQ(at(130, 51), pixel(kBar)) << "set by an assistive program it is not held";
    EXPECT_EQ(state.VolumePercent, 0);
}

TEST_F(FormTopTest, KeysOfTheMainWindowReachWhatTheMenuHas) {
    openFile("C:\\a.mp3");
    transport->play();
    const struct {
        int key, shift, position, volume;
    } cases[] = {{39, 2, 30, 0}, {39, 0, 35, 0}, {37, 0, 30, 0}, {37, 2, 0, 0}, {37, 0, 0, 0}, {38, 0, 0, 5}, {38, 0, 0, 10},
                 {40, 0, 0, 5},  {77, 0, 0, 0},  {77, 0, 0, 5},  {38, 1, 0, 5}, {39, 4, 0, 5}};
    for (const auto& c : cases) {
        top->Form_KeyDown(c.key, c.shift);
        EXPECT_EQ(state.PositionSeconds, c.position) << c.key << " " << c.shift;
        EXPECT_EQ(state.VolumePercent, c.volume) << c.key << " " << c.shift;
    }
    top->playbackKey(38, 0);
    EXPECT_EQ(state.VolumePercent, 5) << "other windows have a use of their own for it";
    files.add("C:\\b.mp3");
    vbmp3.addFile("C:\\b.mp3");
    dialogs.fileAnswers.push_back("C:\\b.mp3");
    top->Form_KeyDown('O', 2);
    EXPECT_EQ(state.CurrentFile, "C:\\b.mp3");
    EXPECT_EQ(state.PlayerStatus, kPlay);
}

TEST_F(FormTopTest, AKeyLetGoWhileItsFileIsOpenedCanBePressedAgain) {
    openFile("C:\\a.mp3");
    tracks.lists[0].push_back("C:\\a.mp3");
    windows.pumps = 0;
    windows.onPump = [&] { top->Form_KeyUp(39, 4); };
    top->Form_KeyDown(39, 4);
    EXPECT_GT(windows.pumps, 0);
    EXPECT_FALSE(state.KeyLatch);
}

TEST_F(FormTopTest, AltAndArrowsActOnceUntilTheKeyIsUp) {
    fillList();
    top->Form_KeyDown(39, 4);
    top->Form_KeyDown(39, 4);
    EXPECT_EQ(state.CurrentIndex[0], 0);
    top->Form_KeyUp(39, 4);
    top->Form_KeyDown(39, 4);
    EXPECT_EQ(state.CurrentIndex[0], 1);
    top->Form_KeyUp(39, 4);
    pitch->Low();
    top->Form_KeyDown(40, 4);
    EXPECT_EQ(state.PlayerStatus, kStop);
    EXPECT_EQ(state.PitchMode, kNormalPitch);
    top->Form_KeyUp(40, 4);
    top->Form_KeyDown(38, 0);
    EXPECT_EQ(state.PlayerStatus, kStop) << "only with Alt";
    top->Form_KeyDown(38, 4);
    EXPECT_EQ(state.PlayerStatus, kPlay);
}

TEST_F(FormTopTest, MediaKeysMeanWhatTheySay) {
    openFile("C:\\a.mp3");
    const struct {
        int command;
        PlayStatus from, to;
    } cases[] = {{14, kStop, kPlay}, {14, kPlay, kPause}, {14, kPause, kPlay}, {46, kStop, kPlay}, {46, kPlay, kPlay},
                 {46, kPause, kPlay}, {47, kPlay, kPause}, {47, kPause, kPause}};
    for (const auto& c : cases) {
        state.PlayerStatus = c.from;
        EXPECT_TRUE(top->Form_AppCommand(c.command));
        EXPECT_EQ(state.PlayerStatus, c.to) << c.command << " from " << c.from;
    }
    EXPECT_FALSE(top->Form_AppCommand(8));
}

TEST_F(FormTopTest, TheNotificationAreaHoldsTheProgramUntilItsIconIsClicked) {
    openFile("C:\\a.mp3");
    top->show();
    top->Form_TrayIcon(516);
    EXPECT_TRUE(host->popups.empty()) << "there is no icon to be clicked";
    shell.works = false;
    click({62, 4});
    EXPECT_TRUE(top->visible()) << "there is no such area";
    shell.works = true;
    click({62, 4});
    EXPECT_TRUE(shell.trayIconShown);
    EXPECT_FALSE(top->visible());
    EXPECT_FALSE(top->Timer2.enabled());
    top->Form_TrayIcon(516);
    EXPECT_EQ(host->popups, std::vector<std::string>{"menuTray"});
    EXPECT_EQ(top->menuTray().items[0].caption, "ﾒｲﾝ画面を表示");
    top->Form_TrayIcon(514);
    EXPECT_FALSE(shell.trayIconShown);
    EXPECT_TRUE(top->visible());
    click({62, 4});
    shell.onTrayIconLost();
    EXPECT_TRUE(top->visible()) << "without the icon there is no other way back";
}

TEST_F(FormTopTest, TheTrayIconTellsTheTitleAndWhilePlayingTheTimeWhenThePointerComesToIt) {
    openFile("C:\\a.mp3");
    state.PlayerStatus = kPlay;
    top->showTime("00:10");
    top->moveToTray();
    EXPECT_EQ(shell.trayTip, "a.mp3／00:10");
    top->showTime("00:11");
    EXPECT_EQ(shell.trayTip, "a.mp3／00:10") << "nobody looks";
    top->Form_TrayIcon(512);
    EXPECT_EQ(shell.trayTip, "a.mp3／00:11");
    top->showTitle("b.mp3", "");
    EXPECT_EQ(shell.trayTip, "b.mp3／00:11");
    state.PlayerStatus = kStop;
    top->Form_TrayIcon(512);
    EXPECT_EQ(shell.trayTip, "b.mp3");
    top->unload();
    EXPECT_FALSE(shell.trayIconShown);
}

TEST_F(FormTopTest, TwoQuickClicksOnThePanelAreTwoAndOneOnItsEmptyPlaceShowsIt) {
    EXPECT_NE(top->Form_TooltipAt({110, 65}), "");
    click({110, 65});
    EXPECT_TRUE(options->SpectrumShown);
    top->optionsChanged();
    EXPECT_TRUE(top->Timer2.enabled());
    EXPECT_EQ(panelClicks, std::vector<int>{});
    click({110, 65});
    click({110, 65}, 2);
    top->Form_DoubleClick(1, 0, {110, 65});
    EXPECT_EQ(panelClicks, (std::vector<int>{1, 2, 1}));
    EXPECT_TRUE(host->popups.empty());
}

TEST_F(FormTopTest, AVolumeThatAnotherProgramHasSetIsShown) {
    mixer.lines[Mixer::kSpeakers].value = 65535 / 4;
    top->Timer4.onTimer();
    EXPECT_EQ(state.VolumePercent, 25);
    EXPECT_EQ(at(183, 46), pixel({7, 7, 7}));
    EXPECT_EQ(at(183, 49), pixel(kLevel));
}

TEST_F(FormTopTest, ALongTitleRunsAndComesBack) {
    options.set(&Options::TitleAnimation, true);
    top->optionsChanged();
    std::string title;
    for (int i = 0; i < 20; ++i) title += "xx ";
    top->showTitle(title, "");
    ASSERT_TRUE(top->TimerTitle.enabled());
    const Surface before = *top->picture();
    painter.drawn.clear();
    for (int i = 0; i <= TitleAnimation::kRestTicks; ++i) top->TimerTitle.onTimer();
    EXPECT_NE(*top->picture(), before);
    const int round = 60 * 4 + TitleAnimation::kGap;
    for (int i = 1; i < round; ++i) top->TimerTitle.onTimer();
    EXPECT_EQ(*top->picture(), before);
    EXPECT_TRUE(painter.drawn.empty()) << "letters are made once";
    top->showTitle("short", "");
    EXPECT_FALSE(top->TimerTitle.enabled());
}

// Names, places and actions are asked for from outside by the end-to-end tests.
TEST_F(FormTopTest, AssistiveProgramsAreToldOfChangesAndRefusedWhileBusy) {
    openFile("C:\\a.mp3");
    state.PlayerStatus = kStop;
    const auto numberOf = [&](const std::string& name) {
        const auto parts = top->accessibleParts();
        return static_cast<int>(std::ranges::find(parts, name, &AccessiblePart::name) - parts.begin());
    };
    host->partChanges.clear();
    top->showTitle("b", "");
    top->PlayModeLabel_Click(1);
    top->Form_Wheel(1, {});
    click(kPlayAt);
    click({100, 51});
    const std::vector<std::pair<int, PartChange>> expected{{numberOf("b"), PartChange::Name}, {numberOf("REPEAT"), PartChange::Name},
                                                           {numberOf("音量"), PartChange::Value}};
    ASSERT_GE(host->partChanges.size(), 4u);
    EXPECT_EQ((std::vector(host->partChanges.begin(), host->partChanges.begin() + 3)), expected);
    EXPECT_EQ(host->partChanges.back(), (std::pair{numberOf("再生位置"), PartChange::Value}));
    const AccessiblePart play = top->accessibleParts()[static_cast<std::size_t>(numberOf("再生／停止"))];
    state.PlayerStatus = kDecode;
    EXPECT_FALSE(top->accessibleParts()[static_cast<std::size_t>(numberOf("再生／停止"))].enabled);
    play.act();
    EXPECT_EQ(state.PlayerStatus, kDecode);
}

}  // namespace
}  // namespace quenlox

#include <new>

#include "tests/skin/skin_fixture.h"

namespace quenlox {
namespace {

class LoadSkin : public SkinTest {
  protected:
    static constexpr const char* kOther = "C:\\Quenlox\\skin\\x\\x.tsk";

    FormTop::Hooks hooks() override {
        FormTop::Hooks all;
        all.lyricsDisplayMode = [this](bool) { toldAt = *top->picture(); };
        return all;
    }
    Surface toldAt;  // what was to be seen when the others were told of the skin
};

TEST_F(LoadSkin, APackageIsAppliedWhole) {
    load();
    EXPECT_EQ(state.CurrentSkinFile, "C:\\Quenlox\\skin\\default\\default.tsk");
    EXPECT_EQ(top->width(), 3000);
    EXPECT_EQ(top->height(), 1500);
    ASSERT_EQ(host->regions.size(), 1u);
    EXPECT_EQ(host->regions[0], (Region{{0, 0, 200, 100}}));
    EXPECT_EQ(at(199, 99), pixel(kBack));
    EXPECT_EQ(at(50, 50), pixel(kBack)) << "an empty seek bar shows the background";
    EXPECT_FALSE(top->mainLabel[1].visible());
    EXPECT_TRUE(top->mainLabel[2].visible());
    EXPECT_FALSE(top->LyricsPicture.visible());
    EXPECT_TRUE(state.SkinLacksLyricsArea);
    EXPECT_TRUE(options.available(&Options::LyricsShown));
    EXPECT_TRUE(options.available(&Options::OperationPanel));
}

TEST_F(LoadSkin, ASkinThatCannotBeReadToItsEndLeavesTheOldOneAsItWas) {
    load();
    addPackage("C:\\Quenlox\\skin\\x\\", "x", "[Main]\nVer=4\nBox=1\nSize=70,70\n[Label]\nLyrics=1,1,9,9,9,1,2,3,4,5,6\n[Button]\nButtonA=1,1\n");
    const auto look = [this] {
        std::vector<Rect> places;
        for (const Control* control : top->controls()) places.push_back(control->visible() ? control->bounds() : Rect{});
        return std::tuple(places, *top->picture(), top->width(), host->regions, state.CurrentSkinFile, state.SkinLacksLyricsArea,
                          state.LyricsColors, options.available(&Options::OperationPanel), options.available(&Options::LyricsShown), values(1), values(9));
    };
    const auto before = look();
    int reads = 0, last = 0;
    files.perRead = [&] {
        if (++reads == last) throw std::bad_alloc();
    };
    for (last = 1; last <= 35; ++last, reads = 0) {
        top->LoadSkin(kOther);
        ASSERT_EQ(look(), before) << last;
    }
    top->LoadSkin(kOther);
    EXPECT_EQ(toldAt, *top->picture()) << "others hear of the whole skin";
    EXPECT_EQ(toldAt.width(), 70);
    EXPECT_EQ(reads, 35) << "each of its files was the one that failed";
}

TEST_F(LoadSkin, OnTheFirstRunAChosenSkinIsToldToComeWithTheNextStart) {
    files.all.clear();
    addPackage(kFolder, "default", kDefinition);
    files.add(kOther, "[Main]\nVer=4\nBox=1\nSize=70,70\n");
    load();
    top->ListSkins();
    openFile("C:\\a.mp3");
    const std::string before = top->mainLabel[kInformationLabel].caption();
    top->skinName_Click(1);
    EXPECT_TRUE(dialogs.messages.empty());
    EXPECT_EQ(top->picture()->width(), 200);
    EXPECT_EQ(state.SkinName, "x");
    EXPECT_EQ(top->mainLabel[kInformationLabel].caption(), "スキンは次回の起動から変わります");
    for (int tick = 0; tick < 20; ++tick) top->Timer3_Timer();
    EXPECT_EQ(top->mainLabel[kInformationLabel].caption(), before);
    top->skinName_Click(0);
    EXPECT_EQ(top->mainLabel[kInformationLabel].caption(), before) << "the default skin is there already";
}

TEST_F(LoadSkin, TheDefaultPackageStandsInForABrokenOne) {
    const std::string other = kOther;
    files.add(other, "[Main]\nVer=3\n");
    top->LoadSkin(other);
    EXPECT_EQ(state.CurrentSkinFile, std::string(kFolder) + "default.tsk");
    ASSERT_EQ(dialogs.messages.size(), 1u);
    EXPECT_EQ(dialogs.messages[0].text, "Skinのバージョンが異なります\rDefaultSkinをロードします");
    EXPECT_EQ(dialogs.messages[0].icon, MessageIcon::Stop);

    top->LoadSkin("C:\\nowhere.tsk");
    ASSERT_EQ(dialogs.messages.size(), 2u);
    EXPECT_EQ(dialogs.messages[1].text, "指定のSkinが見つかりません\rDefaultSkinをロードします");

    files.add(other, "[Main]\nVer=4\nBox=1\n");
    top->LoadSkin(other);
    EXPECT_EQ(state.CurrentSkinFile, other);
    EXPECT_EQ(dialogs.messages.size(), 2u);
}

TEST_F(LoadSkin, WithoutTheDefaultPackageEveryKeyTakesItsDefault) {
    files.all.clear();
    files.add("C:\\Quenlox\\Quenlox.ini", "");
    top->LoadSkinNamed("");
    ASSERT_EQ(dialogs.messages.size(), 3u);
    EXPECT_EQ(dialogs.messages[0].text, "指定のSkinが見つかりません\rDefaultSkinをロードします");
    EXPECT_EQ(dialogs.messages[1].text, "DefaultSkinが見つかりません\r再インストールしてください");
    EXPECT_EQ(dialogs.messages[2].text, "Skinの矩形データが見つかりません");
    EXPECT_EQ(top->width(), 60 * 15);
    EXPECT_EQ(top->picture()->width(), 60);
    for (int n = 0; n < kLabelCount; ++n) EXPECT_FALSE(top->mainLabel[n].visible());
    for (int n = 0; n < kButtonCount; ++n) EXPECT_FALSE(top->cmdPicture[n].visible() || top->taskPicture[n].visible());
}

TEST_F(LoadSkin, AMissingRegionFileIsSaidAndLeavesTheOutline) {
    load();
    files.add(kOther, "[Main]\nVer=4\nSize=50,50\n");
    top->LoadSkin(kOther);
    ASSERT_EQ(dialogs.messages.size(), 1u);
    EXPECT_EQ(dialogs.messages[0].text, "Skinの矩形データが見つかりません");
    EXPECT_EQ(host->regions.size(), 1u);
}

TEST_F(LoadSkin, PicturesThatTheNewSkinLacksOrThatTakeTooMuchStayThoseOfTheOldOne) {
    load();
    files.add(kOther, "[Main]\nVer=4\nBox=1\nSize=50,50\n[Button]\nButtonA=1,1\n");
    files.add("C:\\Quenlox\\skin\\x\\main_back.bmp", "broken");
    files.add("C:\\Quenlox\\skin\\x\\cmd_play1.bmp", BmpOf(Surface(256, 257, kBar)));  // too large
    top->LoadSkin(kOther);
    EXPECT_EQ(at(1, 1), pixel(playback(0, false)));
    EXPECT_EQ(at(30, 30), pixel(kBack));
    EXPECT_FALSE(options.available(&Options::OperationPanel));
}

TEST_F(LoadSkin, FinerPicturesAreShownWhereTheScreenIsFineEnough) {
    constexpr Color kTwo{0, 0, 2}, kThree{0, 0, 3}, kPressedTwo{0, 9, 2};
    const std::string folder = kFolder;
    files.add(folder + "main_back@2x.bmp", BmpOf(Surface(400, 200, kTwo)));
    files.add(folder + "main_back@3x.bmp", BmpOf(Surface(600, 300, kThree)));
    files.add(folder + "cmd_play2@2x.bmp", BmpOf(Surface(16, 16, kPressedTwo)));
    files.add(folder + "cmd_play1@2x.bmp", BmpOf(Surface(15, 16, kTwo)));  // not twice as large as the first
    load();
    for (const auto& [zoom, size, back] : {std::tuple{100, 200, kBack}, {150, 300, kTwo}, {200, 400, kTwo}, {250, 500, kThree},
                                           {400, 800, kThree}, {200, 400, kTwo}}) {
        options.set(&Options::SkinZoom, zoom);
        top->optionsChanged();
        const auto on = [zoom = zoom](int place) { return place * zoom / 100; };
        EXPECT_EQ(host->scale, Scale(zoom));
        EXPECT_EQ(top->picture()->width(), size);
        EXPECT_EQ(at(on(199), on(99)), pixel(back)) << zoom;
        EXPECT_EQ(at(on(14), on(64)), pixel(playback(0, false))) << "its own set lacks it, or has it in a wrong size";
        EXPECT_EQ(top->cmdPicture[0].bounds(), (Rect{10, 60, 8, 8}));
        EXPECT_EQ(top->width(), 3000) << "the form keeps the pixels of the skin";
    }
    top->Form_MouseDown(1, 0, kPlayAt);
    EXPECT_EQ(at(28, 128), pixel(kPressedTwo));
    // A skin without finer pictures takes what it lacks from this one.
    files.add(kOther, "[Main]\nVer=4\nBox=1\nSize=50,50\n[Button]\nButtonB=1,1\n");
    top->LoadSkin(kOther);
    EXPECT_EQ(at(60, 90), pixel(kTwo));
    EXPECT_EQ(at(10, 10), pixel(playback(1, false)));
    EXPECT_EQ(top->cmdPicture[1].bounds(), (Rect{1, 1, 8, 8}));
}

TEST_F(LoadSkin, ABackgroundWithAlphaGivesTheWindowSoftEdges) {
    std::string bytes = BmpOf(Surface(200, 100, kBack));  // made into one of 32 bits, half transparent but for its last row
    bytes[28] = 32;
    bytes.resize(54);
    for (int i = 0; i < 200 * 100; ++i) bytes += std::string("\x1E\x14\x0A") + (i < 200 ? '\xFF' : '\x80');
    const std::string folder = kFolder;
    files.add(folder + "default.tsk", ReplaceAll(kDefinition, "Box=1", "Box=1\nAlpha=1"));
    load();
    EXPECT_EQ(host->opacity, nullptr) << "24 bits have none";
    files.add(folder + "main_back.bmp", bytes);
    options.set(&Options::SkinZoom, 200);
    load();
    ASSERT_NE(host->opacity, nullptr);
    EXPECT_EQ(host->opacity->rect(), top->picture()->rect());
    EXPECT_EQ(host->opacity->at(399, 197), pixel({0x80, 0x80, 0x80}));
    EXPECT_EQ(host->opacity->at(399, 198), pixel({0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(at(399, 199), pixel(kBack));
    addPackage("C:\\Quenlox\\skin\\x\\", "x", "[Main]\nVer=4\nBox=1\nSize=70,70\n");
    top->LoadSkin(kOther);
    EXPECT_EQ(host->opacity, nullptr);
}

TEST_F(LoadSkin, WithoutAChoiceTheResolutionOfTheMonitorDecides) {
    host->twips = {10, 10};
    load();
    EXPECT_EQ(host->scale, Scale(150));
    host->twips = {7.5, 7.5};
    top->Form_Resize({});
    EXPECT_EQ(host->scale, Scale(200));
    EXPECT_EQ(top->picture()->width(), 400);
    top->showTitle("abc", "");
    top->picture();
    const auto& title = painter.drawn.back();
    EXPECT_EQ(title.where, (Rect{10, 40, 120, 20}));
    EXPECT_DOUBLE_EQ(title.style.font.points * title.style.dotsPerInch / 72, 16) << "twice as many pixels as at 96 dots";
    addPackage("C:\\Quenlox\\skin\\x\\", "x", "[Main]\nVer=4\nBox=1\nSize=2000,1000\n");
    top->LoadSkin(kOther);
    EXPECT_LE(std::int64_t{top->picture()->width()} * top->picture()->height(), kMostScreenPixels);
}

// At every scale a part that is drawn anew gives what drawing everything gives.
TEST_F(LoadSkin, WhatIsDrawnInPartsIsWhatIsDrawnAsAWhole) {
    options.set(&Options::SpectrumShown, true);
    load();
    for (const int zoom : {100, 125, 133, 150, 175, 200, 250, 300, 400}) {
        options.set(&Options::SkinZoom, zoom);
        top->optionsChanged();
        const std::function<void()> changes[] = {[&] { top->showTitle("abc" + std::to_string(zoom), "d"); },
                                                 [&] { top->showTime("01:23"); },
                                                 [&] { top->showBar(zoom / 500.0); },
                                                 [&] { top->setVolumePercent(zoom / 7); },
                                                 [&] { top->Form_MouseDown(1, 0, kPauseAt); },
                                                 [&] { top->Form_MouseUp(1, 0, {0, 0}); },
                                                 [&] {
                                                     top->DisplayB.surface().fill({1, 200, 3});
                                                     top->DisplayB.refresh();
                                                 }};
        for (std::size_t i = 0; i < std::size(changes); ++i) {
            changes[i]();
            const Surface inParts = *top->picture();
            top->refreshDisplay();
            EXPECT_EQ(inParts, *top->picture()) << zoom << " " << i;
        }
    }
}

TEST_F(LoadSkin, FontSizesFollowTheResolution) {
    load();
    EXPECT_DOUBLE_EQ(top->mainLabel[0].font().points, 6);
    host->twips = {12, 12};
    top->Form_Resize({});
    EXPECT_DOUBLE_EQ(top->mainLabel[0].font().points, 4.8);
    load();
    EXPECT_DOUBLE_EQ(top->mainLabel[0].font().points, 4.8);
    EXPECT_EQ(top->width(), 2400);
}

TEST_F(LoadSkin, TheMenuListsEveryFolderButTheDefaultAndLoadsWhatIsChosen) {
    files.add("C:\\Quenlox\\skin\\Default2\\a.tsk", "[Main]\nVer=4\nBox=1\nSize=70,70\n");
    files.add("C:\\Quenlox\\skin\\R&B\\readme.txt");
    top->ListSkins();
    Menu menu = top->menuMain();
    auto& skins = menu.items[2];
    EXPECT_EQ(skins.caption, "スキンの変更(&S)");
    ASSERT_EQ(skins.items.size(), 6u);
    EXPECT_EQ(skins.items[1].caption, "Default2");
    EXPECT_EQ(skins.items[2].caption, "R&&B") << "no letter to press";
    skins.items[1].click();
    EXPECT_EQ(state.SkinName, "Default2");
    EXPECT_EQ(top->picture()->width(), 70);
    EXPECT_TRUE(top->visible());
    skins.items[2].click();
    EXPECT_EQ(state.SkinName, "Default2") << "a folder without a definition does nothing";
    files.add("C:\\Quenlox\\skin\\R&B\\old.tsk", "[Main]\nVer=3\n");
    skins.items[2].click();
    EXPECT_EQ(state.SkinName, "R&B") << "the choice is kept, though the default skin stands in";
    EXPECT_EQ(top->picture()->width(), 200);
    skins.items[1].click();
    skins.items[0].click();
    EXPECT_EQ(top->picture()->width(), 200);
}

TEST_F(LoadSkin, TheOperationPanelStandsInPlaceOfTheButtons) {
    load();
    options.set(&Options::OperationPanel, true);
    top->optionsChanged();
    EXPECT_EQ(at(10, 60), pixel(kBack));
    EXPECT_EQ(at(10, 80), pixel(kPanel));
    openFile("C:\\a.mp3");
    state.PlayerStatus = kStop;
    click({12, 82});  // the first of seven columns
    EXPECT_EQ(state.PlayerStatus, kPlay);
    click({25, 82});
    EXPECT_EQ(state.PlayerStatus, kPause);
    // A skin without display A ends the mode.
    files.add(kOther, "[Main]\nVer=4\nBox=1\nSize=200,100\n[Button]\nButtonA=10,60\n");
    top->LoadSkin(kOther);
    EXPECT_FALSE(options->OperationPanel);
    EXPECT_TRUE(top->cmdPicture[0].visible());
}

TEST_F(LoadSkin, ASmallChangeRepaintsOnlyItsPlace) {
    load();
    top->picture();
    host->invalidated.clear();
    top->showTime("01:23");
    ASSERT_EQ(host->invalidated.size(), 1u);
    EXPECT_EQ(host->invalidated[0], top->mainLabel[kTimeLabel].bounds());
    // What is composed piece by piece is what composing at once gives.
    top->showBar(0.5);
    top->showPlayMode("RANDOM");
    const Surface pieces = *top->picture();
    top->refreshDisplay();
    EXPECT_EQ(*top->picture(), pieces);
    EXPECT_EQ(at(99, 51), pixel(kBar));
    EXPECT_EQ(at(100, 51), pixel(kBack));
}

}  // namespace
}  // namespace quenlox

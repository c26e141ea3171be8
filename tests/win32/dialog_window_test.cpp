#include "forms/list_view.h"
#include "tests/win32/desk.h"

namespace quenlox {
namespace {

struct AllForm : Form {
    AllForm() : Form("FormOpt", Kind::Dialog) {
        setCaption("設定");
        move(60 * 15, 40 * 15);
        ok.setCaption("OK");
        ok.isDefault = true;
        name.setCaption("名前(&N)");
        frame.setCaption("再生");
        check.setCaption("繰り返す(&R)");
        check.setTooltip("最後まで来たら始めから");
        for (OptionButton* option : {&option0, &option1, &option2})
            option->setCaption("選択 " + std::to_string(option->index()));
        combo.setItems({{"44100Hz", 44100}, {"48000Hz", 48000}});
        memo.setText("一行目\n二行目");
        files.setFiles({"曲 1.mp3", "曲 2.mp3", "list.m3u", "ω.wav"});
        folders.setPath("C:\\Music");
        folders.setEntries({{"C:\\", "C:\\", 0}, {"C:\\Music", "Music", 1}, {"C:\\Music\\A", "A", 2}});
        drives.setDrives({"C:\\", "D:\\"});
        bar.setButtons({{"add", "追加", "ファイルを追加", false, true, false},
                        {"", "", "", true, true, false},
                        {"sort", "並替", "並べ替え", false, true, true}});
        progress.setValue(400);
        pictureBox.setBackColor({30, 40, 90});
    }
    Layout layout() override {
        return Column(
            {Item(bar), Row({Item(name), Item(text, 0, 0, 1), Item(combo, 70)}),
             Pages(tabs, {Row({Group(frame, Column({Item(check), Item(option0), Item(option1), Item(option2)})),
                               Item(memo, 80, 0, 1), Item(vertical)}),
                          Row({Item(files, 80, 60, 1), Column({Item(drives, 80), Item(folders, 80, 40, 1)})})}),
             Row({Item(horizontal, 0, 0, 1), Item(progress, 80), Item(pictureBox, 40, 20)}),
             Row({Space(0, 0, 1), Item(ok), Item(cancel)})});
    }
    void Form_KeyDown(int key, int shift) override { keys.push_back({key, shift}); }
    void Form_Unload(bool& refused) override { ++closes, refused = true; }

    std::vector<Point> keys;
    int closes = 0;
    Toolbar bar{*this, "Toolbar1"};
    Label name{*this, "Label1"};
    TextBox text{*this, "Text1"};
    ComboBox combo{*this, "Combo1"};
    TabStrip tabs{*this, "TabStrip1", {"再生", "ファイル"}};
    Frame frame{*this, "Frame1"};
    CheckBox check{*this, "Check4"};
    OptionButton option0{*this, "Option1", 0};
    OptionButton option1{*this, "Option1", 1};
    OptionButton option2{*this, "Option1", 2};
    TextBox memo{*this, "Text2", true};
    ScrollBar vertical{*this, "VScroll1", ScrollBar::Direction::Vertical, -120, 120};
    FileListBox files{*this, "File1"};
    DriveListBox drives{*this, "Drive1"};
    DirListBox folders{*this, "Dir1"};
    ScrollBar horizontal{*this, "HScroll1", ScrollBar::Direction::Horizontal, 50, 200};
    ProgressBar progress{*this, "Progress1"};
    PictureBox pictureBox{*this, "Picture1"};
    CommandButton ok{*this, "Command1"};
    CommandButton cancel{*this, "Command2"};
};

struct DialogWindow : Desk {
    DialogWindow() {
        form.cancel.setCaption("キャンセル");
        form.realise(*system);
    }
    HWND at(const std::wstring& control) {
        HWND window = WindowOf(form, control);
        EXPECT_TRUE(window);
        return window;
    }
    void key(WPARAM key) {
        PostMessageW(GetFocus() ? GetFocus() : WindowOf(form), WM_KEYDOWN, key, 0);
        PostMessageW(GetFocus() ? GetFocus() : WindowOf(form), WM_KEYUP, key, 0);
        pump();
    }
    AllForm form;
};

TEST_F(DialogWindow, TakesTheSizeThatItsControlsNeedAndKeepsThemApart) {
    form.show();
    pump();
    RECT place{};
    GetWindowRect(WindowOf(form), &place);
    EXPECT_EQ(place.left, 60) << "where the form wanted to stand";
    EXPECT_EQ(place.top, 40);
    RECT client{};
    GetClientRect(WindowOf(form), &client);
    const Rect inside = win32::FromRect(client);
    std::vector<const Control*> firstPage;
    for (const Control* control : form.controls()) {
        EXPECT_EQ(Intersect(control->bounds(), inside), control->bounds()) << control->name();
        EXPECT_FALSE(control->bounds().empty()) << control->name();
        if (IsWindowVisible(at(win32::Wide(control->index() < 0
                                               ? control->name()
                                               : control->name() + "(" + std::to_string(control->index()) + ")"))) &&
            control != &form.frame)
            firstPage.push_back(control);
    }
    for (const Control* a : firstPage) {
        for (const Control* b : firstPage) {
            if (a == b) continue;
            EXPECT_TRUE(Intersect(a->bounds(), b->bounds()).empty()) << a->name() << " " << b->name();
        }
    }
    EXPECT_EQ(form.width(), PixelsToTwips(
                                [&] {
                                    RECT r;
                                    GetWindowRect(WindowOf(form), &r);
                                    return static_cast<int>(r.right - r.left);
                                }(),
                                15));
}

TEST_F(DialogWindow, AChangeFromCodeReachesTheControlAndRaisesItsEventOnce) {
    int clicks = 0, changes = 0, edits = 0;
    form.check.onClick = [&] { ++clicks; };
    form.text.onChange = [&] { ++edits; };
    form.horizontal.onChange = [&] { ++changes; };
    form.check.setValue(1);
    form.text.setText("夜想曲 ω");
    form.horizontal.setValue(120);
    form.vertical.setValue(-30);
    form.combo.setListIndex(1);
    form.option2.setValue(true);
    form.progress.setValue(750);
    form.ok.setCaption("決定");
    form.ok.setEnabled(false);
    pump();
    EXPECT_EQ(std::vector({clicks, changes, edits}), std::vector({1, 1, 1}));
    EXPECT_EQ(SendMessageW(at(L"Check4"), BM_GETCHECK, 0, 0), BST_CHECKED);
    EXPECT_EQ(TextOf(at(L"Text1")), L"夜想曲 ω");
    EXPECT_EQ(SendMessageW(at(L"HScroll1"), TBM_GETPOS, 0, 0), 120);
    EXPECT_EQ(SendMessageW(at(L"VScroll1"), TBM_GETPOS, 0, 0), -30);
    EXPECT_EQ(SendMessageW(at(L"Combo1"), CB_GETCURSEL, 0, 0), 1);
    EXPECT_EQ(SendMessageW(at(L"Option1(2)"), BM_GETCHECK, 0, 0), BST_CHECKED);
    EXPECT_EQ(SendMessageW(at(L"Progress1"), PBM_GETPOS, 0, 0), 750);
    EXPECT_EQ(TextOf(at(L"Command1")), L"決定");
    EXPECT_FALSE(IsWindowEnabled(at(L"Command1")));
    EXPECT_EQ(TextOf(at(L"Text2")), L"一行目\r\n二行目");
}

TEST_F(DialogWindow, WhatTheUserDoesReachesTheFormOnce) {
    form.show();
    std::vector<std::string> log;
    form.check.onClick = [&] { log.push_back("check"); };
    form.option0.onClick = [&] { log.push_back("option 0"); };
    form.option1.onClick = [&] { log.push_back("option 1"); };
    form.combo.onClick = [&] { log.push_back("combo"); };
    form.text.onChange = [&] { log.push_back("text"); };
    form.horizontal.onScroll = [&] { log.push_back("scroll"); };
    form.horizontal.onChange = [&] { log.push_back("change"); };
    form.ok.onClick = [&] { log.push_back("ok"); };
    SendMessageW(at(L"Check4"), BM_CLICK, 0, 0);
    SendMessageW(at(L"Option1(0)"), BM_CLICK, 0, 0);
    SendMessageW(at(L"Option1(1)"), BM_CLICK, 0, 0);
    SendMessageW(at(L"Combo1"), CB_SETCURSEL, 1, 0);
    SendMessageW(WindowOf(form), WM_COMMAND, MAKEWPARAM(1003, CBN_SELCHANGE), reinterpret_cast<LPARAM>(at(L"Combo1")));
    SendMessageW(at(L"Text1"), EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(L"あ"));
    SendMessageW(at(L"HScroll1"), TBM_SETPOS, TRUE, 70);
    SendMessageW(WindowOf(form), WM_HSCROLL, MAKEWPARAM(TB_THUMBTRACK, 70), reinterpret_cast<LPARAM>(at(L"HScroll1")));
    SendMessageW(at(L"Command1"), BM_CLICK, 0, 0);
    EXPECT_EQ(log,
              (std::vector<std::string>{"check", "option 0", "option 1", "combo", "text", "scroll", "change", "ok"}));
    EXPECT_TRUE(form.check.checked());
    EXPECT_FALSE(form.option0.value());
    EXPECT_TRUE(form.option1.value());
    EXPECT_EQ(form.combo.data(), 48000);
    EXPECT_EQ(form.text.text(), "あ");
    EXPECT_EQ(form.horizontal.value(), 70);
}

TEST_F(DialogWindow, OnlyTheControlsOfTheChosenPageAreSeen) {
    form.show();
    pump();
    EXPECT_TRUE(IsWindowVisible(at(L"Check4")));
    EXPECT_FALSE(IsWindowVisible(at(L"File1")));
    SetFocus(at(L"Text1"));
    form.tabs.setValue(1);
    EXPECT_FALSE(IsWindowVisible(at(L"Check4")));
    EXPECT_TRUE(IsWindowVisible(at(L"File1")));
    form.check.setVisible(false);
    form.check.setVisible(true);
    EXPECT_FALSE(IsWindowVisible(at(L"Check4"))) << "visible, but on another page";
}

TEST_F(DialogWindow, ItsKeysAreThoseOfADialog) {
    form.show();
    ASSERT_TRUE(waitFor([&] { return GetFocus() != nullptr; }));
    int pressed = 0;
    form.ok.onClick = [&] { ++pressed; };
    SetFocus(at(L"Text1"));
    key(VK_TAB);
    EXPECT_EQ(GetFocus(), at(L"Combo1"));
    key(VK_RETURN);
    EXPECT_EQ(pressed, 1) << "Enter presses the default button";
    key(VK_ESCAPE);
    EXPECT_EQ(form.closes, 1);
    EXPECT_TRUE(form.visible()) << "the form refused";
    EXPECT_EQ(form.keys.at(1), (Point{VK_RETURN, 0})) << "the form sees keys first";
}

TEST_F(DialogWindow, AControlMayGoWhileTheWindowStays) {
    auto extra = std::make_unique<CommandButton>(form, "Command9");
    extra->setBounds({0, 0, 60, 20});
    EXPECT_TRUE(WindowOf(form, L"Command9"));
    extra->onClick = [&] { extra.reset(); };
    SendMessageW(WindowOf(form, L"Command9"), BM_CLICK, 0, 0);
    EXPECT_FALSE(WindowOf(form, L"Command9"));
}

}  // namespace
}  // namespace quenlox

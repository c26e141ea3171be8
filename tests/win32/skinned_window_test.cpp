#include <atomic>
#include <thread>

#include "tests/win32/desk.h"

namespace quenlox {
namespace {

struct SkinForm : Form {
    SkinForm() : Form("FormTop", Kind::Skinned) {
        setSize(100 * 15, 60 * 15);
        look.fillRect({0, 0, 50, 60}, {255, 0, 0});
        look.fillRect({50, 0, 50, 60}, {0, 0, 255});
        look.set(99, 59, {255, 255, 0});
    }
    const Surface* picture() override { return &look; }
    void Form_MouseDown(int button, int shift, Point at) override { note("down", button, shift, at); }
    void Form_MouseUp(int button, int shift, Point at) override { note("up", button, shift, at); }
    void Form_MouseMove(int button, int shift, Point at) override { note("move", button, shift, at); }
    void Form_DoubleClick(int button, int shift, Point at) override { note("twice", button, shift, at); }
    void Form_KeyDown(int key, int shift) override {
        log.push_back("key " + std::to_string(key) + " " + std::to_string(shift));
    }
    bool Form_AppCommand(int command) override {
        log.push_back("command " + std::to_string(command));
        return true;
    }
    void Form_KeyUp(int key, int) override { log.push_back("keyup " + std::to_string(key)); }
    void Form_ContextMenu(Point at) override {
        log.push_back("menu " + std::to_string(at.x) + "," + std::to_string(at.y));
    }
    void Form_Wheel(int notches, Point) override { log.push_back("wheel " + std::to_string(notches)); }
    void note(const char* what, int button, int shift, Point at) {
        log.push_back(std::string(what) + " " + std::to_string(button) + " " + std::to_string(shift) + " " +
                      std::to_string(at.x) + "," + std::to_string(at.y));
    }

    Surface look{100, 60};
    std::vector<std::string> log;
    Timer timer{*this, "Timer1", 0};
};

struct SkinnedWindow : Desk {
    SkinnedWindow() {
        form.move(200 * 15, 100 * 15);
        form.setCaption("再生 Quenlox");
        form.realise(*system);
        window = WindowOf(form);
    }
    void shown() {
        form.show();
        ASSERT_TRUE(waitFor([this] { return IsWindowVisible(window) && !GetUpdateRect(window, nullptr, FALSE); }));
        form.log.clear();
    }
    SkinForm form;
    HWND window = nullptr;
};

TEST_F(SkinnedWindow, ShowsThePictureAsItIsAndScalesRegionAndPointer) {
    form.host()->setRegion({{10, 10, 20, 20}, {40, 0, 60, 60}});
    form.look = Surface(300, 180, {255, 255, 0});
    form.host()->setScale(Scale(300));
    shown();
    RECT rect{};
    GetWindowRect(window, &rect);
    EXPECT_EQ(rect.right - rect.left, 300);
    EXPECT_EQ(form.host()->clientSize(), (Size{100, 60}));
    EXPECT_EQ(form.width(), 1500) << "the size of the form is that of the skin";
    EXPECT_EQ(PixelOf(window, 299, 179), (Color{255, 255, 0}));
    const auto region = CreateRectRgn(0, 0, 0, 0);
    GetWindowRgn(window, region);
    for (const auto& [x, y, inside] : {std::tuple{30, 30, true},
                                       {29, 30, false},
                                       {89, 89, true},
                                       {90, 89, false},
                                       {120, 0, true},
                                       {119, 0, false}}) {
        EXPECT_EQ(PtInRegion(region, x, y) != FALSE, inside) << x << "," << y;
    }
    DeleteObject(region);
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, At(152, 31));
    SendMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, At(-1, -4));
    SendMessageW(window, WM_LBUTTONUP, 0, At(299, 179));
    EXPECT_EQ(form.log, (std::vector<std::string>{"down 1 0 50,10", "move 1 0 -1,-2", "up 1 0 99,59"}));
}

TEST_F(SkinnedWindow, TellsTheSecondPressOnceAndTheReleaseWhenTheMouseIsTakenAway) {
    shown();
    SendMessageW(window, WM_LBUTTONDBLCLK, MK_LBUTTON, At(5, 6));
    EXPECT_EQ(GetCapture(), window);
    SetCapture(nullptr);
    ReleaseCapture();
    EXPECT_EQ(form.log, (std::vector<std::string>{"twice 1 0 5,6", "up 1 0 -32000,-32000"}));
    form.log.clear();
    SendMessageW(window, WM_RBUTTONDOWN, MK_RBUTTON, At(5, 6));
    SendMessageW(window, WM_RBUTTONUP, 0, At(5, 6));
    EXPECT_EQ(form.log, (std::vector<std::string>{"down 2 0 5,6", "up 2 0 5,6"})) << "a release comes once";
}

TEST_F(SkinnedWindow, ReportsKeysWithAltMediaCommandsAndTheMenuKey) {
    shown();
    SendMessageW(window, WM_SYSKEYDOWN, VK_LEFT, 1 << 29);
    SendMessageW(window, WM_KEYUP, VK_LEFT, 0);
    EXPECT_EQ(form.log.front().substr(0, 6), "key 37");
    EXPECT_EQ(form.log.back(), "keyup 37");
    form.log.clear();
    SendMessageW(window, WM_KEYDOWN, VK_MEDIA_PLAY_PAUSE, 0);
    SendMessageW(window, WM_APPCOMMAND, 0, MAKELPARAM(0, APPCOMMAND_MEDIA_PLAY_PAUSE));
    SendMessageW(window, WM_KEYDOWN, VK_MEDIA_PLAY_PAUSE, 1 << 30);
    SendMessageW(window, WM_KEYUP, VK_MEDIA_PLAY_PAUSE, 0);
    EXPECT_EQ(form.log, (std::vector<std::string>{"command 14"})) << "key and command are one press";
    SendMessageW(window, WM_APPCOMMAND, 0, MAKELPARAM(0, APPCOMMAND_MEDIA_NEXTTRACK));
    SendMessageW(window, WM_APPCOMMAND, 0, MAKELPARAM(0, APPCOMMAND_MEDIA_PAUSE));
    EXPECT_EQ(form.log, (std::vector<std::string>{"command 14", "command 11", "command 47"}));
    form.log.clear();
    EXPECT_FALSE(SendMessageW(window, WM_APPCOMMAND, 0, MAKELPARAM(0, APPCOMMAND_BROWSER_BACKWARD)));
    SendMessageW(window, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(window), -1);
    EXPECT_EQ(form.log, (std::vector<std::string>{"menu 25,15"}));
}

struct ToldEvents {
    std::vector<std::pair<DWORD, LONG>> told;
    static ToldEvents*& current() {
        static ToldEvents* events = nullptr;
        return events;
    }
    ToldEvents() { current() = this; }
    ~ToldEvents() {
        UnhookWinEvent(hook);
        current() = nullptr;
    }
    HWINEVENTHOOK hook = SetWinEventHook(
        EVENT_OBJECT_REORDER, EVENT_OBJECT_VALUECHANGE, nullptr,
        [](HWINEVENTHOOK, DWORD event, HWND, LONG object, LONG child, DWORD, DWORD) {
            if (object == OBJID_CLIENT) current()->told.emplace_back(event, child);
        },
        GetCurrentProcessId(), 0, WINEVENT_OUTOFCONTEXT);
};

TEST_F(SkinnedWindow, TellsAssistiveProgramsWhatHasChanged) {
    shown();
    ToldEvents events;
    for (const auto change : {PartChange::Name, PartChange::Value, PartChange::State, PartChange::All})
        form.host()->partChanged(2, change);
    EXPECT_TRUE(waitFor([&] { return events.told.size() >= 4; }));
    const std::vector<std::pair<DWORD, LONG>> expected{{EVENT_OBJECT_NAMECHANGE, 3},
                                                       {EVENT_OBJECT_VALUECHANGE, 3},
                                                       {EVENT_OBJECT_STATECHANGE, 3},
                                                       {EVENT_OBJECT_REORDER, CHILDID_SELF}};
    EXPECT_EQ(events.told, expected);
}

TEST_F(SkinnedWindow, TasksOfOtherThreadsRunHereInTheirOrderWhateverOneOfThemDoes) {
    std::vector<int> order;
    const auto here = std::this_thread::get_id();
    std::thread other([&] {
        for (int i = 0; i < 100; ++i) {
            system->post([this, &order, i, here] {
                EXPECT_EQ(std::this_thread::get_id(), here);
                order.push_back(i);
                if (i % 10 == 3) throw i;
                if (i % 10 == 7) {
                    EXPECT_TRUE(waitFor([&] { return order.back() > i; })) << "as a box does";
                }
            });
        }
    });
    EXPECT_TRUE(waitFor([&] { return order.size() == 100; }));
    other.join();
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST_F(SkinnedWindow, AHandlerMayDestroyTheFormItself) {
    struct Closing : SkinForm {
        explicit Closing(std::unique_ptr<Form>& self) : owner(self) {}
        void Form_MouseDown(int, int, Point) override { owner.reset(); }
        std::unique_ptr<Form>& owner;
    };
    std::unique_ptr<Form> own;
    own = std::make_unique<Closing>(own);
    own->realise(*system);
    HWND gone = WindowOf(*own);
    SendMessageW(gone, WM_LBUTTONDOWN, MK_LBUTTON, At(1, 1));
    EXPECT_FALSE(own);
    EXPECT_FALSE(IsWindow(gone));
}

}  // namespace
}  // namespace quenlox

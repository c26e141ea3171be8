#include "platform/win32/windows/window_system.h"

#include <objbase.h>

#include <thread>
#include <utility>

#include "forms/form.h"
#include "platform/win32/platform.h"
#include "platform/win32/windows/dialog_window.h"
#include "platform/win32/windows/skinned_window.h"

namespace quenlox::win32 {
namespace {

constexpr UINT kTasksMessage = WM_APP + 1;
constexpr wchar_t kHiddenClass[] = L"Quenlox.Hidden";

BOOL CALLBACK CollectWorkArea(HMONITOR monitor, HDC, LPRECT, LPARAM areas) {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    if (GetMonitorInfoW(monitor, &info)) {
        reinterpret_cast<std::vector<Rect>*>(areas)->push_back(FromRect(info.rcWork));
    }
    return TRUE;
}

}  // namespace

std::vector<Rect> WorkAreas() {
    std::vector<Rect> areas;
    EnumDisplayMonitors(nullptr, nullptr, CollectWorkArea, reinterpret_cast<LPARAM>(&areas));
    return areas;
}

WindowSystemWin32::WindowSystemWin32() {
    // The manifest says the same; this serves programs without one, such as tests.
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    (void)CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&controls);

    WNDCLASSEXW hidden{};
    hidden.cbSize = sizeof hidden;
    hidden.lpfnWndProc = HiddenProcedure;
    hidden.hInstance = GetModuleHandleW(nullptr);
    hidden.lpszClassName = kHiddenClass;
    RegisterClassExW(&hidden);
    hidden_.reset(CreateWindowExW(WS_EX_TOOLWINDOW, kHiddenClass, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                  hidden.hInstance, this));
    FormWindow::RegisterClasses();
}

WindowSystemWin32::~WindowSystemWin32() {
    hidden_.reset();
    CoUninitialize();
}

std::shared_ptr<FormHost> WindowSystemWin32::realise(Form& form) {
    std::shared_ptr<FormWindow> window;
    if (form.kind() == Form::Kind::Skinned) {
        window = std::make_shared<SkinnedWindow>(*this, form);
    } else {
        window = std::make_shared<DialogWindow>(*this, form);
    }
    window->create();
    return window;
}

TwipsPerPixel WindowSystemWin32::twipsPerPixel() const { return TwipsFor(GetDpiForSystem()); }

Rect WindowSystemWin32::workArea(const Rect& place) const {
    const RECT rect = ToRect(place);
    MONITORINFO info{};
    info.cbSize = sizeof info;
    GetMonitorInfoW(MonitorFromRect(&rect, MONITOR_DEFAULTTONEAREST), &info);
    return FromRect(info.rcWork);
}

void WindowSystemWin32::dispatch(MSG& message) {
    if (message.hwnd) {
        const auto form = FormWindow::FromHandle(GetAncestor(message.hwnd, GA_ROOT));
        if (form && form->preview(message)) return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

bool WindowSystemWin32::mouseHeld() const {
    return GetAsyncKeyState(VK_LBUTTON) < 0 || GetAsyncKeyState(VK_RBUTTON) < 0;
}

void WindowSystemWin32::pumpMessages() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));  // for run(), which it is meant for
            return;
        }
        dispatch(message);
    }
}

bool WindowSystemWin32::runAside(std::function<void()> work, const std::function<bool()>& wanted) {
    constexpr DWORD kQuick = 10, kLook = 20;  // ms: what is done so soon needs no messages; how often wanted() is asked
    const std::shared_ptr<void> done(CreateEventW(nullptr, TRUE, FALSE, nullptr), CloseHandle);
    ++*aside_;
    std::thread([work = std::move(work), done, aside = aside_] {
        try {
            work();
        } catch (...) {
            // Nobody is here to take it; what failed stays undone.
        }
        SetEvent(done.get());
        --*aside;
    }).detach();
    HANDLE event = done.get();
    if (WaitForSingleObject(event, kQuick) != WAIT_OBJECT_0) {
        while (MsgWaitForMultipleObjectsEx(1, &event, kLook, QS_ALLINPUT, MWMO_INPUTAVAILABLE) != WAIT_OBJECT_0) {
            pumpMessages();
            if (!wanted()) return false;
        }
    }
    pumpMessages();
    return wanted();
}

int WindowSystemWin32::run() {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) dispatch(message);
    return static_cast<int>(message.wParam);
}

void WindowSystemWin32::quit() { PostQuitMessage(0); }

// Not ExitProcess: what the libraries take down when they are unloaded would wait for threads that are gone.
void WindowSystemWin32::exitProcess() { TerminateProcess(GetCurrentProcess(), 0); }

void WindowSystemWin32::endSession() {
    if (const auto told = std::exchange(onSessionEnd, {})) told();
}

void WindowSystemWin32::post(std::function<void()> task) {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    // Posted to a window and not to the thread, so that it is handled while the system runs a loop of its own, as
    // it does for an open menu.
    if (tasks_.size() == 1) PostMessageW(hidden_.get(), kTasksMessage, 0, 0);
}

// One task for each message: one that shows a box, or throws, keeps none of the others back.
void WindowSystemWin32::runTask() {
    std::function<void()> task;
    {
        const std::lock_guard lock(mutex_);
        if (tasks_.empty()) return;
        task = std::move(tasks_.front());
        tasks_.pop_front();
        if (!tasks_.empty()) PostMessageW(hidden_.get(), kTasksMessage, 0, 0);
    }
    task();
}

LRESULT CALLBACK WindowSystemWin32::HiddenProcedure(HWND window, UINT message, WPARAM w, LPARAM l) noexcept {
    if (message == WM_NCCREATE) {
        const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(l);
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
    }
    auto* system = reinterpret_cast<WindowSystemWin32*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    try {
        if (system && message == kTasksMessage) system->runTask();
        if (system && message == WM_DEVICECHANGE && system->onDevicesChanged) system->onDevicesChanged();
    } catch (...) {
    }
    return DefWindowProcW(window, message, w, l);
}

}  // namespace quenlox::win32

namespace quenlox {

std::unique_ptr<WindowSystem> MakeWindowSystem() { return std::make_unique<win32::WindowSystemWin32>(); }

}  // namespace quenlox

#include "platform/shell.h"

#include "forms/form.h"
#include "platform/win32/platform.h"
#include "platform/win32/win32.h"

namespace quenlox::win32 {
namespace {

constexpr wchar_t kListenerClass[] = L"Quenlox.Shell";
constexpr wchar_t kInstanceName[] = L"Local\\Quenlox.Instance";
constexpr UINT kIconId = 1;
constexpr int kTries = 10;
constexpr UINT kTryAgain = 1000;  // milliseconds

// The text goes into a field of fixed length; a pair of surrogates is not cut in two.
void CopyTip(wchar_t (&field)[128], const std::string& tip) {
    std::wstring text = Wide(tip);
    std::size_t length = std::min<std::size_t>(text.size(), 127);
    if (length > 0 && length < text.size() && IS_HIGH_SURROGATE(text[length - 1])) --length;
    text.copy(field, length);
    field[length] = L'\0';
}

class ShellWin32 : public Shell {
  public:
    ShellWin32() : taskbarCreated_(RegisterWindowMessageW(L"TaskbarCreated")) {
        WNDCLASSEXW look{};
        look.cbSize = sizeof look;
        look.lpfnWndProc = Procedure;
        look.hInstance = GetModuleHandleW(nullptr);
        look.lpszClassName = kListenerClass;
        RegisterClassExW(&look);
        // A window of the top level, although never shown: only those hear what is told to all.
        listener_.reset(CreateWindowExW(WS_EX_TOOLWINDOW, kListenerClass, L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                        look.hInstance, this));
        ChangeWindowMessageFilterEx(listener_.get(), taskbarCreated_, MSGFLT_ALLOW, nullptr);
    }
    ~ShellWin32() override { ShellWin32::deleteTrayIcon({}); }
    ShellWin32(const ShellWin32&) = delete;
    ShellWin32& operator=(const ShellWin32&) = delete;

    bool addTrayIcon(const TrayIconData& icon) override {
        if (!fill(icon)) return false;
        // Without a shell the window stays, and no icon may come up beside it when the shell does.
        return shown_ = Shell_NotifyIconW(NIM_ADD, &data_) != FALSE;
    }
    bool changeTrayIcon(const TrayIconData& icon) override {
        if (!shown_ || !fill(icon)) return false;
        if (Shell_NotifyIconW(NIM_MODIFY, &data_)) return true;
        putBackIcon(kTries);
        return false;
    }
    bool deleteTrayIcon(const TrayIconData&) override {
        if (!shown_) return false;
        shown_ = false;
        return Shell_NotifyIconW(NIM_DELETE, &data_) != FALSE;
    }

    bool WinHelp(Form& owner, const std::string& helpFile, int command, int data) override {
        HWND window = owner.host() ? reinterpret_cast<HWND>(owner.host()->nativeHandle()) : nullptr;
        return WinHelpW(window, Wide(helpFile).c_str(), static_cast<UINT>(command), static_cast<ULONG_PTR>(data)) !=
               FALSE;
    }
    bool openInBrowser(const std::string& target) override {
        const auto result = reinterpret_cast<INT_PTR>(
            ShellExecuteW(nullptr, L"open", Wide(target).c_str(), nullptr, nullptr, SW_SHOWNORMAL));
        return result > 32;
    }
    Point cursor() override {
        POINT at{};
        GetCursorPos(&at);
        return {static_cast<int>(at.x), static_cast<int>(at.y)};
    }
    bool anotherInstanceRuns() override {
        if (instance_) return false;
        instance_.reset(CreateMutexW(nullptr, FALSE, kInstanceName));
        if (instance_ && GetLastError() != ERROR_ALREADY_EXISTS) return false;
        instance_.reset();
        return true;
    }

  private:
    bool fill(const TrayIconData& icon) {
        if (!icon.owner || !icon.owner->host()) return false;
        data_ = {};
        data_.cbSize = sizeof data_;
        data_.hWnd = reinterpret_cast<HWND>(icon.owner->host()->nativeHandle());
        data_.uID = kIconId;
        data_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
        data_.uCallbackMessage = WM_MOUSEMOVE;
        data_.hIcon = smallIcon();
        CopyTip(data_.szTip, icon.tip);
        return true;
    }
    static HICON smallIcon() {
        const int side = GetSystemMetrics(SM_CXSMICON);
        auto* icon = static_cast<HICON>(
            LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1), IMAGE_ICON, side, side, LR_SHARED));
        return icon ? icon : LoadIconW(nullptr, IDI_APPLICATION);
    }

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l) noexcept {
        if (message == WM_NCCREATE) {
            const auto* creation = reinterpret_cast<const CREATESTRUCTW*>(l);
            SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(creation->lpCreateParams));
        }
        auto* shell = reinterpret_cast<ShellWin32*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        try {
            // The taskbar has been started anew and knows no icons.
            if (shell && message == shell->taskbarCreated_) shell->putBackIcon(kTries);
            if (shell && message == WM_TIMER) shell->putBackIcon(static_cast<int>(w));
        } catch (...) {
        }
        return DefWindowProcW(window, message, w, l);
    }

    // A taskbar that is still busy with its start may take the icon and not say so, or refuse it for a while. The
    // number of the timer is that of the tries that are left.
    void putBackIcon(int tries) {
        KillTimer(listener_.get(), static_cast<UINT_PTR>(tries));
        if (!shown_ || Shell_NotifyIconW(NIM_ADD, &data_) || Shell_NotifyIconW(NIM_MODIFY, &data_)) return;
        if (tries > 1 && SetTimer(listener_.get(), static_cast<UINT_PTR>(tries - 1), kTryAgain, nullptr)) return;
        shown_ = false;
        if (onTrayIconLost) onTrayIconLost();
    }

    UINT taskbarCreated_;
    OwnedWindow listener_;
    NOTIFYICONDATAW data_{};
    bool shown_ = false;
    OwnedHandle instance_;
};

}  // namespace
}  // namespace quenlox::win32

namespace quenlox {

std::unique_ptr<Shell> MakeShell() { return std::make_unique<win32::ShellWin32>(); }

std::string CommandLineText() {
    const wchar_t* text = GetCommandLineW();
    // The name of the program: a quoted text, or everything up to the first blank.
    bool quoted = false;
    while (*text && (quoted || (*text != L' ' && *text != L'\t'))) {
        if (*text == L'"') quoted = !quoted;
        ++text;
    }
    while (*text == L' ' || *text == L'\t') ++text;
    return win32::Narrow(text);
}

}  // namespace quenlox

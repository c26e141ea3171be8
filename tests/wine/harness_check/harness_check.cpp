// A small program for checking the end-to-end harness itself: a window with a menu, a button that plays a 440 Hz tone
// of two seconds, a list view, and a label that counts clicks.
#include <windows.h>

#include <commctrl.h>
#include <commdlg.h>
#include <mmsystem.h>
#include <shellapi.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr int kButton = 101, kLabel = 102, kList = 103, kEdit = 104, kMenuTone = 201, kMenuNothing = 202,
              kMenuOpen = 203, kMenuPlayFile = 204;
constexpr int kRate = 44100;

class Tone {
  public:
    void play() {
        if (device_) return;
        WAVEFORMATEX format = {WAVE_FORMAT_PCM, 1, kRate, kRate * 2, 2, 16, 0};
        if (waveOutOpen(&device_, WAVE_MAPPER, &format, 0, 0, CALLBACK_NULL) != MMSYSERR_NOERROR) return;
        samples_.resize(kRate * 2);
        for (size_t i = 0; i < samples_.size(); ++i)
            samples_[i] =
                static_cast<short>(8000 * std::sin(2 * std::numbers::pi * 440 * static_cast<double>(i) / kRate));
        header_.lpData = reinterpret_cast<char*>(samples_.data());
        header_.dwBufferLength = static_cast<DWORD>(samples_.size() * 2);
        waveOutPrepareHeader(device_, &header_, sizeof header_);
        waveOutWrite(device_, &header_, sizeof header_);
    }

    // The device reads the samples until it is reset.
    void stop() {
        if (!device_) return;
        waveOutReset(device_);
        waveOutUnprepareHeader(device_, &header_, sizeof header_);
        waveOutClose(device_);
        device_ = nullptr;
    }

  private:
    HWAVEOUT device_ = nullptr;
    WAVEHDR header_ = {};
    std::vector<short> samples_;
};

HWND Child(HWND parent, const wchar_t* className, const wchar_t* text, DWORD style, int id, RECT place) {
    return CreateWindowExW(0, className, text, WS_CHILD | WS_VISIBLE | style, place.left, place.top,
                           place.right - place.left, place.bottom - place.top, parent,
                           reinterpret_cast<HMENU>(static_cast<intptr_t>(id)), nullptr, nullptr);
}

void FillList(HWND list) {
    const wchar_t* const titles[] = {L"Title", L"Artist"};
    const wchar_t* const rows[][2] = {{L"A song", L"Somebody"}, {L"ソナタ第五番", L"十人の表現"}};
    for (int c = 0; c < 2; ++c) {
        LVCOLUMNW column = {};
        column.mask = LVCF_TEXT | LVCF_WIDTH;
        column.cx = 120;
        column.pszText = const_cast<wchar_t*>(titles[c]);
        ListView_InsertColumn(list, c, &column);
    }
    for (int r = 0; r < 2; ++r) {
        LVITEMW item = {};
        item.mask = LVIF_TEXT;
        item.iItem = r;
        item.pszText = const_cast<wchar_t*>(rows[r][0]);
        ListView_InsertItem(list, &item);
        ListView_SetItemText(list, r, 1, const_cast<wchar_t*>(rows[r][1]));
    }
}

HMENU MakeMenu() {
    const HMENU bar = CreateMenu(), sub = CreatePopupMenu();
    AppendMenuW(sub, MF_STRING, kMenuTone, L"Play a &tone\tCtrl+T");
    AppendMenuW(sub, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(sub, MF_STRING | MF_CHECKED | MF_GRAYED, kMenuNothing, L"Nothing");
    AppendMenuW(sub, MF_STRING, kMenuOpen, L"Open...");
    AppendMenuW(sub, MF_STRING, kMenuPlayFile, L"Play the file");
    AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(sub), L"&Sound");
    return bar;
}

void ShowDropped(HWND window, HDROP drop) {
    std::wstring names;
    for (UINT i = 0, count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0); i < count; ++i) {
        wchar_t name[MAX_PATH] = {};
        DragQueryFileW(drop, i, name, MAX_PATH);
        names += (i ? L"|" : L"") + std::wstring(name);
    }
    DragFinish(drop);
    SetDlgItemTextW(window, kEdit, names.c_str());
}

void ChooseFile(HWND window) {
    wchar_t name[MAX_PATH] = {};
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = window;
    dialog.lpstrFile = name;
    dialog.nMaxFile = MAX_PATH;
    dialog.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST;
    if (GetOpenFileNameW(&dialog)) SetDlgItemTextW(window, kEdit, name);
}

void PlayNamedFile(HWND window) {
    wchar_t name[MAX_PATH] = {};
    GetDlgItemTextW(window, kEdit, name, MAX_PATH);
    mciSendStringW(L"close media", nullptr, 0, nullptr);
    const std::wstring open = L"open \"" + std::wstring(name) + L"\" alias media";
    const MCIERROR error = mciSendStringW(open.c_str(), nullptr, 0, nullptr);
    const MCIERROR playError = error ? error : mciSendStringW(L"play media", nullptr, 0, nullptr);
    SetDlgItemTextW(window, kLabel, (L"mci " + std::to_wstring(playError)).c_str());
}

LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM w, LPARAM l) {
    static Tone tone;
    static int clicks = 0;
    switch (message) {
        case WM_CREATE:
            Child(window, L"BUTTON", L"Play", BS_PUSHBUTTON, kButton, {10, 10, 110, 40});
            Child(window, L"STATIC", L"0 clicks", 0, kLabel, {120, 16, 300, 40});
            Child(window, L"EDIT", L"", WS_BORDER, kEdit, {10, 50, 300, 74});
            FillList(Child(window, WC_LISTVIEWW, L"", LVS_REPORT | LVS_SHOWSELALWAYS, kList, {10, 84, 300, 200}));
            return 0;
        case WM_COMMAND:
            if (LOWORD(w) == kButton || LOWORD(w) == kMenuTone) {
                SetDlgItemTextW(window, kLabel, (std::to_wstring(++clicks) + L" clicks").c_str());
                tone.play();
            } else if (LOWORD(w) == kMenuOpen) {
                ChooseFile(window);
            } else if (LOWORD(w) == kMenuPlayFile) {
                PlayNamedFile(window);
            }
            return 0;
        case WM_DROPFILES:
            ShowDropped(window, reinterpret_cast<HDROP>(w));
            return 0;
        case WM_RBUTTONUP: {
            POINT point;
            GetCursorPos(&point);
            TrackPopupMenu(GetSubMenu(GetMenu(window), 0), 0, point.x, point.y, 0, window, nullptr);
            return 0;
        }
        case WM_DESTROY:
            tone.stop();
            PostQuitMessage(clicks);
            return 0;
        default:
            return DefWindowProcW(window, message, w, l);
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int) {
    InitCommonControls();
    WNDCLASSW definition = {};
    definition.lpfnWndProc = WindowProcedure;
    definition.hInstance = instance;
    definition.lpszClassName = L"QuenloxHarnessCheck";
    definition.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    definition.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    RegisterClassW(&definition);
    CreateWindowExW(WS_EX_ACCEPTFILES, definition.lpszClassName, L"検査 harness check",
                    WS_OVERLAPPEDWINDOW | WS_VISIBLE, 50, 60, 340, 290, nullptr, MakeMenu(), instance, nullptr);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

#include <vector>

#include "platform/win32/dark_paint.h"
#include "platform/win32/services/dialogs.h"

namespace quenlox::win32 {
namespace {

constexpr WORD kPromptId = 100;
constexpr WORD kTextId = 101;
constexpr WORD kButtonClass = 0x80, kEditClass = 0x81, kStaticClass = 0x82;

// A dialog template in memory, as the system reads it: words, texts with their NUL, items at every fourth byte.
class Template {
  public:
    Template(const std::wstring& title, short width, short height, WORD items) {
        const DWORD style = WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_CENTER | DS_SETFONT | DS_FIXEDSYS;
        add(DLGTEMPLATE{style, 0, items, 0, 0, width, height});
        word(0);  // no menu
        word(0);  // the usual class
        text(title);
        word(9);  // points
        text(L"MS Shell Dlg");
    }
    void item(WORD windowClass, WORD id, const std::wstring& caption, DWORD style, short x, short y, short width,
              short height) {
        while (data_.size() % 2 != 0) data_.push_back(0);
        add(DLGITEMTEMPLATE{style | WS_CHILD | WS_VISIBLE, 0, x, y, width, height, id});
        word(0xFFFF);
        word(windowClass);
        text(caption);
        word(0);
    }
    const DLGTEMPLATE* get() const { return reinterpret_cast<const DLGTEMPLATE*>(data_.data()); }

  private:
    template <typename Record>
    void add(const Record& record) {
        const auto* words = reinterpret_cast<const WORD*>(&record);
        data_.insert(data_.end(), words, words + sizeof record / sizeof(WORD));
    }
    void word(WORD value) { data_.push_back(value); }
    void text(const std::wstring& value) {
        data_.insert(data_.end(), value.begin(), value.end());
        data_.push_back(0);
    }

    std::vector<WORD> data_;
};

// What the box is asked about its look, while there is a palette for it.
INT_PTR Painted(HWND dialog, UINT message, WPARAM w, LPARAM l, const Palette& palette) {
    if (message != WM_NOTIFY) {
        const Color back = message == WM_CTLCOLOREDIT ? palette.field : palette.window;
        SetTextColor(reinterpret_cast<HDC>(w), ToColorRef(palette.text));
        SetBkColor(reinterpret_cast<HDC>(w), ToColorRef(back));
        return reinterpret_cast<INT_PTR>(BrushOf(back));
    }
    const auto& draw = *reinterpret_cast<const NMCUSTOMDRAW*>(l);
    if (draw.hdr.code != static_cast<UINT>(NM_CUSTOMDRAW)) return FALSE;
    PaintPushButton(draw, draw.hdr.idFrom == IDOK, palette);
    SetWindowLongPtrW(dialog, DWLP_MSGRESULT, CDRF_SKIPDEFAULT);
    return TRUE;
}

INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM w, LPARAM l) noexcept {
    if (message == WM_NOTIFY || (message >= WM_CTLCOLOREDIT && message <= WM_CTLCOLORSTATIC)) {
        const Palette* palette = PaletteOfUser();
        return palette ? Painted(dialog, message, w, l, *palette) : FALSE;
    }
    if (message == WM_INITDIALOG) {
        ShowTitleBar(dialog, PaletteOfUser() != nullptr);
        SetWindowLongPtrW(dialog, DWLP_USER, static_cast<LONG_PTR>(l));
        SetDlgItemTextW(dialog, kTextId, reinterpret_cast<const std::wstring*>(l)->c_str());
        SendDlgItemMessageW(dialog, kTextId, EM_SETSEL, 0, -1);
        SetFocus(GetDlgItem(dialog, kTextId));
        return FALSE;
    }
    if (message != WM_COMMAND) return FALSE;
    if (LOWORD(w) == IDOK) {
        try {
            auto& text = *reinterpret_cast<std::wstring*>(GetWindowLongPtrW(dialog, DWLP_USER));
            HWND box = GetDlgItem(dialog, kTextId);
            text.resize(static_cast<std::size_t>(GetWindowTextLengthW(box)) + 1);
            text.resize(static_cast<std::size_t>(GetWindowTextW(box, text.data(), static_cast<int>(text.size()))));
            EndDialog(dialog, IDOK);
        } catch (...) {
            EndDialog(dialog, IDCANCEL);
        }
    } else if (LOWORD(w) == IDCANCEL) {
        EndDialog(dialog, IDCANCEL);
    }
    return TRUE;
}

}  // namespace

std::optional<std::wstring> InputBox(HWND owner, const std::wstring& title, const std::wstring& prompt,
                                     const std::wstring& text) {
    Template dialog(title, 220, 72, 4);
    dialog.item(kStaticClass, kPromptId, prompt, SS_LEFT | SS_NOPREFIX, 7, 7, 206, 20);
    dialog.item(kEditClass, kTextId, L"", WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL, 7, 29, 206, 14);
    dialog.item(kButtonClass, IDOK, L"OK", WS_TABSTOP | BS_DEFPUSHBUTTON, 109, 51, 50, 14);
    dialog.item(kButtonClass, IDCANCEL, L"キャンセル", WS_TABSTOP | BS_PUSHBUTTON, 163, 51, 50, 14);
    std::wstring answer = text;
    const INT_PTR end = DialogBoxIndirectParamW(GetModuleHandleW(nullptr), dialog.get(), owner, Procedure,
                                                reinterpret_cast<LPARAM>(&answer));
    if (end != IDOK) return std::nullopt;
    return answer;
}

}  // namespace quenlox::win32

#include "platform/win32/dark_paint.h"

#include <algorithm>
#include <string>

namespace quenlox::win32 {
namespace {

int Scaled(HWND window, int pixelsAt96) { return MulDiv(pixelsAt96, static_cast<int>(GetDpiForWindow(window)), 96); }

std::wstring TextOf(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

HFONT FontOf(HWND window) { return reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)); }

// Access keys are underlined as soon as somebody uses the keyboard.
UINT PrefixOf(HWND window) {
    return SendMessageW(window, WM_QUERYUISTATE, 0, 0) & UISF_HIDEACCEL ? UINT{DT_HIDEPREFIX} : 0u;
}

void Fill(HDC dc, const RECT& where, Color color) { FillRect(dc, &where, BrushOf(color)); }
void FrameOf(HDC dc, const RECT& where, Color color) { FrameRect(dc, &where, BrushOf(color)); }

void Write(HDC dc, HFONT font, const std::wstring& text, RECT where, UINT format, Color color) {
    const Selected selected(dc, font);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, ToColorRef(color));
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &where, format);
}

// A line of that width around or across something.
class Pen {
  public:
    Pen(HDC dc, Color color, int width)
        : pen_(CreatePen(PS_SOLID, width, ToColorRef(color))), selected_(dc, pen_.get()) {}

  private:
    Owned<HPEN, detail::CloseObject<HPEN>> pen_;
    Selected selected_;
};

void Round(HDC dc, const RECT& where, Color face, Color border, int width, int radius) {
    const Pen pen(dc, border, width);
    const Selected brush(dc, BrushOf(face));
    const int inset = width / 2;
    RoundRect(dc, where.left + inset, where.top + inset, where.right - inset, where.bottom - inset, radius, radius);
}

Color FaceOf(UINT state, const Palette& palette) {
    if (state & CDIS_SELECTED) return palette.pressedFace;
    return state & CDIS_HOT ? palette.hotFace : palette.face;
}

void DrawFocus(HDC dc, const RECT& where, const Palette& palette) {
    SetTextColor(dc, ToColorRef(palette.text));
    SetBkColor(dc, ToColorRef(palette.window));
    DrawFocusRect(dc, &where);
}

bool ShowsFocus(HWND window, UINT state) {
    return (state & CDIS_FOCUS) && !(SendMessageW(window, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS);
}

// An arrow down, in the middle of the room.
void Chevron(HDC dc, const RECT& room, int size, Color color, int width) {
    const Pen pen(dc, color, width);
    const int x = (room.left + room.right) / 2, y = (room.top + room.bottom) / 2;
    const POINT points[] = {{x - size, y - size / 2}, {x, y + size - size / 2}, {x + size + 1, y - size / 2 - 1}};
    Polyline(dc, points, 3);
}

}  // namespace

void PaintPushButton(const NMCUSTOMDRAW& draw, bool isDefault, const Palette& palette) {
    HWND window = draw.hdr.hwndFrom;
    const bool focused = ShowsFocus(window, draw.uItemState), enabled = IsWindowEnabled(window);
    Fill(draw.hdc, draw.rc, palette.window);
    const bool marked = enabled && (focused || isDefault);
    Round(draw.hdc, draw.rc, enabled ? FaceOf(draw.uItemState, palette) : palette.window,
          marked ? palette.accent : palette.border, Scaled(window, focused ? 2 : 1), Scaled(window, 5));
    Write(draw.hdc, FontOf(window), TextOf(window), draw.rc, DT_CENTER | DT_VCENTER | DT_SINGLELINE | PrefixOf(window),
          enabled ? palette.text : palette.dim);
}

void PaintMarkButton(const NMCUSTOMDRAW& draw, Mark mark, const Palette& palette) {
    HWND window = draw.hdr.hwndFrom;
    const bool enabled = IsWindowEnabled(window), on = SendMessageW(window, BM_GETCHECK, 0, 0) == BST_CHECKED;
    Fill(draw.hdc, draw.rc, palette.window);
    const int side = Scaled(window, 13), line = std::max(1, Scaled(window, 1));
    RECT box = draw.rc;
    box.top += (draw.rc.bottom - draw.rc.top - side) / 2;
    box.right = box.left + side;
    box.bottom = box.top + side;
    const Color edge = !enabled ? palette.dim : on ? palette.accent : palette.text;
    const Color face = on && enabled ? palette.accent : draw.uItemState & CDIS_HOT ? palette.hotFace : palette.field;
    const Color sign = enabled ? palette.onAccent : palette.dim;
    if (mark == Mark::Dot) {
        Round(draw.hdc, box, face, edge, line, side);
        RECT dot = box;
        InflateRect(&dot, -(side * 5 / 16), -(side * 5 / 16));
        if (on) Round(draw.hdc, dot, sign, sign, 1, side);
    } else {
        Round(draw.hdc, box, face, edge, line, Scaled(window, 3));
        const auto at = [&](int x, int y) { return POINT{box.left + side * x / 13, box.top + side * y / 13}; };
        const POINT tick[] = {at(3, 6), at(5, 9), at(10, 3)};
        if (on) {
            const Pen pen(draw.hdc, sign, std::max(2, Scaled(window, 2)));
            Polyline(draw.hdc, tick, 3);
        }
    }
    RECT room = draw.rc;
    room.left = box.right + Scaled(window, 4);
    const std::wstring text = TextOf(window);
    const UINT format = DT_VCENTER | DT_SINGLELINE | PrefixOf(window);
    Write(draw.hdc, FontOf(window), text, room, format, enabled ? palette.text : palette.dim);
    if (!ShowsFocus(window, draw.uItemState)) return;
    RECT around = room;
    {
        const Selected font(draw.hdc, FontOf(window));
        DrawTextW(draw.hdc, text.c_str(), static_cast<int>(text.size()), &around, format | DT_CALCRECT);
    }
    const int air = (room.bottom - room.top - (around.bottom - around.top)) / 2;
    OffsetRect(&around, 0, air);
    InflateRect(&around, Scaled(window, 1), 0);
    IntersectRect(&around, &around, &draw.rc);
    DrawFocus(draw.hdc, around, palette);
}

void PaintToolButton(const NMTBCUSTOMDRAW& draw, const Palette& palette) {
    const NMCUSTOMDRAW& common = draw.nmcd;
    HWND window = common.hdr.hwndFrom;
    const auto id = static_cast<WPARAM>(common.dwItemSpec);
    const auto state = static_cast<UINT>(SendMessageW(window, TB_GETSTATE, id, 0));
    const bool enabled = state & TBSTATE_ENABLED, hot = common.uItemState & CDIS_HOT;
    const bool down = state & (TBSTATE_PRESSED | TBSTATE_CHECKED);
    Fill(common.hdc, common.rc, palette.window);
    if (enabled && (hot || down))
        Round(common.hdc, common.rc, down ? palette.restingChosen : palette.hotFace, palette.border, 1,
              Scaled(window, 5));
    std::wstring text(
        static_cast<std::size_t>(std::max<LRESULT>(0, SendMessageW(window, TB_GETBUTTONTEXTW, id, 0))) + 1, L'\0');
    text.resize(static_cast<std::size_t>(
        std::max<LRESULT>(0, SendMessageW(window, TB_GETBUTTONTEXTW, id, reinterpret_cast<LPARAM>(text.data())))));
    Write(common.hdc, FontOf(window), text, common.rc, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX,
          enabled ? palette.text : palette.dim);
}

void PaintHeaderItem(const NMCUSTOMDRAW& draw, const Palette& palette) {
    HWND window = draw.hdr.hwndFrom;
    wchar_t text[260] = {};
    HDITEMW item{};
    item.mask = HDI_TEXT | HDI_FORMAT;
    item.pszText = text;
    item.cchTextMax = 260;
    SendMessageW(window, HDM_GETITEMW, static_cast<WPARAM>(draw.dwItemSpec), reinterpret_cast<LPARAM>(&item));
    Fill(draw.hdc, draw.rc, FaceOf(draw.uItemState, palette));
    const RECT side{draw.rc.right - 1, draw.rc.top, draw.rc.right, draw.rc.bottom};
    Fill(draw.hdc, side, palette.border);
    RECT room = draw.rc;
    InflateRect(&room, -Scaled(window, 6), 0);
    if (item.fmt & (HDF_SORTUP | HDF_SORTDOWN)) {
        const int size = Scaled(window, 4), x = room.right - size, y = (room.top + room.bottom - size) / 2;
        const int base = item.fmt & HDF_SORTUP ? y + size : y, tip = item.fmt & HDF_SORTUP ? y : y + size;
        const POINT points[] = {{x - size, base}, {x, tip}, {x + size, base}};
        const Pen pen(draw.hdc, palette.dim, 1);
        const Selected brush(draw.hdc, BrushOf(palette.dim));
        Polygon(draw.hdc, points, 3);
        room.right -= 3 * size;
    }
    const UINT align = (item.fmt & HDF_JUSTIFYMASK) == HDF_RIGHT ? UINT{DT_RIGHT} : UINT{DT_LEFT};
    Write(draw.hdc, FontOf(window), text, room, align | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS,
          palette.text);
}

// Only the line and the caption: what the frame surrounds lies in the same place.
void PaintGroupBox(HWND window, HDC dc, const Palette& palette) {
    RECT all{};
    GetClientRect(window, &all);
    const std::wstring text = TextOf(window);
    RECT caption{0, 0, all.right, 0};
    {
        const Selected font(dc, FontOf(window));
        DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &caption, DT_CALCRECT | DT_SINGLELINE);
    }
    const int indent = Scaled(window, 8), gap = Scaled(window, 2);
    OffsetRect(&caption, indent, 0);
    RECT line = all;
    line.top += caption.bottom / 2;
    SaveDC(dc);
    if (!text.empty()) ExcludeClipRect(dc, caption.left - gap, caption.top, caption.right + gap, caption.bottom);
    FrameOf(dc, line, palette.border);
    RestoreDC(dc, -1);
    const RECT behind{caption.left - gap, caption.top, caption.right + gap, caption.bottom};
    if (!text.empty()) Fill(dc, behind, palette.window);
    Write(dc, FontOf(window), text, caption, DT_SINGLELINE | PrefixOf(window),
          IsWindowEnabled(window) ? palette.text : palette.dim);
}

void PaintComboBox(HWND window, HDC dc, const Palette& palette) {
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    GetComboBoxInfo(window, &info);
    const bool editable = info.hwndItem && info.hwndItem != window, enabled = IsWindowEnabled(window);
    const bool focused = GetFocus() == window || (editable && GetFocus() == info.hwndItem);
    RECT all{};
    GetClientRect(window, &all);
    if (editable) {
        RECT edit{};
        GetWindowRect(info.hwndItem, &edit);
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&edit), 2);
        ExcludeClipRect(dc, edit.left, edit.top, edit.right, edit.bottom);
    }
    const bool open = SendMessageW(window, CB_GETDROPPEDSTATE, 0, 0) != 0;
    Fill(dc, all, !enabled ? palette.window : open ? palette.pressedFace : editable ? palette.field : palette.face);
    FrameOf(dc, all, focused ? palette.accent : palette.border);
    RECT arrow = all;
    arrow.left = std::max(all.left, all.right - Scaled(window, 19));
    Chevron(dc, arrow, Scaled(window, 4), enabled ? palette.text : palette.dim, std::max(1, Scaled(window, 1)));
    if (editable) return;
    RECT room{all.left + Scaled(window, 5), all.top, arrow.left, all.bottom};
    Write(dc, FontOf(window), TextOf(window), room, DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS,
          enabled ? palette.text : palette.dim);
}

void PaintTabs(HWND window, HDC dc, const Palette& palette) {
    RECT all{};
    GetClientRect(window, &all);
    Fill(dc, all, palette.window);
    const auto chosen = static_cast<int>(SendMessageW(window, TCM_GETCURSEL, 0, 0));
    const auto count = static_cast<int>(SendMessageW(window, TCM_GETITEMCOUNT, 0, 0));
    for (int i = 0; i < count; ++i) {
        wchar_t text[128] = {};
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = text;
        item.cchTextMax = 128;
        SendMessageW(window, TCM_GETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
        RECT tab{};
        SendMessageW(window, TCM_GETITEMRECT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&tab));
        tab.bottom = all.bottom;
        if (i != chosen) {
            tab.top += Scaled(window, 2);
            tab.bottom -= 1;
        }
        Fill(dc, tab, i == chosen ? palette.face : palette.field);
        RECT frame = tab;
        ++frame.bottom;
        FrameOf(dc, frame, palette.border);
        if (i == chosen) {
            const RECT mark{tab.left, tab.top, tab.right, tab.top + Scaled(window, 2)};
            Fill(dc, mark, palette.accent);
        }
        Write(dc, FontOf(window), text, tab, DT_CENTER | DT_VCENTER | DT_SINGLELINE | PrefixOf(window), palette.text);
        if (i == chosen && GetFocus() == window && !(SendMessageW(window, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS)) {
            InflateRect(&tab, -Scaled(window, 3), -Scaled(window, 3));
            DrawFocus(dc, tab, palette);
        }
    }
}

void PaintProgress(HWND window, HDC dc, const Palette& palette) {
    constexpr int kRound = 2000;  // ms that the block of an endless bar takes
    RECT all{}, bar{};
    GetClientRect(window, &all);
    Fill(dc, all, palette.field);
    FrameOf(dc, all, palette.border);
    InflateRect(&all, -1, -1);
    bar = all;
    const int width = static_cast<int>(all.right - all.left);
    if (GetWindowLongPtrW(window, GWL_STYLE) & PBS_MARQUEE) {
        bar.left += MulDiv(width + width / 4, static_cast<int>(GetTickCount() % kRound), kRound) - width / 4;
        bar.right = bar.left + width / 4;
        IntersectRect(&bar, &bar, &all);
    } else {
        PBRANGE range{};
        SendMessageW(window, PBM_GETRANGE, FALSE, reinterpret_cast<LPARAM>(&range));
        const auto at = static_cast<int>(SendMessageW(window, PBM_GETPOS, 0, 0));
        bar.right = bar.left + MulDiv(width, at - range.iLow, std::max(1, range.iHigh - range.iLow));
    }
    Fill(dc, bar, palette.accent);
}

void PaintEdge(HWND window, const Palette& palette) {
    RECT all{};
    GetWindowRect(window, &all);
    OffsetRect(&all, -all.left, -all.top);
    HDC dc = GetWindowDC(window);
    FrameOf(dc, all, GetFocus() == window ? palette.accent : palette.border);
    for (int rest = GetSystemMetricsForDpi(SM_CXEDGE, GetDpiForWindow(window)) - 1; rest > 0; --rest) {
        InflateRect(&all, -1, -1);
        FrameOf(dc, all, palette.field);
    }
    ReleaseDC(window, dc);
}

}  // namespace quenlox::win32

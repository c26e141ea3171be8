#include "platform/win32/paint.h"

namespace quenlox::win32 {

void PaintSurface(HDC dc, const Surface& surface, const Rect& part, int scale) {
    const Rect r = Intersect(part, surface.rect());
    if (r.empty()) return;
    // The rows of the part are handed over as a picture of their own, so that its origin is the same whichever way
    // up the system counts.
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = surface.width();
    info.bmiHeader.biHeight = -r.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    const Surface::Pixel* rows = surface.pixels().data() + static_cast<std::size_t>(r.top) * surface.width();
    if (scale == 1) {
        SetDIBitsToDevice(dc, r.left, r.top, r.width, r.height, r.left, 0, 0, r.height, rows, &info, DIB_RGB_COLORS);
        return;
    }
    SetStretchBltMode(dc, COLORONCOLOR);
    StretchDIBits(dc, r.left * scale, r.top * scale, r.width * scale, r.height * scale, r.left, 0, r.width, r.height,
                  rows, &info, DIB_RGB_COLORS, SRCCOPY);
}

void PaintWindow(HWND window, const Surface* surface, int scale, Color beyond) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    if (!dc) return;
    const Rect dirty = FromRect(paint.rcPaint);
    Rect covered;
    if (surface) covered = {0, 0, surface->width() * scale, surface->height() * scale};
    if (Intersect(dirty, covered) != dirty) {
        SaveDC(dc);
        ExcludeClipRect(dc, 0, 0, covered.width, covered.height);
        const OwnedBrush brush(CreateSolidBrush(ToColorRef(beyond)));
        FillRect(dc, &paint.rcPaint, brush.get());
        RestoreDC(dc, -1);
    }
    if (surface) {
        const int left = dirty.left / scale, top = dirty.top / scale;
        const int right = (dirty.right() + scale - 1) / scale, bottom = (dirty.bottom() + scale - 1) / scale;
        PaintSurface(dc, *surface, {left, top, right - left, bottom - top}, scale);
    }
    EndPaint(window, &paint);
}

}  // namespace quenlox::win32

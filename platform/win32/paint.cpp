#include "platform/win32/paint.h"

namespace quenlox::win32 {

void PaintSurface(HDC dc, const Surface& surface, const Rect& part) {
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
    SetDIBitsToDevice(dc, r.left, r.top, r.width, r.height, r.left, 0, 0, r.height, rows, &info, DIB_RGB_COLORS);
}

void PaintWindow(HWND window, const Surface* surface, Color beyond) {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    if (!dc) return;
    const Rect dirty = FromRect(paint.rcPaint);
    Rect covered;
    if (surface) covered = surface->rect();
    if (Intersect(dirty, covered) != dirty) {
        SaveDC(dc);
        ExcludeClipRect(dc, 0, 0, covered.width, covered.height);
        const OwnedBrush brush(CreateSolidBrush(ToColorRef(beyond)));
        FillRect(dc, &paint.rcPaint, brush.get());
        RestoreDC(dc, -1);
    }
    if (surface) PaintSurface(dc, *surface, dirty);
    EndPaint(window, &paint);
}

}  // namespace quenlox::win32

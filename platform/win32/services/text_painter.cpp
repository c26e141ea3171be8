// Text through the system's own drawing, on a bitmap that takes the pixels of the surface and gives them back.
#include "platform/text_painter.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <tuple>

#include "platform/win32/platform.h"
#include "platform/win32/win32.h"

namespace quenlox::win32 {
namespace {

class TextPainterWin32 : public TextPainter {
  public:
    TextPainterWin32() : dc_(CreateCompatibleDC(nullptr)), stock_(GetCurrentObject(dc_.get(), OBJ_BITMAP)) {}
    ~TextPainterWin32() override {
        SelectObject(dc_.get(), stock_);
        SelectObject(dc_.get(), GetStockObject(SYSTEM_FONT));
    }
    TextPainterWin32(const TextPainterWin32&) = delete;
    TextPainterWin32& operator=(const TextPainterWin32&) = delete;

    void draw(Surface& on, const Rect& where, std::string_view utf8, const TextStyle& style) override {
        const Rect shown = Intersect(where, on.rect());
        if (shown.empty() || utf8.empty() || !fitCanvas(shown.width, shown.height)) return;
        for (int y = 0; y < shown.height; ++y) {
            const auto row = on.pixels().subspan(static_cast<std::size_t>(shown.top + y) * on.width() + shown.left);
            std::memcpy(canvasRow(y), row.data(), static_cast<std::size_t>(shown.width) * sizeof(Surface::Pixel));
        }
        SelectObject(dc_.get(), font(style));
        SetBkMode(dc_.get(), TRANSPARENT);
        SetTextColor(dc_.get(), ToColorRef(style.color));
        const std::wstring text = Wide(utf8);
        RECT rect = ToRect({where.left - shown.left, where.top - shown.top, where.width, where.height});
        // Beyond the part that is shown the canvas may be larger than it.
        IntersectClipRect(dc_.get(), 0, 0, shown.width, shown.height);
        DrawTextW(dc_.get(), text.c_str(), static_cast<int>(text.size()), &rect, flags(style));
        SelectClipRgn(dc_.get(), nullptr);
        GdiFlush();
        for (int y = 0; y < shown.height; ++y) {
            const auto row = on.pixels().subspan(static_cast<std::size_t>(shown.top + y) * on.width() + shown.left);
            const Surface::Pixel* from = canvasRow(y);
            // The system leaves its own mark in the highest byte.
            std::transform(from, from + shown.width, row.begin(),
                           [](Surface::Pixel pixel) { return pixel & 0x00FFFFFF; });
        }
    }

    Size measure(std::string_view utf8, const TextStyle& style, int width) override {
        SelectObject(dc_.get(), font(style));
        const std::wstring text = Wide(utf8);
        RECT rect{0, 0, style.wordBreak && width > 0 ? width : 0x7FFF, 0};
        DrawTextW(
            dc_.get(), text.c_str(), static_cast<int>(text.size()), &rect,
            (flags(style) & ~static_cast<UINT>(DT_VCENTER | DT_CENTER | DT_RIGHT | DT_END_ELLIPSIS)) | DT_CALCRECT);
        return {static_cast<int>(rect.right), static_cast<int>(rect.bottom)};
    }

  private:
    static UINT flags(const TextStyle& style) {
        UINT flags = DT_NOPREFIX | (style.wordBreak ? DT_WORDBREAK : DT_SINGLELINE);
        if (style.centred) flags |= DT_CENTER;
        if (style.rightAligned) flags |= DT_RIGHT;
        if (style.vertically && !style.wordBreak) flags |= DT_VCENTER;
        if (style.ellipsis) flags |= DT_END_ELLIPSIS;
        return flags;
    }

    HFONT font(const TextStyle& style) {
        const int height = RoundHalfToEven(style.font.points * style.dotsPerInch / 72);
        OwnedFont& made = fonts_[{style.font.face, height, style.font.bold}];
        if (!made) {
            // Grey levels and no colour fringes: the background is a skin, not a sheet of paper.
            made.reset(CreateFontW(-height, 0, 0, 0, style.font.bold ? FW_BOLD : FW_NORMAL, FALSE, FALSE, FALSE,
                                   DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, ANTIALIASED_QUALITY,
                                   DEFAULT_PITCH | FF_DONTCARE, Wide(style.font.face).c_str()));
        }
        return made.get();
    }

    bool fitCanvas(int width, int height) {
        if (width <= width_ && height <= height_) return true;
        width = std::max(width, width_);
        height = std::max(height, height_);
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        void* bits = nullptr;
        OwnedBitmap canvas(CreateDIBSection(dc_.get(), &info, DIB_RGB_COLORS, &bits, nullptr, 0));
        if (!canvas) return false;
        SelectObject(dc_.get(), canvas.get());
        canvas_ = std::move(canvas);
        bits_ = static_cast<Surface::Pixel*>(bits);
        width_ = width;
        height_ = height;
        return true;
    }
    Surface::Pixel* canvasRow(int y) const { return bits_ + static_cast<std::size_t>(y) * width_; }

    std::map<std::tuple<std::string, int, bool>, OwnedFont> fonts_;
    OwnedBitmap canvas_;
    Surface::Pixel* bits_ = nullptr;
    int width_ = 0;
    int height_ = 0;
    OwnedDc dc_;
    HGDIOBJ stock_;
};

}  // namespace
}  // namespace quenlox::win32

namespace quenlox {

std::unique_ptr<TextPainter> MakeTextPainter() { return std::make_unique<win32::TextPainterWin32>(); }

}  // namespace quenlox

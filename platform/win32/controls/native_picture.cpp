// A picture of the form as a child window of its own.
#include <windowsx.h>

#include "platform/win32/controls/native_control.h"
#include "platform/win32/paint.h"

namespace quenlox::win32 {
namespace {

constexpr wchar_t kPictureClass[] = L"Quenlox.Picture";

void RegisterPictureClass() {
    static const ATOM registered = [] {
        WNDCLASSEXW look{};
        look.cbSize = sizeof look;
        look.style = CS_DBLCLKS;
        look.lpfnWndProc = DefWindowProcW;
        look.hInstance = GetModuleHandleW(nullptr);
        look.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        look.lpszClassName = kPictureClass;
        return RegisterClassExW(&look);
    }();
    (void)registered;
}

const wchar_t* PictureClass() {
    RegisterPictureClass();
    return kPictureClass;
}

class NativePicture : public NativeControl {
  public:
    NativePicture(ControlHost& host, PictureBox& box) : NativeControl(host, box, {PictureClass(), 0}), box_(box) {
        subclass();
    }

    Size wish() const override {
        if (!box_.surface().empty() && !resized_) return {box_.surface().width(), box_.surface().height()};
        return {horizontal(80), vertical(40)};
    }
    void changed(Property property) override {
        NativeControl::changed(property);
        if (property == Property::Picture) InvalidateRect(window(), nullptr, FALSE);
    }

  protected:
    std::optional<LRESULT> intercept(UINT message, WPARAM w, LPARAM l) override {
        switch (message) {
            case WM_PAINT: PaintWindow(window(), &box_.surface(), box_.backColor()); return 0;
            case WM_ERASEBKGND: return TRUE;
            case WM_SIZE: fit(); return 0;
            case WM_LBUTTONDOWN:
            case WM_RBUTTONDOWN:
                SetCapture(window());
                tell(box_.onMouseDown, message == WM_LBUTTONDOWN ? 1 : 2, l);
                return 0;
            case WM_LBUTTONUP:
            case WM_RBUTTONUP:
                if (GetCapture() == window()) ReleaseCapture();
                if (message == WM_RBUTTONUP && !box_.onMouseUp) return {};  // the system asks for a context menu
                tell(box_.onMouseUp, message == WM_LBUTTONUP ? 1 : 2, l);
                return 0;
            case WM_LBUTTONDBLCLK:
                if (box_.onDoubleClick) {
                    box_.onDoubleClick();
                } else {
                    tell(box_.onMouseDown, 1, l);
                }
                return 0;
            case WM_MOUSEMOVE: tell(box_.onMouseMove, w & MK_LBUTTON ? 1 : w & MK_RBUTTON ? 2 : 0, l); return 0;
            default: return {};
        }
    }

  private:
    using MouseHandler = std::function<void(int, int, Point)>;
    static void tell(const MouseHandler& handler, int button, LPARAM l) {
        if (handler) handler(button, ShiftState(), {GET_X_LPARAM(l), GET_Y_LPARAM(l)});
    }
    // The picture is as large as its window; the form draws it anew when told.
    void fit() {
        RECT rect{};
        GetClientRect(window(), &rect);
        const Size size{static_cast<int>(rect.right), static_cast<int>(rect.bottom)};
        if (size.width == 0 || size.height == 0) return;
        if (size == Size{box_.surface().width(), box_.surface().height()}) return;
        resized_ = true;
        box_.surface().resize(size.width, size.height, box_.backColor());
        InvalidateRect(window(), nullptr, FALSE);
        if (box_.onResize) box_.onResize();
    }

    PictureBox& box_;
    bool resized_ = false;
};

}  // namespace

std::unique_ptr<NativeControl> MakeNativePicture(ControlHost& host, Control& control) {
    if (auto* box = dynamic_cast<PictureBox*>(&control)) return std::make_unique<NativePicture>(host, *box);
    return nullptr;
}

}  // namespace quenlox::win32

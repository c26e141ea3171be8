// Scroll bars, shown as the system's sliders, which the keyboard and the wheel move; and progress bars.
#include <windowsx.h>

#include <algorithm>

#include "forms/keys.h"
#include "platform/win32/controls/native_control.h"
#include "platform/win32/dark_paint.h"

namespace quenlox::win32 {
namespace {

class NativeSlider : public NativeControl {
  public:
    NativeSlider(ControlHost& host, ScrollBar& bar)
        : NativeControl(host, bar,
                        {TRACKBAR_CLASSW, static_cast<DWORD>(WS_TABSTOP | TBS_NOTICKS | TBS_BOTH |
                                                             (IsVertical(bar) ? TBS_VERT : TBS_HORZ))}),
          bar_(bar) {
        subclass();
        showRange();
    }
    Size wish() const override {
        return IsVertical(bar_) ? Size{horizontal(16), vertical(70)} : Size{horizontal(90), vertical(15)};
    }
    void changed(Property property) override {
        NativeControl::changed(property);
        if (property == Property::Range) showRange();
        if (property == Property::Value) showValue();
    }
    // The channel and the knob; what lies behind them is asked for as that of a text.
    std::optional<LRESULT> notify(NMHDR& header) override {
        if (header.code != static_cast<UINT>(NM_CUSTOMDRAW) || (!palette() && !bar_.mark)) return {};
        const auto& draw = reinterpret_cast<const NMCUSTOMDRAW&>(header);
        if (draw.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
        if (draw.dwDrawStage != CDDS_ITEMPREPAINT || draw.dwItemSpec == TBCD_TICS) return CDRF_DODEFAULT;
        if (bar_.mark && draw.dwItemSpec == TBCD_CHANNEL) drawMark(draw.hdc, draw.rc);
        if (!palette()) return CDRF_DODEFAULT;
        const bool knob = draw.dwItemSpec == TBCD_THUMB, enabled = bar_.enabled();
        FillRect(draw.hdc, &draw.rc, BrushOf(knob && enabled ? palette()->accent : palette()->border));
        return CDRF_SKIPDEFAULT;
    }
    void paletteChanged() override {
        send(WM_SYSCOLORCHANGE);  // it keeps a picture of itself
        NativeControl::paletteChanged();
    }
    bool isTransparent() const override { return true; }
    void scrolled(WORD code) override {
        const auto value = static_cast<int>(send(TBM_GETPOS));
        if (code == TB_THUMBTRACK) {
            bar_.drag(value);
        } else {
            bar_.setValue(value);
        }
    }

  protected:
    CaptionUse captionUse() const override { return CaptionUse::Name; }
    std::optional<LRESULT> intercept(UINT message, WPARAM w, LPARAM l) override {
        if (message == WM_LBUTTONDOWN && isDoubleClick({GET_X_LPARAM(l), GET_Y_LPARAM(l)})) {
            SetFocus(window());
            bar_.onDoubleClick();
            return 0;
        }
        const bool fine = bar_.onFineStep && ShiftState() == kControl;
        if (message == WM_KEYDOWN && fine && (w == VK_UP || w == VK_DOWN)) {
            bar_.onFineStep(w == VK_UP ? 1 : -1);
            return 0;
        }
        // Away from the user is up, and up on a vertical slider is towards its first value.
        if (message == WM_MOUSEWHEEL && IsVertical(bar_)) {
            wheel_ += GET_WHEEL_DELTA_WPARAM(w);
            const int notches = wheel_ / WHEEL_DELTA;
            wheel_ -= notches * WHEEL_DELTA;
            if (notches != 0 && fine) {
                bar_.onFineStep(notches);
            } else if (notches != 0) {
                bar_.setValue(bar_.value() - notches);
            }
            return 0;
        }
        return {};
    }

  private:
    // A line across a vertical slider, behind the channel and the knob.
    void drawMark(HDC dc, const RECT& channel) const {
        RECT client{};
        GetClientRect(window(), &client);
        const int range = std::max(bar_.maximum() - bar_.minimum(), 1), half = knobLength() / 2;
        const int way = channel.bottom - channel.top - 2 * half;
        const int y = static_cast<int>(channel.top) + half + way * (*bar_.mark - bar_.minimum()) / range;
        const RECT line{client.left + 1, y, client.right - 1, y + std::max(1, vertical(1) / 2)};
        FillRect(dc, &line, palette() ? BrushOf(palette()->dim) : GetSysColorBrush(COLOR_GRAYTEXT));
    }
    int knobLength() const {
        RECT knob{};
        send(TBM_GETTHUMBRECT, 0, &knob);
        return static_cast<int>(knob.bottom - knob.top);
    }
    // The class of the slider does not tell double clicks. Two clicks beside the knob are two steps of it.
    bool isDoubleClick(POINT at) {
        RECT knob{};
        send(TBM_GETTHUMBRECT, 0, &knob);
        const auto now = static_cast<DWORD>(GetMessageTime());
        const bool onKnob = PtInRect(&knob, at) != FALSE;
        const bool second = bar_.onDoubleClick && onKnob && firstClick_ && now - *firstClick_ <= GetDoubleClickTime();
        firstClick_ = onKnob && !second ? std::optional(now) : std::nullopt;
        return second;
    }
    static bool IsVertical(const ScrollBar& bar) { return bar.direction() == ScrollBar::Direction::Vertical; }
    void showRange() {
        send(TBM_SETRANGEMIN, FALSE, bar_.minimum());
        send(TBM_SETRANGEMAX, TRUE, bar_.maximum());
        send(TBM_SETPAGESIZE, 0, bar_.largeChange);
        showValue();
    }
    void showValue() {
        if (send(TBM_GETPOS) != bar_.value()) send(TBM_SETPOS, TRUE, bar_.value());
    }

    ScrollBar& bar_;
    std::optional<DWORD> firstClick_;  // on the knob, milliseconds of the message
    int wheel_ = 0;                    // what is left of notches
};

class NativeProgressBar : public NativeControl {
  public:
    NativeProgressBar(ControlHost& host, ProgressBar& bar)
        : NativeControl(host, bar, {PROGRESS_CLASSW, PBS_SMOOTH}), bar_(bar) {
        subclass();
        send(PBM_SETRANGE32, 0, LPARAM{1000});
        showValue();
    }
    Size wish() const override { return {horizontal(110), vertical(9)}; }
    void changed(Property property) override {
        NativeControl::changed(property);
        if (property == Property::Value) showValue();
    }

  protected:
    bool paintsItself() const override { return true; }
    void paint(HDC dc, const Palette& palette) const override { PaintProgress(window(), dc, palette); }

  private:
    void showValue() {
        const bool endless = bar_.value() == ProgressBar::kEndless;
        const LONG_PTR style = GetWindowLongPtrW(window(), GWL_STYLE);
        if (endless != ((style & PBS_MARQUEE) != 0)) {
            SetWindowLongPtrW(window(), GWL_STYLE, style ^ PBS_MARQUEE);
            send(PBM_SETMARQUEE, endless, LPARAM{30});
        }
        if (!endless) send(PBM_SETPOS, static_cast<WPARAM>(bar_.value()));
    }

    ProgressBar& bar_;
};

}  // namespace

std::unique_ptr<NativeControl> MakeNativeSlider(ControlHost& host, Control& control) {
    if (auto* bar = dynamic_cast<ScrollBar*>(&control)) return std::make_unique<NativeSlider>(host, *bar);
    if (auto* bar = dynamic_cast<ProgressBar*>(&control)) return std::make_unique<NativeProgressBar>(host, *bar);
    return nullptr;
}

}  // namespace quenlox::win32

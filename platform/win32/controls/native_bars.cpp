// The toolbar and the row of tabs.
#include <algorithm>

#include "platform/win32/controls/native_control.h"
#include "platform/win32/dark_paint.h"

namespace quenlox::win32 {
namespace {

constexpr int kFirstButton = 0x3000;  // command numbers of toolbar buttons, apart from those of controls and menus

class NativeToolbar : public NativeControl {
  public:
    NativeToolbar(ControlHost& host, Toolbar& bar)
        : NativeControl(
              host, bar,
              {TOOLBARCLASSNAMEW, WS_TABSTOP | TBSTYLE_FLAT | TBSTYLE_LIST | TBSTYLE_TOOLTIPS | TBSTYLE_TRANSPARENT |
                                      CCS_NODIVIDER | CCS_NOPARENTALIGN | CCS_NORESIZE}),
          bar_(bar) {
        send(TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
        send(TB_SETBITMAPSIZE, 0, LPARAM{0});
        showButtons();
    }
    Size wish() const override {
        int width = 0, height = vertical(14);
        for (int i = 0; i < static_cast<int>(send(TB_BUTTONCOUNT)); ++i) {
            RECT rect{};
            send(TB_GETITEMRECT, static_cast<WPARAM>(i), &rect);
            width = std::max<int>(width, rect.right);
            height = std::max<int>(height, rect.bottom);
        }
        return {width, height};
    }
    void changed(Property property) override {
        NativeControl::changed(property);
        if (property == Property::Items) showButtons();
        if (property == Property::Value) showStates();
    }
    void command(WORD, WORD id) override {
        const auto number = static_cast<std::size_t>(id - kFirstButton);
        if (number >= bar_.buttons().size() || !bar_.onButton) return;
        const std::string key = bar_.buttons()[number].key;  // a copy: the handler may replace the buttons
        bar_.onButton(key);
    }
    std::optional<LRESULT> notify(NMHDR& header) override {
        if (header.code == static_cast<UINT>(NM_CUSTOMDRAW) && palette())
            return customDraw(reinterpret_cast<const NMTBCUSTOMDRAW&>(header));
        if (header.code != static_cast<UINT>(TBN_GETINFOTIPW)) return {};
        auto& info = reinterpret_cast<NMTBGETINFOTIPW&>(header);
        const auto number = static_cast<std::size_t>(info.iItem - kFirstButton);
        if (number >= bar_.buttons().size() || info.cchTextMax <= 0) return {};
        lstrcpynW(info.pszText, Wide(bar_.buttons()[number].tooltip).c_str(), info.cchTextMax);
        return 0;
    }
    void fontChanged() override {
        NativeControl::fontChanged();
        showButtons();
    }
    bool takesKey(WPARAM key) const override { return key == VK_RETURN; }

  protected:
    CaptionUse captionUse() const override { return CaptionUse::Name; }

  private:
    LRESULT customDraw(const NMTBCUSTOMDRAW& draw) const {
        if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
        if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
        if (draw.nmcd.dwItemSpec >= kFirstButton) PaintToolButton(draw, *palette());
        return CDRF_SKIPDEFAULT;
    }
    static BYTE stateOf(const ToolbarButton& button) {
        return static_cast<BYTE>((button.enabled ? TBSTATE_ENABLED : 0) | (button.checked ? TBSTATE_CHECKED : 0));
    }
    void showButtons() {
        send(WM_SETREDRAW, FALSE);
        while (send(TB_BUTTONCOUNT) > 0) send(TB_DELETEBUTTON, 0);
        int number = 0;
        for (const ToolbarButton& button : bar_.buttons()) {
            const std::wstring text = Wide(button.caption);
            TBBUTTON made{};
            made.iBitmap = button.separator ? horizontal(4) : I_IMAGENONE;
            made.idCommand = kFirstButton + number++;
            made.fsState = stateOf(button);
            made.fsStyle = button.separator ? BTNS_SEP : BTNS_BUTTON | BTNS_AUTOSIZE | BTNS_SHOWTEXT | BTNS_NOPREFIX;
            made.iString = button.separator ? 0 : reinterpret_cast<INT_PTR>(text.c_str());
            send(TB_ADDBUTTONSW, 1, &made);
        }
        send(TB_AUTOSIZE);
        send(WM_SETREDRAW, TRUE);
        InvalidateRect(window(), nullptr, TRUE);
    }
    void showStates() {
        int number = 0;
        for (const ToolbarButton& button : bar_.buttons()) {
            const auto id = static_cast<WPARAM>(kFirstButton + number++);
            if (!button.separator) send(TB_SETSTATE, id, LPARAM{stateOf(button)});
        }
    }

    Toolbar& bar_;
};

// Only as high as the tabs: what lies on the pages stands on the window's own background, below.
class NativeTabStrip : public NativeControl {
  public:
    NativeTabStrip(ControlHost& host, TabStrip& tabs)
        : NativeControl(host, tabs, {WC_TABCONTROLW, WS_TABSTOP}), tabs_(tabs) {
        subclass();
        padTabs();
        int number = 0;
        for (const std::string& text : tabs.tabs()) {
            std::wstring wide = Wide(text);
            TCITEMW item{};
            item.mask = TCIF_TEXT;
            item.pszText = wide.data();
            send(TCM_INSERTITEMW, static_cast<WPARAM>(number++), &item);
        }
        showValue();
    }
    Size wish() const override {
        // Not higher than the tabs, or a strip of the page that the system draws below them would be seen.
        int width = 0, height = 0;
        for (std::size_t i = 0; i < tabs_.tabs().size(); ++i) {
            RECT rect{};
            send(TCM_GETITEMRECT, i, &rect);
            width = std::max<int>(width, rect.right);
            height = std::max<int>(height, rect.bottom);
        }
        return {width + 4, height + 1};
    }
    void fontChanged() override {
        padTabs();
        NativeControl::fontChanged();
    }
    void changed(Property property) override {
        NativeControl::changed(property);
        if (property == Property::Value) showValue();
    }
    std::optional<LRESULT> notify(NMHDR& header) override {
        if (header.code != static_cast<UINT>(TCN_SELCHANGE)) return {};
        tabs_.setValue(static_cast<int>(send(TCM_GETCURSEL)));
        return 0;
    }

  protected:
    CaptionUse captionUse() const override { return CaptionUse::Name; }
    bool paintsItself() const override { return true; }
    void paint(HDC dc, const Palette& palette) const override { PaintTabs(window(), dc, palette); }

  private:
    // Room around the captions, which the system counts in pixels whatever their size.
    void padTabs() { send(TCM_SETPADDING, 0, MAKELPARAM(horizontal(4), vertical(2))); }
    void showValue() {
        if (send(TCM_GETCURSEL) != tabs_.value()) send(TCM_SETCURSEL, static_cast<WPARAM>(tabs_.value()));
    }

    TabStrip& tabs_;
};

}  // namespace

std::unique_ptr<NativeControl> MakeNativeBar(ControlHost& host, Control& control) {
    if (auto* bar = dynamic_cast<Toolbar*>(&control)) return std::make_unique<NativeToolbar>(host, *bar);
    if (auto* tabs = dynamic_cast<TabStrip*>(&control)) return std::make_unique<NativeTabStrip>(host, *tabs);
    return nullptr;
}

}  // namespace quenlox::win32

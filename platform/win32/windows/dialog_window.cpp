#include "platform/win32/windows/dialog_window.h"

#include <algorithm>

#include "forms/form.h"
#include "platform/win32/windows/menus.h"
#include "platform/win32/windows/window_system.h"

namespace quenlox::win32 {
namespace {

// Room around the content in dialog units, as the guidelines for dialogs have it; a window that the user sizes is a
// working surface and needs less.
constexpr int kDialogMargin = 7;
constexpr int kSizeableMargin = 3;

DWORD StyleOf(const Form& form) {
    if (form.kind() == Form::Kind::Sizeable) return WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
    return WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
}

DWORD ExtendedStyleOf(const Form& form) {
    return WS_EX_CONTROLPARENT | (form.kind() == Form::Kind::Sizeable ? WS_EX_APPWINDOW : WS_EX_DLGMODALFRAME);
}

// The arrow keys go through the choices of one group, and along buttons that stand side by side.
bool BeginsGroup(const Control& control, const Control* before) {
    if (!before) return true;
    if (dynamic_cast<const OptionButton*>(&control))
        return !dynamic_cast<const OptionButton*>(before) || before->name() != control.name();
    return !dynamic_cast<const CommandButton*>(&control) || !dynamic_cast<const CommandButton*>(before);
}

int Margin(const Form& form) { return form.kind() == Form::Kind::Sizeable ? kSizeableMargin : kDialogMargin; }

}  // namespace

DialogWindow::~DialogWindow() {
    if (tooltips_) DestroyWindow(tooltips_);
}

void DialogWindow::create() {
    createWindow(kDialogClass, StyleOf(*form()), ExtendedStyleOf(*form()), system().hiddenOwner());
    // Without an owner: Wine does not put a window above the others that owns one which is there already.
    tooltips_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_NOPREFIX, 0, 0, 0, 0, nullptr,
                                nullptr, nullptr, nullptr);
    SendMessageW(tooltips_, TTM_SETMAXTIPWIDTH, 0, 400);
    makeFonts();
    palette_ = PaletteOfUser();
    ShowTitleBar(handle(), palette_ != nullptr);
    arranging_ = true;
    placeWindow();  // before the menu bar comes, with which the window tells its size
    setMenuBar();
    for (Control* control : form()->controls()) makeControl(*control);
}

void DialogWindow::realised() {
    FormWindow::realised();
    arranging_ = false;
    fitToLayout();
    arrange();
    showPages();
    if (form()->topmost()) formChanged(FormProperty::Topmost);
    if (form()->visible()) formChanged(FormProperty::Visible);
}

void DialogWindow::makeControl(Control& control) {
    auto made = MakeNativeControl(*this, control);
    if (!made) return;
    if (palette_) made->paletteChanged();
    natives_[&control] = std::move(made);
}

NativeControl* DialogWindow::native(const Control& control) const {
    const auto found = natives_.find(&control);
    return found == natives_.end() ? nullptr : found->second.get();
}

HWND DialogWindow::windowOf(const Control& control) const {
    const NativeControl* found = native(control);
    return found ? found->window() : nullptr;
}

NativeControl* DialogWindow::nativeOf(HWND window) const {
    for (; window && window != handle(); window = GetParent(window)) {
        for (const auto& [control, native] : natives_) {
            if (native->window() == window) return native.get();
        }
    }
    return nullptr;
}

void DialogWindow::makeFonts() {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, dpi());
    font_.reset(CreateFontIndirectW(&metrics.lfMessageFont));
    fonts_.clear();
    HDC dc = GetDC(handle());
    {
        const Selected selected(dc, font_.get());
        constexpr wchar_t kLetters[] = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        SIZE size{};
        GetTextExtentPoint32W(dc, kLetters, 52, &size);
        TEXTMETRICW text{};
        GetTextMetricsW(dc, &text);
        units_ = {static_cast<double>(size.cx) / 52 / 4, static_cast<double>(text.tmHeight) / 8};
    }
    ReleaseDC(handle(), dc);
}

// The user may choose other colours at any moment.
void DialogWindow::followPalette() {
    const Palette* now = PaletteOfUser();
    if (now == palette_) return;
    palette_ = now;
    ShowTitleBar(handle(), now != nullptr);
    for (const auto& [control, native] : natives_) native->paletteChanged();
    RedrawWindow(handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

HFONT DialogWindow::fontFor(const Font& font) {
    OwnedFont& made = fonts_[{font.face, {font.points, font.bold}}];
    if (!made) {
        made.reset(CreateFontW(-RoundHalfToEven(font.points * dpi() / 72), 0, 0, 0, font.bold ? FW_BOLD : FW_NORMAL,
                               FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                               DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE, Wide(font.face).c_str()));
    }
    return made.get();
}

Size DialogWindow::wish(const Control& control) const {
    const NativeControl* found = native(control);
    return found ? found->wish() : Size{};
}

Rect DialogWindow::content() const {
    const Size client = clientSize();
    const int x = RoundHalfToEven(Margin(*form()) * units_.x), y = RoundHalfToEven(Margin(*form()) * units_.y);
    return {x, y, client.width - 2 * x, client.height - 2 * y};
}

void DialogWindow::arrange() {
    if (arranging_ || !attached()) return;
    arranging_ = true;
    const Layout layout = form()->layout();
    if (layout.kind != Layout::Kind::None) {
        pages_.clear();
        collectPages(layout);
        orderControls(layout);
        Arrange(layout, content(), units_, [this](const Control& control) { return wish(control); });
        // All at once, so that no control is seen at its new place over another at its old one.
        HDWP moves = BeginDeferWindowPos(static_cast<int>(natives_.size()));
        for (const auto& [control, native] : natives_) native->place(&moves);
        if (moves) EndDeferWindowPos(moves);
        if (!attached()) return;
    }
    arranging_ = false;
    form()->Form_Resize(clientSize());
}

// The Tab key goes from window to window as they lie over each other.
void DialogWindow::orderControls(const Layout& layout) {
    std::vector<Control*> order = ReadingOrder(layout);
    if (order == order_) return;
    order_ = std::move(order);
    HWND last = HWND_TOP;
    const Control* before = nullptr;
    for (Control* control : order_) {
        if (NativeControl* found = native(*control)) last = found->follow(last, BeginsGroup(*control, before));
        before = control;
    }
}

void DialogWindow::collectPages(const Layout& layout) {
    const auto mark = [this](const auto& self, const Layout& part, Page page) -> void {
        if (part.control) pages_[part.control] = page;
        for (const Layout& item : part.items) self(self, item, page);
    };
    if (layout.kind == Layout::Kind::Pages) {
        for (std::size_t i = 0; i < layout.items.size(); ++i) {
            mark(mark, layout.items[i], {layout.control, static_cast<int>(i)});
        }
    } else {
        for (const Layout& item : layout.items) collectPages(item);
    }
}

bool DialogWindow::onShownPage(const Control& control) const {
    const auto found = pages_.find(&control);
    if (found == pages_.end()) return true;
    const auto* tabs = dynamic_cast<const TabStrip*>(found->second.tabs);
    return !tabs || tabs->value() == found->second.number;
}

void DialogWindow::showPages() {
    for (const auto& [control, native] : natives_) native->changed(Property::Visible);
}

Size DialogWindow::frameFor(Size client) const {
    RECT rect{0, 0, client.width, client.height};
    AdjustWindowRectExForDpi(&rect, StyleOf(*form()), menu_ ? TRUE : FALSE, ExtendedStyleOf(*form()), dpi());
    return {static_cast<int>(rect.right - rect.left), static_cast<int>(rect.bottom - rect.top)};
}

// A dialog is as large as what is in it.
void DialogWindow::fitToLayout() {
    if (form()->kind() != Form::Kind::Dialog) return;
    const Layout layout = form()->layout();
    if (layout.kind == Layout::Kind::None) return;
    Size size = Measure(layout, units_, [this](const Control& control) { return wish(control); });
    size.width += 2 * RoundHalfToEven(kDialogMargin * units_.x);
    size.height += 2 * RoundHalfToEven(kDialogMargin * units_.y);
    const Size frame = formSize(frameFor(size));
    form()->placedByUser(form()->left(), form()->top(), frame.width, frame.height);
    placeWindow();
}

Size DialogWindow::windowSize() const {
    const TwipsPerPixel twips = twipsPerPixel();
    return {TwipsToPixels(form()->width(), twips.x), TwipsToPixels(form()->height(), twips.y)};
}

Size DialogWindow::formSize(Size window) const {
    const TwipsPerPixel twips = twipsPerPixel();
    return {PixelsToTwips(window.width, twips.x), PixelsToTwips(window.height, twips.y)};
}

void DialogWindow::formChanged(FormProperty property) {
    if (!attached()) return;
    if (property == FormProperty::Menu) setMenuBar();
    if (property == FormProperty::Layout) arrange();
    FormWindow::formChanged(property);
}

void DialogWindow::controlChanged(Control& control, Property property) {
    if (!attached()) return;
    FormWindow::controlChanged(control, property);
    NativeControl* found = native(control);
    if (!found) {
        // It has been made after the window.
        makeControl(control);
        found = native(control);
        if (!found) return;
        found->place(nullptr);
        found->changed(Property::Visible);
    }
    if (property == Property::Bounds && arranging_) return;
    // Asked for while another window is in front, the keyboard comes here with the window.
    if (property == Property::Focus && GetActiveWindow() != handle()) lastFocus_ = found->window();
    found->changed(property);
    if (!attached()) return;
    if (property == Property::Value && attached() && dynamic_cast<TabStrip*>(&control)) showPages();
    if (property == Property::Items && attached() && dynamic_cast<Toolbar*>(&control)) arrange();
}

void DialogWindow::controlRemoved(Control& control) {
    FormWindow::controlRemoved(control);
    const auto found = natives_.find(&control);
    if (found == natives_.end()) return;
    found->second->removed();
    removed_.push_back(std::move(found->second));
    natives_.erase(found);
    pages_.erase(&control);
    std::erase(order_, &control);
}

void DialogWindow::setMenuBar() {
    const Menu* menu = form()->menuBar();
    OwnedMenu made = menu ? MakeMenuBar(*menu) : OwnedMenu();
    SetMenu(handle(), made.get());
    menu_ = std::move(made);
}

void DialogWindow::dpiChanged(const RECT& suggested) {
    makeFonts();
    for (const auto& [control, native] : natives_) native->fontChanged();
    SetWindowPos(handle(), nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
                 suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
    fitToLayout();
    arrange();
}

FormWindow::Result DialogWindow::contextMenu(HWND window, LPARAM l) {
    NativeControl* found = nativeOf(window);
    POINT at{static_cast<short>(LOWORD(l)), static_cast<short>(HIWORD(l))};
    if (found && found->contextMenu(at)) return 0;
    RECT client{};
    GetClientRect(handle(), &client);
    const bool byKey = at.x == -1 && at.y == -1;
    if (!byKey) ScreenToClient(handle(), &at);
    if (!byKey && !PtInRect(&client, at)) return {};  // the frame has a menu of its own
    const Point asked{static_cast<int>(at.x), static_cast<int>(at.y)};
    form()->Form_ContextMenu(byKey ? Point{clientSize().width / 4, clientSize().height / 4} : asked);
    return 0;
}

void DialogWindow::limitSize(MINMAXINFO& info) const {
    if (form()->kind() != Form::Kind::Sizeable) return;
    const TwipsPerPixel twips = twipsPerPixel();
    const Size least = form()->minimumTwips();
    info.ptMinTrackSize = {TwipsToPixels(least.width, twips.x), TwipsToPixels(least.height, twips.y)};
}

FormWindow::Result DialogWindow::command(WPARAM w, LPARAM l) {
    if (l != 0) {
        if (NativeControl* found = nativeOf(reinterpret_cast<HWND>(l))) found->command(HIWORD(w), LOWORD(w));
        return 0;
    }
    const UINT id = LOWORD(w);
    if (id == IDCANCEL) {
        form()->unload();
    } else if (id == IDOK) {
        pressDefault();
    } else if (const Menu* menu = form()->menuBar()) {
        if (const MenuItem* item = FindMenuItem(*menu, id)) {
            const MenuItem copy = *item;
            copy.click();
        }
    }
    return 0;
}

bool DialogWindow::pressDefault() {
    NativeControl* focused = nativeOf(GetFocus());
    if (focused && focused->pressed()) return true;
    if (!attached()) return true;
    for (Control* control : form()->controls()) {
        auto* button = dynamic_cast<CommandButton*>(control);
        if (!button || !button->isDefault || !button->enabled()) continue;
        button->click();
        return true;
    }
    return false;
}

bool DialogWindow::switchTab(bool back) {
    for (Control* control : form()->controls()) {
        auto* tabs = dynamic_cast<TabStrip*>(control);
        if (!tabs || tabs->tabs().empty()) continue;
        const auto count = static_cast<int>(tabs->tabs().size());
        HWND before = GetFocus();
        tabs->setValue((tabs->value() + (back ? count - 1 : 1)) % count);
        if (!attached() || IsWindowVisible(before)) return true;
        // What had the keyboard stands on the page that has gone; the first of the new page has it now.
        const NativeControl* strip = native(*tabs);
        if (HWND next = strip ? GetNextDlgTabItem(handle(), strip->window(), FALSE) : nullptr) SetFocus(next);
        return true;
    }
    return false;
}

bool DialogWindow::accessTab(wchar_t letter) {
    const int key = letter >= L'a' && letter <= L'z' ? letter - L'a' + L'A' : letter;
    for (Control* control : form()->controls()) {
        auto* tabs = dynamic_cast<TabStrip*>(control);
        if (!tabs || !tabs->enabled()) continue;
        const auto& captions = tabs->tabs();
        const auto found = std::ranges::find(captions, key, AccessKeyOf);
        if (found == captions.end()) continue;
        SetFocus(windowOf(*tabs));
        tabs->setValue(static_cast<int>(found - captions.begin()));
        return true;
    }
    return false;
}

bool DialogWindow::preview(MSG& message) {
    const bool down = message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN;
    const bool up = message.message == WM_KEYUP || message.message == WM_SYSKEYUP;
    if (down || up) {
        // The form sees keys before its controls do.
        key(message.message, message.wParam);
        if (!attached() || (down && form()->keyTaken)) return true;
    }
    if (down && (ShiftState() & 6) == 2 && message.wParam == VK_TAB && switchTab(ShiftState() & 1)) return true;
    if (message.message == WM_SYSCHAR && accessTab(static_cast<wchar_t>(message.wParam))) return true;
    if (down) {
        const NativeControl* focused = nativeOf(GetFocus());
        if (focused && focused->takesKey(message.wParam)) return false;
    }
    return IsDialogMessageW(handle(), &message) != FALSE;
}

FormWindow::Result DialogWindow::color(HDC dc, HWND window) const {
    const auto give = [dc](Color text, Color back) -> Result {
        SetTextColor(dc, ToColorRef(text));
        SetBkColor(dc, ToColorRef(back));
        return reinterpret_cast<LRESULT>(BrushOf(back));
    };
    const NativeControl* found = nativeOf(window);
    if (!found && palette_) return give(palette_->text, palette_->field);  // the list that a combo box drops
    if (!found) return {};
    const Control& control = found->control();
    // The system greys what cannot be edited; a text that is there to be read keeps its own colours.
    const auto* box = dynamic_cast<const TextBox*>(&control);
    const bool reading = box && box->multiLine() && box->readOnly();
    const bool ownText = reading || control.foreColor() != Color{},
               ownBack = reading || control.backColor() != Color{255, 255, 255};
    if (!palette_ && !ownText && !ownBack) return {};
    const bool face = found->isTransparent() || (palette_ && !control.enabled());
    const auto system = [face](int onFace, int inField) { return FromColorRef(GetSysColor(face ? onFace : inField)); };
    Color text = system(COLOR_BTNTEXT, COLOR_WINDOWTEXT), back = system(COLOR_BTNFACE, COLOR_WINDOW);
    if (palette_) {
        text = control.enabled() ? palette_->text : palette_->dim;
        back = face ? palette_->window : palette_->field;
    }
    return give(ownText ? control.foreColor() : text, ownBack ? control.backColor() : back);
}

FormWindow::Result DialogWindow::focusChanged(UINT message, WPARAM w) {
    if (message == WM_ACTIVATE && LOWORD(w) == WA_INACTIVE) {
        if (IsChild(handle(), GetFocus())) lastFocus_ = GetFocus();
        return {};
    }
    if (message != WM_SETFOCUS) return {};
    HWND next = IsChild(handle(), lastFocus_) && IsWindowVisible(lastFocus_) && IsWindowEnabled(lastFocus_)
                    ? lastFocus_
                    : GetNextDlgTabItem(handle(), nullptr, FALSE);
    if (next) SetFocus(next);
    return 0;
}

// As a dialog does: an access key of a label or a frame leads here.
void DialogWindow::focusNext(WPARAM w, bool isWindow) {
    HWND next = isWindow ? reinterpret_cast<HWND>(w) : GetNextDlgTabItem(handle(), GetFocus(), w != 0);
    if (!next) return;
    SetFocus(next);
    if (SendMessageW(next, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL) SendMessageW(next, EM_SETSEL, 0, -1);
}

FormWindow::Result DialogWindow::answer(UINT message, WPARAM w, LPARAM l) {
    switch (message) {
        case WM_COMMAND: return command(w, l);
        case WM_NOTIFY: {
            auto& header = *reinterpret_cast<NMHDR*>(l);
            NativeControl* found = nativeOf(header.hwndFrom);
            return found ? found->notify(header) : Result{};
        }
        case WM_HSCROLL:
        case WM_VSCROLL:
            if (NativeControl* found = nativeOf(reinterpret_cast<HWND>(l))) found->scrolled(LOWORD(w));
            return 0;
        case WM_DRAWITEM:
            if (NativeControl* found = nativeOf(reinterpret_cast<const DRAWITEMSTRUCT*>(l)->hwndItem)) {
                found->draw(*reinterpret_cast<const DRAWITEMSTRUCT*>(l));
            }
            return TRUE;
        case WM_MEASUREITEM:
            reinterpret_cast<MEASUREITEMSTRUCT*>(l)->itemHeight = static_cast<UINT>(RoundHalfToEven(10 * units_.y));
            return TRUE;
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLOREDIT:
        case WM_CTLCOLORBTN:
        case WM_CTLCOLORLISTBOX: return color(reinterpret_cast<HDC>(w), reinterpret_cast<HWND>(l));
        case WM_ERASEBKGND: {
            if (!palette_) return {};
            RECT all{};
            GetClientRect(handle(), &all);
            FillRect(reinterpret_cast<HDC>(w), &all, BrushOf(palette_->window));
            return TRUE;
        }
        case WM_SYSCOLORCHANGE:
            for (const auto& [control, native] : natives_) SendMessageW(native->window(), message, w, l);
            followPalette();
            return {};
        case WM_CONTEXTMENU: return contextMenu(reinterpret_cast<HWND>(w), l);
        case WM_NEXTDLGCTL: focusNext(w, LOWORD(l) != 0); return 0;
        case DM_GETDEFID: return MAKELRESULT(IDOK, DC_HASDEFID);
        case WM_GETMINMAXINFO: limitSize(*reinterpret_cast<MINMAXINFO*>(l)); return 0;
        case WM_ACTIVATE:
        case WM_SETFOCUS: FormWindow::answer(message, w, l); return focusChanged(message, w);
        case WM_DPICHANGED: dpiChanged(*reinterpret_cast<const RECT*>(l)); return 0;
        case WM_SETTINGCHANGE:
            followPalette();  // "ImmersiveColorSet", or a contrast theme
            if (w == SPI_SETNONCLIENTMETRICS) {
                makeFonts();
                for (const auto& [control, native] : natives_) native->fontChanged();
                fitToLayout();
                arrange();
            }
            return {};
        default: return FormWindow::answer(message, w, l);
    }
}

}  // namespace quenlox::win32

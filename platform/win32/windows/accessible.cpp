#include "platform/win32/windows/accessible.h"

#include <algorithm>

#include "platform/win32/windows/skinned_window.h"
#include "text/numbers.h"

namespace quenlox::win32 {
namespace {

using Part = AccessiblePart;

HRESULT Give(const std::string& utf8, BSTR* text) {
    if (!text) return E_INVALIDARG;
    *text = nullptr;
    if (utf8.empty()) return S_FALSE;
    const std::wstring wide = Wide(utf8);
    *text = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    return *text ? S_OK : E_OUTOFMEMORY;
}

HRESULT Give(LONG number, VARIANT* out) {
    if (!out) return E_INVALIDARG;
    out->vt = VT_I4;
    out->lVal = number;
    return S_OK;
}

HRESULT GiveNothing(VARIANT* out) {
    if (!out) return E_INVALIDARG;
    out->vt = VT_EMPTY;
    return S_FALSE;
}

LONG RoleOf(const Part& part) {
    switch (part.role) {
        case Part::Role::Button: return ROLE_SYSTEM_PUSHBUTTON;
        case Part::Role::Slider: return ROLE_SYSTEM_SLIDER;
        case Part::Role::Text: return ROLE_SYSTEM_STATICTEXT;
        case Part::Role::Picture: return ROLE_SYSTEM_GRAPHIC;
    }
    return ROLE_SYSTEM_CLIENT;
}

LONG StateOf(const Part& part) {
    LONG state = part.role == Part::Role::Text ? STATE_SYSTEM_READONLY : 0;
    if (!part.enabled) state |= STATE_SYSTEM_UNAVAILABLE;
    if (part.pressed) state |= STATE_SYSTEM_PRESSED;
    if (part.role == Part::Role::Text && part.name.empty()) state |= STATE_SYSTEM_INVISIBLE;
    return state;
}

class Accessible : public IAccessible, public IEnumVARIANT {
  public:
    explicit Accessible(const std::shared_ptr<SkinnedWindow>& window) : window_(window) {}
    virtual ~Accessible() = default;

    // IUnknown
    STDMETHODIMP QueryInterface(REFIID id, void** out) override {
        if (!out) return E_INVALIDARG;
        *out = nullptr;
        if (id == __uuidof(IUnknown) || id == __uuidof(IDispatch) || id == __uuidof(IAccessible)) {
            *out = static_cast<IAccessible*>(this);
        } else if (id == __uuidof(IEnumVARIANT)) {
            *out = static_cast<IEnumVARIANT*>(this);
        } else {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
    STDMETHODIMP_(ULONG) Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    // IDispatch: nobody calls an accessible object by names.
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        if (!count) return E_INVALIDARG;
        *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }

    // IAccessible
    STDMETHODIMP get_accParent(IDispatch** parent) override {
        if (!parent) return E_INVALIDARG;
        *parent = nullptr;
        const HWND handle = this->handle();
        if (!handle || !Service().fromWindow) return S_FALSE;
        return Service().fromWindow(handle, static_cast<DWORD>(OBJID_WINDOW), __uuidof(IDispatch),
                                    reinterpret_cast<void**>(parent));
    }
    STDMETHODIMP get_accChildCount(LONG* count) override {
        if (!count) return E_INVALIDARG;
        *count = static_cast<LONG>(parts().size());
        return S_OK;
    }
    STDMETHODIMP get_accChild(VARIANT, IDispatch** child) override {
        if (!child) return E_INVALIDARG;
        *child = nullptr;  // simple elements are asked through their parent
        return S_FALSE;
    }
    STDMETHODIMP get_accName(VARIANT child, BSTR* name) override {
        return about(child, [&](const Part* part) { return Give(part ? part->name : caption(), name); });
    }
    STDMETHODIMP get_accValue(VARIANT child, BSTR* value) override {
        return about(child, [&](const Part* part) { return Give(part ? part->value : "", value); });
    }
    STDMETHODIMP get_accDescription(VARIANT child, BSTR* text) override {
        return about(child, [&](const Part* part) { return Give(part ? part->description : "", text); });
    }
    STDMETHODIMP get_accRole(VARIANT child, VARIANT* role) override {
        return about(child, [&](const Part* part) { return Give(part ? RoleOf(*part) : ROLE_SYSTEM_CLIENT, role); });
    }
    STDMETHODIMP get_accState(VARIANT child, VARIANT* state) override {
        return about(child, [&](const Part* part) {
            const LONG own = STATE_SYSTEM_FOCUSABLE | (GetFocus() == handle() ? STATE_SYSTEM_FOCUSED : 0);
            return Give(part ? StateOf(*part) : own, state);
        });
    }
    STDMETHODIMP get_accHelp(VARIANT, BSTR* help) override { return Give("", help); }
    STDMETHODIMP get_accHelpTopic(BSTR* file, VARIANT, LONG*) override { return Give("", file); }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR* keys) override {
        return about(child, [&](const Part* part) { return Give(part ? part->shortcut : "", keys); });
    }
    STDMETHODIMP get_accFocus(VARIANT* focused) override {
        return handle() && GetFocus() == handle() ? Give(CHILDID_SELF, focused) : GiveNothing(focused);
    }
    STDMETHODIMP get_accSelection(VARIANT* selected) override { return GiveNothing(selected); }
    STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR* action) override {
        return about(child, [&](const Part* part) { return Give(part ? part->action : "", action); });
    }
    STDMETHODIMP accSelect(LONG flags, VARIANT child) override {
        if (child.vt != VT_I4 || child.lVal != CHILDID_SELF || flags != SELFLAG_TAKEFOCUS) return E_INVALIDARG;
        const auto window = window_.lock();
        if (!window) return CO_E_OBJNOTCONNECTED;
        window->bringToFront();
        return S_OK;
    }
    STDMETHODIMP accLocation(LONG* left, LONG* top, LONG* width, LONG* height, VARIANT child) override {
        if (!left || !top || !width || !height) return E_INVALIDARG;
        return about(child, [&](const Part* part) {
            const auto window = window_.lock();
            const Size whole = window->clientSize();
            const Rect place = window->onScreen(part ? part->bounds : Rect{0, 0, whole.width, whole.height});
            *left = place.left;
            *top = place.top;
            *width = place.width;
            *height = place.height;
            return S_OK;
        });
    }
    STDMETHODIMP accNavigate(LONG direction, VARIANT from, VARIANT* to) override {
        return about(from, [&](const Part* part) {
            const auto count = static_cast<LONG>(parts().size());
            const LONG target = direction == NAVDIR_FIRSTCHILD && !part  ? 1
                                : direction == NAVDIR_LASTCHILD && !part ? count
                                : direction == NAVDIR_NEXT && part       ? from.lVal + 1
                                : direction == NAVDIR_PREVIOUS && part   ? from.lVal - 1
                                                                         : 0;
            return target >= 1 && target <= count ? Give(target, to) : GiveNothing(to);
        });
    }
    STDMETHODIMP accHitTest(LONG x, LONG y, VARIANT* found) override {
        const auto window = window_.lock();
        if (!window || !window->handle()) return CO_E_OBJNOTCONNECTED;
        const Point at = window->fromScreen({static_cast<int>(x), static_cast<int>(y)});
        const Size whole = window->clientSize();
        if (!Rect{0, 0, whole.width, whole.height}.contains(at)) return GiveNothing(found);
        const auto all = parts();
        const auto hit =
            std::find_if(all.begin(), all.end(), [at](const Part& part) { return part.bounds.contains(at); });
        return Give(hit == all.end() ? CHILDID_SELF : static_cast<LONG>(hit - all.begin()) + 1, found);
    }
    STDMETHODIMP accDoDefaultAction(VARIANT child) override {
        return about(child, [&](const Part* part) {
            if (!part || !part->act) return DISP_E_MEMBERNOTFOUND;
            // Not here: the action may open a window that waits, and the caller waits for this answer.
            window_.lock()->later(part->act);
            return S_OK;
        });
    }
    STDMETHODIMP put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
    STDMETHODIMP put_accValue(VARIANT child, BSTR text) override {
        return about(child, [&](const Part* part) {
            if (!part || !part->setPercent) return DISP_E_MEMBERNOTFOUND;
            const int percent = NumericInteger(Narrow({text, SysStringLen(text)}));
            window_.lock()->later([set = part->setPercent, percent] { set(std::clamp(percent, 0, 100)); });
            return S_OK;
        });
    }

    // IEnumVARIANT: the numbers of the children.
    STDMETHODIMP Next(ULONG wanted, VARIANT* out, ULONG* fetched) override {
        if (!out) return E_INVALIDARG;
        const auto count = static_cast<ULONG>(parts().size());
        ULONG given = 0;
        while (given < wanted && next_ < count) Give(static_cast<LONG>(++next_), &out[given++]);
        if (fetched) *fetched = given;
        return given == wanted ? S_OK : S_FALSE;
    }
    STDMETHODIMP Skip(ULONG count) override {
        next_ += count;
        return next_ <= parts().size() ? S_OK : S_FALSE;
    }
    STDMETHODIMP Reset() override {
        next_ = 0;
        return S_OK;
    }
    STDMETHODIMP Clone(IEnumVARIANT** copy) override {
        if (!copy) return E_INVALIDARG;
        auto* made = new Accessible(window_.lock());
        made->next_ = next_;
        *copy = made;
        return S_OK;
    }

    // What of the service is used; loaded when the first assistive program asks, since most users have none.
    struct OleAcc {
        decltype(&LresultFromObject) fromObject = nullptr;
        decltype(&AccessibleObjectFromWindow) fromWindow = nullptr;
    };
    static const OleAcc& Service() {
        static const OleAcc service = [] {
            OleAcc found;
            HMODULE module = LoadLibraryExW(L"oleacc.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
            if (!module) return found;
            const auto resolve = [module](auto& function, const char* name) {
                function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(
                    reinterpret_cast<void*>(GetProcAddress(module, name)));
            };
            resolve(found.fromObject, "LresultFromObject");
            resolve(found.fromWindow, "AccessibleObjectFromWindow");
            return found;
        }();
        return service;
    }

  private:
    HWND handle() const {
        const auto window = window_.lock();
        return window ? window->handle() : nullptr;
    }
    std::vector<Part> parts() const noexcept try {
        const auto window = window_.lock();
        return window ? window->parts() : std::vector<Part>();
    } catch (...) {
        return {};
    }
    std::string caption() const {
        std::wstring text(256, L'\0');
        text.resize(static_cast<std::size_t>(GetWindowTextW(handle(), text.data(), 256)));
        return Narrow(text);
    }
    // Calls `tell` with the part, or null for the window itself. Nothing that is thrown leaves it: COM is the caller.
    template <typename Tell>
    HRESULT about(const VARIANT& child, Tell tell) noexcept try {
        if (!handle()) return CO_E_OBJNOTCONNECTED;
        if (child.vt != VT_I4 || child.lVal < 0) return E_INVALIDARG;
        if (child.lVal == CHILDID_SELF) return tell(static_cast<const Part*>(nullptr));
        const auto all = parts();
        if (static_cast<std::size_t>(child.lVal) > all.size()) return E_INVALIDARG;
        return tell(&all[static_cast<std::size_t>(child.lVal) - 1]);
    } catch (...) {
        return E_OUTOFMEMORY;
    }

    std::weak_ptr<SkinnedWindow> window_;
    ULONG references_ = 1;
    std::size_t next_ = 0;
};

}  // namespace

AccessiblePointer MakeAccessible(const std::shared_ptr<SkinnedWindow>& window) {
    return AccessiblePointer(new Accessible(window));
}

LRESULT AnswerWithObject(WPARAM w, IAccessible* object) {
    const auto fromObject = Accessible::Service().fromObject;
    return fromObject ? fromObject(__uuidof(IAccessible), w, object) : 0;
}

}  // namespace quenlox::win32

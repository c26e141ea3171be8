#include "tools/wine_driver/accessible.h"

#include <oleacc.h>

#include <memory>

namespace driver {
namespace {

struct Release {
    void operator()(IAccessible* object) const { object->Release(); }
};
using Object = std::unique_ptr<IAccessible, Release>;

void Check(HRESULT result, const char* what) {
    if (FAILED(result)) throw Failure(std::string(what) + " failed, result " + std::to_string(result));
}

Object ObjectOf(HWND window) {
    [[maybe_unused]] static const HRESULT ready = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    IAccessible* object = nullptr;
    Check(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                     reinterpret_cast<void**>(&object)),
          "AccessibleObjectFromWindow");
    return Object(object);
}

VARIANT Child(LONG number) {
    VARIANT child;
    child.vt = VT_I4;
    child.lVal = number;
    return child;
}

using GetText = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, BSTR*);
std::string Text(IAccessible& object, GetText get, LONG child) {
    BSTR text = nullptr;
    if ((object.*get)(Child(child), &text) != S_OK || !text) return {};
    const std::string utf8 = ToUtf8({text, SysStringLen(text)});
    SysFreeString(text);
    return utf8;
}

using GetNumber = HRESULT (STDMETHODCALLTYPE IAccessible::*)(VARIANT, VARIANT*);
LONG Number(IAccessible& object, GetNumber get, LONG child) {
    VARIANT number;
    number.vt = VT_EMPTY;
    Check((object.*get)(Child(child), &number), "a number of a part");
    return number.lVal;
}

Row PartRow(IAccessible& object, LONG n) {
    LONG x = 0, y = 0, width = 0, height = 0;
    Check(object.accLocation(&x, &y, &width, &height, Child(n)), "accLocation");
    Row row = RowOf(n, Number(object, &IAccessible::get_accRole, n), Number(object, &IAccessible::get_accState, n), x,
                    y, width, height);
    for (const GetText get : {&IAccessible::get_accName, &IAccessible::get_accValue, &IAccessible::get_accDescription,
                              &IAccessible::get_accDefaultAction, &IAccessible::get_accKeyboardShortcut})
        row.push_back(Text(object, get, n));
    return row;
}

}  // namespace

Row AccessibleWindow(HWND window) { return PartRow(*ObjectOf(window), CHILDID_SELF); }

Rows AccessibleParts(HWND window) {
    const Object object = ObjectOf(window);
    LONG count = 0;
    Check(object->get_accChildCount(&count), "get_accChildCount");
    std::unique_ptr<VARIANT[]> children(new VARIANT[static_cast<size_t>(count) + 1]);
    LONG got = 0;
    Check(AccessibleChildren(object.get(), 0, count, children.get(), &got), "AccessibleChildren");
    Rows rows;
    for (LONG i = 0; i < got; ++i) {
        if (children[i].vt != VT_I4) {
            VariantClear(&children[i]);
            continue;  // an object of its own, which no window of ours has
        }
        rows.push_back(PartRow(*object, children[i].lVal));
    }
    return rows;
}

void DoAccessibleAction(HWND window, int child) {
    Check(ObjectOf(window)->accDoDefaultAction(Child(child)), "accDoDefaultAction");
}

void SetAccessibleValue(HWND window, int child, const std::wstring& value) {
    BSTR text = SysAllocStringLen(value.data(), static_cast<UINT>(value.size()));
    const HRESULT result = ObjectOf(window)->put_accValue(Child(child), text);
    SysFreeString(text);
    Check(result, "put_accValue");
}

int AccessiblePartAt(HWND window, POINT point) {
    VARIANT found;
    found.vt = VT_EMPTY;
    Check(ObjectOf(window)->accHitTest(point.x, point.y, &found), "accHitTest");
    return found.vt == VT_I4 ? static_cast<int>(found.lVal) : -1;
}

int AccessibleNeighbour(HWND window, int child, int direction) {
    VARIANT found;
    found.vt = VT_EMPTY;
    Check(ObjectOf(window)->accNavigate(direction, Child(child), &found), "accNavigate");
    return found.vt == VT_I4 ? static_cast<int>(found.lVal) : 0;
}

}  // namespace driver

// Drives programs under test from inside Wine; protocol.h has the form of requests and answers,
// tools/wine_harness/driver.py the other end. Ends when its input ends.
#include <windows.h>

#include <cstdio>
#include <iostream>

#include "tools/wine_driver/accessible.h"
#include "tools/wine_driver/controls.h"
#include "tools/wine_driver/input.h"
#include "tools/wine_driver/menus.h"
#include "tools/wine_driver/process.h"
#include "tools/wine_driver/protocol.h"
#include "tools/wine_driver/window_info.h"

namespace {

using namespace driver;

POINT PointOf(const Request& r, size_t index) {
    return {static_cast<LONG>(r.number(index)), static_cast<LONG>(r.number(index + 1))};
}

int Int(const Request& r, size_t index, int otherwise) { return static_cast<int>(r.number(index, otherwise)); }

struct Verb {
    std::string_view name;
    Rows (*answer)(const Request&);
};

Rows Done() { return {}; }

const Verb kVerbs[] = {
    // looking
    {"windows", [](const Request&) { return TopLevelWindows(); }},
    {"descendants", [](const Request& r) { return Descendants(HandleOf(r, 1)); }},
    {"text", [](const Request& r) { return Rows{{TextOf(WindowOf(r, 1))}}; }},
    {"foreground", [](const Request&) { return Rows{RowOf(GetForegroundWindow())}; }},
    {"focus", [](const Request&) { return Rows{RowOf(Focus())}; }},
    {"at", [](const Request& r) { return Rows{WindowAt(PointOf(r, 1))}; }},
    {"popup", [](const Request&) { return Rows{{PopupMenu()}}; }},
    {"listview", [](const Request& r) { return ListViewItems(WindowOf(r, 1), Int(r, 2, 0), Int(r, 3, 1000)); }},
    {"columns", [](const Request& r) { return ListViewColumns(WindowOf(r, 1)); }},
    {"itemplace", [](const Request& r) { return Rows{ListViewItemPlace(WindowOf(r, 1), Int(r, 2, 0))}; }},
    {"combobox", [](const Request& r) { return ComboBoxItems(WindowOf(r, 1)); }},
    {"scroll", [](const Request& r) { return Rows{TrackBarState(WindowOf(r, 1))}; }},
    {"codepage", [](const Request&) { return Rows{RowOf(GetACP())}; }},
    // processes
    {"running", [](const Request& r) { return Rows{RowOf(Running(ToWide(r.text(1))))}; }},
    {"resources", [](const Request& r) { return Rows{Resources(WindowOf(r, 1))}; }},
    {"fail", [](const Request& r) { return Fail(WindowOf(r, 1), r.text(2)), Done(); }},
    {"accessible", [](const Request& r) { return Rows{AccessibleWindow(WindowOf(r, 1))}; }},
    {"parts", [](const Request& r) { return AccessibleParts(WindowOf(r, 1)); }},
    {"partat", [](const Request& r) { return Rows{RowOf(AccessiblePartAt(WindowOf(r, 1), PointOf(r, 2)))}; }},
    {"partbeside",
     [](const Request& r) { return Rows{RowOf(AccessibleNeighbour(WindowOf(r, 1), Int(r, 2, 0), Int(r, 3, 5)))}; }},
    {"partact", [](const Request& r) { return DoAccessibleAction(WindowOf(r, 1), Int(r, 2, 0)), Done(); }},
    {"partvalue",
     [](const Request& r) { return SetAccessibleValue(WindowOf(r, 1), Int(r, 2, 0), ToWide(r.text(3))), Done(); }},
    // mouse and keyboard
    {"move", [](const Request& r) { return MoveMouse(PointOf(r, 1)), Done(); }},
    {"click", [](const Request& r) { return Click(PointOf(r, 1), r.text(3) == "right", Int(r, 4, 1)), Done(); }},
    {"press", [](const Request& r) { return PressButton(r.text(1) == "right", r.number(2) != 0), Done(); }},
    {"drag",
     [](const Request& r) { return Drag(PointOf(r, 1), PointOf(r, 3), r.text(5) == "right", Int(r, 6, 8)), Done(); }},
    {"wheel", [](const Request& r) { return TurnWheel(PointOf(r, 1), Int(r, 3, 1)), Done(); }},
    {"keys", [](const Request& r) { return StrikeKeys(r.text(1)), Done(); }},
    {"type", [](const Request& r) { return TypeText(ToWide(r.text(1))), Done(); }},
    {"activate", [](const Request& r) { return Rows{RowOf(Activate(WindowOf(r, 1)))}; }},
    // messages
    {"settext",
     [](const Request& r) {
         const std::wstring text = ToWide(r.text(2));
         SendWithLimit(WindowOf(r, 1), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
         return Done();
     }},
    {"send",
     [](const Request& r) {
         return Rows{RowOf(SendWithLimit(WindowOf(r, 1), static_cast<UINT>(r.number(2)),
                                         static_cast<WPARAM>(r.number(3)), static_cast<LPARAM>(r.number(4))))};
     }},
    {"post",
     [](const Request& r) {
         PostMessageW(WindowOf(r, 1), static_cast<UINT>(r.number(2)), static_cast<WPARAM>(r.number(3)),
                      static_cast<LPARAM>(r.number(4)));
         return Done();
     }},
};

std::string Answer(const std::string& line) {
    try {
        const Request request(line);
        for (const Verb& verb : kVerbs)
            if (verb.name == request.verb()) return FormatAnswer(verb.answer(request));
        return FormatFailure("no such verb: " + request.verb());
    } catch (const Failure& failure) {
        return FormatFailure(failure.what());
    }
}

}  // namespace

int main() {
    SetProcessDPIAware();
    for (std::string line; std::getline(std::cin, line);) {
        const std::string answer = Answer(line);
        std::fwrite(answer.data(), 1, answer.size(), stdout);
        std::fflush(stdout);
    }
}

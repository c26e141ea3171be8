// What the form layer needs of a window system. platform/win32 implements it; forms run without it in tests.
#pragma once

#include <functional>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "forms/geometry.h"
#include "forms/scale.h"

namespace quenlox {

class Control;
class Form;
class Surface;
struct Menu;
enum class Property;
enum class PartChange { Name, Value, State, All };  // of an accessible part; All: there are other parts
enum class FormProperty { Caption, Place, Visible, Topmost, Region, Picture, Menu, Layout };

// The outline of a window as rectangles in pixels, in the order of a Windows region.
using Region = std::vector<Rect>;

// The real window of one form, which lets go of it at its own end. A message that is being handled then keeps the window
// until it is done, because a handler of the form may end the form.
class FormHost {
  public:
    virtual ~FormHost() = default;
    virtual void detach() {}                               // the form goes: no call of it comes any more
    virtual void realised() {}                             // the form has its host now; place, arrange and show it
    virtual void formChanged(FormProperty property) = 0;
    virtual void controlChanged(Control& control, Property property) = 0;
    virtual void controlRemoved(Control& control) = 0;
    virtual void setRegion(const Region& region) = 0;      // an empty one leaves nothing of the window
    // Skinned forms: how opaque each pixel of the picture is, 0 to 255 in every channel; it is looked at with every
    // repaint, and has the picture's size. Null: the region alone makes the outline.
    virtual void setOpacity(const Surface* opacity) { (void)opacity; }
    virtual void setScale(Scale scale) = 0;                // skinned forms: pixels of the screen for one of the form
    // Pixels of the form, of a skinned one those of its picture, repainted with the next pass. A skinned form says
    // itself what it has drawn anew.
    virtual void invalidate(const Rect& where) = 0;
    // The same, at once and without a message: for a skinned form's animations, many times a second.
    virtual void paint(const Rect& where) { invalidate(where); }
    virtual void partChanged(int part, PartChange change) { (void)part, (void)change; }  // tells assistive programs
    // Skinned forms: a tip that stands above a place of the form until another is shown or the pointer leaves; an empty one
    // goes.
    virtual void showTip(const std::string& text, Point at) { (void)text, (void)at; }
    virtual void beginDrag() = 0;                          // the system moves the window with the mouse
    virtual void popup(const Menu& menu, Point at) = 0;  // returns when it is closed; the chosen item has been clicked
    virtual void bringToFront() = 0;
    virtual Point fromScreen(Point screen) const { return screen; }  // pixels of the screen to pixels of the form
    virtual Size clientSize() const = 0;                   // pixels
    virtual TwipsPerPixel twipsPerPixel() const = 0;       // of the monitor that the window is on
    virtual void captureMouse(bool on) = 0;
    virtual std::uintptr_t nativeHandle() const = 0;       // for the tray icon
};

class WindowSystem {
  public:
    virtual ~WindowSystem() = default;
    virtual std::shared_ptr<FormHost> realise(Form& form) = 0;
    virtual TwipsPerPixel twipsPerPixel() const = 0;       // of the primary monitor
    virtual Rect workArea(const Rect& near) const = 0;     // of the monitor nearest to a rectangle, in pixels
    virtual bool mouseHeld() const = 0;  // a button of the mouse is down: something may be being dragged
    virtual void pumpMessages() = 0;                       // handles what is pending and returns
    // Runs `work` on a thread of its own and handles messages until it is done, at least once. False when `wanted`,
    // which is asked again and again, says before that nobody waits for it any more: `work` is left to itself then, and
    // must own or outlive what it touches.
    virtual bool runAside(std::function<void()> work, const std::function<bool()>& wanted) = 0;
    virtual bool worksAside() const = 0;  // something runs there that nobody may come back for
    // Runs `task` on the user-interface thread as soon as it is idle; may be called from any thread.
    virtual void post(std::function<void()> task) = 0;
    std::function<void()> onDevicesChanged;                // something was plugged in or out, a sound device perhaps
    // The session of Windows is ending: told once, whichever window hears of it first, also while a menu, a message or
    // another loop of the system is open. The system may end the process at any moment behind it.
    std::function<void()> onSessionEnd;
    virtual int run() = 0;                                 // until quit()
    virtual void quit() = 0;
    // Ends the process here and now: boxes, menus and loops that are still open do not run on to their ends.
    virtual void exitProcess() = 0;
};

}  // namespace quenlox

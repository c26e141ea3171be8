// What the windows of skinned and of ordinary forms have in common: life, place on the screen, timers, keys, dropped
// files and menus. Kept alive by its form and by the message that is being handled.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "forms/control.h"
#include "forms/window_host.h"
#include "platform/win32/dropped_files.h"

namespace quenlox::win32 {

class WindowSystemWin32;

class FormWindow : public FormHost, public std::enable_shared_from_this<FormWindow> {
  public:
    FormWindow(WindowSystemWin32& system, Form& form);
    FormWindow(const FormWindow&) = delete;
    FormWindow& operator=(const FormWindow&) = delete;

    static void RegisterClasses();
    static std::shared_ptr<FormWindow> FromHandle(HWND window);  // null when it is none of ours

    virtual void create() = 0;  // the window and its controls, hidden
    HWND handle() const { return window_; }

    void realised() override;  // places and arranges them, and shows the window if the form is visible
    void detach() override;    // destroys the window
    void formChanged(FormProperty property) override;
    void controlChanged(Control& control, Property property) override;
    void controlRemoved(Control& control) override;
    void setRegion(const Region&) override {}
    void setScale(Scale) override {}
    void invalidate(const Rect& where) override;
    void beginDrag() override;
    void popup(const Menu& menu, Point at) override;
    void bringToFront() override;
    Point fromScreen(Point screen) const override;
    Size clientSize() const override;
    TwipsPerPixel twipsPerPixel() const override;
    void captureMouse(bool on) override;
    std::uintptr_t nativeHandle() const override { return reinterpret_cast<std::uintptr_t>(window_); }

    // Looks at a message of the loop before it is dispatched; true when it has been dealt with.
    virtual bool preview(MSG& message);

  protected:
    using Result = std::optional<LRESULT>;  // nothing: the system's default handling follows

    virtual Result answer(UINT message, WPARAM w, LPARAM l);
    virtual void sized() {}                        // the client area has another size
    virtual Size windowSize() const = 0;           // of the whole window in pixels, for the size of the form in twips
    virtual Size formSize(Size window) const = 0;  // the inverse, twips
    virtual Scale scale() const { return {}; }

    void createWindow(const wchar_t* className, DWORD style, DWORD extendedStyle, HWND owner);
    void placeWindow();           // as the form says
    void tellPlace(bool byUser);  // as the window stands
    void bringOntoScreen();
    // The window becomes so many times as large while it is dragged: the pointer stays on the same place of it.
    void scaleGrip(double factor);
    Form* form() const { return form_; }
    WindowSystemWin32& system() const { return system_; }
    bool attached() const { return form_ != nullptr; }

    // Keys, also from the controls of a dialog.
    bool key(UINT message, WPARAM virtualKey);

  private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l) noexcept;
    void show(bool visible);
    void setTimer(Timer& timer);
    void timerDue(WPARAM id);
    void filesDropped(HDROP drop);
    Result wheel(WPARAM w, LPARAM l);
    Result appCommand(LPARAM l);
    void moving(RECT& rect) const;

    WindowSystemWin32& system_;
    Form* form_;
    HWND window_ = nullptr;
    bool ready_ = false;    // before, messages come from the window's making and not from the user
    bool placing_ = false;  // the place is being set by the program, so it is not reported back
    bool dragging_ = false;
    POINT grip_{};  // where the pointer holds the window while it is dragged
    int wheelRest_ = 0;
    WPARAM mediaHeld_ = 0;
    WPARAM mediaKey_ = 0;  // a media key that has been reported and may come again as a command
};

inline constexpr wchar_t kSkinnedClass[] = L"Quenlox.Skinned";
inline constexpr wchar_t kDialogClass[] = L"Quenlox.Dialog";

}  // namespace quenlox::win32

// A window of the program without its look: place, state, controls and handlers. A Form works without a host, which is
// how the tests run it; with one it is a real window. All on the user-interface thread.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "forms/accessible_part.h"
#include "forms/control.h"
#include "forms/layout.h"
#include "forms/menu.h"
#include "forms/window_host.h"

namespace quenlox {

class Form {
  public:
    // A skinned form has no frame and shows picture(); a dialog has a frame and native controls, and a sizeable one can
    // be resized by the user.
    enum class Kind { Skinned, Dialog, Sizeable };

    Form(std::string name, Kind kind);
    virtual ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string& name() const { return name_; }
    Kind kind() const { return kind_; }
    const std::vector<Control*>& controls() const { return controls_; }  // in the order of their making

    // Makes it a real window, hidden until show().
    void realise(WindowSystem& system);
    // The same, put off until it is shown for the first time: a window that nobody opens costs nothing.
    void realiseWhenShown(WindowSystem& system) { system_ = &system; }
    FormHost* host() const { return host_.get(); }

    // Place and size in twips of the screen, the frame included.
    int left() const { return left_; }
    int top() const { return top_; }
    int width() const { return width_; }
    int height() const { return height_; }
    void move(int left, int top);
    void setSize(int width, int height);

    const std::string& caption() const { return caption_; }
    void setCaption(std::string caption);
    bool visible() const { return visible_; }
    bool minimised() const { return minimised_; }  // then it is visible all the same
    // A window that appears by itself does not take the keyboard: `activate` false. One that is shown stays where it
    // is.
    void show(bool activate = true);
    bool activates() const { return activates_; }
    void hide();
    bool topmost() const { return topmost_; }
    void setTopmost(bool topmost);
    // Closes it as the user would: Form_Unload may refuse. True when it has gone.
    bool unload();
    bool unloaded() const { return unloaded_; }
    void popup(const Menu& menu, Point at);  // at in pixels of the client area

    // Handlers; a form overrides what it needs.
    virtual void Form_Load() {}
    virtual void Form_Unload(bool& cancel) { (void)cancel; }
    virtual void Form_Shown() {}                             // it has become visible
    virtual void Form_Resize(Size client) { (void)client; }  // pixels
    virtual void Form_Moved() {}
    virtual void Form_KeyDown(int key, int shift) { (void)key, (void)shift; }  // as in forms/keys.h
    bool keyTaken = false;  // set by Form_KeyDown: neither a control nor the dialog gets the key
    virtual void Form_KeyUp(int key, int shift) { (void)key, (void)shift; }
    virtual void Form_FilesDropped(const std::vector<std::string>& files, Point at) { (void)files, (void)at; }
    virtual void Form_Wheel(int notches, Point at) { (void)notches, (void)at; }  // positive: away from the user
    // Mouse on a skinned form; the form finds out which control is meant. button 1 left, 2 right, 0 none held.
    virtual void Form_MouseDown(int button, int shift, Point at) { (void)button, (void)shift, (void)at; }
    virtual void Form_MouseMove(int button, int shift, Point at) { (void)button, (void)shift, (void)at; }
    virtual void Form_MouseUp(int button, int shift, Point at) { (void)button, (void)shift, (void)at; }
    virtual void Form_DoubleClick(int button, int shift, Point at) { (void)button, (void)shift, (void)at; }
    // Something has happened at the program's icon in the notification area: 512 the pointer is there, 514 left button
    // up, 516 right button down.
    virtual void Form_TrayIcon(int message) { (void)message; }
    // Shift+F10 or the menu key; in an ordinary form a right click too, on what has no menu of its own.
    virtual void Form_ContextMenu(Point at) { (void)at; }
    // A media key of the keyboard, as a Windows application command (11 next, 12 previous, 13 stop, 14 play or pause,
    // 46 play, 47 pause). True when it has been dealt with.
    virtual bool Form_AppCommand(int command) { return onAppCommand && onAppCommand(command); }
    std::function<bool(int command)> onAppCommand;
    std::function<void()> onHelp;  // F1
    virtual std::string Form_TooltipAt(Point at) {
        (void)at;
        return {};
    }

    // What a skinned form looks like; composed when asked for after a change.
    virtual const Surface* picture() { return nullptr; }
    // The parts of a skinned form, in the order of reading.
    virtual std::vector<AccessiblePart> accessibleParts() { return {}; }
    // How the controls of an ordinary form are arranged, and in which order the Tab key goes through them.
    virtual Layout layout() { return {}; }
    virtual const Menu* menuBar() { return nullptr; }
    // Smallest size of a sizeable form in twips.
    virtual Size minimumTwips() const { return {1500, 1200}; }

    // The first time to the middle of the screen, later where the user has put it: for a window whose place is not
    // kept.
    void moveToMiddleOnce();
    // Moves it to a place that nobody has chosen: shown there it lies on the screen as a whole, as far as it fits.
    void suggestPlace(int left, int top);
    bool placeSuggested() const { return suggested_; }

    // For controls and hosts.
    void add(Control& control);
    void remove(Control& control);
    void controlChanged(Control& control, Property property);
    void placedByUser(int left, int top, int width, int height);  // the window has been moved or sized on the screen
    void minimisedByHost(bool minimised) { minimised_ = minimised; }

  protected:
    // For a form that draws its controls itself.
    virtual void controlChangedHere(Control& control, Property property) { (void)control, (void)property; }
    void formChanged(FormProperty property);
    void relayout() { formChanged(FormProperty::Layout); }  // layout() gives something else now

  private:
    std::string name_;
    Kind kind_;
    std::vector<Control*> controls_;
    std::shared_ptr<FormHost> host_;
    WindowSystem* system_ = nullptr;
    int left_ = 0, top_ = 0, width_ = 4500, height_ = 3000;
    std::string caption_;
    bool visible_ = false;
    bool activates_ = true;
    bool minimised_ = false;
    bool topmost_ = false;
    bool unloaded_ = false;
    bool placed_ = false;
    bool suggested_ = false;
};

}  // namespace quenlox

// The box of the folder browser that chooses a drive.

#include <algorithm>

#include "forms/list_view.h"
#include "platform/win32/controls/native_control.h"
#include "platform/win32/dark_paint.h"

namespace quenlox::win32 {
namespace {

class NativeDriveBox : public NativeControl {
  public:
    NativeDriveBox(ControlHost& host, DriveListBox& box)
        : NativeControl(host, box, {WC_COMBOBOXW, WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST | CBS_HASSTRINGS}),
          box_(box) {
        subclass();
        showDrives();
    }
    Size wish() const override { return {horizontal(60), vertical(14)}; }
    void changed(Property property) override {
        NativeControl::changed(property);
        if (property == Property::Items) showDrives();
        if (property == Property::Value) showDrive();
    }
    void command(WORD code, WORD) override {
        const auto row = static_cast<std::size_t>(send(CB_GETCURSEL));
        if (code == CBN_SELCHANGE && row < box_.drives().size()) box_.setDrive(box_.drives()[row]);
    }

  protected:
    CaptionUse captionUse() const override { return CaptionUse::NameBesideValue; }
    bool paintsItself() const override { return true; }
    void paint(HDC dc, const Palette& palette) const override { PaintComboBox(window(), dc, palette); }

  private:
    void showDrives() {
        send(CB_RESETCONTENT);
        for (const std::string& drive : box_.drives()) send(CB_ADDSTRING, 0, Wide(drive).c_str());
        showDrive();
    }
    void showDrive() {
        const auto& drives = box_.drives();
        const auto found = std::find(drives.begin(), drives.end(), box_.drive());
        send(CB_SETCURSEL,
             found == drives.end() ? static_cast<WPARAM>(-1) : static_cast<WPARAM>(found - drives.begin()));
    }

    DriveListBox& box_;
};

}  // namespace

std::unique_ptr<NativeControl> MakeNativeDriveBox(ControlHost& host, Control& control) {
    if (auto* box = dynamic_cast<DriveListBox*>(&control)) return std::make_unique<NativeDriveBox>(host, *box);
    return nullptr;
}

}  // namespace quenlox::win32

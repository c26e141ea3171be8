#include "skin/tray_icon.h"

#include <utility>

namespace quenlox {
namespace {

constexpr int kPointer = 512, kLeftUp = 514, kRightDown = 516;

}  // namespace

TrayIcon::TrayIcon(Form& owner, Shell& shell, std::function<std::string()> tip)
    : owner_(owner), shell_(shell), tip_(std::move(tip)) {
    shell_.onTrayIconLost = [this] {
        if (std::exchange(shown_, false)) onLost();
    };
}

bool TrayIcon::put() {
    told_ = tip_();
    if (!shown_) shown_ = shell_.addTrayIcon({&owner_, told_});
    return shown_;
}

void TrayIcon::take() {
    if (std::exchange(shown_, false)) shell_.deleteTrayIcon({&owner_, {}});
}

void TrayIcon::renewTip() {
    if (!shown_) return;
    std::string tip = tip_();
    if (tip == told_) return;
    told_ = std::move(tip);
    shell_.changeTrayIcon({&owner_, told_});
}

void TrayIcon::event(int message) {
    if (!shown_) return;
    // The time in the tip goes on: it is told anew when the pointer comes to the icon, and not every second.
    if (message == kPointer) renewTip();
    if (message == kLeftUp) onClick();
    if (message == kRightDown) onMenu();
}

}  // namespace quenlox

// The window system of Windows: the message loop, tasks from other threads, monitors, and the realising of forms. Lives
// on the user-interface thread; only post() may be called from others.
#pragma once

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>

#include "forms/window_host.h"
#include "platform/win32/win32.h"

namespace quenlox::win32 {

class WindowSystemWin32 : public WindowSystem {
  public:
    WindowSystemWin32();
    ~WindowSystemWin32() override;

    std::shared_ptr<FormHost> realise(Form& form) override;
    TwipsPerPixel twipsPerPixel() const override;
    Rect workArea(const Rect& place) const override;
    bool mouseHeld() const override;
    void pumpMessages() override;
    bool runAside(std::function<void()> work, const std::function<bool()>& wanted) override;
    bool worksAside() const override { return *aside_ > 0; }
    void post(std::function<void()> task) override;
    int run() override;
    void quit() override;
    void exitProcess() override;

    void endSession();  // one of the windows has been told

    // Owns the windows that have no button of their own in the taskbar. Never shown.
    HWND hiddenOwner() const { return hidden_.get(); }

  private:
    static LRESULT CALLBACK HiddenProcedure(HWND window, UINT message, WPARAM w, LPARAM l) noexcept;
    void runTask();
    static void dispatch(MSG& message);

    OwnedWindow hidden_;
    std::mutex mutex_;
    std::deque<std::function<void()>> tasks_;
    std::shared_ptr<std::atomic<int>> aside_ = std::make_shared<std::atomic<int>>(0);
};

inline TwipsPerPixel TwipsFor(UINT dpi) { return {1440.0 / dpi, 1440.0 / dpi}; }

// The work area of every monitor, in screen pixels.
std::vector<Rect> WorkAreas();

}  // namespace quenlox::win32

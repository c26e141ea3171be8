// The handlers of the main window that the settings invoke: a stored mode is put one step back and stepped forward by
// the handler, which also shows it.
#pragma once

namespace quenlox {

class MainWindowHandlers {
  public:
    virtual ~MainWindowHandlers() = default;
    virtual void PlayModeLabel_Click(int button) = 0;  // 1: the left button, the only one that acts
    virtual void TitleLabel_DblClick() = 0;
    virtual void TimeLabel_Click(int index, int button) = 0;  // index of the label, 2 or 3
    virtual bool alwaysOnTop() const = 0;
    virtual void setAlwaysOnTop(bool on) = 0;
    virtual void moveTo(int left, int top) = 0;  // twips
    virtual int leftTwips() const = 0;
    virtual int topTwips() const = 0;
};

}  // namespace quenlox

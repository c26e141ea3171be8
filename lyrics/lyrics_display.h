// Brings the lyrics to the screen in step with the music: on the panel of a skin that has a place for them, else in the
// lyrics window. Decides when that window comes up by itself. On the user-interface thread; draws nothing that nobody
// can see, and only what has changed.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "lyrics/lyrics_picture.h"

namespace quenlox {

class FileSystem;
class Form;
class FormLyrics;
struct Options;
class TextPainter;
class Timer;
class Vbmp3;
struct GlobalState;

class LyricsDisplay {
  public:
    struct MainWindow {
        Form& form;
        PictureBox& panel;  // visible while the skin has a lyrics area
        Timer& timer;
        std::function<void()> showLyricsWindow;  // without taking the keyboard
    };

    LyricsDisplay(GlobalState& state, const Options& options, Vbmp3& vbmp3, FileSystem& files,
                  TextPainter& painter, FormLyrics& window, MainWindow main);

    // One step of the lyrics timer, and whenever something has to be seen at once.
    void Timer6_Timer();
    // A track has been opened and its lyrics looked for: the window comes up for lyrics, and stays for tracks without.
    void trackOpened();
    // A skin has been loaded; `inWindow` when it has no lyrics area. On the panel the window is wanted only for text
    // that cannot run there.
    void lyricsDisplayMode(bool inWindow);
    // The user has switched the lyrics window on or off.
    void lyricsShownChanged();
    // The picture folder is another one.
    void picturesChanged();

  private:
    bool runs() const;         // line by line
    bool wantsWindow() const;  // by itself
    void chooseWindow();
    void followOptions();
    void followWindow();
    bool panelSeen() const;
    bool windowSeen() const;
    void findPicture();
    void drawPanel(const LyricsLines& lines);
    void schedule(const LyricsLines& lines);

    GlobalState& state_;
    const Options& options_;
    Vbmp3& vbmp3_;
    FileSystem& files_;
    TextPainter& painter_;
    FormLyrics& window_;
    MainWindow main_;
    std::optional<LyricsLines> panelLines_;  // what the panel shows; none: it has to be drawn
    LyricsPanelLook panelLook_;
    int shift_ = 0;        // milliseconds, as the library knows it
    bool spread_ = false;  // the library spreads untimed lines over the track
    bool windowDue_ = false;
    std::optional<std::string> picturedTrack_;  // whose picture the window has; none: it is to be looked for
};

}  // namespace quenlox

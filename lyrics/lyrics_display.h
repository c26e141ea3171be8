// Brings the lyrics to the screen in step with the music: on the panel of a skin that has a place for them, else in the
// lyrics window. Decides when that window comes up by itself. On the user-interface thread; draws nothing that nobody
// can see, and only what has changed.
#pragma once

#include <optional>
#include <string>

#include "lyrics/lyrics_picture.h"

namespace quenlox {

class FileSystem;
class FormLyrics;
struct Options;
class TextPainter;
class Vbmp3;
struct GlobalState;

// What the lyrics need of the main window.
class LyricsScreen {
  public:
    virtual ~LyricsScreen() = default;
    virtual bool seen() const = 0;                  // the window is on the screen
    virtual bool hasPanel() const = 0;              // the skin has a lyrics area
    virtual LyricsPanelLook panelLook() const = 0;  // size of the type, resolution and background of the area
    virtual Surface& panel() = 0;
    virtual void panelDrawn(const std::string& line) = 0;  // with the line that is sung now
    virtual std::string title() const = 0;                 // of the track, as it is shown
    virtual void setInterval(int milliseconds) = 0;        // until the next update
    virtual void showLyricsWindow() = 0;                   // without taking the keyboard
};

class LyricsDisplay {
  public:
    LyricsDisplay(GlobalState& state, const Options& options, Vbmp3& vbmp3, FileSystem& files, TextPainter& painter,
                  FormLyrics& window, LyricsScreen& main);

    // With every tick of its timer, and whenever something has to be seen at once.
    void update();
    // A track has been opened and its lyrics looked for: the window comes up for lyrics, and stays for tracks without.
    void trackOpened();
    // A skin has been loaded; `inWindow` when it has no lyrics area. On the panel the window is wanted only for text
    // that cannot run there.
    void lyricsDisplayMode(bool inWindow);
    // The user has switched the lyrics window on or off.
    void lyricsShownChanged();
    // The picture folder is another one.
    void picturesChanged();
    // Milliseconds that the lines of this track come later, until another is opened.
    int trackShift() const { return trackShift_; }
    void setTrackShift(int milliseconds);

  private:
    bool runs() const;         // line by line
    bool wantsWindow() const;  // by itself
    void chooseWindow();
    void followOptions();
    void followWindow();
    bool windowSeen() const;
    void findPicture();
    LyricsNotice notice() const;
    void drawPanel(const LyricsLines& lines);
    void schedule(const LyricsLines& lines);

    GlobalState& state_;
    const Options& options_;
    Vbmp3& vbmp3_;
    FileSystem& files_;
    TextPainter& painter_;
    FormLyrics& window_;
    LyricsScreen& main_;
    std::optional<LyricsLines> panelLines_;  // what the panel shows; none: it has to be drawn
    LyricsPanelLook panelLook_;
    int shift_ = 0;        // milliseconds, as the library knows it
    int trackShift_ = 0;   // the part of it that is the track's
    bool spread_ = false;  // the library spreads untimed lines over the track
    bool windowDue_ = false;
    std::optional<std::string> picturedTrack_;  // whose picture the window has; none: it is to be looked for
};

}  // namespace quenlox

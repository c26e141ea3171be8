// What the user tells the lyrics window, done: looks and lines are options, timing is of the track that plays until it
// is saved into its lyrics file. On the user-interface thread.
#pragma once

#include <functional>

#include "lyrics/lyrics_menu.h"

namespace quenlox {

class Dialogs;
class FileSystem;
class FormLyrics;
class LyricsDisplay;
class LyricsLookup;
class OptionStore;
struct GlobalState;

class LyricsCommands {
  public:
    struct Parts {
        GlobalState& state;
        OptionStore& options;
        FormLyrics& window;
        LyricsDisplay& display;
        LyricsLookup& lookup;
        FileSystem& files;
        Dialogs& dialogs;
    };
    // Takes over the commands of the window.
    explicit LyricsCommands(const Parts& parts);

    std::function<void()> onOptions;  // the options of lyrics are to be shown

  private:
    LyricsMenuFacts facts() const;
    void perform(LyricsCommand command, int number);
    void shift(int milliseconds);
    void saveTiming();
    void reread();

    Parts parts_;
};

}  // namespace quenlox

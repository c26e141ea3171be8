// The composition root: owns the shared state, the playback and the windows, and knows in which order they come up and
// go down. On the user-interface thread; it lives as long as the main window.
#pragma once

#include <array>
#include <memory>
#include <string>

#include "about/form_info.h"
#include "app/main_screens.h"
#include "app/settings_file.h"
#include "convert/conversion_run.h"
#include "convert/form_conv.h"
#include "equalizer/form_gra.h"
#include "forms/window_host.h"
#include "lyrics/form_lyrics.h"
#include "lyrics/lyrics_commands.h"
#include "lyrics/lyrics_display.h"
#include "lyrics/lyrics_lookup.h"
#include "options/form_opt.h"
#include "platform/dialogs.h"
#include "platform/file_manager.h"
#include "platform/file_system.h"
#include "platform/gogo.h"
#include "platform/media_control.h"
#include "platform/mixer.h"
#include "platform/output_devices.h"
#include "platform/random.h"
#include "platform/shell.h"
#include "platform/text_painter.h"
#include "platform/vbmp3.h"
#include "playback/media_engine.h"
#include "playback/pitch_control.h"
#include "playback/play_state_monitor.h"
#include "playback/transport.h"
#include "playback/volume_control.h"
#include "playlist/form_list.h"
#include "playlist/playlists.h"
#include "playlist/quiet_save.h"
#include "skin/form_top.h"
#include "speana/panel_animation.h"
#include "state/global_state.h"
#include "state/option_store.h"
#include "tags/form_tag.h"

namespace quenlox {

// The services of the system. All must outlive the application.
struct Services {
    WindowSystem& windows;
    TextPainter& painter;
    Dialogs& dialogs;
    FileSystem& files;
    MediaControl& mediaControl;
    Mixer& mixer;
    Shell& shell;
    Vbmp3& vbmp3;
    std::shared_ptr<Gogo> gogo;  // a thread that hangs in it at the end keeps it
    Random& random;
    OutputDevices& outputDevices;
    FileManager& fileManager;
};

class Application {
  public:
    Application(const Services& services, std::string commandLine);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // Brings everything up: settings, skin, lists, the file of the command line or of the last time.
    void load();
    int run() { return services_.windows.run(); }

    GlobalState& state() { return state_; }
    bool leftBehind() const { return conversion_.leftBehind(); }  // something still works in a library
    FormTop& top() { return top_; }
    const Options& options() const { return options_; }
    FormOpt& optionsWindow() { return optionsWindow_; }
    FormLyrics& lyrics() { return lyrics_; }
    FormList& list() { return list_; }

  private:
    void unload();
    void endSession();
    void save();
    void noteDroppedEdits();
    std::array<Form*, 7> otherWindows();  // all but the main window
    void loadLibrary();
    void placeAroundMain();
    void followOptions();
    void setOutput();
    void followDevices();
    void connectWindows();
    void connectConverter();
    FormTop::Hooks hooksOfMain();
    void openFirstFile();
    void showHelp();
    void openFolder();
    FormTop::Figures figures() const;

    Services services_;
    std::string commandLine_;
    std::string helpFile_;

    GlobalState state_;
    OptionStore options_;      // outlives whoever listens to it
    SplitValues splitValues_;  // of settings and skins
    FormOpt optionsWindow_;
    FormTop top_;
    MediaEngine engine_;
    Playlists lists_;
    PitchControl pitch_;
    Transport transport_;
    PlayStateMonitor monitor_;
    VolumeControl volume_;
    FormList list_;
    FormGra equalizer_;
    FormLyrics lyrics_;
    LyricsOfMain lyricsScreen_{top_, lyrics_};
    LyricsLookup lyricsLookup_;
    LyricsDisplay lyricsDisplay_;
    LyricsCommands lyricsCommands_;
    FormTag tag_;
    ConversionRun conversion_;
    FormConv convert_;
    FormInfo about_;
    PanelOfMain panelScreen_{top_};
    PanelAnimation panel_;
    SettingsFile settings_;
    QuietSave quietSave_;
    bool ending_ = false;
};

}  // namespace quenlox

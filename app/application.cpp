#include "app/application.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <iterator>
#include <utility>

#include "app/command_line.h"
#include "app/save_at_end.h"
#include "platform/user_files.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr const char* kVersion = QUENLOX_VERSION;
// Lyrics behaviour of the library: karaoke timing, untimed lines not spread over the track, at-mark tags, lines that
// follow a seek at once.
constexpr int kKaraokeUse = 1, kNotTagLyricsLine = 0, kAtMarkTag = 1, kSeekPlay = 1;
// What the user should know of the end of the last run.
constexpr std::string_view kNotesFileName = "Quenlox.log";
constexpr std::uint64_t kLargestNotes = 64u << 10;                     // bytes; a longer one begins anew
constexpr int kHelpContext = 11, kHelpContextData = 1, kHelpQuit = 2;  // commands of WinHelp

}  // namespace

Application::Application(const Services& services, std::string commandLine)
    : services_(services),
      commandLine_(std::move(commandLine)),
      optionsWindow_(state_, options_),
      top_(state_, options_, services.files, services.dialogs, services.shell, services.painter, splitValues_),
      engine_(state_, options_, services.vbmp3, services.mediaControl, services.files, services.windows, top_),
      lists_(state_, options_, services.files, services.vbmp3, services.random),
      pitch_(state_, services.vbmp3, options_, engine_.status()),
      transport_({state_, engine_, pitch_, services.vbmp3, lists_, options_}),
      monitor_(state_, engine_, transport_, services.vbmp3, services.mediaControl, options_),
      volume_(state_, services.mixer, options_),
      list_(state_, options_, lists_, services.files, services.dialogs, services.fileManager),
      equalizer_(state_, services.vbmp3, services.dialogs, services.random, services.files),
      lyrics_(state_, options_, services.painter),
      lyricsLookup_(state_, options_, services.vbmp3, services.files, engine_.status(), lyrics_),
      lyricsDisplay_(state_, options_, services.vbmp3, services.files, services.painter, lyrics_, lyricsScreen_),
      lyricsCommands_({state_, options_, lyrics_, lyricsDisplay_, lyricsLookup_, services.files, services.dialogs}),
      tag_(state_, options_, services.vbmp3, services.files, services.dialogs),
      conversion_(state_, services.vbmp3, services.gogo, services.files, services.windows),
      convert_(conversion_, state_, services.dialogs, services.fileManager),
      about_(services.dialogs, services.files, services.shell),
      panel_(state_, options_, services.vbmp3, panelScreen_),
      settings_({state_, options_, splitValues_, services.files,
                 [this](const std::string& file) { transport_.remember(file); }, top_, list_, optionsWindow_,
                 equalizer_, lyrics_, tag_, conversion_}),
      quietSave_(state_, lists_) {
    connectWindows();
    connectConverter();
    top_.connect({&transport_, &engine_, &monitor_, &pitch_, &volume_},
                 {&list_, &optionsWindow_, &tag_, &convert_, &equalizer_, &lyrics_, &about_}, hooksOfMain());
}

Application::~Application() = default;

void Application::connectWindows() {
    // A file that could not be opened is the current one too.
    transport_.onTrackChanged = [this] {
        list_.trackChanged();
        lyricsLookup_.LoadLyrics();
        lyricsDisplay_.trackOpened();
        tag_.currentFileOpened();
    };
    lyrics_.onClosedByUser = [this] { options_.set(&Options::LyricsShown, false); };
    lyrics_.onKeyDown = [this](int key, int shift) { top_.playbackKey(key, shift); };
    lyrics_.onKeyUp = [this](int key, int shift) { top_.Form_KeyUp(key, shift); };
    lyricsCommands_.onOptions = [this] {
        optionsWindow_.showPage(FormOpt::kLyricsPage);
        top_.showWindow(optionsWindow_);
    };
    list_.onOpen = [this](const Transport::Track& track, int intent, Transport::Start start) {
        return transport_.open(track, intent, start);
    };
    equalizer_.onKeyDown = [this](int key, int shift) { top_.playbackKey(key, shift); };
    equalizer_.onKeyUp = [this](int key, int shift) { top_.Form_KeyUp(key, shift); };
    for (Form* form : otherWindows()) {
        form->onAppCommand = [this](int command) { return top_.Form_AppCommand(command); };
        form->onHelp = [this] { showHelp(); };
    }
    list_.onStopAfter = [this](bool stops) { return transport_.setStopAfter(stops); };
    list_.onQueueChanged = [this] { transport_.RenewNextFile(); };
    list_.onEditTag = [this](const std::string& path) {
        if (tag_.edit(path)) top_.showWindow(tag_);
    };
    transport_.onStopAfterChanged = [this](bool stops) { list_.setStopAfter(stops); };
    tag_.connect({&transport_,
                  {[this](const std::string& from, const std::string& to) { lists_.renamePath(from, to); },
                   [this] { list_.refreshBrowser(); }},
                  [this](const std::string& path) { lists_.forgetTexts(path); },
                  [this] { return list_.selectedPaths(); },
                  &services_.windows});
}

FormTop::Hooks Application::hooksOfMain() {
    FormTop::Hooks hooks;
    hooks.fillTagWindow = [this] { tag_.fill(); };
    hooks.drawPanel = [this] { panel_.drawFrame(); };
    hooks.panelClicked = [this](int button) { panel_.clicked(button); };
    hooks.unload = [this] { unload(); };
    hooks.idle = [this] {
        followDevices();  // what the system tells nobody
        quietSave_.tick(QuietSave::Clock::now(), list_.busy() || services_.windows.mouseHeld());
    };
    hooks.help = [this] { showHelp(); };
    hooks.openFolder = [this] { openFolder(); };
    hooks.updateLyrics = [this] { lyricsDisplay_.update(); };
    hooks.lyricsDisplayMode = [this](bool inWindow) { lyricsDisplay_.lyricsDisplayMode(inWindow); };
    hooks.figures = [this] { return figures(); };
    hooks.pollConverter = [this] { conversion_.poll(); };
    return hooks;
}

std::array<Form*, 7> Application::otherWindows() {
    return {&list_, &optionsWindow_, &equalizer_, &lyrics_, &tag_, &convert_, &about_};
}

void Application::load() {
    top_.realise(services_.windows);
    for (Form* form : otherWindows()) form->realiseWhenShown(services_.windows);
    services_.vbmp3.vbmp3_init();
    const bool firstStart = !settings_.exists();
    settings_.LoadSettings();
    followOptions();
    top_.LoadSkinNamed(state_.SkinName);
    if (firstStart) placeAroundMain();
    volume_.open();
    loadLibrary();
    top_.ListSkins();
    lists_.LoadListFile();
    // Not earlier: what has not been read yet must not be written.
    services_.windows.onSessionEnd = [this] { endSession(); };
    engine_.ShowTitle();
    helpFile_ = services_.files.programFolder() + "\\Quenlox.hlp";
    openFirstFile();
    top_.setCaption("Quenlox  Ver " QUENLOX_VERSION_NUMBERS);
    top_.setAlwaysOnTop(top_.alwaysOnTop());
    if (top_.inTray()) return;  // the other windows come with the main window
    if (!top_.visible()) top_.show();
    if (state_.ListShown) top_.showWindow(list_, false);
}

// Nobody has placed a window yet: they come up around the main window, and those that can only lie over another leave
// its title bar free.
void Application::placeAroundMain() {
    constexpr int kTitleBar = 450;  // twips
    const double scale = top_.scale().factor();
    const int right = top_.left() + RoundHalfToEven(top_.width() * scale);
    const int below = top_.top() + RoundHalfToEven(top_.height() * scale);
    list_.suggestPlace(right, top_.top());
    lyrics_.suggestPlace(top_.left(), below);
    equalizer_.suggestPlace(top_.left(), below + lyrics_.height());
    optionsWindow_.suggestPlace(right + kTitleBar, top_.top() + kTitleBar);
    tag_.suggestPlace(right + 2 * kTitleBar, top_.top() + 2 * kTitleBar);
}

void Application::connectConverter() {
    ConversionRun::Hooks hooks;
    hooks.stopPlayback = [this] { transport_.stopForConversion(); };
    hooks.letGo = [this](const std::string& path) { transport_.letGoOf(path); };
    hooks.showStatus = [this](PlayStatus status) { transport_.showConversion(status); };
    hooks.openHeard = [this](const std::string& path) { transport_.openForConversion(path); };
    hooks.made = hooks.openHeard;
    hooks.failed = [this] { transport_.conversionFailed(); };
    hooks.refreshBrowserFiles = [this] { list_.refreshBrowser(); };
    hooks.setPolling = [this](bool on) { top_.Timer7.setEnabled(on); };
    conversion_.connect(hooks);
    transport_.onDecodeEnded = [this] { conversion_.decodeEnded(); };
    monitor_.decodesUnheard = [this] { return conversion_.decodesUnheard(); };
}

// Options act at once. The rooms read them whenever they need them; here is who has to hear of a change.
void Application::followOptions() {
    optionsWindow_.connect({&services_.dialogs, &services_.files, &services_.outputDevices});
    const auto follow = [this](std::vector<OptionField> fields, std::function<void()> act) {
        options_.listen(std::move(fields), std::move(act));
    };
    follow({&Options::TitleAnimation, &Options::SpectrumShown, &Options::OperationPanel, &Options::SkinZoom},
           [this] { top_.optionsChanged(); });
    follow({&Options::SpectrumSpeed}, [this] { panel_.followSpeed(); });
    follow({&Options::SpectrumBands}, [this] { panel_.setBands(options_->SpectrumBands); });
    follow({&Options::HighPitch, &Options::LowPitch, &Options::StepPitch}, [this] { pitch_.amountChanged(); });
    follow({&Options::Quality}, [this] { services_.vbmp3.vbmp3_setQuality(options_->Quality); });
    follow({&Options::OutputDevice, &Options::OutputBuffer}, [this] {
        setOutput();
        volume_.refresh();
    });
    follow({&Options::VolumeDrives}, [this] { volume_.sourcesChosen(); });
    follow({&Options::LyricsShown}, [this] { lyricsDisplay_.lyricsShownChanged(); });
    follow({&Options::LyricsLine, &Options::LyricsFont, &Options::LyricsBold, &Options::LyricsSecondColor,
            &Options::TimeTagShown, &Options::LyricsSelf, &Options::LyricsTime, &Options::LyricsSmooth},
           [this] { lyricsDisplay_.update(); });
    follow({&Options::LyricsFolder, &Options::Lyrics3First}, [this] {
        lyricsLookup_.lookAgain();
        lyricsDisplay_.trackOpened();
    });
    follow({&Options::PictureFolder}, [this] { lyricsDisplay_.picturesChanged(); });
    // Rows show texts that were told from file names, or shall be now.
    follow({&Options::EstimateFromFileName}, [this] {
        if (state_.ListType == 0) lists_.forgetTexts();
    });
    follow({&Options::RenameFormat}, [this] {
        tag_.formatChanged();
        if (state_.ListType == 0 && options_->EstimateFromFileName) lists_.forgetTexts();
    });

    panel_.followSpeed();
    panel_.setBands(options_->SpectrumBands);
    services_.vbmp3.vbmp3_setQuality(options_->Quality);
    setOutput();
    services_.windows.onDevicesChanged = [this] { followDevices(); };
}

void Application::setOutput() { services_.vbmp3.vbmp3_setOutput(options_->OutputDevice, options_->OutputBuffer); }

// Numbers of devices and mixers count anew when there are others.
void Application::followDevices() {
    if (optionsWindow_.followDevices()) volume_.open();
}

void Application::loadLibrary() {
    Vbmp3& library = services_.vbmp3;
    library.vbmp3_setKaraokeUse(kKaraokeUse);
    library.vbmp3_setNotTagLyricsLine(kNotTagLyricsLine);
    library.vbmp3_useAtMarkTag(kAtMarkTag);
    library.vbmp3_setSeekPlay(kSeekPlay);
    tag_.fillGenres();
    about_.setVersions({kVersion, library.vbmp3_getVersion(), services_.gogo->version()});
}

void Application::openFirstFile() {
    std::string file;
    const int flags = ParseCommandLine(commandLine_, file, state_, engine_.status());
    const bool named = !file.empty();
    if (!named) {
        file = state_.CurrentFile;
    } else if (!IsAbsolutePath(file)) {
        // Typed in a console: counts from the folder there, and is remembered with it.
        const std::string full = JoinPath(services_.files.currentFolder(), file);
        if (services_.files.fileExists(full)) file = full;
    }
    const bool inTray = flags / 10 == 1;
    if (!inTray) {
        // Seen at once: opening a file of a server that is switched off takes seconds.
        top_.setCaption("Quenlox");
        top_.show();
        if (FormHost* host = top_.host()) host->paint(top_.picture()->rect());
    }
    transport_.openFirst(file, named, flags % 10 == 1);
    if (inTray) top_.moveToTray();
}

void Application::openFolder() {
    const auto folder = services_.dialogs.chooseFolder("開くフォルダの選択", state_.CurrentFolder);
    if (!folder || folder->empty()) return;
    list_.showFolder(*folder);
    top_.showWindow(list_);
}

void Application::showHelp() {
    // The guide is what a Windows without WinHelp can show; a help file that somebody has put there goes first.
    const std::string guide = JoinPath(services_.files.programFolder(), "Quenlox.html");
    FileSystem& files = services_.files;
    if (!files.fileExists(helpFile_) && files.fileExists(guide) && services_.shell.openInBrowser(guide)) return;
    services_.shell.WinHelp(top_, helpFile_, kHelpContext, kHelpContextData);
}

FormTop::Figures Application::figures() const {
    static constexpr const char* kListNames[] = {"A", "B", "C"};
    FormTop::Figures figures;
    const int list = state_.ListNo;
    if (list >= 0 && list < static_cast<int>(std::size(kListNames))) {
        const int current = state_.CurrentIndex[static_cast<std::size_t>(list)], count = lists_.count(list);
        figures.listPlace = std::string(kListNames[list]) + " ";
        if (current >= 0) figures.listPlace += std::to_string(current + 1) + "/";
        figures.listPlace += std::to_string(count);
        if (current < 0) figures.listPlace += "曲";
    }
    const std::time_t now = std::time(nullptr);
    if (const std::tm* local = std::localtime(&now)) {
        figures.clock = TwoDigits(local->tm_hour) + ":" + TwoDigits(local->tm_min);
    }
    return figures;
}

void Application::save() {
    optionsWindow_.settleTexts();
    settings_.SaveSettings();
    lists_.SaveListFile();
}

void Application::unload() {
    if (std::exchange(ending_, true)) return;  // asked for again while a question stands open
    state_.Actions.note("end");
    tag_.offerToSave();
    // Before all that a file or a device which does not answer may hold up for ever.
    if (options_->TellUnsaved) {
        optionsWindow_.settleTexts();
        SaveAtEnd(settings_, lists_, services_.dialogs);
    } else {
        save();
    }
    state_.ShuttingDown = true;
    convert_.unload();  // what it is making is given up
    services_.mediaControl.sendString("stop MediaFile");
    services_.mediaControl.sendString("close MediaFile");
    services_.vbmp3.vbmp3_close();
    services_.vbmp3.vbmp3_free();
    services_.shell.WinHelp(top_, helpFile_, kHelpQuit, 0);
    save();  // its place in the order; what stands there already is not written again
    volume_.close();
    for (Form* form : otherWindows()) form->unload();
    services_.windows.quit();
}

// The end of the session of Windows: nobody is asked and no window is closed, or it would be hidden at the next start.
// What shall be kept is written first, then what others would find is cleared away. Sound and files go with the
// process: closing them may wait for what does not answer.
void Application::endSession() {
    // Else the program was ending by itself, and has saved.
    if (!std::exchange(state_.ShuttingDown, true)) {
        save();
        noteDroppedEdits();
        convert_.unload();
        services_.mediaControl.sendString("stop MediaFile");
        services_.mediaControl.sendString("close MediaFile");
    }
    services_.windows.exitProcess();
}

void Application::noteDroppedEdits() {
    if (!tag_.edited()) return;
    const std::string path = UserFileToWrite(services_.files, kNotesFileName);
    std::string text = DecodeText(services_.files.read(path, kLargestNotes).value_or(""));
    const std::time_t now = std::time(nullptr);
    char when[32] = "";
    if (const std::tm* local = std::localtime(&now)) std::strftime(when, sizeof when, "%Y-%m-%d %H:%M:%S  ", local);
    text += when + ("Windowsの終了のため、保存していないタグの変更は失われました: " + tag_.file()) + "\r\n";
    services_.files.write(path, EncodeText(text));
}

}  // namespace quenlox

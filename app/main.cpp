// The entry of the program: one instance, the decoding library at hand, then the application.
#include <chrono>
#include <cstdlib>
#include <memory>

#include "app/application.h"
#include "platform/win32/platform.h"
#include "text/paths.h"

int main() {
    using namespace quenlox;
    TrustSystemLibrariesOnly();
    const auto shell = MakeShell();
    if (shell->anotherInstanceRuns()) return 0;
    const auto crashNotes = MakeCrashNotes(QUENLOX_VERSION, QUENLOX_COMMIT);
    const auto files = MakeFileSystem();
    const auto dialogs = MakeDialogs();
    const std::string folder = files->programFolder();
    const auto vbmp3 = LoadVbmp3(folder);
    if (!vbmp3) {
        dialogs->message("VBMP3.DLLが見つかりません\r終了します", MessageIcon::Stop);
        return 1;
    }
    SeededRandom random(static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count()));
    const auto windows = MakeWindowSystem();
    const auto painter = MakeTextPainter();
    const auto mediaControl = MakeMediaControl();
    const auto mixer = MakeMixer();
    const auto outputDevices = MakeOutputDevices();
    const auto fileManager = MakeFileManager();
    const std::shared_ptr<Gogo> gogo = LoadGogo(folder);
    Application application(
        {*windows, *painter, *dialogs, *files, *mediaControl, *mixer, *shell, *vbmp3, gogo, random, *outputDevices,
         *fileManager},
        CommandLineText());
    crashNotes->follow(&application.state().Actions);
    application.load();
    const int result = application.run();
    crashNotes->follow(nullptr);
    // A thread that still waits for a server must not find the program gone around it.
    if (windows->worksAside() || application.leftBehind()) std::_Exit(result);
    return result;
}

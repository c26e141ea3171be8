// The settings file and the command line, which stands behind a NUL: the whole program starts with them and ends. Every
// option is in its range; what the end has written is what the next run writes too, and the end writes nothing that is
// no text.
#include <cstdint>
#include <cstdlib>

#include "app/application.h"
#include "state/option_table.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_system.h"
#include "tests/fakes/fake_gogo.h"
#include "tests/fakes/fake_media_control.h"
#include "tests/fakes/fake_mixer.h"
#include "tests/fakes/fake_output_devices.h"
#include "tests/fakes/fake_random.h"
#include "tests/fakes/fake_shell.h"
#include "tests/fakes/fake_text_painter.h"
#include "tests/fakes/fake_vbmp3.h"
#include "tests/fakes/fake_window_system.h"

using namespace quenlox;

namespace {

// The settings that a run leaves which began with `settings`.
std::string SavedBy(const std::string& settings, const std::string& commandLine) {
    FakeWindowSystem windows;
    FakeTextPainter painter;
    FakeDialogs dialogs;
    FakeFileSystem files;
    FakeMediaControl mci;
    FakeMixer mixer;
    FakeShell shell;
    FakeVbmp3 vbmp3;
    FakeRandom random;
    FakeOutputDevices devices;
    files.add("C:\\Quenlox\\Quenlox.ini", settings);
    files.add("C:\\Quenlox\\skin\\default\\default.tsk", "[Main]\nVer=4\nBox=1\nSize=100,50\n");
    vbmp3.addFile("C:\\a.mp3");
    Application run(
        {windows, painter, dialogs, files, mci, mixer, shell, vbmp3, std::make_shared<FakeGogo>(), random, devices},
        commandLine);
    run.load();
    for (const OptionRow& row : OptionRows()) {
        const auto* number = std::get_if<std::int32_t Options::*>(&row.field);
        if (number && (run.options().**number < row.minimum || run.options().**number > row.maximum)) std::abort();
    }
    if (run.state().PlayMode < kSingle || run.state().PlayMode > kRandom) std::abort();
    for (int tick = 0; tick < 3; ++tick) run.top().Timer1.onTimer();
    run.top().unload();
    return files.bytesOf("C:\\Quenlox\\Quenlox.ini");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size), settings = input.substr(0, input.find('\0'));
    const std::string saved = SavedBy(settings, input.substr(std::min(settings.size() + 1, size)));
    if (saved.empty() || SavedBy(saved, "") != saved) std::abort();
    return 0;
}

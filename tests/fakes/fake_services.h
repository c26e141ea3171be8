// The fakes of all services that the program is made of.
#pragma once

#include <memory>

#include "app/application.h"
#include "tests/fakes/fake_dialogs.h"
#include "tests/fakes/fake_file_manager.h"
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

namespace quenlox {

struct FakeServices {
    FakeWindowSystem windows;
    FakeTextPainter painter;
    FakeDialogs dialogs;
    FakeFileSystem files;
    FakeMediaControl mci;
    FakeMixer mixer;
    FakeShell shell;
    FakeVbmp3 vbmp3;
    std::shared_ptr<FakeGogo> gogo = std::make_shared<FakeGogo>();
    FakeRandom random;
    FakeOutputDevices devices;
    FakeFileManager fileManager;

    FakeServices() { files.add("C:\\Quenlox\\skin\\default\\default.tsk", "[Main]\nVer=4\nBox=1\nSize=100,50\n"); }
    Services all() { return {windows, painter, dialogs, files, mci, mixer, shell, vbmp3, gogo, random, devices, fileManager}; }
};

}  // namespace quenlox

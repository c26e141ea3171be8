// Makes the services of platform/ on Windows. The composition root owns what it gets from here.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "forms/window_host.h"
#include "platform/crash_notes.h"
#include "platform/dialogs.h"
#include "platform/file_manager.h"
#include "platform/file_system.h"
#include "platform/gogo.h"
#include "platform/media_control.h"
#include "platform/mixer.h"
#include "platform/output_devices.h"
#include "platform/shell.h"
#include "platform/text_painter.h"
#include "platform/vbmp3.h"

namespace quenlox {

std::unique_ptr<WindowSystem> MakeWindowSystem();
std::unique_ptr<TextPainter> MakeTextPainter();
std::unique_ptr<Dialogs> MakeDialogs();
std::unique_ptr<FileSystem> MakeFileSystem();
std::unique_ptr<FileManager> MakeFileManager();
std::unique_ptr<MediaControl> MakeMediaControl();
std::unique_ptr<Mixer> MakeMixer();
std::unique_ptr<OutputDevices> MakeOutputDevices();
std::unique_ptr<Shell> MakeShell();

// From now on a crash leaves a note and a dump in %LOCALAPPDATA%\Quenlox\crash, where the newest five are kept. To be
// called on the user-interface thread; the texts must live as long.
std::unique_ptr<CrashNotes> MakeCrashNotes(std::string_view version, std::string_view commit);

// To be called before anything else: from now on a library that is asked for by its name alone comes from the system's
// folder. Neither the current folder, which is that of whatever file was opened, nor those of PATH are looked into.
void TrustSystemLibrariesOnly();

// Loads vbmp3.dll from `folder`. Null when it is not there or lacks an operation.
std::unique_ptr<Vbmp3> LoadVbmp3(const std::string& folder);
// Loads gogo.dll from `folder`; when it is not there, available() is false and every operation fails.
std::unique_ptr<Gogo> LoadGogo(const std::string& folder);

// The command line of the process after the name of the program, as it was typed.
std::string CommandLineText();

}  // namespace quenlox

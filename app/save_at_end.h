// Saving at the end of the program: what could not be written is told to the user, who may set it right and try again.
// For those who want to be told (`TellUnsaved`). On the user-interface thread. Never to be used at the end of the
// session of Windows, where nobody may be asked.
#pragma once

namespace quenlox {

class Dialogs;
class Playlists;
class SettingsFile;

// Writes both files. Comes back when each is written, or the user goes on without.
void SaveAtEnd(SettingsFile& settings, Playlists& lists, Dialogs& dialogs);

}  // namespace quenlox

#include "app/save_at_end.h"

#include <string>

#include "app/settings_file.h"
#include "platform/dialogs.h"
#include "playlist/playlists.h"
#include "text/paths.h"

namespace quenlox {
namespace {

const char* Reason(WriteError error) {
    switch (error) {
        case WriteError::None: break;
        case WriteError::NoFolder: return "フォルダに書き込めません。";
        case WriteError::InUse: return "ファイルが読み取り専用か、ほかのプログラムで使用中です。";
        case WriteError::Disk: return "ディスクに書き込めません。空き容量を確かめてください。";
        case WriteError::Unread: return "起動時に読み込めなかったため、上書きしませんでした。";
    }
    return "";
}

std::string Report(const char* what, const std::string& path, WriteError error) {
    return std::string(what) + "を保存できませんでした。\r\r" + path + "\r" + Reason(error);
}

bool Again(Dialogs& dialogs, const std::string& report) {
    return dialogs.confirm(report + "\r\rもう一度保存しますか？");
}

// True when the lists have been written to a file of the user's choice.
bool SaveElsewhere(Playlists& lists, Dialogs& dialogs) {
    if (!dialogs.confirm("プレイリストを別のファイルに保存しますか？")) return false;
    FileDialog dialog;
    dialog.title = "プレイリストの保存";
    dialog.filterName = "M3Uﾌｧｲﾙ";
    dialog.filter = "*.m3u";
    dialog.fileName = FileNameOf(lists.listFile());
    const auto path = dialogs.saveFile(dialog);
    return path && lists.writeListFile(Playlists::ExportName(*path));
}

}  // namespace

void SaveAtEnd(SettingsFile& settings, Playlists& lists, Dialogs& dialogs) {
    for (;;) {
        const WriteResult saved = settings.SaveSettings();
        if (saved) break;
        const std::string report = Report("設定", settings.path(), saved.error());
        if (saved.error() == WriteError::Unread) {
            dialogs.message(report, MessageIcon::Warning);
            break;
        }
        if (!Again(dialogs, report)) break;
    }
    for (;;) {
        const WriteResult saved = lists.SaveListFile();
        if (saved) break;
        if (Again(dialogs, Report("プレイリスト", lists.listFile(), saved.error()))) continue;
        if (SaveElsewhere(lists, dialogs) || !Again(dialogs, "プレイリストは保存されていません。")) break;
    }
}

}  // namespace quenlox

#include "about/form_info.h"

#include <utility>

#include "platform/dialogs.h"
#include "platform/file_system.h"
#include "platform/shell.h"
#include "text/paths.h"

namespace quenlox {

std::string FormInfo::Page() { return QUENLOX_HOME; }

FormInfo::FormInfo(Dialogs& dialogs, FileSystem& files, Shell& shell, std::string page)
    : Form("FormInfo", Kind::Dialog), dialogs_(dialogs), files_(files), shell_(shell), page_(std::move(page)) {
    setCaption("バージョン情報");
    LabelName.setCaption("Quenlox");
    LabelName.setFont({"ＭＳ Ｐゴシック", 20, true});
    LabelLicence.setCaption("Copyright (c) 2026 the Quenlox project  (MIT License)");
    LabelLibraries.setCaption(
        "次のライブラリを使用しています。ライセンスの全文はlicencesフォルダにあります。\r\n"
        "libmpg123: Copyright (c) 1995-2021 Michael Hipp and others, the mpg123 project  (LGPL 2.1)\r\n"
        "LAME, www.mp3dev.org: Copyright (c) 1998-2007 the LAME Project and others  (LGPL 2, GPL)\r\n"
        "SoundTouch: Copyright (c) 2001-2022 Olli Parviainen  (LGPL 2.1)\r\n"
        "KissFFT: Copyright (c) 2003-2022 Mark Borgerding  (BSD)");
    CommandPage.setCaption("ホームページ(&P)");
    CommandPage.setTooltip(page_);
    CommandPage.setVisible(!page_.empty());
    CommandPage.onClick = [this] { CommandPage_Click(); };
    CommandLicence.setCaption("ライセンス(&L)");
    CommandHelp.setCaption("ヘルプ(&H)");
    CommandClose.setCaption("閉じる(&C)");
    CommandClose.isDefault = true;
    CommandLicence.onClick = [this] { CommandLicence_Click(); };
    CommandHelp.onClick = [this] { CommandHelp_Click(); };
    CommandClose.onClick = [this] { hide(); };
}

void FormInfo::setVersions(const Versions& versions) {
    LabelVersion.setCaption("Ver " + versions.program);
    LabelVbmp3.setCaption("VBMP3.dll  Ver " + versions.vbmp3);
    LabelGogo.setCaption(versions.gogo.empty() ? "gogo.dll  見つかりません" : "gogo.dll  Ver " + versions.gogo);
}

void FormInfo::open(const std::string& name, bool there, const std::string& whenMissing) {
    const std::string path = JoinPath(files_.programFolder(), name);
    if (!there || !shell_.openInBrowser(path)) dialogs_.message(whenMissing, MessageIcon::Warning);
}

void FormInfo::CommandPage_Click() {
    if (!shell_.openInBrowser(page_)) dialogs_.message("ホームページを開けません\r" + page_, MessageIcon::Warning);
}

void FormInfo::CommandLicence_Click() {
    open("licences", files_.folderExists(JoinPath(files_.programFolder(), "licences")), "licencesフォルダを開けません");
}

void FormInfo::CommandHelp_Click() {
    open("Quenlox.html", files_.fileExists(JoinPath(files_.programFolder(), "Quenlox.html")),
         "Quenlox.htmlを開けません");
}

void FormInfo::Form_Unload(bool& cancel) {
    cancel = true;
    hide();
}

Layout FormInfo::layout() {
    constexpr int kButton = 64, kHeight = 14;
    Layout buttons = Row({Item(CommandLicence, kButton, kHeight), Item(CommandHelp, kButton, kHeight), Space(0, 0, 1),
                          Item(CommandClose, kButton, kHeight)});
    if (!page_.empty()) buttons.items.insert(buttons.items.begin(), Item(CommandPage, kButton, kHeight));
    return Column({Item(LabelName, 220, 24), Item(LabelVersion, 220), Space(0, 4), Item(LabelVbmp3, 220),
                   Item(LabelGogo, 220), Space(0, 4), Item(LabelLicence, 300), Item(LabelLibraries, 300, 52),
                   Space(0, 4), buttons});
}

}  // namespace quenlox

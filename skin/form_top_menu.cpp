// The menus of the main window, its place above other windows, and its life in the notification area.
#include <algorithm>

#include "playback/transport.h"
#include "skin/form_top.h"
#include "text/paths.h"
#include "text/strings.h"

namespace quenlox {
namespace {

constexpr int kTrayMove = 512, kTrayLeftUp = 514, kTrayRightDown = 516;
constexpr int kLargestScale = 4;

MenuItem Item(std::string caption, std::function<void()> onClick, bool checked = false, bool enabled = true) {
    MenuItem item;
    item.caption = std::move(caption);
    item.onClick = std::move(onClick);
    item.checked = checked;
    item.enabled = enabled;
    return item;
}

MenuItem Separator() { return Item("-", {}); }

}  // namespace

Menu FormTop::menuMain() {
    Menu menu{"menuMain", {}};
    auto& items = menu.items;
    items.push_back(Item("常に手前に表示(&T)", [this] { setAlwaysOnTop(!alwaysOnTop_); }, alwaysOnTop_));
    items.push_back(Item("操作パネルモード(&P)", [this] { options_.set(&Options::OperationPanel, !options_->OperationPanel); },
                         options_->OperationPanel, hasDisplayA_));
    MenuItem skins = Item("スキンの変更(&S)", {});
    const auto addSkin = [&](int index, const std::string& folder, const std::string& caption) {
        MenuItem item = Item(caption, [this, index] { skinName_Click(index); });
        const std::string current = FolderNameOfSkin();
        item.checked = EqualsNoCase(current, folder);
        item.radio = true;
        skins.items.push_back(std::move(item));
    };
    addSkin(0, "default", "Default");
    for (std::size_t i = 0; i < skinNames_.size(); ++i) {
        addSkin(static_cast<int>(i) + 1, skinNames_[i], ReplaceAll(skinNames_[i], "&", "&&"));
    }
    items.push_back(std::move(skins));
    items.push_back(Item("タイトルアニメーション(&A)", [this] { options_.set(&Options::TitleAnimation, !options_->TitleAnimation); },
                         options_->TitleAnimation));
    items.push_back(Item("オシロ・スペアナ表示(&O)", [this] { options_.set(&Options::SpectrumShown, !options_->SpectrumShown); },
                         options_->SpectrumShown, hasDisplayB_));
    items.push_back(Item("グライコ(&G)", [this] { toggleWindow(windows_.equalizer); },
                         windows_.equalizer && windows_.equalizer->visible()));
    items.push_back(Item("タグ情報(&I)", [this] { performCommand(kTagCommand); }));
    items.push_back(Item("ファイル変換(&C)", [this] { performCommand(kConvCommand); }));
    items.push_back(Item("バージョン情報(&V)", [this] {
        if (windows_.about) showWindow(*windows_.about);
    }));
    items.push_back(Separator());
    // What the buttons of a skin do, for those who use the keyboard or a skin without that button.
    items.push_back(Item("プレイリスト(&L)", [this] { performCommand(kListCommand); },
                         windows_.list && windows_.list->visible()));
    items.push_back(Item("オプション(&N)", [this] { performCommand(kOptCommand); },
                         windows_.options && windows_.options->visible()));
    items.push_back(Item("歌詞(&Y)", [this] { options_.set(&Options::LyricsShown, !options_->LyricsShown); }, options_->LyricsShown));
    MenuItem play = Item("再生操作(&B)", {});
    const char* const actions[kButtonCount] = {"再生／停止(&P)", "一時停止(&U)", "前の曲(&B)", "次の曲(&N)",
                                               "音程を下げる(&L)", "音程を上げる(&H)", "速度変更(&D)"};
    for (int n = 0; n < kButtonCount; ++n) {
        play.items.push_back(Item(actions[n], [this, n] { performPlayback(n); }));
    }
    play.items.push_back(Separator());
    play.items.push_back(Item("再生モード(&M)", [this] { PlayModeLabel_Click(1); }));
    play.items.push_back(Item("経過／残り時間(&T)", [this] { TimeLabel_Click(kTimeLabel, 1); }));
    play.items.push_back(Item("曲名／ファイル名(&F)", [this] { TitleLabel_DblClick(); }));
    items.push_back(std::move(play));
    MenuItem scales = Item("表示倍率(&Z)", {});
    for (int factor = 1; factor <= kLargestScale; ++factor) {
        MenuItem item = Item(std::to_string(factor) + "倍(&" + std::to_string(factor) + ")",
                             [this, factor] { options_.set(&Options::SkinScale, factor); }, factor == scale_);
        item.radio = true;
        scales.items.push_back(std::move(item));
    }
    items.push_back(std::move(scales));
    items.push_back(Item("ヘルプ(&H)", [this] { performCommand(kHelpCommand); }));
    items.push_back(Item("通知領域に入れる(&M)", [this] { performCommand(kMiniCommand); }));
    items.push_back(Separator());
    items.push_back(Item("Quenloxの終了(&Q)", [this] { unload(); }));
    return menu;
}

Menu FormTop::menuTray() {
    return {"menuTray",
            {Item("ﾒｲﾝ画面を表示", [this] { restoreFromTray(); }), Item("Quenloxの終了", [this] { unload(); })}};
}

std::string FormTop::FolderNameOfSkin() const {
    const std::string folder = FolderOf(state_.CurrentSkinFile);
    return folder.empty() ? std::string() : FileNameOf(folder.substr(0, folder.size() - 1));
}

void FormTop::Form_ContextMenu(Point at) {
    if (playback_.transport->mayAct()) popup(menuMain(), at);
}

// Above other windows.

void FormTop::setAlwaysOnTop(bool on) {
    alwaysOnTop_ = on;
    setTopmost(on);
    for (Form* form : {windows_.list, windows_.options, windows_.lyrics, windows_.equalizer, windows_.tag,
                       windows_.convert, windows_.about}) {
        if (form && form->visible()) form->setTopmost(on);
    }
}

void FormTop::showWindow(Form& form, bool activate) {
    state_.Actions.note("show", form.name());
    form.setTopmost(alwaysOnTop_);
    form.show(activate);
    if (&form == windows_.list) state_.ListShown = true;
}

void FormTop::toggleWindow(Form* form) {
    if (!form) return;
    if (!form->visible()) return showWindow(*form);
    form->hide();
    if (form == windows_.list) state_.ListShown = false;
}

// The notification area.

std::string FormTop::trayTip() const {
    const std::string& title = mainLabel[kTitleLabel].caption();
    if (state_.PlayerStatus != kPlay) return title.empty() ? "Quenlox" : title;
    return title + "／" + mainLabel[kTimeLabel].caption();
}

void FormTop::moveToTray() {
    trayTip_ = trayTip();
    if (inTray_ || !shell_.addTrayIcon({this, trayTip_})) return;
    inTray_ = true;
    hide();
    Timer2.setEnabled(false);
    TimerTitle.setEnabled(false);
}

void FormTop::restoreFromTray() {
    if (!inTray_) return;
    inTray_ = false;
    showPanelDisplay();
    restartTitle();
    shell_.deleteTrayIcon({this, {}});
    show();
    // Started in the notification area it has not been shown yet.
    if (state_.ListShown && windows_.list && !windows_.list->visible()) showWindow(*windows_.list, false);
    if (!alwaysOnTop_) return;
    setTopmost(true);
    for (Form* form : {windows_.list, windows_.lyrics}) {
        if (form && form->visible()) form->setTopmost(true);
    }
}

// The time in the tip goes on: it is told anew when the pointer comes to the icon, and not every second.
void FormTop::renewTrayTip() {
    if (!inTray_ || trayTip() == trayTip_) return;
    trayTip_ = trayTip();
    shell_.changeTrayIcon({this, trayTip_});
}

void FormTop::trayEvent(int message) {
    if (message == kTrayMove) return renewTrayTip();
    if (message == kTrayLeftUp) return restoreFromTray();
    if (message != kTrayRightDown) return;
    if (host()) host()->bringToFront();
    // The menu is wanted at the pointer, wherever the hidden window lies.
    const TwipsPerPixel twips = host() ? host()->twipsPerPixel() : TwipsPerPixel{};
    const Point cursor = shell_.cursor();
    popup(menuTray(), {(cursor.x - TwipsToPixels(left(), twips.x)) / scale_,
                       (cursor.y - TwipsToPixels(top(), twips.y)) / scale_});
}

// Options.

void FormTop::optionsChanged() {
    showButtonsOrPanel();
    showPanelDisplay();
    restartTitle();
    setScale(options_->SkinScale);
}

void FormTop::setScale(int factor) {
    factor = std::clamp(factor, 1, kLargestScale);
    if (factor == scale_) return;
    scale_ = factor;
    if (host()) host()->setScale(factor);
}

}  // namespace quenlox

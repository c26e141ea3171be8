// Menu bar, context menus and toolbar.
#include <utility>

#include "forms/window_host.h"
#include "playlist/form_list.h"
#include "state/global_state.h"

namespace quenlox {
namespace {

constexpr std::array<const char*, FormList::kSortItems> kSortCaptions{"曲名",           "アーチスト名", "演奏時間",
                                                                      "ディレクトリ名", "ファイル名",   "ランダム"};
constexpr std::array<const char*, FormList::kViews> kListCaptions{"リストA", "リストB", "リストC"};

ToolbarButton Button(const char* key, const char* caption, const char* tooltip) {
    ToolbarButton button;
    button.key = key;
    button.caption = caption;
    button.tooltip = tooltip;
    return button;
}

ToolbarButton Gap() {
    ToolbarButton gap;
    gap.separator = true;
    return gap;
}

}  // namespace

void FormList::makeMenus() {
    for (int index = 0; index < kSortItems; ++index)
        menuSort.items.push_back(
            MenuCommand(kSortCaptions[static_cast<std::size_t>(index)], [this, index] { menuSort_Click(index); }));
    Toolbar1.setButtons({Button("add", "追加", "ファイルをリストに追加します"),
                         Button("addFolder", "ﾌｫﾙﾀﾞ追加", "フォルダのファイルをリストに追加します"), Gap(),
                         Button("up", "▲", "選択した曲を上へ移動します (Alt+↑)"),
                         Button("down", "▼", "選択した曲を下へ移動します (Alt+↓)"),
                         Button("delete", "削除", "選択した曲をリストから外します (Del)"), Gap(),
                         Button("save", "保存", "リストをM3Uファイルに保存します"),
                         Button("browser", "ﾌｫﾙﾀﾞ欄", "フォルダ欄を表示または隠します")});
    Toolbar1.setButtonChecked("browser", browserShown_);
    Toolbar1.onButton = [this](const std::string& key) { Toolbar1_ButtonClick(key); };
    updateMenus();
}

void FormList::Toolbar1_ButtonClick(const std::string& key) {
    const std::array<std::pair<const char*, std::function<void()>>, 7> commands{{
        {"add", [this] { addFiles(); }},
        {"addFolder", [this] { addFolder(false); }},
        {"up", [this] { menuUpDn_Click(0); }},
        {"down", [this] { menuUpDn_Click(1); }},
        {"delete", [this] { menuDelete_Click(); }},
        {"save", [this] { menuSave_Click(); }},
        {"browser",
         [this] {
             browserShown_ = !browserShown_;
             Toolbar1.setButtonChecked("browser", browserShown_);
             TabList_Click();
         }},
    }};
    for (const auto& [name, command] : commands) {
        if (key == name) command();
    }
}

void FormList::showSortItems(bool tagInformation) {
    for (std::size_t item = 0; item <= 3; ++item) menuSort.items[item].visible = (item == 3) != tagInformation;
    updateMenus();
}

std::vector<MenuItem> FormList::sortItems() {
    std::vector<MenuItem> items = menuSort.items;
    for (MenuItem& item : items) item.enabled = hasRows_;
    items.insert(items.end() - 1, MenuSeparator());
    return items;
}

std::vector<MenuItem> FormList::editItems() {
    const auto named = [](std::string caption, std::string_view step, const char* key) {
        if (!step.empty()) caption.append(": ").append(step);
        return caption + "\t" + key;
    };
    std::vector<MenuItem> items{MenuCommand(
                                    named("元に戻す(&U)", lists_.undoName(), "Ctrl+Z"), [this] { menuUndo_Click(); },
                                    mayTurnBack(lists_.undoName())),
                                MenuCommand(
                                    named("やり直し(&R)", lists_.redoName(), "Ctrl+Y"), [this] { menuRedo_Click(); },
                                    mayTurnBack(lists_.redoName())),
                                MenuSeparator()};
    for (MenuItem& item : clipboardItems()) items.push_back(std::move(item));
    items.push_back(MenuSeparator());
    items.push_back(MenuCommand(
        "すべて選択(&A)\tCtrl+A", [this] { shownView().selectAll(true); }, hasRows_));
    items.push_back(MenuCommand(
        "検索(&F)\tCtrl+F", [this] { FindText.focus(); }, !folderShown()));
    return items;
}

std::vector<MenuItem> FormList::listItems() {
    return {MenuCommand(
                "読込", [this] { menuLoad1_Click(); }, hasRows_),
            MenuSeparator(),
            MenuCommand(
                "上へ\tAlt+↑", [this] { menuUpDn_Click(0); }, hasRows_),
            MenuCommand(
                "下へ\tAlt+↓", [this] { menuUpDn_Click(1); }, hasRows_),
            SubMenu("並替", sortItems()),
            MenuSeparator(),
            MenuCommand(
                "削除\tDel", [this] { menuDelete_Click(); }, hasRows_),
            MenuCommand(
                "初期化", [this] { menuClear_Click(); }, !folderShown()),
            MenuSeparator(),
            MenuCommand("保存", [this] { menuSave_Click(); })};
}

std::vector<MenuItem> FormList::rowItems() {
    return {MenuCommand(
                "再生(&P)\tEnter", [this] { menuPlay_Click(); }, hasRows_),
            MenuCommand(
                "次に再生(&N)\tCtrl+Q", [this] { menuQueue_Click(); }, hasRows_),
            MenuChoice("この曲で停止(&T)\tCtrl+T", stopsAfter_, [this] { menuStopAfter_Click(); })};
}

std::vector<MenuItem> FormList::clipboardItems() {
    std::vector<MenuItem> targets;
    for (int list = 0; list < kViews; ++list)
        targets.push_back(MenuCommand(
            kListCaptions[static_cast<std::size_t>(list)], [this, list] { menuSend_Click(list); }, hasRows_));
    return {MenuCommand(
                "切り取り(&X)\tCtrl+X", [this] { menuCut_Click(); }, hasRows_),
            MenuCommand(
                "コピー(&C)\tCtrl+C", [this] { menuCopy_Click(); }, hasRows_),
            MenuCommand(
                "貼り付け(&V)\tCtrl+V", [this] { menuPaste_Click(); }, !folderShown()),
            SubMenu("リストへ送る(&L)", std::move(targets))};
}

std::vector<MenuItem> FormList::lookItems() {
    return {MenuCommand(
                "タグ情報(&G)", [this] { menuTag_Click(); }, hasRows_),
            MenuCommand(
                "フォルダを開く(&O)", [this] { menuShowFolder_Click(); }, hasRows_),
            MenuCommand(
                "同じアーティスト(&A)", [this] { menuSameArtist_Click(); }, hasRows_),
            MenuCommand(
                "プロパティ(&R)\tAlt+Enter", [this] { menuProperties_Click(); }, hasRows_)};
}

std::vector<MenuItem> FormList::browserItems() {
    const auto targets = [this](void (FormList::*command)(int)) {
        std::vector<MenuItem> items;
        for (int list = 0; list < kViews; ++list)
            items.push_back(MenuCommand(kListCaptions[static_cast<std::size_t>(list)],
                                        [this, command, list] { (this->*command)(list); }));
        return items;
    };
    return {MenuCommand("読込", [this] { menuLoad2_Click(); }), SubMenu("全追加", targets(&FormList::menuAdd1_Click)),
            SubMenu("選択追加", targets(&FormList::menuAdd2_Click))};
}

void FormList::updateMenus() {
    hasRows_ = !folderShown() && lists_.count(state_.ListNo) > 0;
    for (const char* key : {"up", "down", "delete"}) Toolbar1.setButtonEnabled(key, hasRows_);
    // The bar is made anew only when something in it looks different.
    std::string look{hasRows_ ? 'r' : '-', folderShown() ? 'f' : '-', stopsAfter_ ? 's' : '-'};
    for (const MenuItem& item : menuSort.items) look += item.visible ? 'v' : '-';
    std::vector<MenuItem> columns = columnItems();
    for (const MenuItem& item : columns) look += item.checked ? 'c' : item.enabled ? 'e' : '-';
    std::vector<MenuItem> edits = editItems();
    for (const MenuItem& item : edits) look += item.caption + (item.enabled ? 'e' : '-');
    if (look == menuLook_) return;
    menuLook_ = std::move(look);

    std::vector<MenuItem> list = listItems();
    list.insert(list.begin() + 1, {MenuSeparator(), MenuCommand("ファイルを追加(&F)...", [this] { addFiles(); }),
                                   MenuCommand("フォルダを追加(&D)...", [this] { addFolder(false); }),
                                   MenuCommand("フォルダを下の階層ごと追加(&S)...", [this] { addFolder(true); }),
                                   MenuCommand("M3Uファイルを読み込む(&M)...", [this] { importM3U(); })});
    list.push_back(MenuSeparator());
    list.push_back(SubMenu("表示する項目(&V)", std::move(columns)));
    list.push_back(MenuCommand("閉じる(&X)", [this] { unload(); }));
    std::vector<MenuItem> browser = browserItems();
    browser.push_back(MenuSeparator());
    browser.push_back(MenuCommand("音楽CDの曲を表示(&C)", [this] { menuCd_Click(); }));
    browser.push_back(MenuCommand("最新の情報に更新(&R)\tF5", [this] { File1.refresh(); }));
    std::vector<MenuItem> tracks = rowItems();
    tracks.push_back(MenuSeparator());
    for (MenuItem& item : lookItems()) tracks.push_back(std::move(item));
    tracks.push_back(MenuCommand(
        "曲の情報を読み直す(&U)\tF5", [this] { menuReread_Click(); }, hasRows_));
    menuBar_.items = {SubMenu("リスト(&L)", std::move(list)), SubMenu("編集(&E)", std::move(edits)),
                      SubMenu("曲(&T)", std::move(tracks)), SubMenu("並替(&S)", sortItems()),
                      SubMenu("フォルダ(&B)", std::move(browser))};
    formChanged(FormProperty::Menu);
}

}  // namespace quenlox

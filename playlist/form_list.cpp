#include "playlist/form_list.h"

#include "app/global_state.h"

namespace quenlox {
namespace {

constexpr std::array<const char*, FormList::kColumns> kColumnTitles{"曲名", "アーチスト名", "アルバム名", "演奏時間", "ファイル名"};
constexpr std::array<const char*, FormList::kSortItems> kSortCaptions{"曲名",         "アーチスト名", "演奏時間",
                                                                      "ディレクトリ名", "ファイル名",   "ランダム"};

}  // namespace

FormList::FormList(GlobalState& state) : Form("FormList", Kind::Sizeable), state_(state) {
    setCaption("プレイリスト");
    PlayView.fill(*this, "PlayView", 0, kViews - 1);
    std::vector<ListView::Column> columns;
    for (const char* title : kColumnTitles) columns.push_back({title, 100, false});
    columns[kTimeColumn].rightAligned = true;
    for (int view = 0; view < kViews; ++view) {
        PlayView[view].setColumns(columns);
        PlayView[view].setVisible(view == 0);
    }
    for (const char* caption : kSortCaptions) {
        MenuItem item;
        item.caption = caption;
        menuSort.items.push_back(std::move(item));
    }
}

void FormList::setColumnWidths(const std::array<int, kColumns>& widths) {
    for (int view = 0; view < kViews; ++view) {
        for (int column = 0; column < kColumns; ++column) {
            PlayView[view].setColumnWidth(column, widths[static_cast<std::size_t>(column)]);
        }
    }
}

std::array<int, FormList::kColumns> FormList::columnWidths(int view) const {
    std::array<int, kColumns> widths{};
    for (std::size_t column = 0; column < kColumns; ++column) widths[column] = PlayView[view].columns()[column].width;
    return widths;
}

void FormList::showSortItems(bool tagInformation) {
    for (std::size_t item = 0; item <= 3; ++item) menuSort.items[item].visible = (item == 3) != tagInformation;
}

void FormList::openFolder(const std::string& folder) {
    if (folder.size() >= 2 && folder[1] == ':') Drive1.setDrive(folder.substr(0, 2) + "\\");
    Dir1.setPath(folder);
}

void FormList::Form_Unload(bool& cancel) {
    if (state_.ShuttingDown) return;
    cancel = true;
    state_.ListShown = false;
    hide();
}

}  // namespace quenlox

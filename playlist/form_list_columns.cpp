// Which columns the lists show, and how wide they are.
#include <algorithm>
#include <utility>

#include "forms/menu.h"
#include "playlist/form_list.h"
#include "state/global_state.h"
#include "state/option_store.h"

namespace quenlox {

bool FormList::columnsShown() const { return state_.ListType != 0 || options_->ListColumns; }

bool FormList::timeColumnShown() const { return options_->ListTimeColumn; }

FormList::ColumnWidths FormList::columnWidths(int view) const {
    ColumnWidths widths{};
    for (std::size_t column = 0; column < kColumns; ++column) widths[column] = PlayView[view].columns()[column].width;
    return widths;
}

void FormList::setViewWidths(const ColumnWidths& widths) {
    settingWidths_ = true;
    for (int list = 0; list < kViews; ++list) {
        for (int column = 0; column < kColumns; ++column) {
            PlayView[list].setColumnWidth(column, widths[static_cast<std::size_t>(column)]);
        }
    }
    for (int column = 0; column < kColumns; ++column)
        FindView.setColumnWidth(column, widths[static_cast<std::size_t>(column)]);
    settingWidths_ = false;
}

// What the user has dragged in the current list. The single column is no width of his.
void FormList::takeWidths() {
    if (!columnsOnScreen_) return;
    ColumnWidths widths = columnWidths(state_.ListNo);
    if (!timeOnScreen_) widths[kTimeColumn] = widths_[kTimeColumn];
    widths_ = widths;
}

void FormList::applyWidths() {
    columnsOnScreen_ = columnsShown();
    timeOnScreen_ = timeColumnShown();
    ColumnWidths widths = columnsOnScreen_ ? widths_ : kSingleColumn;
    if (!timeOnScreen_) widths[kTimeColumn] = 0;
    setViewWidths(widths);
    updateMenus();
}

void FormList::showColumns() {
    takeWidths();
    applyWidths();
}

void FormList::setColumnWidth(int column, int width) {
    takeWidths();
    widths_[static_cast<std::size_t>(column)] = std::clamp(width, 0, kLargestWidth);
    applyWidths();
}

int FormList::columnWidth(int column) {
    takeWidths();
    return widths_[static_cast<std::size_t>(column)];
}

// Who wants the times to be seen sees them, though their column had been dragged together.
void FormList::timeOptionChanged() {
    takeWidths();
    int& width = widths_[kTimeColumn];
    if (timeColumnShown() && width == 0) width = kStartWidths[kTimeColumn];
    applyWidths();
}

void FormList::toggleColumn(int column) {
    const bool seen = columnWidths(state_.ListNo)[static_cast<std::size_t>(column)] > 0;
    if (column == kTimeColumn && timeColumnShown() == seen) return options_.set(&Options::ListTimeColumn, !seen);
    setColumnWidth(column, seen ? 0 : kStartWidths[static_cast<std::size_t>(column)]);
}

void FormList::PlayView_HeaderMenu(Point at) {
    const Menu menu{"menuColumns", columnItems()};
    const Rect bounds = shownView().bounds();
    popup(menu, {bounds.left + at.x, bounds.top + at.y});
}

std::vector<MenuItem> FormList::columnItems() {
    std::vector<MenuItem> items;
    if (state_.ListType == 0) {
        const bool divided = options_->ListColumns;
        items = {MenuChoice("項目に分ける(&C)", divided, [=, this] { options_.set(&Options::ListColumns, !divided); }),
                 MenuSeparator()};
    }
    const ColumnWidths widths = columnWidths(state_.ListNo);
    for (int column = 0; column < kColumns; ++column) {
        const auto c = static_cast<std::size_t>(column);
        items.push_back(MenuChoice(PlayView[0].columns()[c].title, columnsOnScreen_ && widths[c] > 0,
                                   [this, column] { toggleColumn(column); }));
        items.back().enabled = columnsOnScreen_;
    }
    items.push_back(MenuSeparator());
    items.push_back(MenuCommand("幅を元に戻す(&R)", [this] {
        widths_ = kStartWidths;
        applyWidths();
    }));
    return items;
}

}  // namespace quenlox

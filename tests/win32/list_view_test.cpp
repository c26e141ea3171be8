#include "forms/list_view.h"

#include "tests/win32/desk.h"

namespace quenlox {
namespace {

struct ListForm : Form {
    ListForm() : Form("FormList", Kind::Sizeable) {
        setCaption("プレイリスト");
        setSize(500 * 15, 300 * 15);
        view.setColumns({{"曲名", 160}, {"アーチスト名", 120}, {"時間", 50, true}, {"隠し", 0}});
        view.textOf = [this](int row, int column) {
            ++asked;
            return "行 " + std::to_string(row) + "/" + std::to_string(column);
        };
        view.marked = [](int row) { return row == 2; };
        view.onSelectionChange = [this] { ++selections; };
    }
    Layout layout() override { return Item(view, 0, 0, 1); }
    ListView view{*this, "PlayView"};
    int asked = 0, selections = 0;
};

struct RealListView : Desk {
    RealListView() {
        form.realise(*system);
        form.view.setRowCount(1000);
        form.show();
        pump();
        list = WindowOf(form, L"PlayView");
        form.selections = 0;
    }
    int selectedInWindow() { return static_cast<int>(SendMessageW(list, LVM_GETSELECTEDCOUNT, 0, 0)); }
    bool selectedInWindow(int row) {
        return SendMessageW(list, LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_SELECTED) != 0;
    }
    void userSelects(int row, bool on) {
        LVITEMW item{};
        item.stateMask = LVIS_SELECTED;
        item.state = on ? static_cast<UINT>(LVIS_SELECTED) : 0u;
        SendMessageW(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    }
    ListForm form;
    HWND list = nullptr;
};

TEST_F(RealListView, AsksOnlyForTheRowsThatAreSeen) {
    EXPECT_EQ(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0), 1000);
    EXPECT_TRUE(waitFor([&] { return form.asked > 0; }));
    EXPECT_LT(form.asked, 1000);
    wchar_t text[64] = {};
    LVITEMW item{};
    item.iSubItem = 1;
    item.pszText = text;
    item.cchTextMax = 64;
    SendMessageW(list, LVM_GETITEMTEXTW, 777, reinterpret_cast<LPARAM>(&item));
    EXPECT_STREQ(text, L"行 777/1");
    item.cchTextMax = 3;
    SendMessageW(list, LVM_GETITEMTEXTW, 777, reinterpret_cast<LPARAM>(&item));
    EXPECT_STREQ(text, L"行 ") << "cut to the room that the caller gives";
}

TEST_F(RealListView, SelectionGoesBothWaysWithoutAnEcho) {
    form.view.setSelected(5, true);
    EXPECT_EQ(form.selections, 1);
    EXPECT_TRUE(selectedInWindow(5));
    userSelects(7, true);
    EXPECT_TRUE(form.view.selected(7));
    EXPECT_EQ(form.selections, 2);
    userSelects(-1, false);
    EXPECT_EQ(form.view.selectedCount(), 0);
    form.view.selectAll(true);
    EXPECT_EQ(selectedInWindow(), 1000);
    std::vector<bool> most(1000, true);
    most[0] = most[500] = false;
    form.view.setSelection(most);
    EXPECT_EQ(selectedInWindow(), 998);
    EXPECT_FALSE(selectedInWindow(500));
    std::vector<bool> few(1000, false);
    for (int i = 100; i < 140; ++i) few[static_cast<std::size_t>(i)] = true;
    form.view.setSelection(few);
    EXPECT_EQ(selectedInWindow(), 40);
    EXPECT_EQ(form.view.selection(), few) << "the model has kept what it was given";
}

TEST_F(RealListView, FewerRowsLeaveNoSelectionBehind) {
    form.view.selectAll(true);
    form.view.setRowCount(10);
    EXPECT_EQ(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0), 10);
    EXPECT_EQ(selectedInWindow(), 10);
    form.view.setRowCount(0);
    form.view.setRowCount(20);
    EXPECT_EQ(selectedInWindow(), 0);
    EXPECT_EQ(form.view.selectedCount(), 0);
}

TEST_F(RealListView, ColumnsFollowTheFormAndTheUser) {
    HWND header = ListView_GetHeader(list);
    EXPECT_EQ(SendMessageW(list, LVM_GETCOLUMNWIDTH, 3, 0), 0) << "hidden";
    form.view.setColumnWidth(0, 200);
    EXPECT_EQ(SendMessageW(list, LVM_GETCOLUMNWIDTH, 0, 0), 200);
    SendMessageW(list, LVM_SETCOLUMNWIDTH, 1, 77);  // as the header does when it is dragged
    EXPECT_EQ(form.view.columns()[1].width, 77);
    form.view.setColumns({{"ファイル", 300}});
    EXPECT_EQ(Header_GetItemCount(header), 1);
    int clicked = -1;
    form.view.onColumnClick = [&](int column) { clicked = column; };
    NMLISTVIEW click{};
    click.hdr = {list, 0, static_cast<UINT>(LVN_COLUMNCLICK)};
    click.iItem = -1;
    SendMessageW(WindowOf(form), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&click));
    EXPECT_EQ(clicked, 0);
}

}  // namespace
}  // namespace quenlox

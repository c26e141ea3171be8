#include <gtest/gtest.h>

#include "forms/form.h"
#include "forms/list_view.h"

namespace quenlox {
namespace {

struct TestForm : Form {
    TestForm() : Form("TestForm", Kind::Dialog) {}
    void Form_Unload(bool& cancel) override { cancel = refuses; }
    bool refuses = false;
};

TEST(Controls, AValueSetFromCodeRaisesTheUsersEventOnceAndStaysInRange) {
    TestForm form;
    ScrollBar bar(form, "VScroll", ScrollBar::Direction::Vertical, -12, 12, 3);
    int changes = 0;
    bar.onChange = [&] { ++changes; };
    bar.setValue(13);
    bar.setValue(12);
    EXPECT_EQ(bar.value(), 12);
    EXPECT_EQ(changes, 1);
    bar.setRange(-12, 5);
    EXPECT_EQ(bar.value(), 5);
}

TEST(Controls, AListViewKeepsItsSelectionInStepWithItsRows) {
    TestForm form;
    ListView view(form, "PlayView", 0);
    view.setRowCount(4);
    view.setSelected(1, true);
    view.setSelected(3, true);
    view.setSelected(9, true);
    EXPECT_EQ(view.selectedCount(), 2);
    view.setFocusedRow(3);
    view.setRowCount(2);
    EXPECT_EQ(view.selectedCount(), 1);
    EXPECT_EQ(view.focusedRow(), 1);
    view.selectAll(true);
    EXPECT_EQ(view.selectedCount(), 2);
}

TEST(Controls, AnEditableBoxTakesAnyTextAndAPlainOneOnlyItsItems) {
    TestForm form;
    ComboBox plain(form, "Combo4"), genre(form, "Combo1", true);
    for (ComboBox* box : {&plain, &genre}) box->setItems({{" 48,000", 48000}, {" 44,100", 44100}});
    plain.setText("no such item");
    genre.setText("no such item");
    EXPECT_EQ(plain.text(), "");
    EXPECT_EQ(genre.text(), "no such item");
    EXPECT_EQ(genre.listIndex(), -1);
    plain.setText(" 44,100");
    EXPECT_EQ(plain.data(), 44100);
}

TEST(Forms, AFormThatRefusesToUnloadStaysAsItIs) {
    TestForm form;
    form.show();
    form.refuses = true;
    EXPECT_TRUE(!form.unload() && form.visible());
    form.refuses = false;
    EXPECT_TRUE(form.unload());
    form.show();
    EXPECT_FALSE(form.visible()) << "an unloaded form does not come back";
}

}  // namespace
}  // namespace quenlox

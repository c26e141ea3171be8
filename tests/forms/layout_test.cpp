#include "forms/layout.h"

#include <gtest/gtest.h>

#include "forms/form.h"
#include "forms/list_view.h"

namespace quenlox {
namespace {

// Two pixels for a unit of either direction keep the numbers easy.
constexpr DialogUnits kUnits{2, 2};

struct LayoutForm : Form {
    LayoutForm() : Form("FormLayout", Kind::Sizeable) {}
    Label label{*this, "Label1"};
    CommandButton button{*this, "Command1"};
    CommandButton other{*this, "Command2"};
    ListView list{*this, "PlayView"};
    Frame frame{*this, "Frame1"};
    TabStrip tabs{*this, "TabStrip1", {"A", "B"}};

    Size wish(const Control& control) const {
        if (&control == &label) return {30, 10};
        if (&control == &list) return {80, 60};
        if (&control == &frame) return {50, 12};
        if (&control == &tabs) return {70, 22};
        return {60, 24};
    }
    Size measure(const Layout& layout) const {
        return Measure(layout, kUnits, [this](const Control& c) { return wish(c); });
    }
    void arrange(const Layout& layout, Rect area) const {
        Arrange(layout, area, kUnits, [this](const Control& c) { return wish(c); });
    }
};

TEST(Layout, ARowIsAsWideAsItsItemsAndGapsAndAsHighAsTheHighest) {
    LayoutForm form;
    EXPECT_EQ(form.measure(Row({Item(form.label), Item(form.button), Item(form.other)})),
              (Size{30 + 60 + 60 + 16, 24}));
    EXPECT_EQ(form.measure(Column({Item(form.label), Item(form.button)})), (Size{60, 10 + 24 + 8}));
    EXPECT_EQ(form.measure(Row({Item(form.label, 40, 8), Space(10, 0)})), (Size{80 + 20 + 8, 16}));
    EXPECT_EQ(form.measure(Row({})), (Size{0, 0}));
}

TEST(Layout, ALabelIsCentredBesideAHigherButtonWhereasAListFillsTheRow) {
    LayoutForm form;
    form.arrange(Row({Item(form.label), Item(form.list, 0, 0, 1), Item(form.button)}), {10, 20, 300, 100});
    EXPECT_EQ(form.label.bounds(), (Rect{10, 65, 30, 10}));
    EXPECT_EQ(form.list.bounds(), (Rect{48, 20, 300 - 30 - 60 - 16, 100}));
    EXPECT_EQ(form.button.bounds(), (Rect{250, 58, 60, 24}));
}

TEST(Layout, AColumnGivesItsWidthToItemsThatHaveNoneOfTheirOwn) {
    LayoutForm form;
    form.arrange(Column({Item(form.button), Item(form.other, 20)}), {0, 0, 200, 100});
    EXPECT_EQ(form.button.bounds(), (Rect{0, 0, 200, 24}));
    EXPECT_EQ(form.other.bounds(), (Rect{0, 32, 40, 24}));
}

TEST(Layout, LeftOverRoomIsSharedOutToTheLastPixelAndMissingRoomIsTakenFromTheGrowingItems) {
    LayoutForm form;
    Layout row = Row({Item(form.button, 0, 0, 1), Item(form.other, 0, 0, 2), Item(form.list, 0, 0, 4)});
    row.gap = 0;
    struct Case {
        int width, first, second, third;
    };
    for (const Case& c : {Case{200, 60, 60, 80}, Case{207, 61, 62, 84}, Case{204, 60, 61, 83}, Case{100, 30, 30, 40},
                          Case{0, 0, 0, 0}, Case{-50, 0, 0, 0}}) {
        form.arrange(row, {0, 0, c.width, 24});
        EXPECT_EQ(form.button.bounds().width, c.first) << c.width;
        EXPECT_EQ(form.other.bounds().width, c.second) << c.width;
        EXPECT_EQ(form.list.bounds().width, c.third) << c.width;
        EXPECT_EQ(form.list.bounds().left, c.first + c.second) << c.width;
    }
    Layout fixed = Row({Item(form.button), Item(form.list, 0, 0, 1)});
    form.arrange(fixed, {0, 0, 100, 24});
    EXPECT_EQ(form.button.bounds().width, 60) << "what does not grow keeps its width";
    EXPECT_EQ(form.list.bounds().width, 32);
}

TEST(Layout, AFrameSurroundsItsContent) {
    LayoutForm form;
    const Layout group = Group(form.frame, Item(form.button));
    EXPECT_EQ(form.measure(group), (Size{60 + 24, 24 + 34}));
    form.arrange(group, {5, 5, 84, 58});
    EXPECT_EQ(form.frame.bounds(), (Rect{5, 5, 84, 58}));
    EXPECT_EQ(form.button.bounds(), (Rect{17, 27, 60, 24}));
}

TEST(Layout, PagesLieOverEachOtherUnderTheirTabs) {
    LayoutForm form;
    const Layout pages = Pages(form.tabs, {Item(form.button), Column({Item(form.list), Item(form.other)})});
    EXPECT_EQ(form.measure(pages), (Size{80, 22 + 10 + 60 + 8 + 24}));
    form.arrange(pages, {0, 0, 100, 124});
    EXPECT_EQ(form.tabs.bounds(), (Rect{0, 0, 100, 22}));
    EXPECT_EQ(form.button.bounds(), (Rect{0, 32, 100, 92}));
    EXPECT_EQ(form.list.bounds(), (Rect{0, 32, 100, 60}));
    EXPECT_EQ(form.other.bounds(), (Rect{0, 100, 100, 24}));
}

}  // namespace
}  // namespace quenlox

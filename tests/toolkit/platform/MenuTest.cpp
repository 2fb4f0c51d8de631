// How menus behave under the mouse and the keyboard, and where they open. No window, no font.
#include "Recorder.h"
#include "common/MenuStack.h"

#include <gtest/gtest.h>

using namespace Sorel;

namespace {

constexpr CRect kScreen{0, 0, 800, 600};

/// Item 0 plain, 1 a separator, 2 a heading, 3 disabled, 4 and 5 with sub-menus, 6 plain.
std::vector<MenuItem> items() {
    std::vector<MenuItem> all;
    for (int i = 0; i < 7; ++i)
        all.push_back(menuItem(std::string(1, static_cast<char>('A' + i)), 10 + i));
    all[1].separator = true;
    all[2].isTitle = true;
    all[3].disabled = true;
    for (int i = 0; i < 4; ++i) {
        all[4].submenu.push_back(menuItem(std::string(1, 'E') + std::to_string(i), 20 + i));
        all[5].submenu.push_back(menuItem(std::string(1, 'F') + std::to_string(i), 30 + i));
    }
    return all;
}

double tenAByte(const std::string& text, bool) { return static_cast<double>(text.size()) * 10.0; }

MenuStack stackAt(const CRect& anchor, std::vector<MenuItem> all = items(), bool pressed = false) {
    MenuStack::Setting setting{anchor, kScreen, anchor.centre(), pressed, 1000};
    return MenuStack({std::move(all), {}, 100.0}, setting, tenAByte);
}

CPoint middle(const MenuStack& stack, int column, int row) {
    return stack.column(column).rowRect(row).centre();
}

void press(MenuStack& stack, std::uint8_t key, char character = 0) {
    stack.onKey({character, key, 0}, 2000);
}

TEST(MenuPlace, HangsFromItsControlWhereThereIsRoom) {
    // 6 rows, a separator and the edges.
    constexpr double kHeight = 6 * 20 + 9 + 8;
    EXPECT_EQ(stackAt({50, 100, 90, 120}).column(0).rect(), CRect::ofSize(50, 120, 100, kHeight));
    EXPECT_EQ(stackAt({50, 560, 90, 580}).column(0).rect(),
              CRect::ofSize(50, 560 - kHeight, 100, kHeight));
    EXPECT_EQ(stackAt({770, 100, 790, 120}).column(0).rect().right, 800);
    EXPECT_EQ(stackAt({-50, 100, -20, 120}).column(0).rect().left, 0);
    // Longer than the screen: as high as that, and scrolled.
    const MenuStack tall = stackAt({50, 300, 90, 320}, std::vector<MenuItem>(50, menuItem("x", 1)));
    EXPECT_EQ(tall.column(0).rect().top, 0);
    EXPECT_EQ(tall.column(0).rect().bottom, 600);
    // A sub-menu stands at its row, or on the other side, or higher.
    MenuStack right = stackAt({50, 100, 90, 120});
    right.openSubmenu(0, 4);
    EXPECT_EQ(right.column(1).rect().topLeft(), (CPoint{152, right.column(0).rowRect(4).top - 4}));
    MenuStack left = stackAt({720, 440, 790, 455});
    left.openSubmenu(0, 5);
    EXPECT_EQ(left.column(1).rect().right, left.column(0).rect().left - 2);
    EXPECT_EQ(left.column(1).rect().bottom, 600);
}

TEST(MenuMouse, ChoosesOnlyWhatCanBeChosen) {
    for (const auto& [row, id] : {std::pair{0, 10}, {6, 16}}) {
        MenuStack stack = stackAt({50, 100, 90, 120});
        stack.onMouseDown(middle(stack, 0, row), 2000);
        stack.onMouseUp(middle(stack, 0, row), 2010);
        EXPECT_TRUE(stack.isFinished());
        EXPECT_EQ(stack.result(), id);
    }
    MenuStack stack = stackAt({50, 100, 90, 120});
    for (const int row : {1, 2, 3, 4}) {
        stack.onMouseDown(middle(stack, 0, row), 2000);
        stack.onMouseUp(middle(stack, 0, row), 2010);
        EXPECT_FALSE(stack.isFinished()) << row;
    }
    EXPECT_EQ(stack.columnCount(), 2) << "a press opens the sub-menu at once";
    stack.onMouseDown({700, 500}, 3000);
    EXPECT_TRUE(stack.isFinished());
    EXPECT_EQ(stack.result(), -1);
}

TEST(MenuMouse, PressDragReleaseChoosesButTheOpeningClickDoesNot) {
    // A context menu opens under the pressed mouse; letting go there leaves it open.
    MenuStack context = stackAt({50, 100, 50, 100}, items(), true);
    context.onMouseMoved({51, 101}, 1010);
    context.onMouseUp({51, 106}, 1100);
    EXPECT_FALSE(context.isFinished());
    MenuStack dragged = stackAt({50, 100, 90, 120}, items(), true);
    dragged.onMouseMoved(middle(dragged, 0, 3), 1100);
    dragged.onMouseMoved(middle(dragged, 0, 0), 1150);
    dragged.onMouseUp(middle(dragged, 0, 0), 1200);
    EXPECT_EQ(dragged.result(), 10);
    MenuStack released = stackAt({50, 100, 90, 120}, items(), true);
    released.onMouseUp({70, 110}, 1900);
    EXPECT_FALSE(released.isFinished()) << "on the control, after a long press";
    MenuStack away = stackAt({50, 100, 90, 120}, items(), true);
    away.onMouseMoved(middle(away, 0, 0), 1500);
    away.onMouseUp({700, 500}, 1600);
    EXPECT_TRUE(away.isFinished());
    EXPECT_EQ(away.result(), -1);
}

TEST(MenuMouse, SubmenusOpenAfterAWhileAndStayOnTheWayToThem) {
    MenuStack stack = stackAt({50, 100, 90, 120});
    stack.onMouseMoved(middle(stack, 0, 4), 2000);
    stack.onIdle(2199);
    EXPECT_EQ(stack.columnCount(), 1);
    stack.onIdle(2200);
    ASSERT_EQ(stack.columnCount(), 2);
    // Diagonally over the next row, which has a sub-menu of its own.
    const CPoint over{130, stack.column(0).rowRect(5).top + 2};
    stack.onMouseMoved(over, 2210);
    EXPECT_EQ(stack.column(1).item(0).title, "E0");
    EXPECT_EQ(stack.column(0).hover(), 4);
    stack.onMouseMoved(middle(stack, 1, 2), 2260);
    EXPECT_EQ(stack.column(1).hover(), 2);
    EXPECT_EQ(stack.column(0).hover(), 4);
    // Straight down is no way there.
    stack.onMouseMoved(middle(stack, 0, 4), 2300);
    stack.onMouseMoved(middle(stack, 0, 5), 2310);
    EXPECT_EQ(stack.columnCount(), 1);
    EXPECT_EQ(stack.column(0).hover(), 5);
    stack.onIdle(2600);
    ASSERT_EQ(stack.columnCount(), 2);
    EXPECT_EQ(stack.column(1).item(0).title, "F0");
    // Standing still on the way ends it.
    stack.onMouseMoved({100, stack.column(0).rowRect(5).centre().y}, 2700);
    stack.onMouseMoved({120, stack.column(0).rowRect(6).top + 1}, 2710);
    EXPECT_EQ(stack.columnCount(), 2);
    stack.onIdle(2710 + MenuStack::kAimMilliseconds);
    EXPECT_EQ(stack.columnCount(), 1);
    EXPECT_EQ(stack.column(0).hover(), 6);
}

TEST(MenuKeys, WalkOverWhatCannotBeChosen) {
    MenuStack stack = stackAt({50, 100, 90, 120});
    const auto lit = [&stack](int column) { return stack.column(column).hover(); };
    press(stack, Key::kDown);
    EXPECT_EQ(lit(0), 0);
    press(stack, Key::kDown);
    EXPECT_EQ(lit(0), 4);
    press(stack, Key::kUp);
    press(stack, Key::kUp);
    EXPECT_EQ(lit(0), 6) << "round";
    press(stack, Key::kHome);
    EXPECT_EQ(lit(0), 0);
    press(stack, Key::kNone, 'e');
    EXPECT_EQ(lit(0), 4);
    press(stack, Key::kRight);
    press(stack, Key::kDown);
    EXPECT_EQ(lit(1), 1);
    press(stack, Key::kLeft);
    EXPECT_EQ(stack.columnCount(), 1);
    EXPECT_EQ(lit(0), 4);
    press(stack, Key::kReturn);
    ASSERT_EQ(stack.columnCount(), 2);
    press(stack, Key::kEscape);
    EXPECT_FALSE(stack.isFinished()) << "escape closes one level";
    press(stack, Key::kRight);
    press(stack, Key::kEnd);
    press(stack, Key::kReturn);
    EXPECT_EQ(stack.result(), 23);

    MenuStack dismissed = stackAt({50, 100, 90, 120});
    press(dismissed, Key::kEscape);
    EXPECT_TRUE(dismissed.isFinished());
    EXPECT_EQ(dismissed.result(), -1);
    MenuStack dead = stackAt({50, 100, 90, 120}, {items()[1], items()[2], items()[3]});
    for (const std::uint8_t key : {Key::kDown, Key::kUp, Key::kReturn, Key::kRight})
        press(dead, key);
    EXPECT_FALSE(dead.isFinished());
}

TEST(MenuScroll, LongMenusReachTheirEnds) {
    std::vector<MenuItem> many;
    for (int i = 0; i < 60; ++i)
        many.push_back(menuItem(std::to_string(i), i));
    MenuStack stack = stackAt({50, 0, 90, 10}, many);
    const MenuColumn& column = stack.column(0);
    EXPECT_FALSE(column.canScrollUp());
    press(stack, Key::kEnd);
    EXPECT_FALSE(column.canScrollDown());
    EXPECT_EQ(column.rowAt(middle(stack, 0, 59)), 59);
    EXPECT_EQ(column.rowAt({100, 5}), -1) << "the arrow lies over the rows";
    stack.onMouseMoved({100, 5}, 3000);
    for (std::uint64_t now = 3000; now < 9000; now += 10)
        stack.onIdle(now);
    EXPECT_FALSE(column.canScrollUp());
    EXPECT_EQ(column.rowRect(0).top, 10 + 4 - 10) << "moved up to fit the screen";
    stack.onWheel({100, 300}, -3, 9000);
    EXPECT_EQ(column.rowRect(0).top, 4 - 120);
    EXPECT_EQ(column.hover(), column.rowAt({100, 300}));
}

} // namespace

// The base of all displays: cursor, label, right click.
#include "views/DisplayControl.h"
#include "ViewsTest.h"

namespace Sorel {
namespace {

class Display final : public IDisplayControl {
  public:
    using IDisplayControl::IDisplayControl;
    void DrawCursor(CDrawContext&, CPoint position) override {
        ++cursors;
        last = position;
    }
    int cursors = 0;
    CPoint last;
};

TEST_F(ViewsTest, TheCursorIsDrawnWhileTheMouseIsInsideAndRightClicksAskForAMenu) {
    Display* display = nullptr;
    show([&](CFrame& frame) {
        display = new Display({145.0, 56.0, 990.0, 431.0}, &analyser_);
        display->setDrawCursor(true);
        frame.addView(display);
    });
    CPoint asked;
    display->setContextMenu([&](CPoint where) { asked = where; });
    window().moveMouse({200.0, 100.0});
    idle();
    EXPECT_EQ(display->cursors, 1);
    EXPECT_EQ(display->last, (CPoint{200.0, 100.0}));
    idle();
    EXPECT_EQ(display->cursors, 1); // nothing moved
    window().leave();
    idle();
    EXPECT_EQ(display->cursors, 1);
    window().click({300.0, 200.0}, Buttons::kRight);
    EXPECT_EQ(asked, (CPoint{300.0, 200.0}));
}

TEST(NumberText, SignsAndDecimals) {
    EXPECT_EQ(numberText(-23.94, 1), "-23.9");
    EXPECT_EQ(numberText(1.25, 1, true), "+1.2");
    EXPECT_EQ(numberText(0.0, 0), "0");
}

} // namespace
} // namespace Sorel

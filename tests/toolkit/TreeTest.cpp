// The view tree: who is painted, who gets an event, who lives.
#include "ToolkitTest.h"
#include "tree/TimerObject.h"
#include "tree/ViewContainer.h"

#include <thread>

namespace Sorel {
namespace {

constexpr std::uint32_t kRed = 0xFF0000;
constexpr std::uint32_t kGreen = 0x00FF00;
constexpr std::uint32_t kBlue = 0x0000FF;

class TreeTest : public ToolkitTest {
  protected:
    /// A red view, and over it a container with a green one in it.
    void openNested(double containerLeft = 100.0) {
        open([&](CFrame& frame) {
            under_ = new ProbeView({10.0, 10.0, 60.0, 60.0}, kRedCColor);
            frame.addView(under_);
            group_ = new CViewContainer({containerLeft, 20.0, containerLeft + 80.0, 80.0});
            group_->setBackgroundColor(kBlueCColor);
            inner_ = new ProbeView({10.0, 10.0, 30.0, 30.0}, kGreenCColor);
            group_->addView(inner_);
            frame.addView(group_);
        });
    }

    ProbeView* under_ = nullptr;
    CViewContainer* group_ = nullptr;
    ProbeView* inner_ = nullptr;
};

TEST_F(TreeTest, PaintsOnlyWhatIsDirtyAndShowsOnlyThat) {
    openNested();
    EXPECT_EQ(pixel(20, 20), kRed);
    EXPECT_EQ(pixel(105, 25), kBlue);
    EXPECT_EQ(pixel(115, 35), kGreen);
    EXPECT_EQ(pixel(95, 5), 0u);

    const int draws = inner_->draws;
    idle();
    EXPECT_EQ(inner_->draws, draws);
    EXPECT_EQ(window().takeShownPixels(), 0u);

    inner_->color_ = kRedCColor;
    inner_->dirtyAgain = true; // as a view that animates
    inner_->setDirty(true);
    idle();
    idle();
    inner_->dirtyAgain = false;
    const int others = under_->draws;
    window().takeShownPixels();
    idle();
    EXPECT_EQ(inner_->draws, draws + 3);
    EXPECT_EQ(pixel(115, 35), kRed);
    EXPECT_EQ(window().takeShownPixels(), 20u * 20u);
    EXPECT_EQ(under_->draws, others);
    EXPECT_EQ(inner_->clip, (CRect{110.0, 30.0, 130.0, 50.0}));
    static_cast<IFrame&>(window()).invalidRect({190.0, 0.0, 400.0, 10.0}); // half outside
    EXPECT_EQ(window().takeShownPixels(), 100u);
}

TEST_F(TreeTest, FractionalContainersPaintFromTheFlooredOriginButConvertExactly) {
    openNested(100.75);
    EXPECT_EQ(pixel(110, 30), kGreen); // floor(100.75) + 10
    EXPECT_NE(pixel(109, 30), kGreen);
    EXPECT_EQ(inner_->frameToLocal({110.75, 30.0}), (CPoint{10.0, 10.0}));
    EXPECT_EQ(inner_->localToFrame({10.0, 10.0}), (CPoint{110.75, 30.0}));
    inner_->color_ = kRedCColor;
    inner_->setDirty(true);
    idle();
    EXPECT_EQ(pixel(110, 30), kRed);
    EXPECT_EQ(pixel(129, 49), kRed);
}

TEST_F(TreeTest, HiddenViewsAreNeitherPaintedNorHitAndLeaveTheGround) {
    openNested();
    group_->setVisible(false);
    idle();
    EXPECT_EQ(pixel(105, 25), 0u);
    const int draws = inner_->draws;
    inner_->setDirty(true);
    idle();
    EXPECT_EQ(inner_->draws, draws);
    EXPECT_EQ(window().press({115.0, 35.0}), kMouseNotHandled);
    group_->setVisible(true);
    idle();
    EXPECT_EQ(pixel(115, 35), kGreen);
}

TEST_F(TreeTest, AMarkFromAnotherThreadIsPaintedWithTheNextIdle) {
    openNested();
    const int draws = inner_->draws;
    std::thread([this] { inner_->markDirty(); }).join();
    EXPECT_EQ(inner_->draws, draws);
    idle();
    EXPECT_EQ(inner_->draws, draws + 1);
    idle();
    EXPECT_EQ(inner_->draws, draws + 1);
}

TEST_F(TreeTest, PressMoveAndReleaseGoToTheFrontmostTakerInItsCoordinates) {
    openNested();
    EXPECT_EQ(window().press({115.0, 35.0}), kMouseHandled);
    EXPECT_EQ(inner_->lastWhere, (CPoint{15.0, 15.0}));
    window().moveMouse({190.0, 95.0}); // outside, but the press is held
    EXPECT_EQ(inner_->lastWhere, (CPoint{90.0, 75.0}));
    window().releaseButtons({190.0, 95.0});
    EXPECT_EQ(inner_->ups, 1);

    // All four edges are inside, a pixel further is not.
    EXPECT_TRUE(inner_->hitTest({30.0, 30.0}));
    EXPECT_FALSE(inner_->hitTest({30.1, 30.0}));

    inner_->answer = kMouseHandledDone;
    window().click({115.0, 35.0});
    EXPECT_EQ(group_->mouseDownView(), nullptr);

    inner_->setActive(false);
    EXPECT_EQ(window().press({115.0, 35.0}), kMouseNotHandled);
    window().releaseButtons({115.0, 35.0});
}

TEST_F(TreeTest, EnterAndExitFollowThePointerThroughContainers) {
    openNested();
    window().moveMouse({20.0, 20.0});
    EXPECT_EQ(under_->entered, 1);
    window().moveMouse({115.0, 35.0});
    EXPECT_EQ(under_->exited, 1);
    EXPECT_EQ(inner_->entered, 1);
    window().leave();
    EXPECT_EQ(inner_->exited, 1);
}

TEST_F(TreeTest, WheelAndKeysStopAtTheFirstTaker) {
    openNested();
    EXPECT_TRUE(window().wheel({115.0, 35.0}, 1.0F));
    EXPECT_TRUE(window().wheel({115.0, 35.0}, 1.0F, 0, 0)); // sideways: negated
    EXPECT_FLOAT_EQ(inner_->wheel, 0.0F);
    inner_->setWantsWheel(false);
    EXPECT_FALSE(window().wheel({115.0, 35.0}, 1.0F));

    EXPECT_LE(window().key(Key::kUp), 0);
    EXPECT_EQ(inner_->lastKey, Key::kUp);
    EXPECT_EQ(under_->lastKey, Key::kUp);
    inner_->keyAnswer = 1;
    EXPECT_GT(window().key(Key::kDown), 0);
    EXPECT_EQ(under_->lastKey, Key::kUp); // behind the taker
}

TEST_F(TreeTest, TabMovesTheFocusAndAPressElsewhereTakesItAway) {
    openNested();
    under_->setWantsFocus(true);
    inner_->setWantsFocus(true);
    window().key(Key::kTab);
    EXPECT_EQ(frame().getFocusView(), under_);
    window().key(Key::kTab);
    EXPECT_EQ(frame().getFocusView(), inner_);
    EXPECT_EQ(under_->focusLost, 1);
    window().key(Key::kTab, Modifier::kShift);
    EXPECT_EQ(frame().getFocusView(), under_);
    window().click({115.0, 35.0});
    EXPECT_EQ(frame().getFocusView(), nullptr);
    EXPECT_EQ(inner_->downs, 1); // and was routed all the same
}

TEST_F(TreeTest, FilesDroppedGoToTheViewBelow) {
    openNested();
    EXPECT_TRUE(window().dropFiles({"/tmp/a.wav"}, {115.0, 35.0}));
    EXPECT_EQ(inner_->dropped, "/tmp/a.wav");
    EXPECT_EQ(inner_->dragEntered, 1);
    EXPECT_FALSE(window().dropFiles({"/tmp/a.wav"}, {199.0, 99.0}));
}

TEST_F(TreeTest, AModalViewSwallowsPressesOutsideAndIsHandedBack) {
    openNested();
    auto* modal = new ProbeView({50.0, 30.0, 150.0, 70.0}, kWhiteCColor);
    ASSERT_TRUE(frame().setModalView(modal));
    EXPECT_FALSE(frame().setModalView(under_));
    idle();
    EXPECT_EQ(pixel(115, 35), 0xFFFFFFu);
    window().click({20.0, 20.0});
    EXPECT_EQ(under_->downs, 0);
    EXPECT_EQ(modal->downs, 0);
    window().click({115.0, 35.0});
    EXPECT_EQ(modal->downs, 1);
    frame().setModalView(nullptr);
    EXPECT_EQ(modal->references(), 1);
    modal->release();
    idle();
    EXPECT_EQ(pixel(115, 35), kGreen);
}

TEST_F(TreeTest, AHandlerMayTakeItsOwnViewAway) {
    openNested();
    inner_->whenPressed = [this] { group_->removeView(inner_, true); };
    EXPECT_EQ(window().press({115.0, 35.0}), kMouseHandled);
    window().releaseButtons({115.0, 35.0});
    EXPECT_EQ(group_->getNbViews(), 0);
    idle();
    EXPECT_EQ(pixel(115, 35), kBlue);
}

TEST_F(TreeTest, ClosingInsideAnEventEndsQuietly) {
    openNested();
    inner_->whenPressed = [this] { editor_->closeFrame(); };
    const Counted<CView> inner(inner_);
    window().doubleClick({115.0, 35.0});
    EXPECT_EQ(inner_->downs, 1);
    EXPECT_FALSE(editor_->isFrameOpen());
    editor_->idleFrame();
}

TEST_F(TreeTest, AddingAndRemovingKeepsCountsAndLists) {
    openNested();
    EXPECT_FALSE(frame().addView(nullptr));
    EXPECT_FALSE(frame().addView(inner_)); // in a tree already
    auto* front = new ProbeView({0.0, 0.0, 5.0, 5.0}, kRedCColor);
    EXPECT_TRUE(group_->addViewBefore(front, inner_));
    EXPECT_EQ(group_->getView(0), front);
    EXPECT_EQ(group_->getView(2), nullptr);

    // A stranger empties the list and releases nothing: the children live on without a parent.
    const Counted<CView> held(inner_);
    EXPECT_FALSE(group_->removeView(under_));
    EXPECT_EQ(group_->getNbViews(), 0);
    EXPECT_TRUE(inner_->isAttached());
    EXPECT_EQ(inner_->getParentView(), nullptr);
    inner_->removed(nullptr);
    inner_->release();
    front->release();
}

TEST_F(TreeTest, SixtyFourRectanglesAreKeptTheNextPaintsEverything) {
    openNested();
    for (int i = 0; i < CDirtyRectHelper::kCapacity; ++i)
        frame().addDirtyRect(CRect::ofSize(i * 3.0, 0.0, 2.0, 2.0), nullptr);
    EXPECT_EQ(frame().dirtyRectCount(), 64);
    EXPECT_FALSE(frame().isDirty());
    frame().addDirtyRect(CRect::ofSize(50.0, 50.0, 2.0, 2.0), nullptr);
    EXPECT_TRUE(frame().isDirty());
    idle();
    EXPECT_EQ(frame().dirtyRectCount(), 0);
    EXPECT_EQ(window().takeShownPixels(), 200u * 100u);

    frame().addDirtyRect({10.0, 10.0, 50.0, 50.0}, nullptr);
    frame().addDirtyRect({20.0, 20.0, 30.0, 30.0}, nullptr); // inside
    frame().addDirtyRect({40.0, 40.0, 60.0, 60.0}, nullptr); // overlaps
    EXPECT_EQ(frame().dirtyRectCount(), 2);
}

TEST_F(TreeTest, CopiesOfViewsAreInNoTree) {
    openNested();
    const std::byte mark[] = {std::byte{7}};
    inner_->attributes().set(1, mark);
    group_->setViewTag(42);
    const auto copy = Counted<CViewContainer>::make(*group_);
    EXPECT_FALSE(copy->isAttached());
    EXPECT_EQ(copy->getFrame(), nullptr);
    EXPECT_EQ(copy->getViewTag(), 42);
    ASSERT_EQ(copy->getNbViews(), 1);
    EXPECT_EQ(copy->getView(0)->attributes().get(1)[0], mark[0]);
}

TEST_F(TreeTest, ResizingMakesANewSurface) {
    openNested();
    editor_->setHostSize(300, 200);
    idle();
    int width = 0;
    int height = 0;
    editor_->getHostSize(&width, &height);
    EXPECT_EQ(width, 300);
    EXPECT_EQ(pixel(115, 35), kGreen);
    EXPECT_EQ(pixel(290, 190), 0u);
}

TEST_F(TreeTest, OpeningAndClosingLeavesNothingBehind) {
    for (int i = 0; i < 50; ++i) {
        openNested();
        const Counted<CFrame> frame(editor_->frame());
        const Counted<CView> inner(inner_);
        editor_->closeFrame();
        EXPECT_EQ(frame->references(), 1);
        EXPECT_EQ(inner->references(), 1);
    }
    EXPECT_EQ(platform_.frame(), nullptr);
}

TEST_F(TreeTest, HintsGoAwayAfterASecond) {
    openNested();
    editor_->setHint("Saved");
    idle(900);
    EXPECT_STREQ(editor_->hint(), "Saved");
    idle(200);
    EXPECT_STREQ(editor_->hint(), "");
}

// ---- Timers

class Ticker : public CTimerObject {
  public:
    ~Ticker() override { stopTimer(); }
    void onTimer(std::int64_t elapsed) override {
        ++calls;
        lastElapsed = elapsed;
        if (whenCalled) whenCalled();
    }
    int calls = 0;
    std::int64_t lastElapsed = 0;
    std::function<void()> whenCalled;
};

TEST_F(TreeTest, TimersKeepTheirIntervalsAndMayStopInsideTheCall) {
    CTimerRegistry& registry = CTimerRegistry::instance();
    Ticker slow;
    Ticker fast;
    slow.startTimer(100);
    fast.startTimer(25);
    const auto run = [&](int steps, std::uint64_t step) {
        for (int i = 0; i < steps; ++i) {
            platform_.advance(step);
            registry.pump(platform_.ticks());
        }
    };
    run(40, 10);
    EXPECT_EQ(slow.calls, 4);
    EXPECT_EQ(fast.calls, 16);
    run(1, 1000); // a stall is not made up for
    EXPECT_EQ(slow.calls, 5);
    EXPECT_EQ(slow.lastElapsed, 1000);

    fast.whenCalled = [&] {
        fast.stopTimer();
        registry.pump(platform_.ticks()); // nested: nothing happens
    };
    run(10, 25);
    EXPECT_EQ(fast.calls, 18);
    EXPECT_EQ(registry.count(), 1);
}

TEST_F(TreeTest, StoppingATimerFromAnotherThreadWaitsForItsCallAlone) {
    CTimerRegistry& registry = CTimerRegistry::instance();
    std::atomic<bool> inside{false};
    std::atomic<bool> mayEnd{false};
    std::atomic<bool> stopped{false};
    Ticker busy;
    Ticker other;
    other.startTimer(5000);
    busy.whenCalled = [&] {
        inside = true;
        while (!mayEnd)
            std::this_thread::yield();
        EXPECT_FALSE(stopped);
    };
    busy.startTimer(10);
    std::thread stopper([&] {
        while (!inside)
            std::this_thread::yield();
        other.stopTimer(); // does not wait
        mayEnd = true;
        busy.stopTimer(); // waits for the call
        stopped = true;
    });
    platform_.advance(10);
    registry.pump(platform_.ticks());
    stopper.join();
    EXPECT_EQ(registry.count(), 0);
}

} // namespace
} // namespace Sorel

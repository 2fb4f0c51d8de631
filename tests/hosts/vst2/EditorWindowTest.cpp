// The binary's window inside a host's, on a real display: opened, worked, closed, and two at once.
#include "BinaryModule.h"
#include "FakeHost.h"
#include "InstrumentEyes.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace {

using namespace vst2;

class BinaryEditorWindow : public testing::Test {
  protected:
    void SetUp() override {
        if (!server_.isRunning())
            GTEST_SKIP() << "Xvfb is not installed (Debian package xvfb): no window to test with.";
        user_ = std::make_unique<XUser>();
        user_->moveTo(2, 2);
        effect_ = std::make_unique<Effect>(module_.create());
        effect_->ask(effOpen);
    }

    /// A host that idles until `condition` holds, at most three seconds.
    template <class Condition>
    bool idleUntil(const Effect& effect, Condition condition) {
        for (int i = 0; i < 600 && !condition(); ++i) {
            effect.ask(effEditIdle);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return condition();
    }
    bool showsInstrument(int x, int y) const { return ::showsInstrument(*user_, x, y); }
    bool isLit(int x, int y) const { return ::isLit(*user_, x, y); }

    XServer server_;
    std::unique_ptr<XUser> user_;
    FakeHost host_;
    BinaryModule module_;
    std::unique_ptr<Effect> effect_;
};

TEST_F(BinaryEditorWindow, OpensWorksClosesAndOpensAgain) {
    ERect* size = nullptr;
    ASSERT_EQ(effect_->ask(effEditGetRect, 0, 0, &size), 1);
    EXPECT_EQ(size->right, 1000);
    EXPECT_EQ(size->bottom, 545);
    const xcb_window_t parent = user_->hostWindow(10, 10, 1000, 545);
    for (int round = 0; round < 3; ++round) {
        ASSERT_EQ(effect_->ask(effEditOpen, 0, 0, asParent(parent)), 1);
        ASSERT_TRUE(idleUntil(*effect_, [&] { return showsInstrument(10, 10); })) << round;
        // The gold bar under the second page button, after a click on it.
        user_->moveTo(10 + 490, 10 + 24);
        user_->click();
        EXPECT_TRUE(idleUntil(*effect_, [&] { return isLit(10 + 490, 10 + 33); })) << round;
        user_->moveTo(10 + 371, 10 + 24);
        user_->click();
        EXPECT_TRUE(idleUntil(*effect_, [&] { return isLit(10 + 371, 10 + 33); })) << round;
        effect_->ask(effEditClose);
        user_->sync();
    }
}

TEST_F(BinaryEditorWindow, AGestureReachesTheHost) {
    const xcb_window_t parent = user_->hostWindow(0, 0, 1000, 545);
    effect_->ask(effEditOpen, 0, 0, asParent(parent));
    ASSERT_TRUE(idleUntil(*effect_, [&] { return showsInstrument(0, 0); }));
    host_.forget();
    user_->moveTo(186, 490); // "Input Gain"
    user_->button(1, true);
    user_->moveTo(186, 530);
    user_->button(1, false);
    EXPECT_TRUE(idleUntil(*effect_, [&] { return host_.count(audioMasterEndEdit) > 0; }));
    EXPECT_EQ(host_.count(audioMasterBeginEdit), 1);
    EXPECT_GE(host_.count(audioMasterAutomate), 1);
    EXPECT_LT(effect_->get()->getParameter(effect_->get(), 0), 1.0F);
    effect_->ask(effEditClose);
}

TEST_F(BinaryEditorWindow, TwoInstancesShowSideBySideAndAHostMayNeverIdleOrForgetToClose) {
    const xcb_window_t first = user_->hostWindow(0, 0, 1000, 545);
    const xcb_window_t second = user_->hostWindow(1010, 0, 1000, 545);
    {
        Effect other(module_.create());
        other.ask(effOpen);
        effect_->ask(effEditOpen, 0, 0, asParent(first));
        other.ask(effEditOpen, 0, 0, asParent(second));
        ASSERT_TRUE(idleUntil(*effect_, [&] { return showsInstrument(0, 0); }));
        // The window of the other one is gone before its plug-in hears of it.
        xcb_destroy_window(user_->xcb(), second);
        user_->sync();
        other.ask(effEditIdle);
    } // closed by its host without effEditClose
    EXPECT_TRUE(idleUntil(*effect_, [&] { return showsInstrument(0, 0); }));
    effect_->ask(effEditClose);
    effect_->ask(effEditOpen, 0, 0, asParent(first)); // and never idled
}

TEST_F(BinaryEditorWindow, WithoutADisplayNothingOpensAndNothingBreaks) {
    server_.kill();
    const int answer = static_cast<int>(effect_->ask(effEditOpen, 0, 0, asParent(0x1234567)));
    effect_->ask(effEditIdle);
    effect_->ask(effEditClose);
    EXPECT_TRUE(answer == 0 || answer == 1);
    user_.release(); // its server is gone; closing the connection is of no use
}

} // namespace

// The VST2 binary's window inside a host's, on a real display and driven by the host's idle.
#include "BinaryModule.h"
#include "XServer.h"

#include <chrono>
#include <memory>
#include <thread>

namespace {

using namespace vst2;

/// As the interface hands a window to a plug-in.
void* asParent(xcb_window_t window) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(window));
}

class BinaryEditorWindow : public testing::Test {
  protected:
    static constexpr int kWidth = 1000;
    static constexpr int kHeight = 545;

    void SetUp() override {
        if (!server_.isRunning())
            GTEST_SKIP() << "Xvfb is not installed (Debian package xvfb): no window to test with.";
        user_ = std::make_unique<XUser>();
        user_->moveTo(2, 2);
        effect_ = std::make_unique<Effect>(module_.create());
        effect_->ask(effOpen);
    }
    void open(const Effect& effect, xcb_window_t parent) {
        ASSERT_EQ(effect.ask(effEditOpen, 0, 0, asParent(parent)), 1);
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
    /// How many pixels the window at this place has that are not the host's own colour.
    long painted(int x) const {
        const auto pixels = user_->pixels(x, 0, 1280 - x < kWidth ? 1280 - x : kWidth, kHeight);
        const std::uint32_t ground = 0x204060; // of host windows
        return static_cast<long>(pixels.size()) - std::count(pixels.begin(), pixels.end(), ground);
    }
    bool isFull(int x) const { return painted(x) >= (x > 0 ? 1280 - x : kWidth) * kHeight - 50; }
    /// The gold bar under the button of a page.
    bool isLit(int x, int page) const {
        return (user_->pixel(x + 371 + 119 * page, 33) >> 16 & 0xFF) > 180;
    }
    void clickPage(const Effect& effect, int x, int page) {
        user_->moveTo(x + 371 + 119 * page, 24);
        user_->click();
        EXPECT_TRUE(idleUntil(effect, [&] { return isLit(x, page); })) << page;
    }

    XServer server_;
    std::unique_ptr<XUser> user_;
    FakeHost host_;
    BinaryModule module_;
    std::unique_ptr<Effect> effect_;
};

TEST_F(BinaryEditorWindow, PaintsWorksClosesAndOpensAgain) {
    ERect* size = nullptr;
    ASSERT_EQ(effect_->ask(effEditGetRect, 0, 0, &size), 1);
    EXPECT_EQ(size->right, kWidth);
    EXPECT_EQ(size->bottom, kHeight);
    const xcb_window_t parent = user_->hostWindow(0, 0, kWidth, kHeight);
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(painted(0), 0) << "the host's window alone";
        open(*effect_, parent);
        ASSERT_TRUE(idleUntil(*effect_, [&] { return isFull(0); })) << round;
        clickPage(*effect_, 0, 1);
        clickPage(*effect_, 0, 0);
        effect_->ask(effEditClose);
        user_->sync();
    }
}

TEST_F(BinaryEditorWindow, AGestureReachesTheHost) {
    open(*effect_, user_->hostWindow(0, 0, kWidth, kHeight));
    ASSERT_TRUE(idleUntil(*effect_, [&] { return isLit(0, 0); }));
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

TEST_F(BinaryEditorWindow, TwoInstancesWorkSideBySideAndOneLosesItsWindow) {
    constexpr int kBeside = 700; // over the right part of the first
    const xcb_window_t second = user_->hostWindow(kBeside, 0, kWidth, kHeight);
    const xcb_window_t first = user_->hostWindow(0, 0, kBeside, kHeight);
    open(*effect_, first);
    {
        const Effect other(module_.create());
        other.ask(effOpen);
        open(other, second);
        ASSERT_TRUE(idleUntil(other, [&] {
            effect_->ask(effEditIdle);
            return isLit(0, 0) && isLit(kBeside, 0) && isFull(kBeside);
        }));
        clickPage(*effect_, 0, 1);
        EXPECT_TRUE(isLit(kBeside, 0)) << "the other one shows what it did";
        // Its window is gone before its plug-in hears of it.
        xcb_destroy_window(user_->xcb(), second);
        user_->sync();
        other.ask(effEditIdle);
    } // closed by its host without effEditClose
    clickPage(*effect_, 0, 2);
    effect_->ask(effEditClose);
}

TEST_F(BinaryEditorWindow, AHostMayNeverIdle) {
    const xcb_window_t parent = user_->hostWindow(0, 0, kWidth, kHeight);
    for (int round = 0; round < 3; ++round) {
        open(*effect_, parent);
        user_->moveTo(490, 24);
        user_->click(); // nobody hears of it
        effect_->run({std::vector<float>(512), std::vector<float>(512)}, 2);
        if (round < 2) effect_->ask(effEditClose); // the last one is left open
    }
}

TEST_F(BinaryEditorWindow, WithoutADisplayNothingOpensAndNothingBreaks) {
    server_.kill();
    const auto answer = effect_->ask(effEditOpen, 0, 0, asParent(0x1234567));
    effect_->ask(effEditIdle);
    effect_->ask(effEditClose);
    EXPECT_TRUE(answer == 0 || answer == 1);
    user_.release(); // its server is gone; closing the connection is of no use
}

} // namespace

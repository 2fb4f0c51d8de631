// The VST3 binary's window inside a host's, on a real display and the host's own run loop.
#include "BinaryModule3.h"
#include "InstrumentEyes.h"

#include <chrono>
#include <memory>
#include <optional>
#include <thread>

namespace vst3_test {
namespace {

constexpr auto kWindow = "X11EmbedWindowID";

class BinaryEditorWindow3 : public testing::Test {
  protected:
    void SetUp() override {
        if (!server_.isRunning())
            GTEST_SKIP() << "Xvfb is not installed (Debian package xvfb): no window to test with.";
        user_ = std::make_unique<XUser>();
        user_->moveTo(2, 2);
        effect_.emplace(module_.factory(), nullptr);
        ASSERT_TRUE(effect_->controller);
        effect_->controller->setComponentHandler(&handler_);
        effect_->prepare(48000, 256);
        frame_.loop = &loop_;
    }
    ~BinaryEditorWindow3() override {
        effect_.reset();
        EXPECT_EQ(loop_.mistakes + loop_.references + frame_.references + handler_.references, 0);
    }
    IPtr<IPlugView> view() { return owned(effect_->controller->createView("editor")); }
    /// The host's loop turns until `condition` holds, at most three seconds.
    template <class Condition>
    bool turnUntil(Condition condition) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(3);
        while (!condition() && std::chrono::steady_clock::now() < end)
            loop_.turn();
        return condition();
    }
    bool showsInstrument(int x, int y) const { return ::showsInstrument(*user_, x, y); }
    bool isLit(int x, int y) const { return ::isLit(*user_, x, y); }

    XServer server_;
    std::unique_ptr<XUser> user_;
    RunLoop loop_;
    Frame frame_;
    Handler handler_;
    BinaryModule3 module_;
    std::optional<Effect3> effect_;
};

TEST_F(BinaryEditorWindow3, WorksOnTheHostsLoop) {
    const xcb_window_t parent = user_->hostWindow(10, 10, 1000, 545);
    const auto editor = view();
    ViewRect size;
    ASSERT_EQ(editor->getSize(&size), kResultTrue);
    EXPECT_EQ(size.getWidth(), 1000);
    EXPECT_EQ(size.getHeight(), 545);
    ASSERT_EQ(editor->attached(asParent(parent), kWindow), kResultOk);
    editor->setFrame(&frame_); // late
    ASSERT_TRUE(turnUntil([&] { return showsInstrument(10, 10); }));
    EXPECT_EQ(loop_.events.size(), 1U);
    // The gold bar under the second page button, after a click on it.
    user_->moveTo(10 + 490, 10 + 24);
    user_->click();
    EXPECT_TRUE(turnUntil([&] { return isLit(10 + 490, 10 + 33); }));
    user_->moveTo(10 + 371, 10 + 24);
    user_->click();
    EXPECT_TRUE(turnUntil([&] { return isLit(10 + 371, 10 + 33); }));
    // A gesture on "Input Gain".
    user_->moveTo(10 + 186, 10 + 490);
    user_->button(1, true);
    user_->moveTo(10 + 186, 10 + 530);
    user_->button(1, false);
    EXPECT_TRUE(
        turnUntil([&] { return !handler_.edits.empty() && handler_.edits.back().kind == 'e'; }));
    ASSERT_GE(handler_.edits.size(), 3U);
    EXPECT_EQ(handler_.edits.front().kind, 'b');
    EXPECT_EQ(handler_.edits[handler_.edits.size() - 2].value,
              effect_->controller->getParamNormalized(0));
    editor->removed();
    EXPECT_TRUE(loop_.events.empty());
}

TEST_F(BinaryEditorWindow3, OpensAndClosesHundredsOfTimes) {
    const xcb_window_t parent = user_->hostWindow(0, 0, 1000, 545);
    user_->sync();
    const std::size_t clients = user_->clientCount();
    for (int round = 0; round < 300; ++round) {
        auto editor = view();
        if (round % 2 == 0) editor->setFrame(&frame_);
        ASSERT_EQ(editor->attached(asParent(parent), kWindow), kResultOk) << round;
        if (round % 2 != 0) editor->setFrame(&frame_);
        if (round % 5 == 0) loop_.turn();
        if (round % 50 == 0) {
            ASSERT_TRUE(turnUntil([&] { return showsInstrument(0, 0); })) << round;
        }
        if (round % 3 != 0) editor->removed();
    }
    user_->sync();
    EXPECT_LE(user_->clientCount(), clients + 1) << "at most the connection is kept";
    EXPECT_TRUE(loop_.events.empty() && loop_.timers.empty());
}

TEST_F(BinaryEditorWindow3, HostsThatForgetThings) {
    const xcb_window_t first = user_->hostWindow(0, 0, 1000, 545);
    // Over the first, of which the pixels that tell stay free.
    const xcb_window_t second = user_->hostWindow(270, 250, 1000, 545);
    auto one = view();
    auto two = view();
    one->setFrame(&frame_);
    two->setFrame(&frame_);
    one->attached(asParent(first), kWindow);
    two->attached(asParent(second), kWindow); // the second while the first is open
    EXPECT_TRUE(turnUntil([&] { return showsInstrument(270, 250); }));
    // Another instance beside it, whose window goes before its plug-in hears of it.
    {
        Effect3 other(module_.factory(), nullptr);
        const auto third = owned(other.controller->createView("editor"));
        third->setFrame(&frame_);
        third->attached(asParent(first), kWindow);
        EXPECT_TRUE(turnUntil([&] { return showsInstrument(0, 0); }));
        xcb_destroy_window(user_->xcb(), first);
        user_->sync();
        for (int i = 0; i < 50; ++i)
            loop_.turn();
        other.component->terminate(); // with the view open
    }
    one = nullptr;
    EXPECT_TRUE(turnUntil([&] { return showsInstrument(270, 250); }));
    effect_.reset(); // the view outlives the effect
    for (int i = 0; i < 10; ++i)
        loop_.turn();
    two->removed();
    two = nullptr;
}

TEST_F(BinaryEditorWindow3, ADisplayThatDiesLeavesTheHostInPeace) {
    const auto editor = view();
    editor->setFrame(&frame_);
    editor->attached(asParent(user_->hostWindow(0, 0, 1000, 545)), kWindow);
    ASSERT_TRUE(turnUntil([&] { return showsInstrument(0, 0); }));
    server_.kill();
    user_.release(); // its server is gone; closing the connection is of no use
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(3);
    while (!loop_.events.empty() && std::chrono::steady_clock::now() < end)
        loop_.turn();
    EXPECT_TRUE(loop_.events.empty()) << "its connection would wake the host for ever";
    editor->removed();
    editor->attached(asParent(0x1234567), kWindow);
}

} // namespace
} // namespace vst3_test

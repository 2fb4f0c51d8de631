// The VST3 binary's window inside a host's, on a real display and the host's own run loop.
#include "BinaryModule3.h"
#include "XServer.h"

#include <chrono>
#include <memory>
#include <optional>

namespace vst3_test {
namespace {

constexpr auto kWindow = "X11EmbedWindowID";

/// As the interface hands a window to a plug-in.
void* asParent(xcb_window_t window) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(window));
}

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
    /// Header and wells have their own greys. `x`, `y`: where the window stands on the screen.
    bool showsInstrument(int x, int y) const {
        const auto red = [](std::uint32_t pixel) { return int(pixel >> 16 & 0xFF); };
        const auto blue = [](std::uint32_t pixel) { return int(pixel & 0xFF); };
        const std::uint32_t header = user_->pixel(x + 820, y + 40);
        const std::uint32_t well = user_->pixel(x + 20, y + 425);
        return red(header) > 45 && red(header) < 62 && blue(header) > red(header) &&
               blue(well) > red(well) + 15;
    }
    /// Clicks the page button at `button`, whose gold bar lights up.
    void clickPage(int button, int x, int y) {
        user_->moveTo(x + button, y + 24);
        user_->click();
        EXPECT_TRUE(
            turnUntil([&] { return (user_->pixel(x + button, y + 33) >> 16 & 0xFF) > 180; }));
    }

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
    clickPage(490, 10, 10);
    clickPage(371, 10, 10);
    // A gesture on "Input Gain".
    user_->moveTo(10 + 186, 10 + 490);
    user_->button(1, true);
    user_->moveTo(10 + 186, 10 + 530);
    user_->button(1, false);
    const std::vector<Handler::Edit>& edits = handler_.edits;
    EXPECT_TRUE(turnUntil([&] { return !edits.empty() && edits.back().kind == 'e'; }));
    ASSERT_GE(edits.size(), 3U);
    EXPECT_EQ(edits.front().kind, 'b');
    EXPECT_EQ(edits[edits.size() - 2].value, effect_->controller->getParamNormalized(0));
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

TEST_F(BinaryEditorWindow3, OneOfTwoInstancesLosesItsWindow) {
    const auto editor = view();
    editor->setFrame(&frame_);
    editor->attached(asParent(user_->hostWindow(0, 0, 1000, 545)), kWindow);
    const xcb_window_t window = user_->hostWindow(1010, 0, 1000, 545);
    Effect3 other(module_.factory(), nullptr);
    const auto lost = owned(other.controller->createView("editor"));
    lost->setFrame(&frame_);
    lost->attached(asParent(window), kWindow);
    EXPECT_TRUE(turnUntil([&] { return showsInstrument(0, 0); }));
    xcb_destroy_window(user_->xcb(), window);
    user_->sync();
    for (int i = 0; i < 50; ++i)
        loop_.turn();
    other.component->terminate(); // with the view open
    clickPage(490, 0, 0);
}

TEST_F(BinaryEditorWindow3, ADisplayThatDiesLeavesTheHostInPeace) {
    const auto editor = view();
    editor->setFrame(&frame_);
    editor->attached(asParent(user_->hostWindow(0, 0, 1000, 545)), kWindow);
    ASSERT_TRUE(turnUntil([&] { return showsInstrument(0, 0); }));
    server_.kill();
    user_.release(); // its server is gone; closing the connection is of no use
    EXPECT_TRUE(turnUntil([&] { return loop_.events.empty(); }))
        << "its connection would wake the host for ever";
    editor->removed();
    editor->attached(asParent(0x1234567), kWindow);
}

} // namespace
} // namespace vst3_test

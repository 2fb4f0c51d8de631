// Views around an editor without a window, on run loops that come from anywhere at any time.
#include "AdapterFixture.h"
#include "VardoVST3EditorView.h"

#include <algorithm>
#include <cmath>

namespace vst3_test {
namespace {

constexpr auto kWindow = "X11EmbedWindowID";

class View : public AdapterFixture {
  protected:
    View() {
        module().hasEditor = true;
        create(&context);
    }
    ~View() override {
        effect.reset();
        factory = nullptr;
        EXPECT_EQ(loop.mistakes, 0);
        EXPECT_EQ(loop.references + context.references + frame.references, 0);
        EXPECT_TRUE(loop.timers.empty() && loop.events.empty());
    }
    IPtr<IPlugView> view() const { return owned(effect->controller->createView("editor")); }
    StubEditor& editor() const { return *plugin().editor; }
    /// The editor gets time when the host's timers fire.
    bool isDriven() {
        const int before = plugin().idles;
        const bool hasViewTimer = std::any_of(loop.timers.begin(), loop.timers.end(),
                                              [](auto& each) { return each.second.period == 25; });
        loop.fireTimers();
        return hasViewTimer && plugin().idles > before;
    }
    void lendLoop() {
        context.loop = &loop;
        factory->setHostContext(&context);
    }

    void* const parent = this;
    RunLoop loop;
    Context context;
    Frame frame;
};

TEST_F(View, OnlyTheEditorAndOnlyWhereThereIsOne) {
    EXPECT_EQ(effect->controller->createView("other"), nullptr);
    EXPECT_EQ(effect->controller->createView(nullptr), nullptr);
    const auto made = view();
    ASSERT_TRUE(made);
    EXPECT_EQ(made->isPlatformTypeSupported(kWindow), kResultTrue);
    EXPECT_NE(made->attached(nullptr, kWindow), kResultOk);
    EXPECT_NE(made->attached(parent, "HWND"), kResultOk);
    EXPECT_EQ(editor().timesOpened, 0);
    editor().opens = false; // as without a display
    EXPECT_NE(made->attached(parent, kWindow), kResultOk);
    module().hasEditor = false;
    create();
    EXPECT_FALSE(view());
}

TEST_F(View, FindsTheLoopWhereverAndWheneverItComes) {
    frame.loop = &loop;
    const auto from = [&](const char* where, auto&& before, auto&& after) {
        SCOPED_TRACE(where);
        context.loop = handler.loop = nullptr;
        create(&context);
        const auto made = view();
        before(*made);
        ASSERT_EQ(made->attached(parent, kWindow), kResultOk);
        after(*made);
        EXPECT_TRUE(isDriven());
        made->removed();
        EXPECT_FALSE(isDriven());
    };
    const auto nothing = [](IPlugView&) {};
    const auto giveFrame = [&](IPlugView& made) { made.setFrame(&frame); };
    from("frame before", giveFrame, nothing);
    from("frame after", nothing, giveFrame);
    from("factory", nothing, [&](IPlugView&) { lendLoop(); });
    from("handler", nothing, [&](IPlugView&) {
        handler.loop = &loop;
        effect->controller->setComponentHandler(nullptr);
        effect->controller->setComponentHandler(&handler);
    });
}

TEST_F(View, LosesAndFindsTheFramesLoop) {
    frame.loop = &loop;
    const auto made = view();
    made->attached(parent, kWindow);
    for (int round = 0; round < 2; ++round) {
        made->setFrame(&frame);
        EXPECT_TRUE(isDriven());
        const IPtr<Linux::ITimerHandler> late(loop.timers.begin()->first);
        made->setFrame(nullptr);
        EXPECT_FALSE(isDriven());
        const int before = plugin().idles;
        late->onTimer();
        EXPECT_EQ(plugin().idles, before) << "a host a turn behind";
    }
}

TEST_F(View, OfTwoTheLaterHasTheWindow) {
    lendLoop();
    auto first = view();
    auto second = view();
    int other = 0;
    first->attached(parent, kWindow);
    second->attached(&other, kWindow);
    EXPECT_EQ(editor().parent, &other);
    first->removed();
    first = nullptr;
    EXPECT_EQ(editor().parent, &other) << "not its window";
    EXPECT_TRUE(isDriven());
    second->attached(parent, kWindow); // without `removed`
    EXPECT_EQ(editor().parent, parent);
    EXPECT_FALSE(editor().openedTwice);
    second = nullptr; // without `removed` either
    EXPECT_EQ(editor().parent, nullptr);
}

TEST_F(View, OutlivesItsPlugin) {
    lendLoop();
    auto made = view();
    made->attached(parent, kWindow);
    effect->component->terminate();
    EXPECT_TRUE(loop.timers.empty());
    effect.reset();
    factory = nullptr;
    ViewRect size;
    EXPECT_EQ(made->getSize(&size), kResultTrue);
    EXPECT_EQ(size.getWidth(), 640);
    EXPECT_NE(made->attached(parent, kWindow), kResultOk);
    EXPECT_EQ(made->onKeyDown('a', 0, 0), kResultFalse);
    EXPECT_EQ(made->onWheel(1), kResultFalse);
    EXPECT_EQ(made->removed(), kResultOk);
}

TEST_F(View, MayGoInTheMiddleOfItsIdleStep) {
    lendLoop();
    auto made = view();
    made->attached(parent, kWindow);
    plugin().duringIdle = [&] {
        if (!made) return;
        made->removed();
        made = nullptr;
    };
    loop.fireTimers();
    EXPECT_EQ(editor().parent, nullptr);
}

TEST_F(View, TellsItsSizeWhenItChanges) {
    lendLoop();
    const auto made = view();
    made->setFrame(&frame);
    made->attached(parent, kWindow);
    ViewRect odd(0, 0, 17, 19);
    made->onSize(&odd);
    loop.fireTimers();
    EXPECT_TRUE(frame.sizes.empty()) << "the host's idea of it is the host's business";
    editor().width = 1280;
    loop.fireTimers();
    loop.fireTimers();
    ASSERT_EQ(frame.sizes.size(), 1U);
    EXPECT_EQ(frame.sizes[0].getWidth(), 1280);
    EXPECT_NE(made->getSize(nullptr), kResultOk);
}

TEST_F(View, KeysAndWheel) {
    const auto made = view();
    EXPECT_EQ(made->onWheel(2), kResultFalse) << "nothing is open";
    made->attached(parent, kWindow);
    EXPECT_EQ(made->onWheel(2), kResultTrue);
    EXPECT_EQ(editor().wheel, 2);
    EXPECT_EQ(made->onWheel(std::nanf("")), kResultFalse);
    const struct {
        char16 key;
        int16 code, modifiers;
        int character, virtualKey, bits;
    } cases[] = {{'a', 0, 0, 'a', 0, 0}, {0, 4, 1, 0, 4, 1},     {0, 0x91, 2, 0x41, 0x91, 2},
                 {0xE9, 0, 4, 0, 0, 8},  {'z', 0, 8, 'z', 0, 4}, {'z', 0, 15, 'z', 0, 15},
                 {0, -1, -1, 0, 255, 15}};
    for (const auto& each : cases) {
        EXPECT_EQ(made->onKeyDown(each.key, each.code, each.modifiers), kResultOk);
        EXPECT_EQ(editor().key.character, each.character) << each.code;
        EXPECT_EQ(editor().key.virtualKey, each.virtualKey) << each.code;
        EXPECT_EQ(editor().key.modifiers, each.bits) << each.modifiers;
    }
}

} // namespace
} // namespace vst3_test

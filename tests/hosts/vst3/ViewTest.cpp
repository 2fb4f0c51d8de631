// Views around an editor without a window, on run loops that come from anywhere at any time.
#include "AdapterFixture.h"
#include "VardoVST3EditorView.h"

#include <cmath>

#include <unistd.h>

namespace vst3_test {
namespace {

constexpr auto kWindow = "X11EmbedWindowID";

class View : public AdapterFixture {
  protected:
    View() { module().hasEditor = true; }
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
        for (auto& [handler_, timer] : loop.timers)
            if (timer.period == 25) {
                loop.fireTimers();
                return plugin().idles > before;
            }
        return false;
    }

    void* const parent = this;
    RunLoop loop;
    Context context;
    Frame frame;
};

TEST_F(View, OnlyTheEditorAndOnlyWhereThereIsOne) {
    create();
    EXPECT_EQ(effect->controller->createView("other"), nullptr);
    EXPECT_EQ(effect->controller->createView(nullptr), nullptr);
    const auto made = view();
    ASSERT_TRUE(made);
    EXPECT_EQ(made->isPlatformTypeSupported(kWindow), kResultTrue);
    EXPECT_NE(made->isPlatformTypeSupported("HWND"), kResultTrue);
    EXPECT_NE(made->isPlatformTypeSupported(nullptr), kResultTrue);
    EXPECT_NE(made->attached(nullptr, kWindow), kResultOk);
    EXPECT_NE(made->attached(parent, "HWND"), kResultOk);
    EXPECT_EQ(editor().timesOpened, 0);
    EXPECT_EQ(made->canResize(), kResultFalse);
    EXPECT_EQ(made->onFocus(1), kResultFalse);
    editor().opens = false; // as without a display
    EXPECT_NE(made->attached(parent, kWindow), kResultOk);
    module().hasEditor = false;
    create();
    EXPECT_FALSE(view());
}

TEST_F(View, FindsTheLoopWhereverAndWheneverItComes) {
    const auto from = [&](const char* where, auto&& before, auto&& after) {
        context.loop = frame.loop = handler.loop = nullptr;
        create(&context);
        const auto made = view();
        before(*made);
        ASSERT_EQ(made->attached(parent, kWindow), kResultOk);
        after(*made);
        EXPECT_TRUE(isDriven()) << where;
        made->removed();
        EXPECT_FALSE(isDriven()) << where;
    };
    const auto nothing = [](IPlugView&) {};
    const auto giveFrame = [&](IPlugView& made) {
        frame.loop = &loop;
        made.setFrame(&frame);
    };
    from("frame before", giveFrame, nothing);
    from("frame after", nothing, giveFrame);
    from("factory", nothing, [&](IPlugView&) {
        context.loop = &loop;
        factory->setHostContext(&context);
    });
    from("handler", nothing, [&](IPlugView&) {
        handler.loop = &loop;
        effect->controller->setComponentHandler(nullptr);
        effect->controller->setComponentHandler(&handler);
    });
    // The frame goes while the window stays.
    context.loop = handler.loop = nullptr;
    create(&context);
    const auto made = view();
    giveFrame(*made);
    made->attached(parent, kWindow);
    EXPECT_TRUE(isDriven());
    made->setFrame(nullptr);
    EXPECT_FALSE(isDriven());
    made->setFrame(&frame);
    EXPECT_TRUE(isDriven());
}

TEST_F(View, WatchesTheEditorsConnectionAsLongAsThereIsOne) {
    context.loop = &loop;
    create(&context);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    editor().descriptor = ends[0];
    const auto made = view();
    made->attached(parent, kWindow);
    ASSERT_EQ(loop.events.size(), 1U);
    EXPECT_EQ(loop.events.begin()->second, ends[0]);
    editor().descriptor = -1;
    loop.fireTimers();
    EXPECT_TRUE(loop.events.empty()) << "a dead connection would wake the host for ever";
    editor().descriptor = ends[1];
    loop.fireTimers();
    EXPECT_EQ(loop.events.size(), 1U);
    made->removed();
    EXPECT_TRUE(loop.events.empty());
    close(ends[0]);
    close(ends[1]);
}

TEST_F(View, OfTwoTheLaterHasTheWindow) {
    context.loop = &loop;
    create(&context);
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
    second = nullptr; // without `removed`
    EXPECT_EQ(editor().parent, nullptr);
    const auto third = view();
    third->attached(parent, kWindow);
    third->attached(&other, kWindow); // without `removed` either
    EXPECT_EQ(editor().parent, &other);
}

TEST_F(View, OutlivesItsPlugin) {
    context.loop = &loop;
    create(&context);
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
    made = nullptr;
}

TEST_F(View, MayGoInTheMiddleOfItsIdleStep) {
    context.loop = &loop;
    create(&context);
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
    context.loop = &loop;
    create(&context);
    const auto made = view();
    made->setFrame(&frame);
    made->attached(parent, kWindow);
    ViewRect odd(0, 0, 17, 19);
    EXPECT_EQ(made->onSize(&odd), kResultTrue);
    EXPECT_EQ(made->onSize(nullptr), kResultTrue);
    loop.fireTimers();
    EXPECT_TRUE(frame.sizes.empty()) << "the host's idea of it is the host's business";
    editor().width = 1280;
    loop.fireTimers();
    loop.fireTimers();
    ASSERT_EQ(frame.sizes.size(), 1U);
    EXPECT_EQ(frame.sizes[0].getWidth(), 1280);
    ViewRect size;
    made->getSize(&size);
    EXPECT_EQ(size.getWidth(), 1280);
    EXPECT_NE(made->getSize(nullptr), kResultOk);
}

TEST_F(View, KeysAndWheel) {
    create();
    const auto made = view();
    EXPECT_EQ(made->onWheel(2), kResultFalse) << "nothing is open";
    made->attached(parent, kWindow);
    EXPECT_EQ(made->onWheel(2), kResultTrue);
    EXPECT_EQ(editor().wheel, 2);
    EXPECT_EQ(made->onWheel(std::nanf("")), kResultFalse);
    EXPECT_EQ(made->onKeyUp('a', 0, 0), kResultFalse);
    struct Case {
        char16 key;
        int16 code, modifiers;
        int character, virtualKey, bits;
    };
    for (const Case& each :
         {Case{'a', 0, 0, 'a', 0, 0}, Case{0, 4, 1, 0, 4, 1},
          Case{0, 0x80 + 17, 2, 0x41, 0x80 + 17, 2}, Case{0xE9, 0, 4, 0, 0, 8},
          Case{'z', 0, 8, 'z', 0, 4}, Case{'z', 0, 15, 'z', 0, 15}, Case{0, -1, -1, 0, 255, 15}}) {
        EXPECT_EQ(made->onKeyDown(each.key, each.code, each.modifiers), kResultOk);
        EXPECT_EQ(editor().key.character, each.character) << each.code;
        EXPECT_EQ(editor().key.virtualKey, each.virtualKey) << each.code;
        EXPECT_EQ(editor().key.modifiers, each.bits) << each.modifiers;
    }
}

} // namespace
} // namespace vst3_test

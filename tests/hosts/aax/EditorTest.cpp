// The plug-in's editor in the host's view.
#include "EffectFixture.h"
#include "Vardo_AAX_Editor_Wrapper.h"

namespace {

class Editor : public EffectFixture {
  protected:
    Editor() {
        module().hasEditor = true;
        start();
        container.window = &container;
        gui.Initialize(effect.get());
    }
    ~Editor() override { gui.Uninitialize(); }

    StubEditor& editor() { return *plugin().editor; }

    AAX_IViewContainer container;
    Vardo_AAX_Editor_Wrapper gui;
};

TEST_F(Editor, OpensAfterAnIdleAndCloses) {
    AAX_Point size;
    EXPECT_EQ(gui.GetViewSize(&size), AAX_SUCCESS);
    EXPECT_EQ(size.horz, 640.0F);
    EXPECT_EQ(size.vert, 360.0F);
    EXPECT_EQ(gui.GetViewSize(nullptr), -20004);
    AAX_Rect area;
    gui.Draw(&area);
    EXPECT_EQ(editor().updates, 0) << "closed yet";
    gui.SetViewContainer(&container);
    EXPECT_EQ(editor().parent, &container);
    EXPECT_EQ(editor().idles, 1);
    gui.Draw(nullptr);
    EXPECT_EQ(editor().updates, 1);
    gui.SetViewContainer(&container); // a host that opens twice
    EXPECT_EQ(editor().timesOpened, 2);
    gui.SetViewContainer(nullptr);
    gui.SetViewContainer(nullptr);
    EXPECT_FALSE(editor().isOpen());
}

TEST_F(Editor, NeedsAParentAndAPlugin) {
    container.window = nullptr;
    gui.SetViewContainer(&container);
    EXPECT_EQ(editor().timesOpened, 0) << "no window of its own";
    gui.Uninitialize();
    module().createsNothing = true;
    start();
    Vardo_AAX_Editor_Wrapper none;
    none.TimerWakeup(); // before anything else
    none.Initialize(effect.get());
    container.window = &container;
    none.SetViewContainer(&container);
    none.TimerWakeup();
    none.Draw(nullptr);
    EXPECT_TRUE(container.sizes.empty());
}

TEST_F(Editor, ViewFollowsTheEditorsSize) {
    gui.TimerWakeup();
    EXPECT_TRUE(container.sizes.empty());
    gui.SetViewContainer(&container);
    gui.TimerWakeup();
    gui.TimerWakeup();
    ASSERT_EQ(container.sizes.size(), 1U) << "once for each change";
    EXPECT_EQ(container.sizes[0].horz, 640.0F);
    editor().width = 960;
    gui.TimerWakeup();
    gui.TimerWakeup();
    ASSERT_EQ(container.sizes.size(), 2U);
    EXPECT_EQ(container.sizes[1].horz, 960.0F);
    EXPECT_EQ(gui.NotificationReceived(1, nullptr, 0), AAX_SUCCESS);
    gui.TimerWakeup();
    EXPECT_EQ(container.sizes.size(), 3U);
}

TEST_F(Editor, TimerIsTheIdleTick) {
    const int before = plugin().idles;
    gui.TimerWakeup();
    EXPECT_EQ(plugin().idles, before + 1) << "changes reach the host with the view closed";
}

TEST_F(Editor, ForgottenViewClosesBeforeThePluginGoes) {
    {
        Vardo_AAX_Editor_Wrapper forgotten;
        forgotten.Initialize(effect.get());
        forgotten.SetViewContainer(&container);
    }
    EXPECT_EQ(editor().timesOpened, 1);
    EXPECT_FALSE(editor().isOpen());
    gui.SetViewContainer(&container);
    gui.Uninitialize();
    EXPECT_FALSE(editor().isOpen());
    effect.reset();
    gui.TimerWakeup(); // of what is gone, nothing is left to touch
    gui.Draw(nullptr);
}

} // namespace

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
    EXPECT_EQ(gui.GetViewSize(nullptr), AAX_ERROR_NULL_OBJECT);
    gui.Draw(nullptr);
    EXPECT_EQ(editor().updates, 0) << "closed yet";
    gui.SetViewContainer(&container);
    EXPECT_EQ(editor().parent, &container);
    EXPECT_EQ(editor().idles, 1);
    gui.Draw(nullptr);
    EXPECT_EQ(editor().updates, 1);
    gui.SetViewContainer(&container); // a host that opens twice
    EXPECT_EQ(editor().timesOpened, 2);
    EXPECT_FALSE(editor().openedTwice);
    for (int i = 0; i < 2; ++i)
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
    EXPECT_TRUE(container.sizes.empty());
}

TEST_F(Editor, TimerTellsANewSizeOnceAndDeliversChanges) {
    gui.TimerWakeup();
    EXPECT_TRUE(container.sizes.empty());
    EXPECT_EQ(plugin().idles, 1) << "changes reach the host with the view closed";
    const auto widthAfterTwoTurns = [this] {
        container.sizes.clear();
        gui.TimerWakeup();
        gui.TimerWakeup();
        return container.sizes.size() == 1 ? container.sizes[0].horz : -1.0F;
    };
    gui.SetViewContainer(&container);
    EXPECT_EQ(widthAfterTwoTurns(), 640.0F);
    editor().width = 960;
    EXPECT_EQ(widthAfterTwoTurns(), 960.0F);
    gui.NotificationReceived(1, nullptr, 0);
    EXPECT_EQ(widthAfterTwoTurns(), 960.0F) << "told again: the host may have changed it";
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

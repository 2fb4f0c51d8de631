// Dials, buttons, text boxes, menus, messages: events in, values and pixels out.
#include "ToolkitTest.h"
#include "assets/Archives.h"
#include "controls/ActionButton.h"
#include "controls/ButtonBar.h"
#include "controls/Dial.h"
#include "controls/MessageBox.h"
#include "controls/OptionMenu.h"
#include "controls/TextEdit.h"
#include "draw/PictureCache.h"
#include "frame/ParameterProperty.h"
#include "frame/VardoCallback.h"

#include <gmock/gmock.h>

#include <cmath>
#include <vector>

namespace Sorel {
namespace {

using ::testing::ElementsAre;

class Host : public Vardo::VardoCallback {
  public:
    int beginEdit(int index) override {
        return calls.push_back("begin" + std::to_string(index)), 1;
    }
    int endEdit(int index) override { return calls.push_back("end" + std::to_string(index)), 1; }
    void automate(int, float value) override {
        calls.push_back("set");
        lastValue = value;
    }
    std::vector<std::string> calls;
    float lastValue = -1;
};

class Listener final : public CControlListener {
  public:
    void valueChanged(CControl* control) override {
        ++changes;
        last = control;
        if (whenChanged) whenChanged();
    }
    int controlModifierClicked(CControl*, std::int32_t) override { return takesModifiers ? 1 : 0; }
    int changes = 0;
    CControl* last = nullptr;
    bool takesModifiers = false;
    std::function<void()> whenChanged;
};

class ControlTest : public ToolkitTest {
  protected:
    ControlTest() {
        gain_.setFromDescription(
            {"Gain", "Input Gain", "Gain", 0, 100, 25, 50, true, 0, Vardo::kPercentOfRange, 3});
        gain_.setHostIndex(7);
        mode_.setFromDescription({"Mode", "Mode", "Mode", 0, 4, 1, 0, true, 0, Vardo::kInteger, 4});
    }
    ~ControlTest() override { editor_.reset(); } // before the parameters that it is bound to
    /// A dial at 10, 10 whose knob's middle lies at 46, 48.
    CDial& openDial(Vardo::ParameterProperty& parameter) {
        open(
            [&](CFrame& frame) {
                CDial::Pictures pictures{pictures_.getBitmap("NormalDialBG.png"),
                                         pictures_.getBitmap("NormalDialLedRing.png"),
                                         pictures_.getBitmap("NormalDial.png")};
                dial_ = new CDial({10.0, 10.0}, &listener_, 1, "Gain", pictures, &parameter);
                frame.addView(dial_);
            },
            &host_);
        return *dial_;
    }
    float plain() { return gain_.getValue(); }

    static constexpr CPoint kKnob{46.0, 48.0};
    static constexpr CPoint kValueText{46.0, 72.0};

    CPictureCache pictures_{Assets::pictureArchive()};
    Vardo::ParameterProperty gain_;
    Vardo::ParameterProperty mode_;
    Vardo::ParameterProperty switch_;
    Host host_;
    Listener listener_;
    CDial* dial_ = nullptr;
};

TEST_F(ControlTest, DraggingADialMovesItsParameterAndTellsTheHostOnce) {
    openDial(gain_);
    window().press(kKnob);
    window().moveMouse({46.0, 28.0}); // 20 of 200 pixels
    EXPECT_NEAR(plain(), 35.0F, 0.01F);
    EXPECT_FLOAT_EQ(host_.lastValue, gain_.getNormalizedValue());
    window().moveMouse({46.0, -1000.0});
    EXPECT_FLOAT_EQ(plain(), 100.0F);
    window().releaseButtons({46.0, -1000.0});
    EXPECT_EQ(host_.calls.front(), "begin7");
    EXPECT_EQ(host_.calls.back(), "end7");
    EXPECT_EQ(std::count(host_.calls.begin(), host_.calls.end(), "begin7"), 1);
    EXPECT_GE(listener_.changes, 2);
}

TEST_F(ControlTest, FineDraggingIsTenTimesFinerAndChangingToItDoesNotJump) {
    openDial(gain_);
    window().press(kKnob);
    window().moveMouse({46.0, 38.0});
    const float before = plain();
    window().moveMouse({46.0, 37.0}, Buttons::kShift);
    EXPECT_NEAR(plain(), before + 0.5F, 0.01F); // this pixel still counts coarsely
    window().moveMouse({46.0, 27.0}, Buttons::kShift);
    EXPECT_NEAR(plain(), before + 1.0F, 0.01F);
    window().moveMouse({46.0, 26.0});
    EXPECT_NEAR(plain(), before + 1.05F, 0.01F);
    window().releaseButtons({46.0, 26.0});
}

TEST_F(ControlTest, TheCentreHoldsTheValueWithinItsZone) {
    openDial(gain_).setSnapToCenter(true); // 0.25, the zone reaches 0.03 to both sides
    window().press(kKnob);
    std::vector<float> values;
    for (int y = 0; y <= 70; ++y) {
        window().moveMouse({46.0, 48.0 - y});
        values.push_back(plain());
    }
    window().releaseButtons({46.0, -22.0});
    EXPECT_NEAR(values.front(), 25.0F, 0.01F);
    EXPECT_GE(std::count(values.begin(), values.end(), 50.0F), 11);
    for (std::size_t i = 1; i < values.size(); ++i)
        EXPECT_LE(std::abs(values[i] - values[i - 1]), 0.51F) << i; // no jump at either edge
}

TEST_F(ControlTest, WheelDefaultAndSteps) {
    openDial(gain_);
    window().wheel(kKnob, 1.0F);
    EXPECT_NEAR(plain(), 27.0F, 0.001F);
    window().wheel(kKnob, -1.0F, Buttons::kShift);
    EXPECT_NEAR(plain(), 26.8F, 0.001F);
    window().doubleClick(kKnob);
    EXPECT_FLOAT_EQ(plain(), 50.0F);
    window().wheel(kKnob, 1.0F);
    window().click(kKnob, Buttons::kLeft | Buttons::kControl);
    EXPECT_FLOAT_EQ(plain(), 50.0F);
    listener_.takesModifiers = true;
    gain_.setValue(20.0F);
    window().click(kKnob, Buttons::kLeft | Buttons::kControl);
    EXPECT_FLOAT_EQ(plain(), 20.0F) << "the listener took the click";

    // Steps: one a notch, and a drag stands on them only.
    dial_->setParameter(&mode_);
    dial_->setSteppedByParameter(true);
    window().wheel(kKnob, 1.0F);
    EXPECT_FLOAT_EQ(mode_.getValue(), 2.0F);
    window().wheel(kKnob, 0.9F);
    window().wheel(kKnob, -1.0F);
    EXPECT_FLOAT_EQ(mode_.getValue(), 1.0F) << "a part of a notch does not outlive a turn";
    window().press(kKnob);
    for (int y = 0; y < 90; y += 3) {
        window().moveMouse({46.0, 48.0 - y});
        EXPECT_FLOAT_EQ(mode_.getValue(), std::round(mode_.getValue()));
    }
    window().releaseButtons({46.0, -40.0});
    EXPECT_FLOAT_EQ(plain(), 20.0F); // the old parameter stays alone
}

TEST_F(ControlTest, ADialMovesToAValueFromOutsideAndThenStopsPainting) {
    openDial(gain_);
    for (int i = 0; i < 60; ++i)
        idle();
    window().takeShownPixels();
    gain_.setValue(75.0F);
    idle();
    EXPECT_GT(dial_->getAnimatedValue(), 0.25);
    EXPECT_LT(dial_->getAnimatedValue(), 0.75);
    for (int i = 0; i < 60; ++i)
        idle();
    EXPECT_DOUBLE_EQ(dial_->getAnimatedValue(), dial_->getValue());
    window().takeShownPixels();
    idle();
    EXPECT_EQ(window().takeShownPixels(), 0u);
}

TEST_F(ControlTest, AValueIsTypedCommittedOrGivenUp) {
    openDial(gain_);
    window().click(kValueText);
    ASSERT_TRUE(dial_->isTyping());
    window().type("62.5");
    window().key(Key::kReturn);
    EXPECT_FALSE(dial_->isTyping());
    EXPECT_NEAR(plain(), 62.5F, 0.001F);
    EXPECT_THAT(host_.calls, ElementsAre("begin7", "set", "end7"));

    window().click(kValueText);
    window().type("10");
    window().key(Key::kEscape);
    EXPECT_NEAR(plain(), 62.5F, 0.001F);

    window().click(kValueText);
    window().type("20");
    window().click({150.0, 20.0}); // elsewhere commits
    idle();
    EXPECT_NEAR(plain(), 20.0F, 0.001F);

    for (const char* nothing : {"", "zebra"}) {
        window().click(kValueText);
        window().key(Key::kDelete);
        window().type(nothing);
        window().key(Key::kReturn);
        EXPECT_NEAR(plain(), 20.0F, 0.001F);
    }
    gain_.setNormalizedValue(0.371843F); // between what its text can say
    const float before = plain();
    window().click(kValueText);
    window().key(Key::kReturn);
    EXPECT_EQ(plain(), before) << "left as it was opened";
    idle();
    EXPECT_EQ(frame().getNbViews(), 1);
    EXPECT_FALSE(window().hasKeyboardFocus());

    window().click(kValueText);
    editor_->closeFrame(); // while typing
}

TEST_F(ControlTest, AnInactiveDialIsDimAndDeaf) {
    openDial(gain_);
    gain_.setValue(100.0F);
    for (int i = 0; i < 60; ++i)
        idle();
    // The lit ring at 12 o'clock.
    const std::uint32_t lit = pixel(46, 21);
    dial_->setActive(false);
    idle();
    EXPECT_NE(pixel(46, 21), lit);
    EXPECT_EQ(window().press(kKnob), kMouseNotHandled);
    EXPECT_FALSE(window().wheel(kKnob, 1.0F));
}

TEST_F(ControlTest, NoGestureOutlivesItsParameterOrTheDialsActivity) {
    openDial(gain_);
    const std::function<void()> ends[] = {[&] { dial_->setParameter(&mode_); },
                                          [&] { dial_->setActive(false); }};
    for (const auto& end : ends) {
        host_.calls.clear();
        window().press(kKnob);
        window().moveMouse({46.0, 28.0});
        end();
        window().moveMouse({46.0, -40.0});
        window().releaseButtons({46.0, -40.0});
        EXPECT_THAT(host_.calls, ElementsAre("begin7", "set", "end7"));
        dial_->setParameter(&gain_);
        dial_->setActive(true);

        const float before = plain();
        window().click(kValueText);
        window().type("3");
        end();
        EXPECT_FALSE(dial_->isTyping());
        window().key(Key::kReturn);
        EXPECT_EQ(plain(), before);
        dial_->setParameter(&gain_);
        dial_->setActive(true);
    }
    EXPECT_EQ(mode_.getValue(), 1.0F);
    EXPECT_EQ(frame().getNbViews(), 1);
}

TEST_F(ControlTest, SwitchesFadeBetweenTheirPictures) {
    CSwitch* button = nullptr;
    open([&](CFrame& frame) {
        button = new CSwitch({10.0, 10.0}, &listener_, 0, pictures_.getBitmap("OnOff_Button.png"),
                             &switch_);
        frame.addView(button);
    });
    window().click({27.0, 21.0});
    EXPECT_FLOAT_EQ(switch_.getValue(), 1.0F);
    idle(80);
    EXPECT_GT(button->getFadeAlpha(), 50.0);
    EXPECT_LT(button->getFadeAlpha(), 205.0);
    idle(200);
    EXPECT_DOUBLE_EQ(button->getFadeAlpha(), 255.0);
    switch_.setValue(0.0F); // from outside
    idle(1);
    idle(400);
    EXPECT_DOUBLE_EQ(button->getFadeAlpha(), 0.0);
    idle();
    window().takeShownPixels();
    idle();
    EXPECT_EQ(window().takeShownPixels(), 0u);
}

TEST_F(ControlTest, TheButtonBarChoosesAndRefusesAnEleventhButton) {
    CButtonBar* bar = nullptr;
    open([&](CFrame& frame) {
        bar = new CButtonBar({0.0, 0.0, 200.0, 45.0}, &listener_, 0);
        CBitmap* picture = pictures_.getBitmap("ButtonScope.png");
        EXPECT_FALSE(bar->addButton(nullptr, 20.0, 25.0, 1.0, 10.0));
        for (int i = 0; i < CButtonBar::kMaxButtons; ++i)
            EXPECT_TRUE(bar->addButton(picture, 20.0, 25.0, 1.0, 10.0));
        EXPECT_FALSE(bar->addButton(picture, 20.0, 25.0, 1.0, 10.0));
        frame.addView(bar);
    });
    EXPECT_EQ(bar->hitRect(0).left, 0.0); // the missing picture left no gap
    window().click({45.0, 20.0});
    EXPECT_EQ(bar->getIndex(), 2);
    EXPECT_EQ(listener_.changes, 1);
    window().click({45.0, 5.0}); // above the hit area
    EXPECT_EQ(listener_.changes, 1);
}

class TextEditTest : public ControlTest {
  protected:
    void openBox() {
        open([&](CFrame& frame) {
            Sorel_TextEdit::CInfo info;
            info.size = {10.0, 10.0, 110.0, 31.0};
            info.text = "Mix Bus";
            box_ = new Sorel_TextEdit(info, &listener_, 0);
            frame.addView(box_);
        });
    }
    Sorel_TextEdit* box_ = nullptr;
};

TEST_F(TextEditTest, EachEndIsReportedOnce) {
    openBox();
    window().click({50.0, 20.0});
    EXPECT_TRUE(window().hasKeyboardFocus());
    window().type("Höhen"); // over the selection
    window().key(Key::kReturn);
    EXPECT_STREQ(box_->getText(), "Höhen");
    EXPECT_TRUE(box_->wasCommitted());
    EXPECT_EQ(listener_.changes, 1);
    idle();
    window().click({150.0, 80.0});
    EXPECT_EQ(listener_.changes, 1);

    window().click({50.0, 20.0});
    window().type("x");
    window().key(Key::kEscape);
    EXPECT_STREQ(box_->getText(), "Höhen");
    EXPECT_FALSE(box_->wasCommitted());
    EXPECT_EQ(listener_.changes, 2);
    // The listener may take the box away.
    listener_.whenChanged = [&] { frame().removeView(box_, true); };
    window().click({50.0, 20.0});
    window().key(Key::kReturn);
    EXPECT_EQ(frame().getNbViews(), 0);
}

TEST_F(TextEditTest, TheMousePlacesTheCaretAndALongTextIsCutBetweenCharacters) {
    openBox();
    window().click({50.0, 20.0});
    idle();
    window().click({14.0, 20.0}); // left of the first letter
    window().type("A ");
    window().click({105.0, 20.0}); // right of the last
    window().type("!");
    window().key(Key::kReturn);
    EXPECT_STREQ(box_->getText(), "A Mix Bus!");

    std::string longText;
    while (longText.size() < 300)
        longText += "ä";
    box_->setText(longText.c_str());
    EXPECT_EQ(std::string(box_->getText()).size(), 254u);
    idle();
}

class MenuTest : public ControlTest {
  protected:
    void openMenu() {
        open([&](CFrame& frame) {
            menu_ = new COptionMenu({10.0, 10.0, 60.0, 25.0}, &listener_, 0);
            const auto inner = Counted<COptionMenu>::make(CRect{}, nullptr, 0);
            inner->addEntry("Inner");
            menu_->addEntry("First");
            menu_->addSeparator();
            menu_->addEntry("Never")->setEnabled(false);
            menu_->addSubmenu("More", inner.get());
            menu_->addEntry("Last");
            menu_->setCurrent(0);
            frame.addView(menu_);
        });
    }
    COptionMenu* menu_ = nullptr;
};

TEST_F(MenuTest, AChoiceIsReportedADismissalIsNot) {
    openMenu();
    window().click({30.0, 15.0});
    idle();
    ASSERT_TRUE(window().isMenuOpen());
    EXPECT_FALSE(window().chooseMenuItem("Never"));
    EXPECT_TRUE(window().chooseMenuItem("Last"));
    idle();
    EXPECT_EQ(menu_->getCurrent(), 4);
    EXPECT_EQ(listener_.changes, 1);

    window().click({30.0, 15.0});
    idle();
    window().key(Key::kEscape);
    idle();
    EXPECT_FALSE(window().isMenuOpen());
    EXPECT_EQ(menu_->getCurrent(), 4);
    EXPECT_EQ(menu_->getLastResult(), -1);
    EXPECT_EQ(listener_.changes, 1);

    menu_->popup();
    idle();
    EXPECT_TRUE(window().chooseMenuItem("More/Inner"));
    idle();
    ASSERT_NE(menu_->getLastMenu(), nullptr);
    EXPECT_EQ(menu_->getLastMenu()->getEntry(menu_->getLastResult())->getTitle(), "Inner");
    EXPECT_EQ(menu_->getCurrent(), 4);
}

TEST_F(MenuTest, TheWheelStepsOverWhatCannotBeChosenAndStopsAtTheEnds) {
    openMenu();
    window().wheel({30.0, 15.0}, -1.0F);
    EXPECT_EQ(menu_->getCurrent(), 4);
    window().wheel({30.0, 15.0}, -1.0F);
    EXPECT_EQ(menu_->getCurrent(), 4);
    window().wheel({30.0, 15.0}, 1.0F);
    EXPECT_EQ(menu_->getCurrent(), 0);
}

TEST_F(ControlTest, AMessageIsAnsweredByMouseOrKeyAndHoldsEverythingElse) {
    openDial(gain_);
    editor_->setRect(600.0, 300.0);
    std::vector<int> answers;
    const auto ask = [&] {
        return CMessageBox::show(frame(), "Overwrite?", "A name\nand a second line",
                                 {"Overwrite", "Cancel"}, [&](int i) { answers.push_back(i); });
    };
    ASSERT_TRUE(ask());
    EXPECT_FALSE(ask()); // one at a time
    idle();
    window().click(kKnob);
    window().wheel(kKnob, 1.0F);
    EXPECT_FLOAT_EQ(plain(), 25.0F);
    const auto* box = static_cast<CMessageBox*>(frame().getModalView());
    window().click(box->buttonRect(0).centre());
    EXPECT_TRUE(answers.empty()); // comes with the idle
    idle();
    ASSERT_TRUE(ask());
    window().key(Key::kEscape);
    idle();
    EXPECT_THAT(answers, ElementsAre(0, 1));
    ASSERT_TRUE(ask());
    editor_->closeFrame();
    EXPECT_EQ(answers.size(), 2u);
}

TEST_F(ControlTest, TheEditorsPicturesHaveTheSizesOfItsLayoutAndAreDecodedOnce) {
    const struct {
        const char* name;
        double width, height;
    } pictures[] = {{"ArrowDownBig.png", 18, 42},           {"ArrowLeftBig.png", 18, 42},
                    {"ArrowRightBig.png", 18, 42},          {"Background.png", 1000, 545},
                    {"ButtonScope.png", 138, 90},           {"ButtonSpectrum.png", 138, 90},
                    {"ButtonStereofield.png", 138, 90},     {"ButtonSystem.png", 138, 90},
                    {"NormalDial.png", 43, 65 * 43},        {"NormalDialBG.png", 72, 76},
                    {"NormalDialLedRing.png", 60, 65 * 55}, {"OnOff_Button.png", 34, 44},
                    {"OnOff_ButtonGreen.png", 34, 44},      {"OnOff_ButtonOrange.png", 34, 44},
                    {"TolvaneDial.png", 21, 128 * 21},      {"TolvaneDialBG.png", 41, 41}};
    for (const auto& picture : pictures) {
        CBitmap* first = pictures_.getBitmap(picture.name);
        ASSERT_NE(first, nullptr) << picture.name;
        EXPECT_EQ(first->getWidth(), picture.width) << picture.name;
        EXPECT_EQ(first->getHeight(), picture.height) << picture.name;
        EXPECT_EQ(pictures_.getBitmap(picture.name), first);
    }
    EXPECT_EQ(pictures_.getBitmap("normaldial.png"), nullptr);
}

} // namespace
} // namespace Sorel

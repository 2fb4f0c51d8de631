// Values in two scales, their texts in both directions, and who hears of a change.
#include "core/NumberText.h"
#include "frame/BeatTimeList.h"
#include "frame/ParameterProperty.h"
#include "frame/PluginBase.h"
#include "frame/ValueTaper.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <functional>
#include <limits>
#include <string>

namespace Vardo {
namespace {

void setUp(ParameterProperty& parameter, int kind, float min, float max) {
    parameter.setKind(kind);
    parameter.setMin(min);
    parameter.setMax(max);
}

std::string textOf(int kind, float min, float max, float plain, int flags = 0) {
    ParameterProperty parameter;
    setUp(parameter, kind, min, max);
    char text[2 * kMaxValueText] = "";
    parameter.formatValue(plain, text, flags);
    return text;
}

float typed(int kind, float min, float max, const char* text) {
    ParameterProperty parameter;
    setUp(parameter, kind, min, max);
    parameter.setValueFromText(text);
    return parameter.getValue();
}

TEST(ValueTaper, bothWaysAreInverse) {
    for (const double skew : {-0.9, -0.3, 0.0, 2.0, 13.5, 28.0}) {
        EXPECT_NEAR(plainToTaper(0, skew), 0, 1e-15);
        EXPECT_NEAR(plainToTaper(1, skew), 1, 1e-15);
        for (int i = 0; i <= 100; ++i)
            EXPECT_NEAR(taperToPlain(plainToTaper(i / 100.0, skew), skew), i / 100.0, 1e-12);
    }
    EXPECT_EQ(plainToTaper(0.3, 0), 0.3);
    EXPECT_NEAR(taperToPlain(0.5, 13.5), 0.0645, 0.0001) << "about -24 dB of input gain";
}

TEST(ParameterProperty, valuesStayInsideTheirLimits) {
    ParameterProperty parameter;
    setUp(parameter, kNumber, -2, 6);
    parameter.setValue(100);
    EXPECT_EQ(parameter.getValue(), 6);
    parameter.setNormalizedValue(-3.0F);
    EXPECT_EQ(parameter.getValue(), -2);
    parameter.setValue(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(parameter.getValue(), 0);
    parameter.setNormalizedValue(std::nan(""), kFromHost);
    EXPECT_EQ(parameter.getValue(), -2);
    parameter.setValue(5);
    parameter.setMax(4);
    EXPECT_EQ(parameter.getValue(), 4);
    EXPECT_FLOAT_EQ(parameter.getRelativeValue(), 1);
    parameter.setMin(7); // limits the other way round
    EXPECT_EQ(parameter.getValue(), 4);
    parameter.setMax(7);
    parameter.setValue(3);
    EXPECT_EQ(parameter.getValue(), 7) << "nothing else is left";
    EXPECT_EQ(parameter.getNormalizedValue(), 0);
    parameter.setDefault(99);
    EXPECT_EQ(parameter.getDefault(), 7);
}

TEST(ParameterProperty, wholeNumbersForgiveALittle) {
    ParameterProperty parameter;
    setUp(parameter, kInteger, -10, 10);
    parameter.setValue(2.98F);
    EXPECT_EQ(parameter.getIntValue(), 3);
    parameter.setValue(2.97F);
    EXPECT_EQ(parameter.getIntValue(), 2);
    parameter.setValue(-2.98F);
    EXPECT_EQ(parameter.getIntValue(), -3);
}

TEST(ParameterProperty, textsByKind) {
    EXPECT_EQ(textOf(kPercentOfRange, 0, 2, 0.5F), "25.00");
    EXPECT_EQ(textOf(kPercentOfRange, 0, 2, 0.5F, kShortForm | kWithUnit), "25%");
    EXPECT_EQ(textOf(kPercentOfRange, -1, 1, 0.5F), "+50.00");
    EXPECT_EQ(textOf(kPercentOfRange, -1, 1, -0.5F), "-50.00");
    EXPECT_EQ(textOf(kGainInDecibels, 0, 1, 0), "-oo");
    EXPECT_EQ(textOf(kGainInDecibels, 0, 1, 1), "+0.00");
    EXPECT_EQ(textOf(kGainInDecibels, 0, 1, 0.5F, kShortForm), "-6");
    EXPECT_EQ(textOf(kGainInDecibels, 0, 1, 0.5F, kWithUnit), "-6.02dB");
    EXPECT_EQ(textOf(kSignedPercent, -1, 1, -0.25F), "-25.00%");
    EXPECT_EQ(textOf(kSignedPercent, 0, 1, 0), "0.00%");
    EXPECT_EQ(textOf(kSignedPercent, -1, 1, 0.25F, kShortForm), "+25%");
    EXPECT_EQ(textOf(kPitchOffset, -12, 12, -1.5F), "-1 -50 cent");
    EXPECT_EQ(textOf(kPitchOffset, -12, 12, 1.5F), "+1 +50 cent");
    EXPECT_EQ(textOf(kSwitch, 0, 1, 0.5F), "On");
    EXPECT_EQ(textOf(kBalance, -1, 1, 0), "Center");
    EXPECT_EQ(textOf(kBalance, -1, 1, -0.5F), "Left 50");
    EXPECT_EQ(textOf(kNote, 0, 127, 0), "C -2");
    EXPECT_EQ(textOf(kNote, 0, 127, 60), "C 3");
    EXPECT_EQ(textOf(kNote, 0, 127, 61), "C#3");
    EXPECT_EQ(textOf(kInteger, 0, 10, 2.98F), "3");
    EXPECT_EQ(textOf(kRatio, 0, 10, 2.5F), " 1 : 2.50");
    EXPECT_EQ(textOf(kRatio, 0, 10, 10), " 1 : inf");
    EXPECT_EQ(textOf(kMilliseconds, 0, 100, 12.34F, kWithUnit), "12.3ms");
    EXPECT_EQ(textOf(kHertz, 0, 100, 12.34F, kShortForm), "12");

    char appended[2 * kMaxValueText] = "Gain ";
    ParameterProperty().formatValue(0.5F, appended, kWithUnit);
    EXPECT_STREQ(appended, "Gain 50.00%");
}

TEST(ParameterProperty, readsWhatUsersType) {
    EXPECT_EQ(typed(kPercentOfRange, 0, 2, "25"), 0.5F);
    EXPECT_EQ(typed(kPercentOfRange, -1, 1, "-50.00"), -0.5F);
    EXPECT_EQ(typed(kPercentOfRange, 10, 20, "50 %"), 15.0F) << "a position in the range";
    EXPECT_NEAR(typed(kGainInDecibels, 0, 1, "-6.02"), 0.5F, 1e-4);
    EXPECT_NEAR(typed(kGainInDecibels, 0, 1, " -6,02 dB"), 0.5F, 1e-4);
    EXPECT_EQ(typed(kGainInDecibels, 0, 1, "-oo"), 0.0F);
    EXPECT_EQ(typed(kGainInDecibels, 0, 1, "loud"), 1.0F) << "other text is the number 0: 0 dB";
    EXPECT_EQ(typed(kNote, 0, 127, "A3"), 69.0F);
    EXPECT_EQ(typed(kNote, 0, 127, "a# -1"), 22.0F);
    EXPECT_EQ(typed(kNote, 0, 127, "A"), 0.0F) << "too short: stays";
    EXPECT_EQ(typed(kRatio, 1, 10, "1: 4"), 4.0F);
    EXPECT_EQ(typed(kRatio, 1, 10, " 1 : inf"), 10.0F);
    EXPECT_EQ(typed(kRatio, 1, 10, "inf"), 10.0F);
    EXPECT_EQ(typed(kRatio, 1, 10, "-inf"), 1.0F);
    EXPECT_EQ(typed(kSwitch, 0, 1, "on"), 1.0F);
    EXPECT_EQ(typed(kBalance, -1, 1, "Left 50"), -0.5F);
    EXPECT_EQ(typed(kBalance, -1, 1, "50"), 0.5F);
    EXPECT_EQ(typed(kPitchOffset, -12, 12, "-1 -50 cent"), -1.5F);
    EXPECT_EQ(typed(kSignedPercent, -2, 2, "-25.00%"), -0.5F);
    EXPECT_EQ(typed(kNumber, 0, 100, "1e1"), 10.0F);
    EXPECT_EQ(typed(kNumber, -5, 5, "nan"), 0.0F);
    EXPECT_EQ(typed(kNumber, -5, 5, "1e999"), 5.0F);
    EXPECT_EQ(typed(kNumber, -5, 5, ""), 0.0F);
}

TEST(ParameterProperty, hostsMayChangeTheLocale) {
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    // Where no such locale is installed this shows nothing, but it never fails wrongly.
    if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr)
        std::setlocale(LC_NUMERIC, "fr_FR.UTF-8");
    EXPECT_EQ(textOf(kHertz, 0, 100, 12.5F), "12.5");
    EXPECT_EQ(typed(kHertz, 0, 100, "12.5"), 12.5F);
    std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(NumberText, whatDoesNotFitIsCut) {
    char text[6];
    Core::TextWriter(text, sizeof text).text("ab").fixed(3.14159, 4).text("x");
    EXPECT_STREQ(text, "ab3.1");
    char wide[64];
    Core::TextWriter(wide, sizeof wide).fixed(5, 0, 3).text("|").fixed(-0.05, 1).text("|");
    EXPECT_STREQ(wide, "  5|-0.1|");
    Core::TextWriter(wide, sizeof wide).fixed(1e300, 2);
    EXPECT_EQ(std::string(wide).size(), 63U);
}

TEST(BeatTimeList, namesAndLengths) {
    const BeatTimeList& straight = BeatTimeList::straight();
    ASSERT_EQ(straight.size(), 9);
    EXPECT_STREQ(straight.at(0).label.c_str(), "1/32");
    EXPECT_STREQ(straight.at(5).label.c_str(), "1 Bar");
    EXPECT_STREQ(straight.at(6).label.c_str(), "2 Bars");
    EXPECT_STREQ(straight.at(99).label.c_str(), "8 Bars");
    EXPECT_DOUBLE_EQ(straight.getBeatLength(3, 120), 500);
    EXPECT_DOUBLE_EQ(straight.getBeatLength(-1, 60), 4000);
    EXPECT_EQ(straight.find("1/4"), 3);
    EXPECT_EQ(straight.find("5/4"), -1);

    constexpr float kBars[] = {0.25F, 1, 0};
    const BeatTimeList all(kBars, kStraight | kTriplet | kDotted);
    ASSERT_EQ(all.size(), 6);
    EXPECT_STREQ(all.at(0).label.c_str(), "1/4T");
    EXPECT_NEAR(all.at(0).bars, 1.0 / 6, 1e-12);
    EXPECT_STREQ(all.at(2).label.c_str(), "1/4D");
    EXPECT_STREQ(all.at(5).label.c_str(), "1D Bar");
}

// ---- listeners

struct Counter : ParameterChangeListener {
    void parameterChanged(IPluginParameter*) override {
        ++calls;
        if (action) action();
    }
    int calls = 0;
    std::function<void()> action;
};

TEST(ParameterListeners, hearOfEveryChangeButTheirOwn) {
    ParameterProperty parameter;
    Counter plugin;
    Counter dial;
    Counter view;
    parameter.setImmediateListener(&plugin);
    parameter.addListener(&dial, true);
    parameter.addListener(&view, false);
    parameter.addListener(&view, false);
    EXPECT_EQ(dial.calls, 1);

    parameter.setValue(0.5F);
    parameter.setValue(0.5F); // the same value is news as well
    EXPECT_EQ(plugin.calls, 2);
    EXPECT_EQ(dial.calls, 3);
    EXPECT_EQ(view.calls, 2);
    parameter.setNormalizedValueFrom(&dial, 0.1F);
    parameter.setValueFrom(&dial, 0.2F);
    EXPECT_EQ(dial.calls, 3);
    EXPECT_EQ(view.calls, 4);

    parameter.setNotificationsOn(false);
    parameter.setValue(1);
    parameter.setNormalizedValue(0.3, kFromHost);
    parameter.setNotificationsOn(true);
    parameter.deliverPending();
    EXPECT_EQ(plugin.calls, 4);
    EXPECT_EQ(view.calls, 4);
    parameter.notifyAll();
    EXPECT_EQ(plugin.calls, 5);
    EXPECT_EQ(view.calls, 5);
}

TEST(ParameterListeners, hearOfHostChangesInTheNextIdleOnce) {
    ParameterProperty parameter;
    Counter plugin;
    Counter dial;
    parameter.setImmediateListener(&plugin);
    parameter.addListener(&dial, false);
    parameter.setNormalizedValue(0.25, kFromHost);
    parameter.setNormalizedValue(0.75, kFromHost);
    EXPECT_EQ(plugin.calls, 2);
    EXPECT_EQ(dial.calls, 0);
    parameter.deliverPending();
    parameter.deliverPending();
    EXPECT_EQ(dial.calls, 1);
    EXPECT_EQ(parameter.getValue(), 0.75F);
}

TEST(ParameterListeners, mayComeAndGoWhileOthersAreTold) {
    ParameterProperty parameter;
    Counter first;
    Counter second;
    Counter third;
    Counter late;
    for (Counter* listener : {&first, &second, &third})
        parameter.addListener(listener, false);
    third.action = [&] {
        parameter.addListener(&late, false);
        parameter.removeListener(&second);
        parameter.removeListener(&third);
    };
    parameter.setValue(0.5F);
    EXPECT_EQ(first.calls, 1);
    EXPECT_EQ(second.calls, 0);
    EXPECT_EQ(third.calls, 1);
    parameter.setValue(0.6F);
    EXPECT_EQ(first.calls, 2);
    EXPECT_EQ(late.calls, 1);
    EXPECT_EQ(third.calls, 1);
}

} // namespace
} // namespace Vardo

// Values in two scales, their texts in both directions, and who hears of a change.
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
    for (const double skew : {-0.9, -0.3, 0.0, 2.0, 13.5, 28.0})
        for (int i = 0; i <= 100; ++i)
            EXPECT_NEAR(taperToPlain(plainToTaper(i / 100.0, skew), skew), i / 100.0, 1e-12);
    EXPECT_NEAR(taperToPlain(0.5, 13.5), 0.0645, 0.0001) << "about -24 dB of input gain";
}

TEST(ParameterProperty, valuesStayInsideTheirLimits) {
    ParameterProperty parameter;
    setUp(parameter, kNumber, -2, 6);
    parameter.setValue(100);
    EXPECT_EQ(parameter.getValue(), 6);
    parameter.setValue(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(parameter.getValue(), 0);
    parameter.setNormalizedValue(std::nan(""), kFromHost);
    EXPECT_EQ(parameter.getValue(), -2);
    parameter.setMin(7); // limits the other way round
    parameter.setMax(7);
    parameter.setValue(3);
    EXPECT_EQ(parameter.getValue(), 7) << "nothing else is left";
    EXPECT_EQ(parameter.getNormalizedValue(), 0);
}

TEST(ParameterProperty, textsByKind) {
    const struct {
        int kind;
        float min, max, plain;
        int flags;
        const char* text;
    } cases[] = {{kPercentOfRange, 0, 2, 0.5F, kShortForm | kWithUnit, "25%"},
                 {kPercentOfRange, -1, 1, -0.5F, 0, "-50.00"},
                 {kGainInDecibels, 0, 1, 0, 0, "-oo"},
                 {kGainInDecibels, 0, 1, 0.5F, kWithUnit, "-6.02dB"},
                 {kSignedPercent, -1, 1, -0.25F, 0, "-25.00%"},
                 {kPitchOffset, -12, 12, -1.5F, 0, "-1 -50 cent"},
                 {kSwitch, 0, 1, 0.5F, 0, "On"},
                 {kBalance, -1, 1, 0, 0, "Center"},
                 {kBalance, -1, 1, -0.5F, 0, "Left 50"},
                 {kNote, 0, 127, 61, 0, "C#3"},
                 {kInteger, 0, 10, 2.98F, 0, "3"},
                 {kRatio, 0, 10, 10, 0, " 1 : inf"},
                 {kMilliseconds, 0, 100, 12.34F, kWithUnit, "12.3ms"},
                 {kHertz, 0, 100, 12.34F, kShortForm, "12"}};
    for (const auto& each : cases)
        EXPECT_EQ(textOf(each.kind, each.min, each.max, each.plain, each.flags), each.text);
}

TEST(ParameterProperty, readsWhatUsersType) {
    const struct {
        int kind;
        float min, max;
        const char* text;
        float value;
    } cases[] = {{kPercentOfRange, 10, 20, "50 %", 15}, // a position in the range
                 {kGainInDecibels, 0, 1, " -6,02 dB", 0.5F},
                 {kGainInDecibels, 0, 1, "-oo", 0},
                 {kGainInDecibels, 0, 1, "loud", 1}, // the number 0: 0 dB
                 {kNote, 0, 127, "a# -1", 22},
                 {kNote, 0, 127, "A", 0},
                 {kRatio, 1, 10, "1: 4", 4},
                 {kRatio, 1, 10, " 1 : inf", 10},
                 {kRatio, 1, 10, "-inf", 1},
                 {kSwitch, 0, 1, "on", 1},
                 {kBalance, -1, 1, "Left 50", -0.5F},
                 {kPitchOffset, -12, 12, "-1 -50 cent", -1.5F},
                 {kSignedPercent, -2, 2, "-25.00%", -0.5F},
                 {kNumber, -5, 5, "nan", 0},
                 {kNumber, -5, 5, "1e999", 5},
                 {kNumber, -5, 5, "", 0}};
    for (const auto& each : cases)
        EXPECT_NEAR(typed(each.kind, each.min, each.max, each.text), each.value, 1e-4) << each.text;
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

TEST(BeatTimeList, namesAndLengths) {
    constexpr float kBars[] = {0.25F, 1, 0};
    const BeatTimeList all(kBars, kStraight | kTriplet | kDotted);
    ASSERT_EQ(all.size(), 6);
    EXPECT_STREQ(all.at(0).label.c_str(), "1/4T");
    EXPECT_NEAR(all.at(0).bars, 1.0 / 6, 1e-12);
    EXPECT_DOUBLE_EQ(BeatTimeList::straight().getBeatLength(3, 120), 500);
    EXPECT_EQ(BeatTimeList::straight().find("5/4"), -1);
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
    parameter.addListener(&dial, false);
    parameter.addListener(&view, false);
    parameter.addListener(&view, false);
    parameter.setValue(0.5F);
    parameter.setValue(0.5F); // the same value is news as well
    parameter.setNormalizedValueFrom(&dial, 0.1F);
    parameter.setValueFrom(&dial, 0.2F);
    EXPECT_EQ(plugin.calls, 4);
    EXPECT_EQ(dial.calls, 2);
    EXPECT_EQ(view.calls, 4);
    parameter.setNotificationsOn(false);
    parameter.setNormalizedValue(0.3, kFromHost);
    parameter.setNotificationsOn(true);
    parameter.deliverPending();
    EXPECT_EQ(plugin.calls, 4);
    EXPECT_EQ(view.calls, 4);
    // Of a host's changes in the next idle, once.
    parameter.setNormalizedValue(0.25, kFromHost);
    parameter.setNormalizedValue(0.75, kFromHost);
    EXPECT_EQ(plugin.calls, 6);
    EXPECT_EQ(view.calls, 4);
    parameter.deliverPending();
    parameter.deliverPending();
    EXPECT_EQ(view.calls, 5);
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

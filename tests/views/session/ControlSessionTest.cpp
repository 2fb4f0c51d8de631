// Every control of the strips by mouse, wheel, menu and keyboard: the parameter, what the host
// hears, and that nothing else in the strip changes.
#include "Session.h"

namespace Orvel {
namespace {

constexpr int kFirst = 150; // left edges of the dials' cells
constexpr int kGroup = 382;
constexpr int kPitch = 72;

enum Kind { kDial, kSwitch, kField };

struct ControlCase {
    int page;
    Kind kind;
    int at; // dials and fields: left edge; switches: row
    ParameterId id;
    const char* typed = nullptr; // into a dial
    double plain = 0.0;          // what that is; of a field, what the fourth or last item is
    int syncMode = 0;
};

constexpr ControlCase kControls[] = {
    {0, kDial, kFirst, kGlobalInputGain, "-3.5", 0.66834},
    {0, kDial, kFirst + kPitch, kGlobalMeteringMode, "K14", 3},
    {0, kDial, kFirst + 2 * kPitch, kGlobalRMSLength, "250 ms", 250},
    {0, kDial, kGroup, kScopeChannelMode, "Mono Mix", 3},
    {0, kDial, kGroup + kPitch, kScopeSyncMode, "Beat Time", 2},
    {0, kDial, kGroup + 3 * kPitch, kScopeVisibleTimeMs, "1.5 s", 1500},
    {0, kDial, kGroup + 2 * kPitch, kScopeSyncDurationBeatTime, "1/8", 2, 2},
    {0, kDial, kGroup + 2 * kPitch, kScopeSyncDurationPitch, "A4", 81, 3},
    {0, kDial, kGroup + 2 * kPitch, kScopeSyncDurationFrequency, "44 Hz", 44, 4},
    {0, kDial, kGroup + 3 * kPitch, kScopeVisibleTimeMultiplier, "x7", 7, 4},
    {0, kSwitch, 0, kScopeFreeze},
    {0, kSwitch, 1, kScopeTransientDetection},
    {0, kSwitch, 2, kScopeDeEsserMale},
    {0, kSwitch, 3, kScopeDeEsserFemale},
    {1, kDial, kFirst, kGlobalInputGain, "-3.5", 0.66834},
    {1, kDial, kGroup, kSpectrumNumBands, "32", 2},
    {1, kDial, kGroup + kPitch, kSpectrumPeakReset, "Hold", 0},
    {1, kDial, kGroup + 2 * kPitch, kSpectrumRotate, "40 %", 0.4},
    // 440 Hz between 20 Hz and half the rate.
    {1, kDial, kGroup + 3 * kPitch, kSpectrumProjectorFrequency, "440 Hz", 420.0 / 23980.0},
    {1, kSwitch, 0, kSpectrumFreeze},
    {1, kSwitch, 1, kSpectrumDrawLine},
    {1, kSwitch, 2, kSpectrumDrawWaterfall},
    {1, kSwitch, 3, kSpectrumLinearFrequencyScale},
    {1, kField, 838, kSpectrumFFTSize, nullptr, 2},
    {1, kField, 880, kSpectrumUpdateSpeed, nullptr, 4},
    {1, kField, 922, kSpectrumAnalyzeMode, nullptr, 1},
    {2, kDial, kFirst + 2 * kPitch, kGlobalRMSLength, "250 ms", 250},
    {2, kDial, kGroup, kSpectrumPeakReset, "24 dB/s", 24},
    {2, kDial, kGroup + kPitch, kSpectrumRotate, "12.5", 0.125},
    {2, kSwitch, 0, kSpectrumFreeze},
    {2, kField, 838, kSpectrumFFTSize, nullptr, 2},
};

class ControlSession : public Session, public testing::WithParamInterface<int> {
  protected:
    static constexpr CRect kStrip{140.0, 440.0, 1000.0, 545.0};

    static CRect cell(const ControlCase& control) {
        if (control.kind == kDial) return CRect::ofSize(control.at, 456.0, kPitch, 74.0);
        if (control.kind == kField) return CRect::ofSize(control.at, 500.0, 53.0, 15.0);
        return CRect::ofSize(684.0, 464.0 + 16.0 * control.at, 130.0, 22.0); // with its glow
    }
    static Place handle(const ControlCase& control) {
        if (control.kind == kDial) return {control.at + 36, 495};
        if (control.kind == kField) return {control.at + 20, 507};
        return {703, 475 + 16 * control.at};
    }
    static Place valueOf(const ControlCase& dial) { return {dial.at + 36, 521}; }
    float normalized(const ControlCase& control) {
        return parameter(control.id).getNormalizedValue();
    }

    /// One gesture: the parameter moves, the control shows it, no other control does anything, and
    /// a host that sees the parameter hears all of it.
    void gesture(const ControlCase& control, const std::function<void()>& hands) {
        const float before = normalized(control);
        const Picture strip = settled(kStrip);
        const Picture shown = look(cell(control));
        instrument_->host.calls.clear();
        hands();
        EXPECT_TRUE(until([&] { return normalized(control) != before; }));
        EXPECT_TRUE(changes(cell(control), shown, 10));
        const Picture after = settled(kStrip);
        if (control.id != kScopeSyncMode) { // two dials become others with it
            EXPECT_EQ(differencesOutside(cell(control), kStrip, after, strip), 0);
        }
        const int index = parameter(control.id).getHostIndex();
        if (index < 0) return;
        const std::vector<std::string>& calls = instrument_->host.calls;
        ASSERT_GE(calls.size(), 3u);
        EXPECT_EQ(calls.front(), "begin" + std::to_string(index));
        EXPECT_EQ(calls.back(), "end" + std::to_string(index));
        EXPECT_THAT(calls, testing::Contains("set"));
    }

    void workDial(const ControlCase& dial) {
        const float reset = parameter(dial.id).getDefaultNormalizedValue();
        const auto isReset = [&] { return normalized(dial) == reset; };
        const int away = reset > 0.5F ? 1 : -1; // from the near end: down or up
        const Place middle = handle(dial);
        // Each press elsewhere on the knob, or two of them would be a double click.
        gesture(dial, [&] { XDoTool::drag(middle, {middle.x, middle.y + away * 110}); });
        gesture(dial, [&] { XDoTool::doubleClick({middle.x - 9, middle.y}); });
        EXPECT_TRUE(until(isReset));
        gesture(dial, [&] { XDoTool::click(middle, away > 0 ? 5 : 4); });
        gesture(dial, [&] { XDoTool::clickWith("ctrl", {middle.x + 9, middle.y}); });
        EXPECT_TRUE(until(isReset));
        gesture(dial, [&] { XDoTool::clickAndType(valueOf(dial), dial.typed, "Return"); });
        EXPECT_NEAR(plain(dial.id), dial.plain, dial.plain * 1e-4);
        typeNothing(dial);
    }
    /// Escape, texts that mean nothing, and a box that is left as it was opened.
    void typeNothing(const ControlCase& dial) {
        // A value between those that its text can say.
        parameter(dial.id).setNormalizedValue(0.3718F);
        XDoTool::moveTo(valueOf(dial));
        step(3);
        const float before = plain(dial.id);
        const Picture shown = settled(cell(dial));
        instrument_->host.calls.clear();
        struct Typing {
            const char* text;
            const char* end;
        };
        for (const Typing& typing : {Typing{"5", "Escape"}, {"zebra", "Return"}, {"", "Return"}}) {
            XDoTool::click(valueOf(dial));
            ASSERT_TRUE(changes(cell(dial), shown, 20)) << "no box to type in";
            XDoTool::type(typing.text);
            XDoTool::key(typing.end);
            step(3);
            EXPECT_EQ(settled(cell(dial)), shown) << typing.text << typing.end;
            EXPECT_EQ(plain(dial.id), before) << typing.text << typing.end;
        }
        EXPECT_THAT(instrument_->host.calls, testing::IsEmpty());
    }
    void workSwitch(const ControlCase& control) {
        const Place pill = handle(control);
        const Picture before = settled(cell(control));
        gesture(control, [&] { XDoTool::click(pill); });
        gesture(control, [&] { XDoTool::click({pill.x + 60, pill.y}); }); // by its name
        XDoTool::moveTo(kNowhere);
        EXPECT_EQ(settled(cell(control)), before);
    }
    void workField(const ControlCase& field) {
        const auto lowest = static_cast<int>(parameter(field.id).getMin());
        const auto chosen = static_cast<int>(field.plain);
        gesture(field, [&] {
            XDoTool::click(rowOf(openMenu(handle(field)), chosen - lowest));
            EXPECT_TRUE(waitForNoMenu());
        });
        EXPECT_TRUE(becomes(field.id, chosen));
        gesture(field, [&] { XDoTool::click(handle(field), 4); }); // the wheel goes up the list
        EXPECT_TRUE(becomes(field.id, chosen - 1));
        openMenu(handle(field));
        for (const char* key : {"End", "Up", "Down", "Return"})
            XDoTool::key(key);
        EXPECT_TRUE(waitForNoMenu());
        EXPECT_TRUE(becomes(field.id, static_cast<int>(parameter(field.id).getMax())));
    }
};

TEST_P(ControlSession, WorksEveryControlOfThePage) {
    showPage(GetParam());
    for (const ControlCase& control : kControls) {
        if (control.page != GetParam()) continue;
        SCOPED_TRACE(testing::Message() << "parameter " << control.id << " at " << control.at);
        parameter(kScopeSyncMode).setValue(static_cast<float>(control.syncMode));
        parameter(control.id).resetToDefault();
        XDoTool::moveTo(handle(control)); // what it shows under the mouse is no change
        step(3);
        if (control.kind == kDial) workDial(control);
        if (control.kind == kSwitch) workSwitch(control);
        if (control.kind == kField) workField(control);
    }
    keep("controls-" + std::to_string(GetParam()));
}
INSTANTIATE_TEST_SUITE_P(Page, ControlSession, testing::Range(0, 3));

TEST_F(ControlSession, ADialWithNothingToSetStandsStill) {
    const Place duration{kGroup + 2 * kPitch + 36, 495}; // in free mode
    XDoTool::moveTo(duration);
    const Picture before = settled(kStrip);
    XDoTool::drag(duration, {duration.x, duration.y - 80});
    XDoTool::click(duration, 4);
    XDoTool::click({duration.x, 521});
    step(10);
    EXPECT_EQ(differencesOutside({}, kStrip, settled(kStrip), before), 0);
    EXPECT_THAT(instrument_->host.calls, testing::IsEmpty());
}

} // namespace
} // namespace Orvel

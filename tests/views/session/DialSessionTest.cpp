// Every dial of every page by mouse, wheel and keyboard: the parameter, the lights of its ring, and
// what the host hears.
#include "Session.h"

namespace Orvel {
namespace {

struct DialCase {
    const char* name;
    int left; // of the dial's cell, screen
    ParameterId id;
    const char* typed;
    double plain; // what was typed
    int syncMode = 0;
};

constexpr int kFirst = 150;
constexpr int kGroup = 382;
constexpr int kPitch = 72;

constexpr DialCase kGlobalDials[] = {
    {"gain", kFirst, kGlobalInputGain, "-3.5", 0.66834},
    {"metering", kFirst + kPitch, kGlobalMeteringMode, "K14", 3},
    {"rms", kFirst + 2 * kPitch, kGlobalRMSLength, "250 ms", 250},
};
constexpr DialCase kScopeDials[] = {
    {"channels", kGroup, kScopeChannelMode, "Mono Mix", 3},
    {"sync", kGroup + kPitch, kScopeSyncMode, "Beat Time", 2},
    {"visible", kGroup + 3 * kPitch, kScopeVisibleTimeMs, "1.5 s", 1500},
    {"beats", kGroup + 2 * kPitch, kScopeSyncDurationBeatTime, "1/8", 2, 2},
    {"pitch", kGroup + 2 * kPitch, kScopeSyncDurationPitch, "A4", 81, 3},
    {"frequency", kGroup + 2 * kPitch, kScopeSyncDurationFrequency, "44 Hz", 44, 4},
    {"multiplier", kGroup + 3 * kPitch, kScopeVisibleTimeMultiplier, "x7", 7, 4},
};
constexpr DialCase kSpectrumDials[] = {
    {"bands", kGroup, kSpectrumNumBands, "32", 2},
    {"peak", kGroup + kPitch, kSpectrumPeakReset, "Hold", 0},
    {"rotate", kGroup + 2 * kPitch, kSpectrumRotate, "40 %", 0.4},
    // 440 Hz between 20 Hz and half the rate.
    {"projector", kGroup + 3 * kPitch, kSpectrumProjectorFrequency, "440 Hz", 420.0 / 23980.0},
};
constexpr DialCase kStereoDials[] = {
    {"peak", kGroup, kSpectrumPeakReset, "24 dB/s", 24},
    {"rotate", kGroup + kPitch, kSpectrumRotate, "12.5", 0.125},
};

class DialSession : public Session {
  protected:
    static constexpr int kTop = 459; // of all cells
    static Place knob(const DialCase& dial) { return {dial.left + 36, kTop + 36}; }
    static Place value(const DialCase& dial) { return {dial.left + 36, kTop + 62}; }
    static Sorel::CRect ring(const DialCase& dial) {
        return Sorel::CRect::ofSize(dial.left + 6, kTop + 5, 60, 51);
    }
    static Sorel::CRect text(const DialCase& dial) {
        return Sorel::CRect::ofSize(dial.left + 4, kTop + 56, 64, 13);
    }
    float normalized(const DialCase& dial) { return parameter(dial.id).getNormalizedValue(); }
    bool isDefault(const DialCase& dial) {
        return normalized(dial) == parameter(dial.id).getDefaultNormalizedValue();
    }

    /// One gesture: the parameter moves, the ring follows, and a host that sees it hears all of it.
    void gesture(const DialCase& dial, const std::function<void()>& hands) {
        const float before = normalized(dial);
        const Picture lights = settled(ring(dial));
        host_.calls.clear();
        hands();
        EXPECT_TRUE(until([&] { return normalized(dial) != before; }));
        EXPECT_TRUE(changes(ring(dial), lights, 10));
        step();
        const int index = parameter(dial.id).getHostIndex();
        if (index < 0) {
            EXPECT_THAT(host_.calls, testing::IsEmpty());
            return;
        }
        ASSERT_GE(host_.calls.size(), 3u);
        EXPECT_EQ(host_.calls.front(), hostCall("begin", index));
        EXPECT_EQ(host_.calls.back(), hostCall("end", index));
        EXPECT_THAT(host_.calls, testing::Contains(hostCall("set", index)));
    }
    void openValue(const DialCase& dial) {
        const Picture before = settled(text(dial));
        XDoTool::click(value(dial));
        ASSERT_TRUE(changes(text(dial), before, 20)) << "no box to type in";
    }

    void work(const DialCase& dial) {
        SCOPED_TRACE(dial.name);
        parameter(kScopeSyncMode).setValue(static_cast<float>(dial.syncMode));
        parameter(dial.id).resetToDefault();
        step(3);
        const int away = normalized(dial) > 0.5F ? 1 : -1; // from the near end: down or up
        const Place middle = knob(dial);
        const Picture reset = settled(ring(dial)); // from where it was before
        // Each press elsewhere on the knob, or two of them would be a double click.
        gesture(dial, [&] { XDoTool::drag(middle, {middle.x, middle.y + away * 110}); });
        gesture(dial, [&] { XDoTool::doubleClick({middle.x - 9, middle.y}); });
        EXPECT_TRUE(until([&] { return isDefault(dial); }));
        EXPECT_TRUE(until([&] { return look(ring(dial)) == reset; }));
        gesture(dial, [&] { XDoTool::click({middle.x, middle.y}, away > 0 ? 5 : 4); });
        gesture(dial, [&] { XDoTool::clickWith("ctrl", {middle.x + 9, middle.y}); });
        EXPECT_TRUE(until([&] { return isDefault(dial); }));

        gesture(dial, [&] { XDoTool::clickAndType(value(dial), dial.typed, "Return"); });
        EXPECT_NEAR(plain(dial.id), dial.plain, dial.plain * 1e-4);
        leaveAsItIs(dial);
    }
    /// A short look at a dial that is worked elsewhere.
    void touch(const DialCase& dial) {
        SCOPED_TRACE(dial.name);
        parameter(dial.id).resetToDefault();
        step(3);
        const int away = normalized(dial) > 0.5F ? 1 : -1;
        const Place middle = knob(dial);
        gesture(dial, [&] { XDoTool::drag(middle, {middle.x, middle.y + away * 110}); });
        gesture(dial, [&] { XDoTool::doubleClick({middle.x - 9, middle.y}); });
    }
    /// Escape, texts that mean nothing, and a box that is left as it was opened.
    void leaveAsItIs(const DialCase& dial) {
        // A value between those that its text can say.
        parameter(dial.id).setNormalizedValue(0.3718F);
        step(3);
        const float before = plain(dial.id);
        const Picture shown = settled(text(dial));
        const auto expectUnchanged = [&](const char* what) {
            EXPECT_TRUE(until([&] { return look(text(dial)) == shown; })) << what;
            EXPECT_EQ(plain(dial.id), before) << what;
        };
        host_.calls.clear();
        XDoTool::clickAndType(value(dial), "5", "Escape");
        step(3);
        expectUnchanged("Escape");
        XDoTool::clickAndType(value(dial), "zebra", "Return");
        step(3);
        expectUnchanged("nonsense");
        openValue(dial);
        XDoTool::key("Return");
        expectUnchanged("nothing typed");
        EXPECT_THAT(host_.calls, testing::IsEmpty());
    }
};

TEST_F(DialSession, GlobalDialsOnTheScopePage) {
    for (const DialCase& dial : kGlobalDials)
        work(dial);
}

TEST_F(DialSession, ScopeDialsInEverySyncMode) {
    for (const DialCase& dial : kScopeDials)
        work(dial);
    keep("dials-scope");
}

TEST_F(DialSession, SpectrumDials) {
    showPage(1);
    for (const DialCase& dial : kGlobalDials)
        touch(dial);
    for (const DialCase& dial : kSpectrumDials)
        work(dial);
    keep("dials-spectrum");
}

TEST_F(DialSession, StereoFieldDials) {
    showPage(2);
    for (const DialCase& dial : kGlobalDials)
        touch(dial);
    for (const DialCase& dial : kStereoDials)
        work(dial);
    keep("dials-stereo");
}

TEST_F(DialSession, ADialWithNothingToSetStandsStill) {
    const DialCase& duration = kScopeDials[3]; // in free mode
    const float before = normalized(duration);
    const Picture lights = settled(ring(duration));
    const Place middle = knob(duration);
    XDoTool::drag(middle, {middle.x, middle.y - 80});
    XDoTool::click(middle, 4);
    XDoTool::click(value(duration));
    step(10);
    EXPECT_EQ(normalized(duration), before);
    EXPECT_EQ(settled(ring(duration)), lights);
}

} // namespace
} // namespace Orvel

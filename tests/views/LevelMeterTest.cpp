// Level meters: scales, bars, held peaks, overs, histogram, and what makes them paint.
#include "views/LevelMeterStereo.h"

#include "ViewsTest.h"

#include <limits>

namespace Sorel {
namespace {

using Orvel::MeteringMode;

TEST(MeterScale, EndsBendAndLabels) {
    const MeterScale& full = meterScale(MeteringMode::peak);
    EXPECT_NEAR(full.heightOf(0.0F), 16.0F / 21.0F, 1e-6F); // 1 - 2.5 (1/9) / (1.5 (1/9) + 1)
    EXPECT_EQ(full.heightOf(40.0F), 1.0F);
    EXPECT_EQ(full.heightOf(-120.0F), 0.0F);
    for (const float db : {-95.0F, -48.0F, -6.0F, 11.0F})
        EXPECT_NEAR(full.levelAt(full.heightOf(db)), db, 1e-3F);
    EXPECT_STREQ(full.ticks[0].label.data(), "+12");
    EXPECT_STREQ(full.ticks[7].label.data(), "-96");
    EXPECT_EQ(full.tickCount, 8);
    const MeterScale& k20 = meterScale(MeteringMode::k20);
    EXPECT_EQ(k20.rowOf(20.0F, 42, 314), 42);
    EXPECT_EQ(k20.rowOf(-36.0F, 42, 314), 313);
    EXPECT_NEAR(k20.heightOf(-8.0F), 0.5F, 1e-6F);
    const MeterScale& k14 = meterScale(MeteringMode::k14);
    EXPECT_EQ(k14.tickCount, 14);
    EXPECT_STREQ(k14.ticks[0].label.data(), "+14");
    EXPECT_STREQ(k14.ticks[1].label.data(), "+12");
    // Each zone has its upper edge: exactly 0 dBFS is not yet over.
    EXPECT_EQ(full.colorAt(0.0F), displayColors().good2);
    EXPECT_EQ(full.colorAt(0.01F), displayColors().bad);
    EXPECT_EQ(k20.colorAt(3.0F), displayColors().warn2);
}

class LevelMeterTest : public ViewsTest {
  protected:
    static constexpr int kLeft = 10 + 40; // middle of the left bar
    static constexpr int kTop = 56;

    CVUMeter_Stereo& showMeter(const MeterPair& pair = kLeftRightMeter, bool withAnalyser = true) {
        show([&](CFrame& frame) {
            meter_ = new CVUMeter_Stereo({10.0, 56.0, 135.0, 431.0},
                                         withAnalyser ? &analyser_ : nullptr, pair);
            frame.addView(meter_);
        });
        wait(50);
        window().takeShownPixels();
        return *meter_;
    }
    orvel_test::Stereo tone(double amplitude, double seconds = 0.5) {
        const int samples = static_cast<int>(seconds * kRate);
        return {orvel_test::sine(samples, 997.0, kRate, amplitude),
                orvel_test::sine(samples, 997.0, kRate, amplitude * 0.5)};
    }
    static int row(MeteringMode mode, float db) {
        return kTop + meterScale(mode).rowOf(db, 42, 314);
    }
    static std::uint32_t opaque(CColor c) {
        return static_cast<std::uint32_t>(c.red << 16 | c.green << 8 | c.blue);
    }

    CVUMeter_Stereo* meter_ = nullptr;
};

TEST_F(LevelMeterTest, AToneStandsWhereTheScaleSaysAndSilenceLeavesNoLine) {
    showMeter();
    const std::uint32_t silentFoot = pixel(kLeft, kTop + 312);
    wait(200);
    EXPECT_EQ(window().takeShownPixels(), 0U);

    play(tone(0.5012)); // -6.0 dBFS, right 6 dB less
    EXPECT_EQ(meter_->channel(0).heldTenths(), -60);
    EXPECT_EQ(meter_->channel(1).heldTenths(), -120);
    EXPECT_EQ(pixel(kLeft, row(MeteringMode::peak, -6.0F)), opaque(displayColors().good2));
    EXPECT_NE(pixel(kLeft, kTop + 312), silentFoot);
    keep("meter-tone");

    window().takeShownPixels();
    wait(200); // the host stands still
    EXPECT_EQ(window().takeShownPixels(), 0U);

    play({std::vector<float>(48000 * 20), std::vector<float>(48000 * 20)});
    EXPECT_EQ(pixel(kLeft, kTop + 312), silentFoot);
    EXPECT_EQ(meter_->channel(0).heldTenths(), -960);
    window().takeShownPixels();
    play({std::vector<float>(48000), std::vector<float>(48000)});
    EXPECT_EQ(window().takeShownPixels(), 0U);
}

TEST_F(LevelMeterTest, KModesAddTheirReferenceWhileRunning) {
    showMeter();
    play(tone(0.1)); // -20 dBFS
    setPlain(Orvel::kGlobalMeteringMode, 4);
    wait(25);
    EXPECT_EQ(meter_->channel(0).heldTenths(), 0);
    EXPECT_EQ(pixel(kLeft, row(MeteringMode::k20, 0.0F)), opaque(displayColors().good2));
    setPlain(Orvel::kGlobalMeteringMode, 2);
    wait(25);
    EXPECT_EQ(meter_->channel(0).heldTenths(), -80);
    keep("meter-k12");
}

TEST_F(LevelMeterTest, OversFlareCoolStayAndAreClickedAway) {
    showMeter();
    int resets = 0;
    meter_->setResetCallback([&] { ++resets; });
    play(tone(1.2, 0.1));
    const int overs = meter_->overBox().overs();
    EXPECT_GT(overs, 0);
    const std::uint32_t fresh = pixel(10 + 24, kTop + 27);
    keep("meter-overs");
    wait(1000);
    EXPECT_EQ(meter_->overBox().flash(), 85);
    EXPECT_GT(fresh >> 16, pixel(10 + 24, kTop + 27) >> 16);
    EXPECT_EQ(pixel(kLeft, row(MeteringMode::peak, 1.58F)), opaque(displayColors().bad));
    window().takeShownPixels();
    wait(100);
    EXPECT_EQ(window().takeShownPixels(), 0U);

    window().click({60.0, 200.0});
    EXPECT_EQ(resets, 1);
    EXPECT_EQ(meter_->overBox().overs(), 0);
    play(tone(0.5, 0.1));
    EXPECT_EQ(meter_->overBox().overs(), 0);
    EXPECT_EQ(meter_->overBox().flash(), 0);
    play(tone(1.2, 0.1));
    EXPECT_GT(meter_->overBox().overs(), 0);
}

TEST(OverBox, StopsCountingAndStaysLit) {
    OverBox box;
    EXPECT_FALSE(box.setOvers(-3));
    EXPECT_TRUE(box.setOvers(20000));
    EXPECT_EQ(box.overs(), 9999);
    EXPECT_FALSE(box.cool());
    EXPECT_FALSE(box.setOvers(20001));
    EXPECT_EQ(box.flash(), 255);
}

TEST_F(LevelMeterTest, OldOversAreThereWithoutAFlare) {
    showMeter();
    play(tone(1.2, 0.1));
    meter_->setVisible(false);
    play(tone(1.2, 0.1));
    const int before = meter_->overBox().overs();
    meter_->setVisible(true);
    wait(25);
    EXPECT_GT(meter_->overBox().overs(), before);
    EXPECT_EQ(meter_->overBox().flash(), 85);
    play(tone(0.1, 0.1));
    EXPECT_EQ(meter_->overBox().flash(), 85);
    play(tone(1.2, 0.1));
    EXPECT_EQ(meter_->overBox().flash(), 255);
    // The music stops: they are still there, and a click still takes them away for good.
    const auto comeBack = [this] {
        meter_->setVisible(false);
        wait(25);
        meter_->setVisible(true);
        wait(50);
        return meter_->overBox().overs();
    };
    EXPECT_GT(comeBack(), before);
    window().click({60.0, 200.0});
    wait(50);
    EXPECT_EQ(meter_->overBox().overs(), 0);
    EXPECT_EQ(comeBack(), 0);
}

TEST_F(LevelMeterTest, WhatHappenedOutOfSightIsNotShownLater) {
    showMeter();
    play(tone(0.25, 0.1));
    const int before = meter_->channel(0).heldTenths();
    meter_->setVisible(false);
    play(tone(1.0, 0.1));
    meter_->setVisible(true);
    wait(50);
    EXPECT_EQ(meter_->channel(0).heldTenths(), before);
    play(tone(0.25, 0.1));
    EXPECT_EQ(meter_->channel(0).heldTenths(), 0); // the engine still holds the peak
}

TEST_F(LevelMeterTest, NoNumberIsNoLevel) {
    CVUMeter_Stereo& meter = showMeter(kMidSideMeter, false);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    EXPECT_FALSE(meter.setLevels({nan, nan, nan, nan, 0}, {-1.0F, 0.0F, 1e-30F, -96.0F, 0}));
    EXPECT_TRUE(meter.setLevels({infinite, infinite, infinite, infinite, 1}, {}));
    meter.setDirty(true);
    idle();
    EXPECT_EQ(pixel(kLeft, kTop + 42), opaque(displayColors().bad));
}

TEST(HistogramColumn, ALevelGlowsAroundItsRow) {
    const MeterScale& scale = meterScale(MeteringMode::histogram);
    HistogramColumn column;
    column.setScale(scale);
    HistogramColumn::Counts counts{};
    counts[96 - 6] = 500; // -6 to -5 dB
    const HistogramColumn::Shades shades = column.shades(counts, 500);
    const int middle = scale.rowOf(-5.5F, 0, HistogramColumn::kNumRows);
    const auto at = [&](int r) { return int{shades[static_cast<std::size_t>(r)]}; };
    EXPECT_GT(at(middle), 240);
    for (int r = 1; r < 10; ++r) {
        EXPECT_LE(at(middle + r), at(middle + r - 1));
        EXPECT_LE(at(middle - r), at(middle - r + 1));
    }
    EXPECT_EQ(at(scale.rowOf(-7.1F, 0, HistogramColumn::kNumRows)), 0);
    EXPECT_EQ(at(scale.rowOf(-3.4F, 0, HistogramColumn::kNumRows)), 0);
    // Nothing counted, and more than the highest: neither divides by 0 nor wraps.
    EXPECT_EQ(column.shades({}, 0), HistogramColumn::Shades{});
    EXPECT_GT(int{column.shades(counts, 100)[static_cast<std::size_t>(middle)]}, 240);
}

TEST_F(LevelMeterTest, TheHistogramShinesWhereTheSamplesWere) {
    setPlain(Orvel::kGlobalMeteringMode, 1);
    showMeter();
    const int loud = row(MeteringMode::histogram, -10.0F); // below the line of the peak
    const std::uint32_t dark = pixel(kLeft, loud);
    play(tone(0.3548)); // -9 dBFS
    EXPECT_GT(pixel(kLeft, loud) & 0xFFU, (dark & 0xFFU) + 60U);
    keep("meter-histogram");
}

} // namespace
} // namespace Sorel

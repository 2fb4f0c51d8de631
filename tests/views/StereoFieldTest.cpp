// The goniometer and the correlation meter.
#include "ViewsTest.h"
#include "views/CorrelationMeter.h"
#include "views/Goniometer.h"

#include <limits>

namespace Sorel {
namespace {

class GoniometerTest : public ViewsTest {
  protected:
    static constexpr int kAxisX = 145 + 165;
    static constexpr int kAxisY = 56 + 165;

    void showGoniometer() {
        show([&](CFrame& frame) {
            frame.addView(new CGoniometer({145.0, 56.0, 475.0, 386.0}, &analyser_));
        });
        analyser_.setActivePage(2);
        wait(50);
        blank_ = window().picture();
        window().takeShownPixels();
    }
    /// Pixels that differ from the empty picture, within a part of the frame.
    int lit(int left, int top, int right, int bottom) {
        const std::unique_ptr<IOSBitmap> now = window().picture();
        int count = 0;
        for (int y = top; y < bottom; ++y)
            for (int x = left; x < right; ++x)
                count += std::memcmp(now->getPixels() + y * now->stride + 4 * x,
                                     blank_->getPixels() + y * now->stride + 4 * x, 4) != 0;
        return count;
    }
    std::vector<float> tone() { return orvel_test::sine(24000, 187.3, kRate, 1.0); }

    std::unique_ptr<IOSBitmap> blank_;
};

TEST_F(GoniometerTest, MonoStandsUprightOppositePolarityLiesAndOneSideLeans) {
    showGoniometer();
    play({tone(), tone()});
    EXPECT_GT(lit(kAxisX, kAxisY - 135, kAxisX + 1, kAxisY + 136), 250);
    EXPECT_EQ(lit(145, 56, kAxisX, 386) + lit(kAxisX + 1, 56, 475, 386), 0);

    std::vector<float> inverted = tone();
    for (float& sample : inverted)
        sample = -sample;
    play({tone(), inverted});
    EXPECT_GT(lit(kAxisX - 135, kAxisY, kAxisX + 136, kAxisY + 1), 250);
    EXPECT_EQ(lit(145, 56, 475, kAxisY) + lit(145, kAxisY + 1, 475, 386), 0);

    play({tone(), std::vector<float>(24000)}); // left: up to the left, down to the right
    EXPECT_GT(lit(kAxisX - 68, kAxisY - 68, kAxisX, kAxisY), 60);
    EXPECT_LT(lit(kAxisX + 2, kAxisY - 160, 475, kAxisY - 1), 5);
    keep("goniometer-left");
}

int red(CBitmap& bitmap, int x, int y) {
    return bitmap.surface().getPixels()[y * bitmap.surface().stride + 4 * x + 2];
}

TEST(Goniometer, DotsGetFainterWithTheSampleRateAndBadPointsStayInTheCentre) {
    const std::pair<float, int> alphas[] = {
        {22050.0F, 80}, {44100.0F, 80}, {192000.0F, 50}, {768000.0F, 50}};
    for (const auto& [rate, alpha] : alphas)
        EXPECT_EQ(goniometerDotAlpha(rate), alpha) << rate;

    CBitmap bitmap(40, 40);
    SplineDots dots;
    SplineDots::Points points;
    points.fill({std::numeric_limits<float>::quiet_NaN(), 1e30F});
    dots.setPoints(points, 15.0F);
    dots.draw(bitmap.context(), {20.5, 20.5}, {255, 164, 27, 255});
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x)
            ASSERT_EQ(red(bitmap, x, y) != 0, x == 20 && y == 20);
}

/// The definition, written out one dot at a time.
TEST(SplineDots, FollowTheCubicThroughTheClosedRing) {
    SplineDots::Points points{};
    const std::vector<float> side = orvel_test::noise(40, 5, 0.7F);
    const std::vector<float> mid = orvel_test::noise(40, 6, 0.7F);
    for (std::size_t i = 0; i < side.size(); ++i) // half of them across the seam
        points[(i + points.size() - 20) % points.size()] = {side[i], mid[i]};
    std::vector<bool> expected(320 * 320);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const auto cubic = [&](float Orvel::GoniometerPoint::*axis, double t) {
            const auto p = [&](std::size_t k) {
                return double{points[(i + k) % points.size()].*axis};
            };
            const double a = p(3) - p(2) - p(0) + p(1);
            return a * t * t * t + (p(0) - p(1) - a) * t * t + (p(2) - p(0)) * t + p(1);
        };
        for (int dot = 0; dot < 8; ++dot) {
            const double t = dot / 8.0;
            const int x = static_cast<int>(160.5 + 150 * cubic(&Orvel::GoniometerPoint::side, t));
            const int y = static_cast<int>(160.5 - 150 * cubic(&Orvel::GoniometerPoint::mid, t));
            if (x >= 0 && x < 320 && y >= 0 && y < 320)
                expected[static_cast<std::size_t>(320 * y + x)] = true;
        }
    }
    CBitmap bitmap(320, 320);
    bitmap.renderer().clear(kBlackCColor);
    SplineDots dots;
    dots.setPoints(points, 150.0F);
    dots.draw(bitmap.context(), {160.5, 160.5}, kWhiteCColor);
    int different = 0;
    for (int y = 0; y < 320; ++y)
        for (int x = 0; x < 320; ++x)
            different +=
                (red(bitmap, x, y) != 0) != expected[static_cast<std::size_t>(320 * y + x)];
    EXPECT_LE(different, 2); // a dot on the edge between two pixels, single beside double precision
}

/// Many at a time give what one at a time give, in both blend modes and inside the clip box only.
TEST(Renderer, PlotPointsIsPlotPixelManyTimes) {
    const std::vector<float> x = orvel_test::noise(3000, 1, 40.0F);
    std::vector<float> y = orvel_test::noise(3000, 2, 40.0F);
    y[7] = std::numeric_limits<float>::quiet_NaN();
    y[8] = std::numeric_limits<float>::infinity();
    for (const BlendMode mode : {BlendMode::kAlpha, BlendMode::kAdd}) {
        CBitmap many(64, 64);
        CBitmap single(64, 64);
        for (CBitmap* bitmap : {&many, &single}) {
            bitmap->renderer().clear({34, 37, 59, 255});
            bitmap->renderer().clipBox({5.0, 6.0, 60.0, 61.0});
            bitmap->renderer().blendMode(mode);
        }
        many.renderer().plotPoints({30.5, 31.5}, x, y, {255, 164, 27, 80});
        for (std::size_t i = 0; i < x.size(); ++i) {
            if (!std::isfinite(y[i])) continue;
            const CPoint at{std::floor(double{x[i] + 30.5F}), std::floor(double{y[i] + 31.5F})};
            if (mode == BlendMode::kAlpha)
                single.renderer().plotPixel(static_cast<int>(at.x), static_cast<int>(at.y),
                                            {255, 164, 27, 80});
            else {
                single.renderer().noLine();
                single.renderer().fillColor({255, 164, 27, 80});
                single.renderer().rectangle({at.x, at.y, at.x + 1.0, at.y + 1.0});
            }
        }
        EXPECT_EQ(std::memcmp(many.surface().getPixels(), single.surface().getPixels(),
                              static_cast<std::size_t>(64 * many.surface().stride)),
                  0);
    }
}

TEST(CorrelationMeter, HalfABarAtTheEndsAndAmberUpToFifteenHundredths) {
    CCorrelationMeter meter({145.0, 387.0, 475.0, 431.0}, nullptr);
    const DisplayColors& c = displayColors();
    EXPECT_EQ(meter.fillRect(), (CRect{310.0, 412.0, 311.0, 420.0}));
    EXPECT_TRUE(meter.setValue(1.0F));
    EXPECT_EQ(meter.fillRect(), (CRect{309.0, 412.0, 458.0, 420.0})); // the bed has a rim of 2
    EXPECT_EQ(meter.fillColor(), c.good2);
    EXPECT_TRUE(meter.setValue(0.99F)); // the bar stays at its end, the number does not
    meter.setValue(-2.0F);
    EXPECT_EQ(meter.fillRect(), (CRect{162.0, 412.0, 311.0, 420.0}));
    EXPECT_EQ(meter.fillColor(), c.bad);
    meter.setValue(0.5F);
    EXPECT_EQ(meter.fillRect(), (CRect{309.0, 412.0, 385.0, 420.0}));
    EXPECT_FALSE(meter.setValue(0.5003F)); // less than a quarter of a pixel
    for (const float value : {0.15F, -0.15F}) {
        meter.setValue(value);
        EXPECT_EQ(meter.fillColor(), c.warn2);
        meter.setValue(value * 1.0001F);
        EXPECT_EQ(meter.fillColor(), value > 0 ? c.good2 : c.bad);
    }
    meter.setValue(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(meter.fillRect().right, 311.0);
}

} // namespace
} // namespace Sorel

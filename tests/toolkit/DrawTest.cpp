// Shapes, blending, gradients, columns: pixels against slow twins and plain theory.
#include "DrawFixture.h"
#include "Pixels.h"
#include "References.h"

#include <array>
#include <cstring>
#include <random>

namespace {

using namespace Sorel;

// ---- Blending ----------------------------------------------------------------------------------

/// Blue, green, red, alpha; premultiplied, 0..255.
using Channels = std::array<double, 4>;

Channels exact(CColor color) {
    const double a = color.alpha / 255.0;
    return {color.blue * a, color.green * a, color.red * a, double(color.alpha)};
}

/// What a row should become, without any rounding.
double
expected(const Channels& source, double under, double coverage, std::size_t channel, bool adds) {
    const double s = source[channel] * coverage;
    return adds ? std::min(255.0, under + s) : s + under * (1.0 - source[3] / 255.0 * coverage);
}

TEST(Pixels, AreWithinOneOfTheUnroundedResult) {
    std::mt19937 random(7);
    const auto byte = [&] { return static_cast<std::uint8_t>(random() % 256); };
    for (int round = 0; round < 4000; ++round) {
        const int count = 1 + static_cast<int>(random() % 23);
        const auto n = static_cast<std::size_t>(count);
        CColor color{byte(), byte(), byte(), byte()};
        if (round % 5 == 0) color.alpha = 255;
        std::vector<std::uint8_t> coverage(n);
        std::vector<Pixels::Pixel> source(n);
        std::vector<std::uint8_t> ground(4 * n + 8);
        for (std::size_t i = 0; i < n; ++i) {
            coverage[i] = random() % 3 == 0 ? (random() % 2 == 0 ? 0 : 255) : byte();
            source[i] = Pixels::premultiplied({byte(), byte(), byte(), byte()});
            const Pixels::Pixel under = Pixels::premultiplied({byte(), byte(), byte(), byte()});
            std::memcpy(&ground[4 * i], &under, 4);
        }
        const std::uint8_t one = coverage[0];
        for (int kind = 0; kind < 8; ++kind) {
            const bool adds = kind >= 4;
            std::vector<std::uint8_t> row = ground;
            std::uint8_t* const to = row.data();
            const std::uint8_t* const part = coverage.data();
            const Pixels::Pixel* const from = source.data();
            if (kind == 0) Pixels::blend(to, count, color);
            if (kind == 1) Pixels::blend(to, count, color, part);
            if (kind == 2) Pixels::blend(to, count, from, one);
            if (kind == 3) Pixels::blend(to, count, from, part);
            if (kind == 4) Pixels::add(to, count, color);
            if (kind == 5) Pixels::add(to, count, color, part);
            if (kind == 6) Pixels::add(to, count, from, one);
            if (kind == 7) Pixels::add(to, count, from, part);
            for (std::size_t i = 0; i < 4 * n; ++i) {
                const std::size_t pixel = i / 4;
                Channels s = exact(color);
                if (kind % 4 >= 2)
                    for (std::size_t c = 0; c < 4; ++c)
                        s[c] = source[pixel] >> (8 * c) & 255;
                const double k = kind % 4 == 0   ? 1.0
                                 : kind % 4 == 2 ? one / 255.0
                                                 : coverage[pixel] / 255.0;
                ASSERT_NEAR(row[i], expected(s, ground[i], k, i % 4, adds), 1.01)
                    << "kind " << kind << " byte " << i << " of " << count << " pixels";
                ASSERT_TRUE(row[i] <= row[4 * pixel + 3] || adds) << "no longer premultiplied";
            }
            for (std::size_t i = 4 * n; i < row.size(); ++i)
                ASSERT_EQ(row[i], ground[i]) << "kind " << kind << " wrote past the row";
        }
    }
}

/// Long rows begin with the loops for newer processors, short ones do not reach them.
TEST(Pixels, LongRowsAreShortRowsSideBySide) {
    constexpr int kCount = 61;
    std::mt19937 random(5);
    const auto byte = [&] { return static_cast<std::uint8_t>(random()); };
    for (int round = 0; round < 200; ++round) {
        std::vector<std::uint8_t> whole(4 * kCount);
        std::vector<Pixels::Pixel> source(kCount);
        std::vector<std::uint8_t> coverage(kCount);
        for (std::uint8_t& channel : whole)
            channel = byte();
        for (std::size_t i = 0; i < kCount; ++i) {
            // Opaque and empty stretches, and what lies between.
            const std::uint8_t alpha = i / 16 % 3 == 0 ? 255 : i / 16 % 3 == 1 ? 0 : byte();
            source[i] = Pixels::premultiplied({byte(), byte(), byte(), alpha});
            coverage[i] = i / 9 % 3 == 0 ? 0 : byte();
        }
        const CColor color{byte(), byte(), byte(), round % 4 == 0 ? std::uint8_t{255} : byte()};
        std::vector<std::uint8_t> pieces = whole;
        const auto draw = [&](std::uint8_t* row, int first, int count) {
            const std::uint8_t* const part = coverage.data() + first;
            if (round % 3 == 0) Pixels::blend(row, count, color);
            if (round % 3 == 1) Pixels::blend(row, count, color, part);
            if (round % 3 == 2) Pixels::blend(row, count, source.data() + first, std::uint8_t{255});
        };
        draw(whole.data(), 0, kCount);
        for (int first = 0; first < kCount; first += 7)
            draw(pieces.data() + 4 * first, first, std::min(7, kCount - first));
        ASSERT_EQ(whole, pieces) << round;
    }
}

// ---- Columns -----------------------------------------------------------------------------------

struct Band {
    std::vector<float> upper;
    std::vector<float> lower;
    double left = 0.0;
    double columnWidth = 1.0;

    CPath path() const {
        CPath path;
        for (std::size_t first = 0; first < upper.size();) {
            std::size_t end = first;
            while (end < upper.size() && !std::isnan(upper[end]))
                ++end;
            for (std::size_t c = first; c < end; ++c)
                c == first ? path.moveTo(x(c), double{upper[c]})
                           : path.lineTo(x(c), double{upper[c]});
            for (std::size_t c = end; c-- > first;)
                path.lineTo(x(c), double{lower[c]});
            path.close();
            first = end + 1;
        }
        return path;
    }

  private:
    double x(std::size_t c) const { return left + static_cast<double>(c) * columnWidth; }
};

enum class Wave { kNoise, kSine, kDrum, kFlat };

Band bandOf(Wave wave, double left, double columnWidth, bool gap) {
    std::mt19937 random(3);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    Band band;
    band.left = left;
    band.columnWidth = columnWidth;
    const auto columns = static_cast<int>(300.0 / columnWidth);
    for (int c = 0; c < columns; ++c) {
        const float t = static_cast<float>(c * columnWidth);
        const float envelope = std::exp(-std::fmod(t, 90.0f) * 0.04f);
        float high = 0.003f; // the height above the middle, and the depth below
        float low = 0.0f;
        if (wave == Wave::kNoise) {
            high = unit(random);
            low = unit(random);
        } else if (wave == Wave::kSine) {
            high = std::sin(t * 0.05f);
            low = 0.05f - high;
        } else if (wave == Wave::kDrum) {
            high = low = envelope * unit(random);
        }
        // Taller than the canvas of 160: what is cut off must not show.
        band.upper.push_back(80.3f - 90.0f * high);
        band.lower.push_back(std::max(band.upper.back(), 80.3f + 90.0f * low));
        if (gap && c % 70 == 50) band.upper.back() = NAN;
    }
    return band;
}

TEST(Columns, LookLikeTheGenericPath) {
    const auto gradient = CLinearGradient::vertical(0.0, 160.0)
                              .stop(0.0, {161, 163, 193, 200})
                              .stop(0.5, {90, 200, 90, 60})
                              .stop(1.0, {250, 80, 60, 255});
    for (const Wave wave : {Wave::kNoise, Wave::kSine, Wave::kDrum, Wave::kFlat})
        for (const double columnWidth : {1.0, 0.37, 2.6})
            for (const double left : {10.0, -7.3})
                for (const bool gap : {false, true}) {
                    const Band band = bandOf(wave, left, columnWidth, gap);
                    Canvas fast(310, 160, {34, 37, 59, 255});
                    Canvas generic(310, 160, {34, 37, 59, 255});
                    for (Canvas* canvas : {&fast, &generic})
                        canvas->renderer().clipBox({3.0, 2.0, 300.0, 157.0});
                    fast.renderer().columnBand({left, columnWidth, band.upper, band.lower},
                                               gradient, {250, 220, 190, 200}, 1.5);
                    generic.renderer().fillPath(band.path(), gradient);
                    generic.renderer().noFill();
                    generic.renderer().lineColor({250, 220, 190, 200});
                    generic.renderer().lineWidth(1.5);
                    generic.renderer().path(band.path());
                    EXPECT_LE(difference(fast.surface(), generic.surface()), 3)
                        << "wave " << static_cast<int>(wave) << " width " << columnWidth << " left "
                        << left << " gap " << gap;
                    EXPECT_GT(fast.ink().amount, 100);
                }
}

TEST(Columns, LinesLookLikePolylinesAndUseAnyGradient) {
    const Band band = bandOf(Wave::kNoise, 5.5, 1.0, false);
    std::vector<CPoint> points;
    for (std::size_t c = 0; c < band.upper.size(); ++c)
        points.push_back({5.5 + static_cast<double>(c), double{band.upper[c]}});
    {
        Canvas fast(310, 160);
        Canvas generic(310, 160);
        fast.renderer().columnLine(5.5, 1.0, band.upper, {250, 200, 60, 225}, 2.0);
        generic.renderer().lineColor({250, 200, 60, 225});
        generic.renderer().lineWidth(2.0);
        generic.renderer().polyline(points);
        EXPECT_LE(difference(fast.surface(), generic.surface()), 3);
    }

    const CLinearGradient slanted =
        CLinearGradient({20.0, 10.0}, {280.0, 150.0}).stop(0.0, kRedCColor).stop(1.0, kBlueCColor);
    Canvas fast(310, 160);
    Canvas generic(310, 160);
    fast.renderer().columnBand({5.5, 1.0, band.upper, band.lower}, slanted, kWhiteCColor, 0.0);
    generic.renderer().fillPath(band.path(), slanted);
    EXPECT_GE(generic.ink().right, 300);
    EXPECT_LE(difference(fast.surface(), generic.surface()), 3);
}

/// Mean of 3 by 3 pixels: what the eye makes of them.
double softRed(Canvas& canvas, int x, int y) {
    double sum = 0.0;
    for (int dy = -1; dy <= 1; ++dy)
        for (int dx = -1; dx <= 1; ++dx)
            sum += canvas.at(x + dx, y + dy).red;
    return sum / 9.0;
}

/// Cut along columns and rows instead of across the line, so the same only nearly.
TEST(Columns, HairlinesHaveTheInkOfPolylinesWhereThoseHaveIt) {
    struct Case {
        double columnWidth;
        double width;
        float slope; // of a zigzag, rows per pixel
    };
    for (const Case& c : {Case{1.0, 0.7, 0.0F}, Case{1.0, 0.7, 0.4F}, Case{1.0, 0.6, 1.0F},
                          Case{1.0, 0.7, 3.0F}, Case{4.0, 1.2, 0.7F}, Case{4.0, 0.4, 6.0F}}) {
        std::vector<float> heights;
        std::vector<CPoint> points;
        for (int i = 0; i * c.columnWidth < 320.0; ++i) {
            const double x = -3.5 + i * c.columnWidth;
            const double y = (c.slope > 0 ? 20.3 : 40.3) +
                             double{c.slope} * std::abs(std::fmod(x + 100.0, 40.0) - 20.0);
            heights.push_back(static_cast<float>(y));
            points.push_back({x, y});
        }
        Canvas hair(310, 160);
        Canvas outline(310, 160);
        // The upper edge and the left edge cut through some lines.
        for (Canvas* canvas : {&hair, &outline})
            canvas->renderer().clipBox({2.0, 26.0, 300.0, 157.0});
        hair.renderer().columnLine(-3.5, c.columnWidth, heights, kWhiteCColor, c.width);
        outline.renderer().lineColor(kWhiteCColor);
        outline.renderer().lineWidth(c.width);
        outline.renderer().polyline(points);
        double worst = 0.0;
        double ink = 0.0;
        double expected = 0.0;
        for (int y = 1; y < 159; ++y)
            for (int x = 1; x < 309; ++x) {
                worst = std::max(worst, std::abs(softRed(hair, x, y) - softRed(outline, x, y)));
                ink += hair.at(x, y).red;
                expected += outline.at(x, y).red;
            }
        EXPECT_GT(ink, 5000.0);
        EXPECT_LE(worst, 14.0) << c.columnWidth << " " << c.width << " " << c.slope;
        EXPECT_NEAR(ink, expected, 0.04 * expected) << c.width << " " << c.slope;
    }
}

TEST(Columns, CoverExactAreas) {
    // A triangle of 8 columns: half of a pixel under a slope of 1, and the same slope far steeper.
    Canvas canvas(8, 8);
    const std::vector<float> upper{0.0f, 8.0f};
    const std::vector<float> lower{8.0f, 8.0f};
    canvas.renderer().columnBand({0.0, 8.0, upper, lower},
                                 CLinearGradient::vertical(0, 8).stop(0.0, kWhiteCColor),
                                 kWhiteCColor, 0.0);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            EXPECT_NEAR(canvas.at(x, y).red, x < y ? 255 : x == y ? 127.5 : 0, 1) << x << " " << y;
}

TEST(Columns, ReachDownToTheClipWhenTheirLowerEdgeLiesBelow) {
    for (const float bottom : {8.0f, 50.0f}) {
        Canvas canvas(40, 8);
        const std::vector<float> upper(40, 2.0f);
        const std::vector<float> lower(40, bottom);
        canvas.renderer().columnBand({0.0, 1.0, upper, lower},
                                     CLinearGradient::vertical(0, 8).stop(0.0, kWhiteCColor),
                                     kWhiteCColor, 0.0);
        for (int y = 0; y < 8; ++y)
            EXPECT_EQ(canvas.at(20, y).red, y < 2 ? 0 : 255) << y;
    }
}

// ---- Shapes and state --------------------------------------------------------------------------

TEST(Shapes, CoverTheirAreaAtFractionalPlaces) {
    Canvas canvas(6, 6);
    canvas.context().setOffset({0.25, 0.0});
    canvas.context().setFillColor(kWhiteCColor);
    canvas.context().drawRect({1.0, 1.5, 3.5, 4.0}, kFilled); // x 1.25 to 3.75
    const double across[] = {0.0, 0.75, 1.0, 0.75, 0.0, 0.0};
    const double down[] = {0.0, 0.5, 1.0, 1.0, 0.0, 0.0};
    for (int y = 0; y < 6; ++y)
        for (int x = 0; x < 6; ++x) // AGG rounds coverage down to 1/256
            EXPECT_NEAR(canvas.at(x, y).green, 255.0 * across[x] * down[y], 2.0);
}

TEST(Shapes, StylesFillStrokeOrKeepTheLastState) {
    const auto draw = [](std::initializer_list<int> styles) {
        Canvas canvas(20, 20);
        canvas.context().setFillColor(kRedCColor);
        canvas.context().setFrameColor(kGreenCColor);
        for (const int style : styles) {
            canvas.renderer().clear(kBlackCColor);
            canvas.context().drawRect({4.5, 4.5, 15.5, 15.5}, style);
        }
        return std::pair{canvas.at(10, 10), canvas.at(10, 4)};
    };
    const Rgba none{0, 0, 0, 255};
    const Rgba red{255, 0, 0, 255};
    const Rgba green{0, 255, 0, 255};
    EXPECT_EQ(draw({kStroked}), std::pair(none, green));
    EXPECT_EQ(draw({kFilledAndStroked}), std::pair(red, green));
    EXPECT_EQ(draw({kFilled}).first, red);
    EXPECT_EQ(draw({kFilled}).second.green, 0);
    EXPECT_EQ(draw({kStroked, 3}), draw({kStroked}));
    EXPECT_EQ(draw({kFilled, -1}), draw({kFilled}));
}

TEST(Shapes, StayInsideTheClip) {
    Canvas canvas(60, 60);
    CDrawContext& context = canvas.context();
    context.setOffset({10.0, 5.0});
    context.setClipRect({10.0, 10.0, 30.5, 30.0}); // on the surface: 20, 15 to 40.5, 35
    context.setFillColor(kWhiteCColor);
    const auto gradient = CLinearGradient({0.0, 0.0}, {50.0, 20.0}).stop(0.0, kWhiteCColor);
    const std::vector<float> wave{-50.0f, 90.0f, -500.0f, 900.0f, 20.0f, 20.0f};
    const std::vector<float> floor(6, 900.0f);
    constexpr int kNumShapes = 10;
    const auto draw = [&](int shape) {
        const CRect large{-20.0, -20.0, 70.0, 70.0};
        if (shape == 0) context.drawRect(large, kFilledAndStroked);
        if (shape == 1) context.drawEllipse(large, kFilledAndStroked);
        if (shape == 2) context.drawRoundRect(large, 9.0f, kFilledAndStroked);
        if (shape == 3) context.fillRect(large, gradient);
        if (shape == 4) context.fillRoundRect(large, 3.0, gradient);
        if (shape == 5) context.drawColumnBand({-20.0, 15.0, wave, floor}, gradient, kRedCColor, 2);
        if (shape == 6) context.drawColumnLine(-20.0, 15.0, wave, kRedCColor, 3.0);
        if (shape == 7) context.drawLine(-1e9, -1e9, 1e9, 1e9);
        if (shape == 8) context.drawString("XXXXXXXXXXXX", {-90.0, 0.0, 90.0, 40.0});
        for (int i = 0; shape == 9 && i < 3600; ++i)
            context.drawPoint(i % 60 - 10, i / 60 - 5, kWhiteCColor);
    };
    for (int shape = 0; shape < kNumShapes; ++shape) {
        canvas.renderer().clear(kBlackCColor);
        draw(shape);
        const Canvas::Ink ink = canvas.ink();
        EXPECT_GT(ink.amount + ink.right, 0) << shape;
        EXPECT_TRUE(ink.left >= 20 && ink.top >= 15 && ink.right <= 41 && ink.bottom <= 35)
            << shape << ": " << ink.left << " " << ink.top << " " << ink.right << " " << ink.bottom;
    }
    context.setClipRect({10.0, 10.0, 10.0, 30.0});
    canvas.renderer().clear(kBlackCColor);
    for (int shape = 0; shape < kNumShapes; ++shape)
        draw(shape);
    EXPECT_EQ(canvas.ink().amount, 0);
}

TEST(Shapes, SurviveNumbersThatAreNone) {
    Canvas canvas(30, 30);
    CDrawContext& context = canvas.context();
    const std::vector<float> y{1.0f, NAN, 3.0f, INFINITY, 5.0f};
    for (const double bad : {double(NAN), double(INFINITY), -double(INFINITY)}) {
        const auto gradient = CLinearGradient::vertical(bad, 3.0).stop(0.0, kWhiteCColor);
        context.drawRect({1.0, bad, 20.0, 20.0}, kFilledAndStroked);
        context.drawLine(0.0, 0.0, bad, 5.0);
        context.drawEllipse({0.0, 0.0, bad, 9.0}, kFilledAndStroked);
        context.drawRoundRect({0.0, 0.0, 9.0, bad}, 3.0f, kFilledAndStroked);
        context.drawPoint(bad, 1.0, kWhiteCColor);
        context.drawString("text", {0.0, bad, 30.0, 30.0});
        context.drawColumnLine(bad, 1.0, y, kWhiteCColor, 1.0);
        context.drawColumnLine(0.0, bad, y, kWhiteCColor, 1.0);
        CPath path;
        path.moveTo(0.0, 0.0);
        path.cubicTo({bad, 1.0}, {2.0, bad}, {9.0, 9.0});
        path.quadTo({bad, bad}, {1.0, bad});
        context.drawPath(path, kFilledAndStroked);
        context.fillPath(path, gradient);
    }
    EXPECT_EQ(canvas.ink().amount, 0);
    context.drawColumnLine(0.0, 3.0, y, kWhiteCColor, 1.0); // only single points between the gaps
    EXPECT_EQ(canvas.ink().amount, 0);

    CDrawContext none(nullptr, nullptr, nullptr, CDrawContext::OwnSurface::kNever);
    none.drawRect({0.0, 0.0, 5.0, 5.0}, kFilled);
    none.drawString("text", {0.0, 0.0, 50.0, 20.0});
    EXPECT_EQ(none.getStringWidth("text"), 0.0);
}

TEST(Shapes, PointsBlendAtWholePixels) {
    Canvas canvas(4, 4, {100, 100, 100, 255});
    CDrawContext& context = canvas.context();
    context.drawPoint(1.9, 2.0, {200, 0, 0, 128});
    EXPECT_NEAR(canvas.at(1, 2).red, 150, 1);
    context.drawPoint(1.0, 1.0, {1, 2, 3, 255});
    EXPECT_EQ(canvas.at(1, 1), (Rgba{1, 2, 3, 255}));
    context.drawPoint(0.0, 0.0, {1, 2, 3, 0});
    EXPECT_EQ(canvas.at(0, 0), (Rgba{100, 100, 100, 255}));
    for (const double outside : {-0.1, 4.0, 1e300})
        context.drawPoint(outside, outside, kWhiteCColor); // the address sanitizer looks on
    context.clear();
    EXPECT_EQ(canvas.at(3, 3), (Rgba{0, 0, 0, 0}));
}

TEST(Shapes, AddModeAddsEverything) {
    Canvas canvas(8, 8, {100, 100, 100, 255});
    CDrawContext& context = canvas.context();
    context.setDrawMode(kAddMode);
    context.setFillColor({200, 100, 0, 128});
    context.drawRect({0.0, 0.0, 8.0, 8.0}, kFilled);
    EXPECT_NEAR(canvas.at(4, 4).red, 200, 1);
    EXPECT_NEAR(canvas.at(4, 4).green, 150, 1);
    context.drawEllipse({-20.0, -20.0, 30.0, 30.0}, kFilled);
    EXPECT_EQ(canvas.at(4, 4).red, 255);
    context.setDrawMode(3);
    context.drawRect({0.0, 0.0, 8.0, 8.0}, kFilled);
    EXPECT_NEAR(canvas.at(4, 4).red, 227, 2);
}

TEST(Gradients, FollowTheirStops) {
    // Between opaque red and transparent blue: premultiplied, so no blue shows.
    const CLinearGradient fade =
        CLinearGradient::vertical(0.0, 100.0).stop(0.25, kRedCColor).stop(0.75, {0, 0, 255, 0});
    EXPECT_EQ(fade.at(-1.0), kRedCColor);
    EXPECT_EQ(fade.at(0.5), (CColor{255, 0, 0, 128}));
    EXPECT_EQ(fade.at(0.9).alpha, 0);

    for (const bool whole : {true, false}) { // the direct loop and AGG
        const double end = whole ? 60.0 : 60.5;
        Canvas down(60, 100);
        down.renderer().fillRectangle({0.0, 0.0, end, 100.0}, fade);
        Canvas right(100, 60);
        CLinearGradient turned = CLinearGradient::horizontal(0.0, 100.0);
        turned.stops = fade.stops;
        turned.count = fade.count;
        right.renderer().fillRectangle({0.0, 0.0, 100.0, end}, turned);
        for (int i = 0; i < 100; ++i) {
            const double red = 255.0 * std::clamp((75.0 - i - 0.5) / 50.0, 0.0, 1.0);
            EXPECT_NEAR(down.at(30, i).red, red, 2.0) << i;
            EXPECT_NEAR(right.at(i, 30).red, red, 2.0) << i;
            EXPECT_EQ(down.at(30, i).blue, 0);
        }
    }
}

TEST(Shapes, LookAsTheyDidWhenApproved) {
    Canvas canvas(240, 150, {34, 37, 59, 255});
    CDrawContext& context = canvas.context();
    context.setFrameColor({161, 163, 193, 200});
    context.setFillColor({250, 200, 60, 225});
    context.drawRoundRect({8.5, 8.5, 70.5, 40.5}, 6.0f, kFilledAndStroked);
    context.drawEllipse({80.0, 8.0, 112.0, 40.0}, kFilledAndStroked);
    context.fillRoundRect({120.0, 8.0, 170.0, 40.0}, 4.0,
                          CLinearGradient::vertical(8.0, 40.0)
                              .stop(0.0, {76, 76, 92, 255})
                              .stop(1.0, {62, 62, 76, 255}));
    CPath star;
    star.moveTo(200.0, 6.0);
    star.cubicTo({205.0, 20.0}, {210.0, 22.0}, {228.0, 24.0});
    star.quadTo({208.0, 28.0}, {200.0, 44.0});
    star.lineTo(178.0, 24.0);
    star.close();
    context.setLineWidth(1.5);
    context.drawPath(star, kFilledAndStroked);
    context.setLineWidth(0.5);
    for (int i = 0; i < 12; ++i)
        context.drawLine(8.0, 60.0, 8.0 + 60.0 * std::sin(i * 0.14),
                         60.0 + 80.0 * std::cos(i * 0.14));
    const Band band = bandOf(Wave::kDrum, 0.0, 1.0, false);
    std::vector<float> upper(band.upper.begin(), band.upper.begin() + 150);
    std::vector<float> lower(band.lower.begin(), band.lower.begin() + 150);
    context.setOffset({84.0, 20.0});
    context.drawColumnBand({0.0, 1.0, upper, lower},
                           CLinearGradient::vertical(30.0, 130.0)
                               .stop(0.0, {161, 163, 193, 120})
                               .stop(0.5, {161, 163, 193, 30})
                               .stop(1.0, {161, 163, 193, 120}),
                           {161, 163, 193, 200}, 0.4);
    expectLikeReference(canvas, "shapes");
}

} // namespace

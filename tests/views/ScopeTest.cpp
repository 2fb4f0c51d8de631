// The scope: rulers, what is painted and what is not, sync marker, wheel.
#include "views/Scope.h"
#include "ViewsTest.h"
#include "views/ScopeTrace.h"

#include <cstring>

namespace Sorel {
namespace {

using orvel_test::sine;
using orvel_test::Stereo;

constexpr int kWidth = 845;

const RulerLine* labelled(const Ruler& ruler, const char* label) {
    for (const RulerLine& line : ruler.lines)
        if (std::strcmp(line.label.data(), label) == 0) return &line;
    return nullptr;
}

TEST(ScopeRulers, PlaceLabelAndFadeTheLinesOfFourSecondsAtTwoBeatsASecond) {
    Ruler beats;
    layOutBeats(beats, 120.0, 4000.0, kWidth);
    ASSERT_NE(labelled(beats, "7"), nullptr);
    EXPECT_EQ(labelled(beats, "7")->x, 739); // 3500 of 4000 ms
    EXPECT_TRUE(labelled(beats, "7")->wholeBeat && labelled(beats, "7")->heavy);
    EXPECT_EQ(labelled(beats, "1/8")->fade, 1.0);
    EXPECT_NEAR(labelled(beats, "3/16")->fade, (26.0 - 15.0) / 15.0, 1e-9);
    EXPECT_EQ(beats.lines.size(), 31U);

    layOutBeats(beats, 120.0, 1000.0, kWidth); // a 32nd is 52 pixels wide
    EXPECT_EQ(labelled(beats, "7/32")->fade, 1.0);

    Ruler times;
    layOutTime(times, 4000.0, kWidth);
    EXPECT_EQ(labelled(times, "250")->x, 52);
    EXPECT_EQ(labelled(times, "125"), nullptr); // 26 pixels apart it would be too faint to see
    EXPECT_EQ(nearestLine(times, 55.0, 10.0), labelled(times, "250"));
    EXPECT_EQ(nearestLine(times, 40.0, 10.0), nullptr);
}

TEST(ScopeRulers, StayReadableAtTheEndsOfTheirRange) {
    Ruler ruler;
    for (const double period : {1.0, 10.0, 333.3, 30000.0, 1.5e6}) {
        layOutTime(ruler, period, kWidth);
        for (std::size_t i = 1; i < ruler.lines.size(); ++i)
            EXPECT_GE(ruler.lines[i].x - ruler.lines[i - 1].x, 25) << period;
        EXPECT_EQ(ruler.lines.empty(), period == 1.0); // the first would be the right edge
        layOutBeats(ruler, 999.0, period, kWidth);
        for (std::size_t i = 1; i < ruler.lines.size(); ++i)
            EXPECT_GE(ruler.lines[i].x - ruler.lines[i - 1].x, 15) << period;
    }
    layOutBeats(ruler, 0.0, 1000.0, kWidth);
    EXPECT_TRUE(ruler.lines.empty());
}

TEST(ScopeTrace, JoinsTheMiddlesOfSamplesAndLeavesLevelStretchesLevel) {
    // Four columns a sample: 0, 1, 1, 0.
    std::vector<ScopeColumn> columns;
    for (const float sample : {0.0F, 1.0F, 1.0F, 0.0F})
        columns.insert(columns.end(), 4, {sample, sample});
    std::vector<float> line;
    traceSamples(columns, 0.25, line);
    for (std::size_t c = 0; c < 16; ++c) {
        // Middles at 1.5, 5.5, 9.5, 13.5.
        const double x = double(c);
        const double expected = x < 9.5 ? (x - 1.5) / 4.0 : (13.5 - x) / 4.0;
        EXPECT_NEAR(double{line[c]}, std::clamp(expected, 0.0, 1.0), 1e-6) << c;
    }
}

/// Six layers with one mark each in column 20.
class OneMark final : public IScopeDataProvider {
  public:
    int GetNumLayers() override { return 6; }
    bool TryLock() override { return free; }
    void Unlock() override {}
    void ClearLayer(int) override {}
    void SetNumColumns(int) override {}
    int GetFirstPlace() override { return 0; }
    unsigned GetVersion() override { return ++version_; }
    int GetLayerData(int, ScopeColumn* destination, int count) override {
        std::fill_n(destination, count, ScopeColumn{});
        destination[20] = {0.0F, 1.0F};
        return 1;
    }
    bool free = true;

  private:
    unsigned version_ = 0;
};

TEST_F(ToolkitTest, ScopeMarksLieWhereTheirLanesLeaveRoom) {
    OneMark provider;
    CStereoScopeRenderer renderer;
    renderer.attach(&provider, 100);
    using Layer = CStereoScopeRenderer::Layer;
    renderer.layer(Layer::kTransients).fillColour = {0, 255, 0, 255};
    renderer.layer(Layer::kSibilance).fillColour = {255, 0, 0, 255};
    const auto at = [&](int x, int y, bool twoLanes) {
        for (const int i : {Layer::kBoth, Layer::kUpperLane, Layer::kLowerLane})
            renderer.layer(i).visible = (i == Layer::kBoth) != twoLanes;
        renderer.layer(Layer::kTransients).visible = renderer.layer(Layer::kSibilance).visible =
            true;
        renderer.fetch(100.0);
        CBitmap canvas(100, 100);
        canvas.renderer().clear(kBlackCColor);
        renderer.Draw(canvas.context(), {0.0, 0.0, 100.0, 100.0});
        const std::uint8_t* p = canvas.surface().getPixels() + y * canvas.surface().stride + 4 * x;
        return std::pair(int{p[2]}, int{p[1]}); // red, green
    };
    for (const int y : {5, 90}) { // a fade of twelve pixels in the outer quarters
        EXPECT_NEAR(at(21, y, true).second, 101, 5) << y;
        EXPECT_LT(at(31, y, true).second, 15) << y;
        EXPECT_EQ(at(33, y, true).second, 0) << y;
    }
    EXPECT_EQ(at(20, 40, true).first, 102); // 0.4 of the envelope, between them
    EXPECT_EQ(at(21, 40, true).first, 0);
    EXPECT_EQ(at(20, 90, false).first, 102); // one lane: below its centre
    EXPECT_EQ(at(22, 90, false).second, 0);
    EXPECT_GT(at(22, 40, false).second, 50);

    provider.free = false;
    renderer.layer(Layer::kSibilance).columns[50] = {0.0F, 1.0F};
    EXPECT_EQ(at(50, 40, true).first, 102); // nothing to read: the last copy stays
    provider.free = true;
    EXPECT_EQ(at(50, 40, true).first, 0);
}

class ScopeTest : public ViewsTest {
  protected:
    static constexpr CPoint kOrigin{145.0, 56.0};

    void open() {
        show([&](CFrame& frame) {
            scope_ = new CScope(CRect::ofSize(kOrigin.x, kOrigin.y, kWidth, 375.0), &analyser_);
            frame.addView(scope_);
        });
        window().takeShownPixels();
    }
    void set(Orvel::ParameterId id, double value) {
        setPlain(id, value);
        if (scope_ != nullptr) scope_->onParameterChanged(id);
    }
    double plain(Orvel::ParameterId id) { return double{analyser_.parameter(id).getValue()}; }
    static Stereo mono(std::vector<float> samples) { return {samples, samples}; }
    /// How much more red than blue is in the pixel.
    int redness(int x, int y) {
        const std::uint32_t p = pixel(x, y);
        return static_cast<int>(p >> 16) - static_cast<int>(p & 255);
    }
    /// The picture beside that of a view that has painted nothing yet. The sums of the rasteriser
    /// begin elsewhere: one level for the fill, one for the outline.
    void expectLikeAFullPaint() {
        const std::unique_ptr<IOSBitmap> now = window().picture();
        open();
        const std::unique_ptr<IOSBitmap> full = window().picture();
        int largest = 0;
        for (std::int32_t i = 0; i < now->byteSize; ++i)
            largest = std::max(largest, std::abs(now->getPixels()[i] - full->getPixels()[i]));
        EXPECT_LE(largest, 2);
    }

    CScope* scope_ = nullptr;
};

TEST_F(ScopeTest, PaintsOnlyWhatChangedAndTheResultIsThatOfAFullPaint) {
    set(Orvel::kScopeSyncMode, 5);
    set(Orvel::kScopeTransientDetection, 1);
    set(Orvel::kScopeVisibleTimeMs, 2000);
    open();
    play({std::vector<float>(24000), std::vector<float>(24000)});
    EXPECT_EQ(window().takeShownPixels(), 0U); // silence

    play(orvel_test::stereoNoise(24000, 1, 0.8F));
    idle();
    EXPECT_GT(window().takeShownPixels(), 0U);
    play(orvel_test::stereoNoise(1200, 2, 0.8F));
    idle();
    EXPECT_LT(window().takeShownPixels(), kWidth * 375U / 10);
    keep("scope_partial");
    expectLikeAFullPaint();

    set(Orvel::kScopeFreeze, 1);
    idle();
    window().takeShownPixels();
    play(orvel_test::stereoNoise(24000, 3));
    EXPECT_EQ(window().takeShownPixels(), 0U);
}

TEST_F(ScopeTest, AScrollingPictureIsThatOfAFullPaint) {
    set(Orvel::kScopeVisibleTimeMs, 700);
    for (const int mode : {0, 3}) { // two lanes, one
        set(Orvel::kScopeChannelMode, mode);
        open();
        // Once round the ring and on, in steps that leave its end in the middle of the display.
        for (unsigned seed = 1; seed < 5; ++seed)
            play(orvel_test::stereoNoise(kBlock * 25, seed, 0.2F * float(seed)));
        idle();
        SCOPED_TRACE(mode);
        expectLikeAFullPaint();
    }
}

TEST(NumberText, SignsAndDecimals) {
    EXPECT_EQ(numberText(-23.94, 1, true), "-23.9");
    EXPECT_EQ(numberText(1.25, 1, true), "+1.2");
    EXPECT_EQ(numberText(0.0, 0), "0");
}

TEST_F(ScopeTest, LanesAndOversFollowTheChannelMode) {
    set(Orvel::kScopeVisibleTimeMs, 200);
    open();
    play(mono(sine(48000, 500.0, kRate, 2.0)));
    idle();
    keep("scope_lanes");
    const std::uint32_t ground = pixel(600, 243); // the line between the lanes
    EXPECT_GT(redness(600, 70), 100);
    EXPECT_GT(redness(600, 416), 100);
    set(Orvel::kScopeChannelMode, 3);
    play(mono(sine(48000, 500.0, kRate, 2.0)));
    keep("scope_single");
    EXPECT_GT(redness(600, 70), 100);
    EXPECT_LT(redness(600, 416), 20);
    EXPECT_GT(pixel(600, 243) & 255, ground & 255); // a centre line now
}

TEST_F(ScopeTest, TheReadOutNamesTheLevelUnderTheMouse) {
    open();
    window().moveMouse({705.0, 110.0});
    idle();
    keep("scope_cursor");
    EXPECT_GT(redness(705, 300), 60); // gold, from top to bottom
    EXPECT_GT(redness(675, 94), 20);  // the box's left edge, 8 pixels above the pointer
    window().moveMouse({705.0, 60.0});
    idle();
    EXPECT_LT(redness(705, 300), 20); // in the numbers above the data
    window().moveMouse({705.0, 110.0});
    idle();
    EXPECT_GT(redness(705, 300), 60);
    window().takeShownPixels();
    idle();
    EXPECT_EQ(window().takeShownPixels(), 0U); // nothing moved
    window().leave();
    idle();
    EXPECT_LT(redness(705, 300), 20);
}

TEST_F(ScopeTest, NumbersThatWouldBeSmudgesAreLeftOut) {
    set(Orvel::kScopeVisibleTimeMs, 5000); // a 32nd is 10 pixels wide: 1/16 at 21, 1/8 at 42
    open();
    const auto contrast = [&](int x) { // within a number's room
        int most = -255;
        int least = 255;
        for (int i = -9; i <= 9; ++i)
            for (int y = 59; y < 66; ++y) {
                most = std::max(most, redness(145 + x + i, y));
                least = std::min(least, redness(145 + x + i, y));
            }
        return most - least;
    };
    EXPECT_GT(contrast(42), 60);
    EXPECT_LT(contrast(21), 7); // the ground's own is 4, of a number at a tenth 11
}

TEST_F(ScopeTest, TheSyncMarkerSnapsAndShiftsThePictureAndCanBeCalledOff) {
    set(Orvel::kScopeSyncMode, 2);
    set(Orvel::kScopeVisibleTimeMultiplier, 8); // a quarter at 120: 4000 ms
    open();
    play(mono(sine(48000, 100.0, kRate)));
    const CPoint label = kOrigin + CPoint{20.0, 22.0};
    window().click(label);
    window().click(label);
    EXPECT_EQ(analyser_.scopeTiming().phaseOffsetMs.load(), 0.0F);
    idle();
    EXPECT_LT(redness(165, 300), 20); // no line of the cross through the label

    window().click(label);
    window().moveMouse({kOrigin.x + 208.0, 80.0}); // in the beat ruler, 3 pixels before beat 2
    idle();
    keep("scope_armed");
    EXPECT_GT(redness(145 + 211, 300), 60);
    window().click({kOrigin.x + 208.0, 80.0});
    const double markerMs = 211.0 / kWidth * 4000.0;
    EXPECT_NEAR(double{analyser_.scopeTiming().phaseOffsetMs.load()}, -markerMs, 0.01);
    EXPECT_NEAR(double{analyser_.scopeTable().viewOffset()}, 211.0, 0.01);

    // No audio comes: the columns of 4000 ms stay, and go where the mouse puts them.
    set(Orvel::kScopeVisibleTimeMultiplier, 2);
    idle();
    window().click(label);
    window().click(kOrigin + CPoint{300.0, 200.0});
    EXPECT_NEAR(double{analyser_.scopeTable().viewOffset()}, 511.0, 0.01);
    window().click(label, Buttons::kLeft | Buttons::kControl);
    EXPECT_EQ(analyser_.scopeTiming().phaseOffsetMs.load(), 0.0F);

    set(Orvel::kScopeSyncMode, 0); // no grid to move
    window().click(label);
    window().click({500.0, 300.0});
    EXPECT_EQ(analyser_.scopeTiming().phaseOffsetMs.load(), 0.0F);
}

TEST_F(ScopeTest, TheWheelZoomsByTheParameterItWasGiven) {
    open();
    EXPECT_FALSE(window().wheel({500.0, 200.0}, 1.0F));
    scope_->SetWheelParameter(&analyser_.parameter(Orvel::kScopeVisibleTimeMs));
    window().wheel({500.0, 200.0}, 1.0F);
    EXPECT_NEAR(plain(Orvel::kScopeVisibleTimeMs), 5000 / 1.2, 1.0);
    window().wheel({500.0, 200.0}, -2.0F);
    EXPECT_NEAR(plain(Orvel::kScopeVisibleTimeMs), 6000, 1.0);
    scope_->SetWheelParameter(&analyser_.parameter(Orvel::kScopeVisibleTimeMultiplier));
    window().wheel({500.0, 200.0}, 0.5F);
    EXPECT_EQ(plain(Orvel::kScopeVisibleTimeMultiplier), 4.0);
    window().wheel({500.0, 200.0}, 0.5F);
    EXPECT_EQ(plain(Orvel::kScopeVisibleTimeMultiplier), 3.0);
}

} // namespace
} // namespace Sorel

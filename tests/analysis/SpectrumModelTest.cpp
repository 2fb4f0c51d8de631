// The hand-over of spectra, and what a view makes of them: line, bands, peaks, waterfall, axes.
#include "analysis/SpectrumModel.h"
#include "frame/NoteName.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <functional>
#include <string>
#include <thread>

namespace Orvel {
namespace {

constexpr int kSize = 2048;
constexpr double kRate = 48000;
constexpr double kBinHz = kRate / kSize;

std::vector<float> silence() { return std::vector<float>(kSize / 2 + 1, -192.0F); }
std::vector<float> oneBin(std::size_t bin, float db) {
    auto levels = silence();
    levels[bin] = db;
    return levels;
}

/// A view that gets the frames it is handed.
struct View {
    View() {
        handover.prepare(kSize);
        handover.setVisible(true);
        handover.setConsumed();
        model.setFormat(kRate, kSize);
        model.setBounds(800, 10, 210);
    }
    bool show(const std::vector<float>& levels) {
        handover.push(levels.data(), kSize);
        return model.receive(handover);
    }
    void steps(int count) {
        for (int i = 0; i < count; ++i)
            EXPECT_EQ(model.advance(25), 1);
    }
    SpectrumHandover handover;
    SpectrumModel model;
};

TEST(SpectrumHandover, mergesUntilTheFirstPaintThenGivesTheNewestFrameOnce) {
    SpectrumHandover handover;
    SpectrumFrame frame;
    handover.prepare(kSize);
    handover.push(oneBin(5, 0).data(), kSize);
    EXPECT_FALSE(handover.take(frame)) << "not visible";
    handover.setVisible(true);
    for (const std::size_t bin : {5U, 6U}) {
        handover.push(oneBin(bin, -10).data(), kSize);
        ASSERT_TRUE(handover.take(frame));
    }
    EXPECT_EQ(frame.levelsDb[5], -10.0F);
    handover.setConsumed();
    for (int i = 0; i < 4; ++i) {
        handover.push(oneBin(5, -10).data(), kSize);
        handover.push(oneBin(7, -30).data(), kSize);
        ASSERT_TRUE(handover.take(frame));
        EXPECT_FALSE(handover.take(frame));
        EXPECT_EQ(frame.levelsDb[5], -72.0F);
        EXPECT_EQ(frame.levelsDb[7], -30.0F);
    }
}

TEST(SpectrumHandover, framesOfAnotherSizeAreDroppedAndNewOnesArrive) {
    View view;
    ASSERT_TRUE(view.show(oneBin(5, -10)));
    const std::vector<float> big(4097, -3.0F);
    view.handover.push(big.data(), 8192); // no room prepared
    SpectrumFrame unfitting;
    EXPECT_FALSE(view.handover.take(unfitting));
    view.handover.push(silence().data(), kSize);
    view.handover.prepare(8192);
    EXPECT_FALSE(view.model.receive(view.handover)) << "lost with the change";
    for (int i = 0; i < 12; ++i) { // the view has the old size at first
        if (i == 6) view.model.setFormat(kRate, 8192);
        view.handover.push(big.data(), 8192);
        EXPECT_EQ(view.model.receive(view.handover), i >= 6);
        EXPECT_EQ(view.model.frame().db[5], i < 6 ? -10.0F : -3.0F);
    }
    ASSERT_EQ(view.model.frame().db.size(), 4097U);
    EXPECT_EQ(view.model.frame().db[4096], -3.0F);
}

TEST(SpectrumHandover, neverShowsHalfAFrame) {
    SpectrumHandover handover;
    handover.setVisible(true);
    handover.setConsumed();
    handover.prepare(kSize);
    std::atomic<bool> done{false};
    std::thread writer([&] {
        const int sizes[] = {kSize, 512};
        for (int i = 0; i < 20000; ++i) {
            if (i % 500 == 0) handover.prepare(sizes[i / 500 % 2]);
            const int size = sizes[i / 500 % 2];
            const std::vector<float> levels(static_cast<std::size_t>(size / 2 + 1),
                                            -static_cast<float>(i % 70));
            handover.push(levels.data(), size);
        }
        done = true;
    });
    SpectrumFrame frame;
    int frames = 0;
    for (bool last = false; !last;) {
        last = done; // one more look afterwards: there is always a frame in the end
        while (handover.take(frame)) {
            ++frames;
            const auto bins = frame.levelsDb.begin() + SpectrumFrame::numBins(frame.fftSize);
            ASSERT_EQ(std::count(frame.levelsDb.begin(), bins, frame.levelsDb[0]),
                      SpectrumFrame::numBins(frame.fftSize));
        }
    }
    writer.join();
    EXPECT_GT(frames, 0);
}

TEST(SpectrumModel, makesOneStepForEach25Milliseconds) {
    View view;
    const std::pair<double, int> calls[] = {{24, 0},  {1.5, 1},   {24, 0}, {0.5, 1},
                                            {100, 4}, {10000, 8}, {20, 0}, {-5, 0}};
    for (const auto& [ms, steps] : calls)
        EXPECT_EQ(view.model.advance(ms), steps) << ms;
    EXPECT_EQ(SpectrumModel().advance(100), 0);
}

TEST(SpectrumModel, lineApproachesTheFrame) {
    View view;
    view.show(oneBin(100, -12));
    view.steps(2);
    EXPECT_FLOAT_EQ(view.model.smoothed().db[100], -51 + 39 * 0.35F);
    EXPECT_FLOAT_EQ(view.model.peaks().db[100], -12);
    EXPECT_DOUBLE_EQ(view.model.highestHz(), 100 * kBinHz);
    view.show(oneBin(100, 3));
    const float before = view.model.smoothed().db[100];
    view.steps(1);
    EXPECT_FLOAT_EQ(view.model.smoothed().db[100], before + (3 - before) * 0.85F);
    view.model.clear();
    view.steps(1);
    EXPECT_EQ(view.model.highestHz(), 20.0) << "nothing is loudest";
}

TEST(SpectrumModel, peaksStandThenFallAsSet) {
    const std::pair<float, int> cases[] = {
        {0, 9000}, {12, 2000}, {24, 2000}, {36, 1250}, {48, 500}};
    for (const auto& [reset, holdMs] : cases) {
        View view;
        view.model.setPeakReset(reset);
        view.show(oneBin(50, -6));
        view.steps(1);
        view.show(silence());
        view.steps(holdMs / 25);
        EXPECT_FLOAT_EQ(view.model.peaks().db[50], -6) << reset;
        view.steps(4); // 100 ms
        EXPECT_NEAR(view.model.peaks().db[50], -6 - reset * 0.1F, 1e-3) << reset;
        view.steps(400);
        EXPECT_GE(view.model.peaks().db[50], reset == 0 ? -6.0F : -72.0F) << reset;
    }
}

TEST(SpectrumRange, takesTheHighestOrTheSumOfPowers) {
    std::vector<float> db(1025, -72.0F);
    db[10] = db[11] = -20;
    db[20] = -10;
    const auto mag = AnalyzeMode::magnitude;
    const auto sum = AnalyzeMode::energy;
    const struct {
        AnalyzeMode mode;
        double from, to, db;
    } cases[] = {{mag, 100, 200, -20}, // without the bin of the upper edge
                 {mag, 100, 210, -10},
                 {mag, 205, 205, -10},
                 {mag, 1e9, 2e9, -72},
                 {mag, -50, -10, -72},
                 {sum, 100, 120, -20 + 3.0103},
                 {sum, 300, 9000, -72},
                 {sum, 100, 210, 10 * std::log10(0.12)}};
    for (const auto& c : cases)
        EXPECT_NEAR(analyzeRange(c.mode, c.from, c.to, {db, 10.0}), c.db, 1e-4) << c.to;
}

TEST(SpectrumBands, edgesShareTheRangeEvenlyAndGroupsShowTheirLoudest) {
    View view;
    view.model.setLine(false);
    for (const int count : {8, 16, 32, 64, 128}) {
        view.model.setNumBands(count);
        const auto shown = view.model.bands().shown();
        ASSERT_EQ(static_cast<int>(shown.size()), count);
        for (std::size_t k = 0; k < shown.size(); ++k) {
            EXPECT_NEAR(shown[k].lowHz, 20 * std::pow(1200.0, static_cast<double>(k) / count),
                        0.01);
            EXPECT_EQ(shown[k].lowHz, k == 0 ? 20.0F : shown[k - 1].highHz);
        }
        EXPECT_EQ(shown.back().highHz, 24000.0F);
    }

    // Band 100 of 128 and the bin in its middle.
    const SpectrumBand& narrow = view.model.bands().bands()[100];
    const double hz = std::sqrt(double{narrow.lowHz} * double{narrow.highHz});
    view.show(oneBin(static_cast<std::size_t>(hz / kBinHz), -12));
    view.steps(2);
    const float value = -72 + 60 * (0.65F + 0.35F * 0.65F);
    view.show(silence());
    view.steps(1);
    const float fallen = value + (-72 - value) * 0.15F;
    for (const int count : {128, 64, 8}) { // also what was gathered before is grouped
        view.model.setNumBands(count);
        const auto group = static_cast<std::size_t>(100 / (128 / count));
        const SpectrumBand& band = view.model.bands().shown()[group];
        EXPECT_NEAR(band.value, fallen, 1e-3) << count;
        EXPECT_EQ(band.peak, -12.0F) << count;
        EXPECT_EQ(view.model.bands().shown()[group - 1].peak, -72.0F) << count;
    }
}

TEST(SpectrumScale, positionAndFrequencyAreInverse) {
    for (const bool linear : {false, true})
        for (const double rate : {1000.0, 44100.0, 1536000.0}) {
            FrequencyScale scale;
            scale.setSampleRate(rate);
            scale.setWidth(731);
            scale.setLinear(linear);
            EXPECT_NEAR(scale.frequencyAt(0), 20, 1e-9);
            EXPECT_NEAR(scale.frequencyAt(731), rate / 2, rate * 1e-12);
            EXPECT_NEAR(scale.frequencyAt(365.5), linear ? 10 + rate / 4 : std::sqrt(10 * rate),
                        1e-6);
            for (double x = 0; x <= 731; x += 7.3)
                EXPECT_NEAR(scale.positionOf(scale.frequencyAt(x)), x, 1e-9);
            EXPECT_EQ(scale.positionOf(3), 0);
        }
    EXPECT_EQ(levelPosition(40, 10, 210), 10.0F);
    EXPECT_NEAR(levelPosition(-31.5F, 10, 210), 110, 1e-3);
    EXPECT_EQ(levelPosition(-72, 10, 210), 210.0F);
}

TEST(SpectrumWaterfall, keepsEightyRowsNewestFirst) {
    View view;
    view.model.setWaterfall(true);
    const auto& waterfall = view.model.waterfall();
    std::vector<float> tops; // what the row of each step shows of the loud column
    const std::size_t column = 120;
    const double hz = 20 * std::pow(1200.0, 120.5 / 160);
    for (int step = 0; step < 85; ++step) {
        auto levels = silence();
        std::fill_n(levels.begin() + static_cast<long>(hz / kBinHz) - 8, 16,
                    static_cast<float>(step % 7) * -5);
        view.show(levels);
        view.steps(1);
        tops.push_back(waterfall.row(0)[column]);
        EXPECT_LT(tops.back(), 210.0F);
    }
    for (int age = 0; age < 80; ++age)
        EXPECT_EQ(waterfall.row(age)[column], tops[static_cast<std::size_t>(84 - age)]) << age;
    view.model.setLinearScale(true);
    EXPECT_EQ(waterfall.row(0)[column], 210.0F) << "cleared";
}

TEST(SpectrumWaterfall, movesFastUpSlowlyDownAndSmoothlyBetweenBins) {
    View view;
    view.model.setWaterfall(true);
    view.show(std::vector<float>(1025, -12.0F));
    view.steps(1);
    const auto history = view.model.waterfall().history();
    for (const float level : history)
        EXPECT_FLOAT_EQ(level, -72 + 60 * 0.85F);
    view.show(silence());
    view.steps(1);
    for (const float level : history)
        EXPECT_FLOAT_EQ(level, -21 + (-72 + 21) * 0.35F);

    // The lowest bins are many columns wide. One loud bin makes one smooth hill.
    view.model.clear();
    view.show(oneBin(3, -12)); // 70 to 94 Hz
    view.steps(60);
    const auto top = std::max_element(history.begin(), history.end());
    EXPECT_NEAR(*top, -12, 0.1);
    EXPECT_TRUE(std::is_sorted(history.begin(), top + 1));
    EXPECT_TRUE(std::is_sorted(top, history.end(), std::greater<>()));
    const double topHz =
        view.model.scale().frequencyAt(static_cast<double>(top - history.begin()) * 5);
    EXPECT_NEAR(topHz, 3.75 * kBinHz, 1.25 * kBinHz);
}

TEST(NoteAt, isTheNearestSemitone) {
    const std::pair<double, const char*> notes[] = {
        {440, "A3"}, {500, "B3"}, {510, "C4"}, {277.18, "C#3"}, {20, "D#-1"}};
    for (const auto& [hz, name] : notes) {
        char text[16];
        Vardo::formatNoteAt(hz, text, sizeof text);
        EXPECT_STREQ(text, name);
    }
    for (int note = 0; note < 130; ++note)
        EXPECT_EQ(Vardo::noteAt(440 * std::exp2((note - 69) / 12.0)), note);
    EXPECT_EQ(Vardo::noteAt(std::nan("")), Vardo::noteAt(-1));
}

} // namespace
} // namespace Orvel

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

TEST(SpectrumHandover, givesTheNewestFrameOnceAndNoneBelowTheLowestLevel) {
    SpectrumHandover handover;
    SpectrumFrame frame;
    handover.prepare(kSize);
    handover.push(oneBin(5, 0).data(), kSize);
    EXPECT_FALSE(handover.take(frame)) << "not visible";
    handover.setVisible(true);
    handover.setConsumed();
    handover.push(oneBin(5, -10).data(), kSize);
    handover.push(oneBin(6, -20).data(), kSize);
    ASSERT_TRUE(handover.take(frame));
    EXPECT_EQ(frame.fftSize, kSize);
    EXPECT_EQ(frame.levelsDb[5], -72.0F);
    EXPECT_EQ(frame.levelsDb[6], -20.0F);
    EXPECT_FALSE(handover.take(frame));
    EXPECT_EQ(frame.levelsDb[6], -20.0F);
}

TEST(SpectrumHandover, mergesUntilTheFirstPaint) {
    SpectrumHandover handover;
    SpectrumFrame frame;
    handover.prepare(kSize);
    handover.setVisible(true);
    handover.push(oneBin(5, -10).data(), kSize);
    ASSERT_TRUE(handover.take(frame));
    handover.push(oneBin(6, -20).data(), kSize);
    ASSERT_TRUE(handover.take(frame));
    EXPECT_EQ(frame.levelsDb[5], -10.0F);
    EXPECT_EQ(frame.levelsDb[6], -20.0F);
    handover.setConsumed();
    for (int i = 0; i < 4; ++i) {
        handover.push(oneBin(7, -30).data(), kSize);
        ASSERT_TRUE(handover.take(frame));
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
    int received = 0;
    for (int i = 0; i < 6; ++i) {
        view.handover.push(big.data(), 8192);
        EXPECT_FALSE(view.model.receive(view.handover)) << "the view has still the old size";
    }
    EXPECT_EQ(view.model.frame().db[5], -10.0F);
    view.model.setFormat(kRate, 8192);
    for (int i = 0; i < 6; ++i) {
        view.handover.push(big.data(), 8192);
        received += view.model.receive(view.handover);
    }
    EXPECT_EQ(received, 6);
    EXPECT_EQ(view.model.frame().db.size(), 4097U);
    EXPECT_EQ(view.model.frame().db[4096], -3.0F);

    view.handover.prepare(kSize);
    view.model.setFormat(kRate, kSize);
    EXPECT_TRUE(view.show(oneBin(9, -1)));
    EXPECT_EQ(view.model.frame().db.size(), 1025U);
    EXPECT_EQ(view.model.frame().db[9], -1.0F);
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
    EXPECT_EQ(view.model.advance(24), 0);
    EXPECT_EQ(view.model.advance(1.5), 1);
    EXPECT_EQ(view.model.advance(24), 0) << "half a millisecond was left";
    EXPECT_EQ(view.model.advance(0.5), 1);
    EXPECT_EQ(view.model.advance(100), 4);
    EXPECT_EQ(view.model.advance(10000), 8);
    EXPECT_EQ(view.model.advance(20), 0) << "what was missed is not made up for";
    EXPECT_EQ(view.model.advance(-5), 0);
    SpectrumModel unset;
    EXPECT_EQ(unset.advance(100), 0);
}

TEST(SpectrumModel, lineApproachesTheFrame) {
    View view;
    view.show(oneBin(100, -12));
    view.steps(1);
    EXPECT_FLOAT_EQ(view.model.smoothed().db[100], -72 + 60 * 0.35F);
    EXPECT_FLOAT_EQ(view.model.peaks().db[100], -12);
    view.steps(1);
    EXPECT_FLOAT_EQ(view.model.smoothed().db[100], -51 + 39 * 0.35F);
    EXPECT_FLOAT_EQ(view.model.highestDb(), view.model.smoothed().db[100]);
    EXPECT_DOUBLE_EQ(view.model.highestHz(), 100 * kBinHz);
    view.show(oneBin(100, 3));
    const float before = view.model.smoothed().db[100];
    view.steps(1);
    EXPECT_FLOAT_EQ(view.model.smoothed().db[100], before + (3 - before) * 0.85F);
    EXPECT_EQ(view.model.smoothed().db[99], -72.0F);

    view.model.clear();
    EXPECT_EQ(view.model.highestDb(), -72.0F);
    view.steps(1);
    EXPECT_EQ(view.model.highestHz(), 20.0) << "nothing is loudest";
}

TEST(SpectrumModel, peaksStandThenFallAsSet) {
    struct Case {
        float reset;
        float holdMs;
    };
    for (const Case& c : {Case{12, 2000}, Case{24, 2000}, Case{36, 1250}, Case{48, 500}}) {
        View view;
        view.model.setPeakReset(c.reset);
        EXPECT_FLOAT_EQ(view.model.peakHold().holdMs(), c.holdMs);
        view.show(oneBin(50, -6));
        view.steps(1);
        view.show(silence());
        view.steps(static_cast<int>(c.holdMs / 25));
        EXPECT_FLOAT_EQ(view.model.peaks().db[50], -6) << c.reset;
        view.steps(4); // 100 ms
        EXPECT_NEAR(view.model.peaks().db[50], -6 - c.reset * 0.1F, 1e-3) << c.reset;
        view.steps(400);
        EXPECT_GE(view.model.peaks().db[50], -72.0F);
    }
    View view;
    view.model.setPeakReset(0);
    view.show(oneBin(50, -6));
    view.steps(1);
    view.show(silence());
    view.steps(500);
    EXPECT_EQ(view.model.peaks().db[50], -6.0F) << "held";
}

TEST(SpectrumRange, takesTheHighestOrTheSumOfPowers) {
    std::vector<float> db(1025, -72.0F);
    db[10] = -20;
    db[11] = -20;
    db[20] = -10;
    const SpectrumLevels levels{db, 10.0};
    const auto magnitude = [&](double from, double to) {
        return analyzeRange(AnalyzeMode::magnitude, from, to, levels);
    };
    const auto energy = [&](double from, double to) {
        return analyzeRange(AnalyzeMode::energy, from, to, levels);
    };
    EXPECT_EQ(magnitude(100, 200), -20.0F) << "without the bin of the upper edge";
    EXPECT_EQ(magnitude(100, 201), -20.0F);
    EXPECT_EQ(magnitude(100, 210), -10.0F);
    EXPECT_EQ(magnitude(205, 205), -10.0F) << "at least one bin";
    EXPECT_EQ(magnitude(1e9, 2e9), -72.0F);
    EXPECT_EQ(magnitude(-50, -10), -72.0F);
    EXPECT_NEAR(energy(100, 120), -20 + 3.0103, 1e-4);
    EXPECT_NEAR(energy(100, 210), 10 * std::log10(0.01 + 0.01 + 0.1), 1e-4);
    EXPECT_EQ(energy(300, 9000), -72.0F) << "silence adds up to nothing";
    EXPECT_EQ(energy(50, 50), -72.0F);
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
    for (const int count : {128, 64, 8}) {
        view.model.setNumBands(count);
        const auto group = static_cast<std::size_t>(100 / (128 / count));
        const SpectrumBand& band = view.model.bands().shown()[group];
        EXPECT_NEAR(band.value, fallen, 1e-3) << count;
        EXPECT_EQ(band.peak, -12.0F) << count;
        EXPECT_EQ(view.model.bands().shown()[group - 1].peak, -72.0F) << count;
        view.model.advance(25);
        EXPECT_DOUBLE_EQ(view.model.highestHz(), (double{band.lowHz} + double{band.highHz}) / 2);
        view.model.setLine(true);
        view.model.setLine(false);
        EXPECT_EQ(view.model.bands().shown()[group].peak, -72.0F) << "cleared";
        view.show(oneBin(static_cast<std::size_t>(hz / kBinHz), -12));
        view.steps(2);
        view.show(silence());
        view.steps(1);
    }
}

TEST(SpectrumScale, positionAndFrequencyAreInverse) {
    for (const bool linear : {false, true}) {
        for (const double rate : {1000.0, 44100.0, 1536000.0}) {
            FrequencyScale scale;
            scale.setSampleRate(rate);
            scale.setWidth(731);
            scale.setLinear(linear);
            EXPECT_NEAR(scale.frequencyAt(0), 20, 1e-9);
            EXPECT_NEAR(scale.frequencyAt(731), rate / 2, rate * 1e-12);
            for (double x = 0; x <= 731; x += 7.3)
                EXPECT_NEAR(scale.positionOf(scale.frequencyAt(x)), x, 1e-9);
            EXPECT_EQ(scale.positionOf(3), 0);
        }
    }
    FrequencyScale scale; // 24 kHz
    scale.setWidth(100);
    EXPECT_NEAR(scale.frequencyAt(50), std::sqrt(20.0 * 24000), 1e-6);
    EXPECT_EQ(levelPosition(9, 10, 210), 10.0F);
    EXPECT_EQ(levelPosition(40, 10, 210), 10.0F);
    EXPECT_EQ(levelPosition(-72, 10, 210), 210.0F);
    EXPECT_NEAR(levelPosition(-31.5F, 10, 210), 110, 1e-3);
    EXPECT_EQ(raisedCosine(0), 0.0F);
    EXPECT_EQ(raisedCosine(1), 1.0F);
    EXPECT_NEAR(raisedCosine(0.25F), 0.5 - std::sqrt(0.125), 1e-4);
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
        EXPECT_EQ(waterfall.row(0)[10], 210.0F);
    }
    for (int age = 0; age < 80; ++age)
        EXPECT_EQ(waterfall.row(age)[column], tops[static_cast<std::size_t>(84 - age)]) << age;

    view.model.setLinearScale(true);
    for (int age = 0; age < 80; ++age)
        EXPECT_EQ(waterfall.row(age)[column], 210.0F) << "cleared";
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
    for (std::size_t c = 1; c < history.size(); ++c)
        EXPECT_LT(std::abs(history[c] - history[c - 1]), 20.0F) << c;
    const double topHz =
        view.model.scale().frequencyAt(static_cast<double>(top - history.begin()) * 5);
    EXPECT_GT(topHz, 2.5 * kBinHz);
    EXPECT_LT(topHz, 5 * kBinHz);
}

TEST(NoteAt, isTheNearestSemitone) {
    EXPECT_EQ(Vardo::noteAt(440), 69);
    EXPECT_EQ(Vardo::noteAt(261.626), 60);
    EXPECT_EQ(Vardo::noteAt(0), Vardo::noteAt(1));
    EXPECT_EQ(Vardo::noteAt(std::nan("")), Vardo::noteAt(-1));
    const auto name = [](double hz) {
        char text[16];
        Vardo::formatNoteAt(hz, text, sizeof text);
        return std::string(text);
    };
    EXPECT_EQ(name(440), "A3");
    EXPECT_EQ(name(261.626), "C3");
    EXPECT_EQ(name(500), "B3");
    EXPECT_EQ(name(510), "C4");
    EXPECT_EQ(name(277.18), "C#3");
    EXPECT_EQ(name(20), "D#-1");
    EXPECT_EQ(name(27.5), "A-1");
    for (int note = 0; note < 130; ++note) {
        int parsed = -1;
        ASSERT_TRUE(Vardo::parseNote(name(440 * std::exp2((note - 69) / 12.0)).c_str(), parsed));
        EXPECT_EQ(parsed, note);
    }
}

} // namespace
} // namespace Orvel

// The spectrum view: audio, parameters and the mouse in; pixels, texts and parameters out.
#include "views/Spectrum.h"
#include "ViewsTest.h"
#include "WaterfallReference.h"
#include "views/NoteName.h"

#include <gmock/gmock.h>

namespace Sorel {
namespace {

using orvel_test::Stereo;

constexpr int kSecond = 48000;
constexpr CRect kPage{145.0, 56.0, 990.0, 431.0};

class SpectrumTest : public ViewsTest {
  protected:
    void open() {
        analyser_.setActivePage(1);
        show([&](CFrame& frame) {
            view_ = new CSpectrum(kPage, &analyser_);
            frame.addView(view_);
        });
        for (const Orvel::ParameterId id : CSpectrum::parameters())
            editor_->addControlToParameter(analyser_.parameter(id), view_);
    }
    void playTone(double hz, double amplitude, double seconds = 1.0) {
        const auto samples =
            orvel_test::sine(static_cast<int>(seconds * kSecond), hz, kRate, amplitude);
        play({samples, samples});
    }
    void playNoise(double seconds) {
        play(orvel_test::stereoNoise(static_cast<int>(seconds * kSecond), 5, 0.3F));
    }
    void playSilence(double seconds) {
        const std::vector<float> silence(static_cast<std::size_t>(seconds * kSecond));
        play({silence, silence});
    }
    /// Where the gold line stands highest: the middle of its columns, and their row.
    CPoint highestGold() {
        double top = 1e9;
        double first = 0;
        double last = 0;
        const std::unique_ptr<IOSBitmap> picture = window().picture();
        for (int x = 190; x < 989; ++x)
            for (int y = 60; y < 417; ++y) {
                const std::uint8_t* p = picture->getPixels() + y * picture->stride + 4 * x;
                if (p[2] < 170 || p[2] < 2 * p[0]) continue;
                if (y < top) top = y, first = x;
                if (y == top) last = x;
                break;
            }
        return {(first + last) * 0.5, top};
    }

    /// What is shown in there, row by row.
    std::vector<std::uint8_t> shown(const CRect& r) {
        const std::unique_ptr<IOSBitmap> picture = window().picture();
        std::vector<std::uint8_t> bytes;
        for (int y = int(r.top); y < int(r.bottom); ++y) {
            const std::uint8_t* row = picture->getPixels() + y * picture->stride;
            bytes.insert(bytes.end(), row + 4 * int(r.left), row + 4 * int(r.right));
        }
        return bytes;
    }

    CSpectrum* view_ = nullptr;
};

TEST_F(SpectrumTest, ATonePeaksAtItsFrequencyAndLevel) {
    open();
    for (const int size : {3, 2, 1, 0})
        for (const bool linear : {false, true}) {
            setPlain(Orvel::kSpectrumFFTSize, size);
            setPlain(Orvel::kSpectrumLinearFrequencyScale, linear ? 1 : 0);
            for (const int bin : {4, 120, 600}) { // of the smallest size: a bin's centre in all
                const double hz = bin * kRate / 2048;
                if (linear && bin < 120) continue; // beside the edge
                playTone(hz, 0.5, 1.5);            // -6.02 dB
                // The axis by its definition.
                const double part =
                    linear ? (hz - 20) / (24000 - 20) : std::log(hz / 20) / std::log(24000.0 / 20);
                const CPoint gold = highestGold();
                EXPECT_NEAR(gold.x, kPage.left + part * 845, 1.5) << hz << " size " << size;
                EXPECT_NEAR(gold.y, kPage.top + 375 * (9 + 6.02) / 81, 2.0) << hz;
            }
        }
    EXPECT_STREQ(view_->highestText(), "Highest: -6.0dB @ 14062.5Hz (#G6)");
    keep("spectrum-tone");
}

TEST_F(SpectrumTest, TheHighestStandsStillAndNothingCrossesIt) {
    constexpr CRect room{800.0, 56.0, 990.0, 76.0};
    constexpr CRect heading{800.0, 56.0, 846.0, 76.0};
    constexpr CRect at{886.0, 56.0, 900.0, 76.0};
    open();
    playTone(4 * kRate / 2048, 0.5); // -6.0dB @ 93.8Hz
    const auto first = shown(room);
    const std::vector words{shown(heading), shown(at)};
    playTone(600 * kRate / 2048, 0.05); // -26.0dB @ 14062.5Hz
    playSilence(0.1);
    const auto text = shown(room);
    EXPECT_NE(text, first);
    EXPECT_EQ((std::vector{shown(heading), shown(at)}), words);
    setPlain(Orvel::kSpectrumFreeze, 1);
    view_->setDirty(true); // all that changed had been asked for
    idle();
    EXPECT_EQ(shown(room), text);
    for (const CPoint mouse : {CPoint{890.0, 65.0}, CPoint{700.0, 60.0}, CPoint{980.0, 90.0}}) {
        window().moveMouse(mouse);
        idle();
        EXPECT_EQ(shown(room), text) << mouse.x;
    }
}

TEST_F(SpectrumTest, BarsHoldTheToneAndCapsStayAbove) {
    open();
    setPlain(Orvel::kSpectrumDrawLine, 0);
    for (const int index : {0, 3, 4}) {
        setPlain(Orvel::kSpectrumNumBands, index);
        ASSERT_EQ(view_->model().bands().shownCount(), 8 << index);
        playTone(600 * kRate / 2048, 0.5, 1.5);
        const double count = 8 << index;
        const double part = std::log(14062.5 / 20) / std::log(24000.0 / 20);
        const double bar = std::floor(part * count);
        const CPoint cap = highestGold(); // 2 px high, its upper row at the tone's level
        EXPECT_NEAR(cap.x, kPage.left + (bar + 0.5) * 845 / count, 1.5);
        EXPECT_NEAR(cap.y, kPage.top + std::floor(375 * (9 + 6.02) / 81), 1.0);
    }
    keep("spectrum-tone-bars");

    // Bands that share a pixel are one bar, which reads as the loudest of them.
    setPlain(Orvel::kSpectrumLinearFrequencyScale, 1);
    playTone(19 * kRate / 16384, 0.5);
    SpectrumBars bars;
    ChangedRows changes;
    bars.update(view_->model(), kPage, changes);
    EXPECT_NEAR(bars.levelAt(kPage.left + 2.0), -6.02F, 0.1F);
    EXPECT_LT(bars.levelAt(kPage.left + 40.0), -50.0F);
}

TEST_F(SpectrumTest, SilenceAndFreezeRepaintNothing) {
    open();
    // Peaks fall as fast as they can.
    setPlain(Orvel::kSpectrumPeakReset, 48);
    for (const int mode : {0, 1, 2}) {
        setPlain(Orvel::kSpectrumDrawLine, mode == 1 ? 1 : 0);
        setPlain(Orvel::kSpectrumDrawWaterfall, mode == 2 ? 1 : 0);
        window().takeShownPixels();
        playNoise(0.5);
        EXPECT_GT(window().takeShownPixels(), 10U * 845 * 375) << mode;
        setPlain(Orvel::kSpectrumFreeze, 1);
        playNoise(0.1);
        window().takeShownPixels();
        playNoise(0.5);
        EXPECT_EQ(window().takeShownPixels(), 0U) << mode << " frozen";
        setPlain(Orvel::kSpectrumFreeze, 0);
        playSilence(6);
        window().takeShownPixels();
        playSilence(0.5);
        EXPECT_EQ(window().takeShownPixels(), 0U) << mode << " silent";
    }
    setPlain(Orvel::kSpectrumDrawWaterfall, 0);
    EXPECT_STREQ(view_->highestText(), "Highest: -72.0dB @ 20.0Hz (#D-3)");
}

TEST_F(SpectrumTest, ShownAgainItStartsFromTheFloor) {
    open();
    const auto loudest = [&] {
        const auto& peaks = view_->model().peaks().db;
        return *std::max_element(peaks.begin(), peaks.end());
    };
    playTone(1000, 0.5);
    EXPECT_GT(loudest(), -8.0F);
    view_->setVisible(false);
    EXPECT_FALSE(analyser_.display().spectra[0].isVisible());
    playTone(1000, 0.5);
    view_->setVisible(true);
    EXPECT_TRUE(analyser_.display().spectra[0].isVisible());
    EXPECT_EQ(loudest(), -72.0F);
    analyser_.setSampleRate(96000); // the view follows with the next tick
    idle(25);
    EXPECT_EQ(view_->model().fftSize(), 32768);
    EXPECT_EQ(view_->model().scale().highestHz(), 48000.0);
}

TEST_F(SpectrumTest, WhatIsFrozenStaysUntilItsFormChanges) {
    open();
    const auto levels = [&] {
        const Orvel::SpectrumModel& model = view_->model();
        const auto& row = model.waterfall().row(5);
        std::vector<float> all{row.begin(), row.end()};
        for (const auto& line : {model.smoothed().db, model.peaks().db})
            all.insert(all.end(), line.begin(), line.end());
        return all;
    };
    for (const bool waterfall : {false, true}) {
        setPlain(Orvel::kSpectrumDrawWaterfall, waterfall ? 1 : 0);
        playNoise(0.5);
        playSilence(0.2); // on the way down
        setPlain(Orvel::kSpectrumFreeze, 1);
        const std::vector<float> frozen = levels();
        setPlain(Orvel::kSpectrumAnalyzeMode, 1);
        setPlain(Orvel::kSpectrumDrawLine, 1); // as it was
        EXPECT_EQ(levels(), frozen) << waterfall;
        setPlain(Orvel::kSpectrumFFTSize, 1);
        view_->setVisible(false);
        view_->setVisible(true);
        wait(100);
        EXPECT_EQ(levels(), frozen) << waterfall;
        setPlain(Orvel::kSpectrumFreeze, 0);
        wait(50);
        EXPECT_EQ(view_->model().fftSize(), 4096);
        setPlain(Orvel::kSpectrumFFTSize, 3);
    }
    setPlain(Orvel::kSpectrumDrawWaterfall, 0);
    playTone(1000, 0.5);
    setPlain(Orvel::kSpectrumFreeze, 1);
    setPlain(Orvel::kSpectrumDrawLine, 0);
    const auto bands = view_->model().bands().shown();
    EXPECT_TRUE(std::any_of(bands.begin(), bands.end(),
                            [](const auto& band) { return band.value > -10.0F; }));
}

TEST_F(SpectrumTest, DraggingTurnsTheWaterfall) {
    open();
    CPoint menuAt;
    view_->setContextMenu([&](CPoint where) { menuAt = where; });
    setPlain(Orvel::kSpectrumRotate, 0.5);
    window().press({400.0, 200.0}); // in the line there is nothing to turn
    window().moveMouse({500.0, 200.0});
    window().releaseButtons({500.0, 200.0});
    EXPECT_FLOAT_EQ(analyser_.parameter(Orvel::kSpectrumRotate).getValue(), 0.5F);

    setPlain(Orvel::kSpectrumDrawWaterfall, 1);
    idle();
    window().takeShownPixels();
    window().press({400.0, 200.0});
    EXPECT_EQ(window().cursor(), CursorKind::kHorizontal);
    window().moveMouse({500.0, 230.0});
    EXPECT_NEAR(analyser_.parameter(Orvel::kSpectrumRotate).getValue(), 0.85, 1e-4);
    idle();
    EXPECT_GT(window().takeShownPixels(), 0U);
    window().moveMouse({900.0, 230.0});
    EXPECT_FLOAT_EQ(analyser_.parameter(Orvel::kSpectrumRotate).getValue(), 1.0F);
    window().press({900.0, 230.0}, Buttons::kRight); // neither a menu nor a second drag
    window().moveMouse({500.0, 230.0});
    EXPECT_NEAR(analyser_.parameter(Orvel::kSpectrumRotate).getValue(), 0.85, 1e-4);
    window().moveMouse({900.0, 230.0});
    window().releaseButtons({900.0, 230.0});
    EXPECT_EQ(window().cursor(), CursorKind::kArrow);
    window().moveMouse({200.0, 230.0});
    EXPECT_FLOAT_EQ(analyser_.parameter(Orvel::kSpectrumRotate).getValue(), 1.0F);
    window().click({300.0, 200.0}, Buttons::kRight);
    EXPECT_EQ(menuAt, (CPoint{300.0, 200.0}));
}

TEST_F(SpectrumTest, TheProjectorStandsAtItsFrequency) {
    open();
    const std::uint32_t ground = pixel(145 + 400, 300);
    setPlain(Orvel::kSpectrumProjectorFrequency, Orvel::projectorPosition(574.0, kRate));
    idle();
    EXPECT_NEAR(view_->projectorHz(), 574.0, 0.01); // x = 400 on the page
    EXPECT_GT(pixel(145 + 400, 300) >> 16, 200U);
    setPlain(Orvel::kSpectrumProjectorFrequency, 0);
    idle();
    EXPECT_EQ(pixel(145 + 400, 300), ground);
    EXPECT_LT(pixel(145, 300) >> 16, 60U); // parked
}

TEST_F(SpectrumTest, WithoutAnAnalyserTheGridAlone) {
    show([&](CFrame& frame) { frame.addView(new CSpectrum(kPage, nullptr)); });
    const std::uint32_t ground = pixel(300, 300);
    EXPECT_GT(pixel(145 + 48, 300) & 0xff, ground & 0xff); // 30 Hz
    EXPECT_GT(pixel(300, 97) & 0xff, ground & 0xff);       // 0 dB
}

/// The painter beside polygons: the same picture but for rounding and how line ends are cut.
TEST(WaterfallPainter, LooksAsPolygonsDo) {
    Orvel::SpectrumWaterfall rows;
    rows.setHeights(0.0F, 375.0F);
    Orvel::FrequencyScale scale;
    scale.setWidth(845.0);
    std::vector<float> levels(8193);
    for (int row = 0; row < 100; ++row) { // hills that travel, and one steep ridge
        for (std::size_t i = 0; i < levels.size(); ++i)
            levels[i] = -36.0F +
                        24.0F * std::sin(std::log(float(i) + 1.0F) * 3.0F + float(row) * 0.1F) +
                        (i / 7 == 60 ? 20.0F : 0.0F);
        rows.step({levels, 48000.0 / 16384}, Orvel::AnalyzeMode::magnitude, scale);
    }
    CBitmap fast(1000, 545);
    CBitmap slow(1000, 545);
    SpectrumWaterfallPainter painter;
    for (const double rotate : {0.0, 0.65, 1.0}) {
        const WaterfallProjection projection(kPage, rotate);
        for (CBitmap* picture : {&fast, &slow})
            picture->renderer().clear({34, 37, 59, 255});
        painter.paint(fast.surface(), kPage, rows, 375.0, projection);
        paintWaterfallAsPolygons(slow.context(), rows, 375.0, projection);
        double sum = 0;
        int far = 0;
        const int bytes = fast.surface().byteSize;
        for (int i = 0; i < bytes; ++i) {
            const int difference =
                std::abs(fast.surface().getPixels()[i] - slow.surface().getPixels()[i]);
            sum += difference;
            far += difference > 48 ? 1 : 0;
        }
        EXPECT_LT(sum / bytes, 0.3) << rotate;
        EXPECT_LT(far, bytes / 5000) << rotate;
        // Nothing outside the clip: what is left when the inside is wiped.
        fast.renderer().clear({0, 0, 0, 0});
        painter.paint(fast.surface(), {400.0, 150.0, 500.0, 250.0}, rows, 375.0, projection);
        for (int y = 150; y < 250; ++y)
            std::fill_n(fast.surface().getPixels() + y * fast.surface().stride + 1600, 400, 0);
        EXPECT_EQ(std::count(fast.surface().getPixels(), fast.surface().getPixels() + bytes, 0),
                  bytes)
            << rotate;
    }
}

TEST(NoteName, OctavesAndTheirEdges) {
    const std::pair<double, const char*> notes[] = {
        {261.626, "C1"}, {46.9, "#F-2"}, {470.0, "B1"}, {500.0, "B1"}, {523.26, "C2"}};
    for (const auto& [hz, name] : notes)
        EXPECT_EQ(noteName(hz), name);
    EXPECT_EQ(noteName(0.0), noteName(1.0));
}

TEST(FrequencyGrid, OctavesOnceEach) {
    const auto grid = [](double rate, bool linear) {
        Orvel::FrequencyScale scale;
        scale.setSampleRate(rate);
        scale.setWidth(845.0);
        scale.setLinear(linear);
        FrequencyGrid made;
        made.place(scale);
        std::string text;
        for (const FrequencyLine& line : made.lines())
            text += line.text + " ";
        return text;
    };
    EXPECT_EQ(grid(48000, true), "1000 2000 4000 8000 16000 ");
    EXPECT_EQ(grid(96000, false), "30 61 122 250 500 1000 2000 4000 8000 16000 32000 ");
    EXPECT_EQ(grid(8000, false), "30 61 122 250 500 1000 2000 "); // nothing at the edge
}

} // namespace
} // namespace Sorel

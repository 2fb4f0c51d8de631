// The whole window: its pages, and the ways it opens and closes.
#include "Instrument.h"
#include "frame/IdleList.h"
#include "frame/StateChunk.h"

#include <gtest/gtest.h>

#include <atomic>
#include <iterator>
#include <thread>

namespace Orvel {
namespace {

using namespace Sorel;

class EditorTest : public ::testing::Test {
  protected:
    EditorTest() { instrument_.open(); }
    ~EditorTest() override {
        instrument_.editor().close();
        Sorel::setPlatform(nullptr);
    }
    void showPage(int page) {
        instrument_.window().click({371.0 + 119.0 * page, 24.0});
        instrument_.idle(40);
    }

    Sorel::COffscreenPlatform desktop_;
    Instrument instrument_{desktop_};
};

TEST_F(EditorTest, AHostsStateBringsItsPageAlong) {
    void* chunk = nullptr;
    const int size = instrument_.analyser.getChunk(&chunk);
    const std::vector<std::byte> stereo = Vardo::withActivePage(chunk, size, 2);
    instrument_.analyser.setChunk(stereo.data(), static_cast<int>(stereo.size()));
    EXPECT_EQ(instrument_.analyser.activePage(), 2);
    instrument_.idle();
}

/// Views ask for the parts that change. Whatever they forget to ask for stays as it was.
TEST_F(EditorTest, APicturePaintedInPartsIsThatOfAFullPaint) {
    const auto pixels = [this] {
        const auto picture = instrument_.window().picture();
        return std::vector<std::uint8_t>(picture->getPixels(),
                                         picture->getPixels() + picture->byteSize);
    };
    const orvel_test::Stereo noise = orvel_test::stereoNoise(24000, 7, 0.9F);
    for (int page = 0; page < 3; ++page)
        for (int variant = 0; variant < 3; ++variant) {
            instrument_[kSpectrumDrawLine].setValue(variant == 1 ? 0.0F : 1.0F);
            instrument_[kSpectrumPeakReset].setValue(variant == 2 ? 0.0F : 48.0F);
            instrument_[kGlobalMeteringMode].setValue(variant == 0 ? 1.0F : 2.0F);
            showPage(page);
            for (int level = 0; level < 6; ++level) { // up and down, and silence in between
                orvel_test::Stereo part = noise;
                const float gain = level % 3 == 2 ? 0.0F : 0.9F / static_cast<float>(1 + level);
                for (std::vector<float>* side : {&part.left, &part.right})
                    for (float& sample : *side)
                        sample *= gain;
                instrument_.play(part);
                const auto inParts = pixels();
                CFrame& frame = *instrument_.editor().frame();
                frame.setDirty(true);
                frame.doIdle();
                const auto asAWhole = pixels();
                int worst = 0;
                for (std::size_t i = 0; i < inParts.size(); ++i)
                    worst = std::max(worst, std::abs(inParts[i] - asAWhole[i]));
                EXPECT_LE(worst, 1) << "page " << page << ", " << variant << ", part " << level;
            }
        }
}

TEST_F(EditorTest, TheTimeDialsFollowTheSyncMode) {
    constexpr CPoint kSyncDuration{150.0 + 232.0 + 144.0 + 36.0, 455.0 + 40.0};
    constexpr CPoint kVisibleTime{150.0 + 232.0 + 216.0 + 36.0, 455.0 + 40.0};
    EXPECT_FALSE(instrument_.window().wheel(kSyncDuration, 1.0F)); // free: nothing to set
    instrument_[kScopeSyncMode].setValue(3);                       // pitch
    instrument_.idle();
    instrument_.window().wheel(kSyncDuration, 1.0F);
    EXPECT_FLOAT_EQ(instrument_[kScopeSyncDurationPitch].getValue(), 61.0F);
    instrument_.window().wheel(kVisibleTime, -1.0F);
    EXPECT_FLOAT_EQ(instrument_[kScopeVisibleTimeMultiplier].getValue(), 3.0F);
    // The wheel over the picture works on the same parameter.
    instrument_.window().wheel({500.0, 200.0}, -1.0F);
    EXPECT_FLOAT_EQ(instrument_[kScopeVisibleTimeMultiplier].getValue(), 4.0F);
}

TEST_F(EditorTest, SilenceAndFreezeRepaintNothing) {
    const auto music = orvel_test::stereoNoise(48000, 7, 0.5F);
    for (int page = 0; page < COrvelScopeEditor::kNumPages; ++page) {
        showPage(page);
        instrument_.play(music);
        instrument_[kScopeFreeze].setValue(1);
        instrument_[kSpectrumFreeze].setValue(1);
        // Everything falls, the memory read-out settles, and then it is still.
        const orvel_test::Stereo silence{std::vector<float>(48000), std::vector<float>(48000)};
        for (int second = 0; second < 30; ++second)
            instrument_.play(silence);
        instrument_[kScopeFreeze].setValue(0);
        instrument_[kSpectrumFreeze].setValue(0);
        for (int second = 0; second < 20; ++second)
            instrument_.play(silence);
        instrument_.window().takeShownPixels();
        instrument_.play(silence);
        // The corner that shows the memory in use may move.
        EXPECT_LE(instrument_.window().takeShownPixels(), 4u * 137u * 42u) << "page " << page;
    }
}

TEST_F(EditorTest, ItOpensAndClosesAtAnyMomentAndTwiceInAProcess) {
    Instrument second(desktop_);
    second.open();
    COffscreenFrame& window = second.window();
    window.click({150.0, 24.0}); // the preset menu
    second.idle();
    second.editor().close();
    EXPECT_FALSE(second.editor().isOpen());
    instrument_.idle();

    for (int i = 0; i < 5; ++i) {
        second.open();
        second.window().click({186.0, 517.0}); // a value opened for typing
        second.window().type("-12");
        second.play(orvel_test::stereoNoise(2400, 3));
        second.editor().close();
        EXPECT_EQ(second[kGlobalInputGain].getValue(), 1.0F) << "what was typed is given up";
        second.play(orvel_test::stereoNoise(2400, 3)); // the engine goes on alone
    }
    Vardo::IdleList::instance().tick();
    EXPECT_TRUE(instrument_.editor().isOpen());
}

// For the thread sanitizer: audio, worker and window at once, while everything changes.
TEST_F(EditorTest, TheWindowWorksBesideTheAudioThreadAndTheWorker) {
    instrument_.analyser.setThreadedProcessing(true);
    std::atomic<bool> ended{false};
    std::thread audio([&] {
        const auto noise = orvel_test::stereoNoise(Instrument::kBlock, 11, 0.7F);
        for (int i = 0; i < 400; ++i)
            instrument_.player.block(noise, 0, Instrument::kBlock);
        ended = true;
    });
    constexpr ParameterId kChanging[] = {
        kScopeSyncMode,         kScopeTransientDetection, kScopeDeEsserMale,   kSpectrumDrawLine,
        kSpectrumDrawWaterfall, kSpectrumFFTSize,         kGlobalMeteringMode, kGlobalRMSLength};
    int pictures = 0;
    for (unsigned step = 0; !ended || step < 60; ++step) {
        instrument_.idle();
        pictures += instrument_.window().takeShownPixels() > 0;
        if (step % 5 == 0) instrument_.editor().setActivePage(static_cast<int>(step / 5 % 4));
        Vardo::IPluginParameter& parameter = instrument_[kChanging[step % std::size(kChanging)]];
        parameter.setNormalizedValue(static_cast<float>(step * 7 % 11) / 10.0F);
        if (step % 40 == 20) instrument_.analyser.setThreadedProcessing(step % 80 == 20);
        if (step % 50 == 30) {
            instrument_.editor().close();
            instrument_.open();
        }
    }
    audio.join();
    EXPECT_GT(pictures, 10);
}

TEST(EditorPicture, NeedsNoDesktopAndSaysWhatWentWrong) {
    EditHost host;
    COrvelScope analyser(&host, [](COrvelScope& scope) {
        return std::make_unique<COrvelScopeEditor>(scope, EditorSurroundings{});
    });
    Vardo::IPluginEditor& editor = *analyser.getEditor();
    editor.open(nullptr); // there is no desktop
    EXPECT_FALSE(editor.isOpen());
    ASSERT_NE(editor.picture(), nullptr);
    std::string problem;
    EXPECT_FALSE(editor.picture()->writePicture("/tmp/none.png", problem));
    EXPECT_FALSE(problem.empty());
    editor.picture()->openPicture();
    editor.picture()->passTime(25);
    problem.clear();
    EXPECT_FALSE(editor.picture()->writePicture("/nowhere/none.png", problem));
    EXPECT_FALSE(problem.empty());
    editor.close();
    setPlatform(nullptr);
}

} // namespace
} // namespace Orvel

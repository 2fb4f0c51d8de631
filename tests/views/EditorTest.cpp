// The whole window, worked as a user works it.
#include "Signals.h"
#include "analysis/OrvelScope.h"
#include "controls/OptionMenu.h"
#include "core/Settings.h"
#include "frame/IdleList.h"
#include "frame/StateChunk.h"
#include "frame/VardoCallback.h"
#include "platform/Offscreen.h"
#include "views/OrvelScopeEditor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <iterator>
#include <thread>

namespace Orvel {
namespace {

using namespace Sorel;
using ::testing::Contains;
using ::testing::ElementsAre;

class Host : public Vardo::VardoCallback {
  public:
    int beginEdit(int index) override {
        return calls.push_back("begin" + std::to_string(index)), 1;
    }
    int endEdit(int index) override { return calls.push_back("end" + std::to_string(index)), 1; }
    void automate(int, float) override { calls.push_back("set"); }
    std::vector<std::string> calls;
};

/// An analyser with its editor on a desktop in memory, fed by a plain host.
class Instrument {
  public:
    explicit Instrument(COffscreenPlatform& desktop)
        : desktop_(desktop) {
        analyser.setThreadedProcessing(false);
    }
    void open() { editor().open(nullptr); }
    COrvelScopeEditor& editor() { return static_cast<COrvelScopeEditor&>(*analyser.getEditor()); }
    COffscreenFrame& window() { return *desktop_.frame(); }
    void idle(int times = 1) {
        for (; times > 0; --times) {
            desktop_.advance(25);
            analyser.onIdle();
            editor().idle();
        }
    }
    void play(const orvel_test::Stereo& audio) {
        for (int at = 0; at + kBlock <= audio.size(); at += kBlock) {
            player.block(audio, at, kBlock);
            idle();
        }
    }
    Vardo::IPluginParameter& operator[](ParameterId id) { return analyser.parameter(id); }

    static constexpr int kBlock = 1200; // 25 ms
    Host host;

  private:
    COffscreenPlatform& desktop_;

  public:
    COrvelScope analyser{&host, [this](COrvelScope& scope) {
                             EditorSurroundings surroundings;
                             surroundings.callback = &host;
                             surroundings.desktop = [this]() -> IPlatform& { return desktop_; };
                             surroundings.versionText = "Version 0";
                             return std::make_unique<COrvelScopeEditor>(scope, surroundings);
                         }};
    orvel_test::PlainHost player{analyser, 48000, kBlock};
};

class EditorTest : public ::testing::Test {
  protected:
    EditorTest() { instrument_.open(); }
    ~EditorTest() override {
        instrument_.editor().close();
        setPlatform(nullptr);
    }
    void showPage(int page) {
        instrument_.window().click({371.0 + 119.0 * page, 24.0});
        instrument_.idle(40);
    }
    std::uint64_t shownPixels(int idles) {
        instrument_.window().takeShownPixels();
        instrument_.idle(idles);
        return instrument_.window().takeShownPixels();
    }

    COffscreenPlatform desktop_;
    Instrument instrument_{desktop_};
};

TEST_F(EditorTest, ThePageButtonsChooseWhatIsShownAndMeasured) {
    for (const int page : {1, 2, 3, 0}) {
        showPage(page);
        EXPECT_EQ(instrument_.analyser.activePage(), page);
    }
    // A host's state brings its page along.
    void* chunk = nullptr;
    const int size = instrument_.analyser.getChunk(&chunk);
    const std::vector<std::byte> stereo = Vardo::withActivePage(chunk, size, 2);
    instrument_.analyser.setChunk(stereo.data(), static_cast<int>(stereo.size()));
    EXPECT_EQ(instrument_.analyser.activePage(), 2);
    instrument_.idle();
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

TEST_F(EditorTest, TheTimeDialsFollowTheSyncMode) {
    constexpr CPoint kSyncDuration{150.0 + 232.0 + 144.0 + 36.0, 455.0 + 40.0};
    constexpr CPoint kVisibleTime{150.0 + 232.0 + 216.0 + 36.0, 455.0 + 40.0};
    const float before = instrument_[kScopeVisibleTimeMs].getValue();
    instrument_.window().wheel(kVisibleTime, 1.0F);
    EXPECT_GT(instrument_[kScopeVisibleTimeMs].getValue(), before);
    EXPECT_FALSE(instrument_.window().wheel(kSyncDuration, 1.0F)); // free: nothing to set

    instrument_[kScopeSyncMode].setValue(3); // pitch
    instrument_.idle();
    instrument_.window().wheel(kSyncDuration, 1.0F);
    EXPECT_FLOAT_EQ(instrument_[kScopeSyncDurationPitch].getValue(), 61.0F);
    instrument_.window().wheel(kVisibleTime, -1.0F);
    EXPECT_FLOAT_EQ(instrument_[kScopeVisibleTimeMultiplier].getValue(), 3.0F);
    // The wheel over the picture works on the same parameter.
    instrument_.window().wheel({500.0, 200.0}, -1.0F);
    EXPECT_FLOAT_EQ(instrument_[kScopeVisibleTimeMultiplier].getValue(), 4.0F);
}

TEST_F(EditorTest, TheHostHearsOfAGesture) {
    instrument_[kGlobalInputGain].setHostIndex(0); // as an adapter does
    instrument_.window().drag({186.0, 490.0}, {186.0, 520.0});
    ASSERT_GE(instrument_.host.calls.size(), 3u);
    EXPECT_EQ(instrument_.host.calls.front(), "begin0");
    EXPECT_EQ(instrument_.host.calls.back(), "end0");
    EXPECT_THAT(instrument_.host.calls, Contains("set"));
    EXPECT_LT(instrument_[kGlobalInputGain].getNormalizedValue(), 1.0F);
}

TEST_F(EditorTest, EverySettingIsBehindTheRightButton) {
    instrument_.window().click({500.0, 200.0}, Buttons::kRight);
    instrument_.idle();
    ASSERT_TRUE(instrument_.window().isMenuOpen());
    EXPECT_TRUE(instrument_.window().chooseMenuItem("Freeze"));
    instrument_.idle();
    EXPECT_TRUE(instrument_[kScopeFreeze].getBoolValue());

    showPage(1);
    instrument_.window().click({500.0, 200.0}, Buttons::kRight);
    instrument_.idle();
    EXPECT_TRUE(instrument_.window().chooseMenuItem("FFT Size/Low"));
    instrument_.idle();
    EXPECT_EQ(instrument_[kSpectrumFFTSize].getIntValue(), 0);

    // And in the fields of the corner, by wheel and by menu.
    instrument_.window().wheel({860.0, 507.0}, -1.0F);
    EXPECT_EQ(instrument_[kSpectrumFFTSize].getIntValue(), 1);
    instrument_.window().click({952.0, 507.0});
    instrument_.idle();
    EXPECT_TRUE(instrument_.window().chooseMenuItem("Energy"));
    instrument_.idle();
    EXPECT_EQ(instrument_[kSpectrumAnalyzeMode].getIntValue(), 1);
}

TEST_F(EditorTest, ThreadingIsSwitchedAndRememberedOnTheSystemPage) {
    showPage(3);
    const bool before = instrument_.analyser.isThreaded();
    instrument_.window().click({348.0, 162.0});
    EXPECT_NE(instrument_.analyser.isThreaded(), before);
    char value[Core::kSettingBufferSize];
    ASSERT_TRUE(Core::readSetting(Core::settingsPath(), "THREADING", value, nullptr));
    EXPECT_STREQ(value, before ? "FALSE" : "TRUE");
    instrument_.window().click({348.0, 162.0});
}

TEST_F(EditorTest, PresetsBringBackWhatWasSaved) {
    const auto open = [this] {
        instrument_.window().click({150.0, 24.0});
        instrument_.idle();
        return instrument_.window().isMenuOpen();
    };
    instrument_[kGlobalMeteringMode].setValue(3);
    const auto folder = std::filesystem::temp_directory_path() / "orvel-editor-test";
    std::filesystem::create_directories(folder);
    const std::string file = (folder / "Höhen.fxPreset").string();
    std::filesystem::remove(file);
    desktop_.setFileDialogAnswer({{file}, ""});
    ASSERT_TRUE(open());
    EXPECT_TRUE(instrument_.window().chooseMenuItem("Save Preset as.."));
    instrument_.idle(3);
    EXPECT_TRUE(std::filesystem::exists(file));
    EXPECT_STREQ(instrument_.editor().currentPresetName(), "Höhen");

    ASSERT_TRUE(open());
    EXPECT_TRUE(instrument_.window().chooseMenuItem("Default Settings"));
    instrument_.idle(3);
    EXPECT_EQ(instrument_[kGlobalMeteringMode].getIntValue(), 0);
    std::filesystem::remove_all(folder);
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
        second.play(orvel_test::stereoNoise(2400, 3));
        second.editor().close();
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
    Host host;
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

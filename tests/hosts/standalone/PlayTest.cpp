// Playing in a window: what the plug-in hears, and what keys and files do. Window and plug-in are
// fakes, the clock is the silent one.
#include "AllocationCount.h"
#include "FakePlugin.h"
#include "FileStream.h"
#include "Keys.h"
#include "PlayDeck.h"
#include "PlayEngine.h"
#include "PlayWindow.h"
#include "RateConverter.h"
#include "Signals.h"
#include "SilentClock.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <thread>
#include <vector>

namespace Standalone {
namespace {

using namespace std::chrono_literals;

volatile std::sig_atomic_t noSignal = 0;

// Virtual keys of the window.
constexpr std::uint8_t kEscape = 6, kSpace = 7, kHome = 10, kLeft = 11, kRight = 13, kNumpad4 = 28;

Vardo::KeyEvent key(std::uint8_t virtualKey, std::uint8_t modifiers = 0) {
    return {0, virtualKey, modifiers};
}
Vardo::KeyEvent character(char c, std::uint8_t modifiers = 0) { return {c, 0, modifiers}; }

/// Looks at each block as a host's transport must have it.
class WatchingPlugin final : public FakePlugin {
  public:
    void process(Vardo::IProcessContext& context) override {
        FakePlugin::process(context);
        const int n = context.getNumSamples();
        if (n > blockSize) ++faults;
        if (context.isPlaying()) {
            const auto position = static_cast<std::int64_t>(context.getSamplePosition());
            for (int i = 0; i < n; ++i)
                if (context.getInputs()[0][i] != Ramp::valueAt(position + i)) ++faults;
            if (context.getPpqPosition() != context.getSamplePosition() / rate * 90 / 60) ++faults;
            heard += n;
            lastPosition = position;
        } else {
            faults += std::count_if(context.getInputs()[0], context.getInputs()[0] + n,
                                    [](float x) { return x != 0; });
            silent += n;
        }
    }
    void setBlockSize(int samples) override { blockSize = samples; }

    int blockSize = 0;
    std::atomic<std::int64_t> faults{0};
    std::atomic<std::int64_t> heard{0};
    std::atomic<std::int64_t> silent{0};
    std::atomic<std::int64_t> lastPosition{0};
};

TEST(PlayEngine, AllocatesNothingWhilePlaying) {
    FakePlugin plugin;
    PlayEngine engine(plugin, 120);
    FileStream stream(std::make_unique<Ramp>(70000));
    engine.setStream(&stream);
    engine.prepare(48000, 512);
    std::vector<float> left(1300);
    std::vector<float> right(1300);
    AudioBlock block;
    block.outputs[0] = left.data();
    block.outputs[1] = right.data();
    block.frames = 1300; // more than the card said
    const std::size_t before = allocationsOfThisThread();
    engine.process(block);
    EXPECT_EQ(allocationsOfThisThread(), before);
    for (int i = 0; i < 1300; ++i)
        ASSERT_EQ(left[static_cast<std::size_t>(i)], Ramp::valueAt(i));
}

TEST(RateConverter, KeepsPitchAndLevel) {
    struct Sine final : IAudioClient {
        void prepare(double, int) override {}
        void process(const AudioBlock& block) noexcept override {
            for (int i = 0; i < block.frames; ++i) {
                block.outputs[0][i] = samples[frame++];
                block.outputs[1][i] = -block.outputs[0][i];
            }
        }
        const std::vector<float> samples = orvel_test::sine(60000, 997, 44100, 0.5);
        std::size_t frame = 0;
    } sine;
    for (const double cardRate : {48000.0, 22050.0, 96000.0}) {
        sine.frame = 0;
        RateConverter converter(sine, 44100);
        converter.prepare(cardRate, 512);
        std::vector<float> left(20000);
        std::vector<float> right(20000);
        AudioBlock block;
        for (int done = 0; done < 20000; done += 1000) { // more than the card said
            block.outputs[0] = left.data() + done;
            block.outputs[1] = right.data() + done;
            block.frames = 1000;
            converter.process(block);
        }
        // The filter has a linear phase and is fed from the start: no delay, once it is full.
        const std::vector<float> ideal = orvel_test::sine(20000, 997, cardRate, 0.5);
        float worst = 0;
        for (std::size_t i = 2000; i < left.size(); ++i)
            worst = std::max({worst, std::abs(left[i] - ideal[i]), std::abs(right[i] + ideal[i])});
        EXPECT_LT(worst, 1e-4F) << cardRate; // -80 dBFS; the passband's ripple included
    }
}

TEST(SilentClock, KeepsTheSampleRate) {
    WatchingPlugin plugin;
    PlayEngine engine(plugin, 90);
    FileStream stream(std::make_unique<Ramp>(1000000));
    engine.setStream(&stream);
    const auto start = std::chrono::steady_clock::now();
    {
        const SilentClock clock(engine, 44100);
        std::this_thread::sleep_for(500ms);
    }
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_EQ(plugin.faults, 0);
    // Never ahead by more than the first call; behind as far as a busy machine makes it.
    const double due = seconds * 44100;
    EXPECT_LE(static_cast<double>(plugin.heard), due + 0.025 * 44100);
    EXPECT_GE(static_cast<double>(plugin.heard), due - 0.3 * 44100);
}

/// What a user does, each step once its time has come.
class Script {
  public:
    struct Step {
        std::function<bool()> isTime;
        std::function<void(Vardo::IEditorHost&)> act;
    };
    explicit Script(std::vector<Step> steps)
        : steps_(std::move(steps)) {}

    void operator()(Vardo::IEditorHost& host, int count) {
        if (next_ < steps_.size() && steps_[next_].isTime()) steps_[next_++].act(host);
        if (count < 2000) return; // 50 s
        ADD_FAILURE() << "step " << next_ << " never came";
        host.editorCloseRequested();
    }

  private:
    std::vector<Step> steps_;
    std::size_t next_ = 0;
};

TEST(PlayWindow, KeysDriveTheDeckAndEscapeQuits) {
    constexpr int kPerSecond = 100000;
    FakeEditor editor;
    WatchingPlugin plugin;
    plugin.editor = &editor;
    PlayDeck deck(plugin, 90, true);
    PlayWindow window(plugin, deck, {});
    deck.load(std::make_unique<Ramp>(100 * kPerSecond, kPerSecond));
    std::int64_t silentBefore = 0;
    editor.onIdle = Script({
        {[&] { return plugin.heard > 0; },
         [&](Vardo::IEditorHost& host) {
             EXPECT_TRUE(host.editorKeyDown(key(kSpace)));
             EXPECT_FALSE(deck.isPlaying());
             silentBefore = plugin.silent;
         }},
        {[&] { return plugin.silent > silentBefore; },
         [&](Vardo::IEditorHost& host) {
             const double before = deck.position();
             host.editorKeyDown(key(kRight)); // twice: they add up
             host.editorKeyDown(key(kRight));
             host.editorKeyDown(key(kLeft, 1)); // and shift
             EXPECT_NEAR(deck.position(), before + 9, 1e-4);
             host.editorKeyDown(key(kSpace));
         }},
        {[&] { return plugin.lastPosition > 8 * kPerSecond; },
         [&](Vardo::IEditorHost& host) {
             host.editorKeyDown(key(kHome));
             EXPECT_LT(deck.position(), 5);
             EXPECT_FALSE(host.editorKeyDown(character('x')));
         }},
        {[&] { return plugin.lastPosition < 5 * kPerSecond; },
         [&](Vardo::IEditorHost& host) { host.editorKeyDown(key(kEscape)); }},
    });
    window.run(noSignal);
    EXPECT_EQ(plugin.faults, 0);
}

TEST(PlayWindow, DroppedFilesReplaceWhatPlaysAndBadOnesDoNot) {
    FakeEditor editor;
    WatchingPlugin plugin;
    plugin.editor = &editor;
    PlayDeck deck(plugin, 90, true);
    std::vector<std::string> opened;
    const auto opener = [&](const std::string& path) -> std::unique_ptr<AudioSource> {
        opened.push_back(path);
        if (path == "bad") throw UserError("no recording");
        auto ramp = std::make_unique<Ramp>(500000, 48000);
        if (path == "empty") ramp->damagedAt = 0;
        return ramp;
    };
    PlayWindow window(plugin, deck, opener);
    deck.load(std::make_unique<Ramp>(1000000, 96000));
    std::int64_t heard = 0;
    editor.onIdle = Script({
        {[] { return true; }, [](Vardo::IEditorHost& host) { host.editorFilesDropped({"bad"}); }},
        {[&] { return opened.size() == 1; },
         [](Vardo::IEditorHost& host) {
             host.editorFilesDropped({"empty", "good"});
         }},
        {[&] { return opened.size() == 2; }, [&](Vardo::IEditorHost&) { heard = plugin.heard; }},
        {[&] { return plugin.heard > heard; },
         [&](Vardo::IEditorHost& host) {
             EXPECT_EQ(plugin.rate, 96000) << "the first plays on";
             host.editorFilesDropped({"good"});
         }},
        {[&] { return opened.size() == 3 && plugin.rate == 48000; },
         [](Vardo::IEditorHost& host) { host.editorCloseRequested(); }},
    });
    window.run(noSignal);
    EXPECT_EQ(plugin.faults, 0);
}

TEST(PlayWindow, WithoutADisplayThereIsNone) {
    FakeEditor editor;
    editor.hasDisplay = false;
    FakePlugin plugin;
    plugin.editor = &editor;
    PlayDeck deck(plugin, 120, true);
    EXPECT_THROW((PlayWindow{plugin, deck, {}}), NoWindow);
    EXPECT_EQ(editor.host, nullptr);
}

TEST(Keys, PagesAndQuittingByCharacter) {
    EXPECT_EQ(actionOf(character('3'))->page, 2);
    EXPECT_EQ(actionOf(key(kNumpad4))->page, 3);
    EXPECT_EQ(actionOf(character('Q', 1))->kind, KeyAction::Kind::quit);
    EXPECT_EQ(actionOf(character('q', 8))->kind, KeyAction::Kind::quit); // control
    for (const char c : {'0', '5', ' ', 'w'})
        EXPECT_FALSE(actionOf(character(c)));
    EXPECT_FALSE(actionOf(character('1', 8))); // control and alt belong to others
    EXPECT_FALSE(actionOf(key(kLeft, 2)));
}

} // namespace
} // namespace Standalone

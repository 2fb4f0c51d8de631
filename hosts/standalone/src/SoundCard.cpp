// The machine's sound card, through RtAudio.
#include "SoundCard.h"

#include "StandardError.h"

#include <RtAudio.h>

#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <thread>

namespace Standalone {
namespace {

using Steady = std::chrono::steady_clock;

enum class Direction { play, listen };

// Frames asked for; a card may choose otherwise.
constexpr unsigned kFrames = 512;
// A card that has not called for so long is gone.
constexpr auto kLongestSilence = std::chrono::seconds(2);
// Between two looks. A device that was pulled out fails at once and again; rare ones are hiccups.
constexpr int kManyErrors = 20;

// RtAudio reports errors without saying of which stream; there is only one at a time.
std::atomic<int> deviceErrors{0};
void countError(RtAudioError::Type /*type*/, const std::string& /*text*/) {
    deviceErrors.fetch_add(1, std::memory_order_relaxed);
}

// In the order in which they are tried: who runs JACK means it.
constexpr std::array kInterfaces = {RtAudio::UNIX_JACK, RtAudio::LINUX_PULSE, RtAudio::LINUX_ALSA};

class RtAudioCard final : public SoundCard {
  public:
    /// Fails: throws RtAudioError.
    RtAudioCard(RtAudio::Api interface, Direction direction, IAudioClient& client, double rate)
        : client_(client)
        , direction_(direction)
        , audio_(interface) {
        audio_.showWarnings(false);
        deviceErrors = 0;
        RtAudio::StreamParameters device;
        const RtAudio::DeviceInfo info = chooseDevice(device);
        const double wanted =
            rate != kItsOwnRate ? rate : static_cast<double>(info.preferredSampleRate);
        open(device, static_cast<unsigned>(std::lround(wanted)));
        // RtAudio's name of a device may be a path; the interface tells the user more.
        name_ = RtAudio::getApiDisplayName(interface) + ", " + info.name;
    }

    ~RtAudioCard() override {
        const QuietLibraries quiet;
        leaveClosingToJack();
        if (audio_.isStreamOpen()) audio_.closeStream();
    }

    bool isAlive() override {
        if (!audio_.isStreamOpen() || !audio_.isStreamRunning()) return false;
        const Steady::time_point now = Steady::now();
        const unsigned calls = calls_.load(std::memory_order_relaxed);
        if (calls != callsSeen_) {
            callsSeen_ = calls;
            lastCall_ = now;
        }
        return now - lastCall_ < kLongestSilence &&
               deviceErrors.exchange(0, std::memory_order_relaxed) < kManyErrors;
    }

    std::string name() const override { return name_; }

  private:
    /// When its server goes, RtAudio closes the stream on a thread of its own; two that close at
    /// once free everything twice.
    void leaveClosingToJack() {
        using namespace std::chrono_literals;
        if (audio_.getCurrentApi() != RtAudio::UNIX_JACK) return;
        const auto within = [this](std::chrono::milliseconds time, auto happened) {
            const Steady::time_point end = Steady::now() + time;
            while (!happened() && Steady::now() < end)
                std::this_thread::sleep_for(10ms);
            return happened();
        };
        const unsigned calls = calls_.load(std::memory_order_relaxed);
        const auto isCalled = [&] { return calls_.load(std::memory_order_relaxed) != calls; };
        const auto isClosed = [this] { return !audio_.isStreamOpen(); };
        if (within(250ms, [&] { return isCalled() || isClosed(); }) && isCalled()) return;
        if (within(2s, isClosed)) std::this_thread::sleep_for(50ms); // its last steps
    }

    RtAudio::DeviceInfo chooseDevice(RtAudio::StreamParameters& device) {
        if (audio_.getDeviceCount() == 0)
            throw RtAudioError("no device", RtAudioError::NO_DEVICES_FOUND);
        const bool plays = direction_ == Direction::play;
        device.deviceId = plays ? audio_.getDefaultOutputDevice() : audio_.getDefaultInputDevice();
        const RtAudio::DeviceInfo info = audio_.getDeviceInfo(device.deviceId);
        const unsigned channels = plays ? info.outputChannels : info.inputChannels;
        if (!info.probed || channels < (plays ? 2U : 1U)) throw RtAudioError("no such device");
        device.nChannels = channels < 2 ? 1 : 2;
        channels_ = device.nChannels;
        return info;
    }

    void open(RtAudio::StreamParameters& device, unsigned rate) {
        RtAudio::StreamOptions options;
        options.flags = RTAUDIO_NONINTERLEAVED | RTAUDIO_ALSA_USE_DEFAULT;
        options.streamName = "Orvel Scope";
        unsigned frames = kFrames;
        const bool plays = direction_ == Direction::play;
        audio_.openStream(plays ? &device : nullptr, plays ? nullptr : &device, RTAUDIO_FLOAT32,
                          rate, &frames, &RtAudioCard::process, this, &options, &countError);
        client_.prepare(static_cast<double>(audio_.getStreamSampleRate()),
                        static_cast<int>(frames));
        audio_.startStream();
        if (!audio_.isStreamRunning()) throw RtAudioError("the stream does not start");
    }

    static int process(void* output,
                       void* input,
                       unsigned frames,
                       double /*time*/,
                       RtAudioStreamStatus status,
                       void* self) {
        static_cast<RtAudioCard*>(self)->process(static_cast<float*>(output),
                                                 static_cast<const float*>(input), frames, status);
        return 0;
    }

    void process(float* output, const float* input, unsigned frames, RtAudioStreamStatus status) {
        calls_.fetch_add(1, std::memory_order_relaxed);
        AudioBlock block;
        block.frames = static_cast<int>(frames);
        block.brokeOff = status != 0;
        if (output != nullptr) {
            block.outputs[0] = output;
            block.outputs[1] = output + frames;
        }
        if (input != nullptr) {
            block.inputs[0] = input;
            block.inputs[1] = channels_ > 1 ? input + frames : input;
        }
        client_.process(block);
    }

    IAudioClient& client_;
    Direction direction_;
    unsigned channels_ = 2;
    std::string name_;
    std::atomic<unsigned> calls_{0}; // written by the audio thread
    unsigned callsSeen_ = 0;
    Steady::time_point lastCall_ = Steady::now();
    RtAudio audio_; // last: its thread uses everything above
};

std::unique_ptr<SoundCard>
openCard(Direction direction, IAudioClient& client, double rate, std::string& problem) {
    const QuietLibraries quiet; // they tell at length what is not there
    problem.clear();
    for (const RtAudio::Api interface : kInterfaces) {
        try {
            return std::make_unique<RtAudioCard>(interface, direction, client, rate);
        } catch (const RtAudioError& error) {
            if (error.getType() == RtAudioError::NO_DEVICES_FOUND) continue;
            problem += (problem.empty() ? "" : "; ") + RtAudio::getApiDisplayName(interface) +
                       ": " + error.what();
        }
    }
    return nullptr;
}

} // namespace

std::unique_ptr<SoundCard>
SoundCard::play(IAudioClient& client, double sampleRate, std::string& problem) {
    return openCard(Direction::play, client, sampleRate, problem);
}

std::unique_ptr<SoundCard> SoundCard::listen(IAudioClient& client, std::string& problem) {
    return openCard(Direction::listen, client, kItsOwnRate, problem);
}

} // namespace Standalone

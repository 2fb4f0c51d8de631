// The audio thread's work: takes what plays, lets the plug-in see it, and gives it to the clock.
#pragma once

#include "AudioClock.h"
#include "core/Relaxed.h"
#include "frame/ChannelBuffer.h"

#include <atomic>
#include <cstdint>

namespace Vardo {
class IPluginBase;
}

namespace Standalone {

class FileStream;

/// Plays a stream, or listens to the clock's input when there is no stream. While it pauses the
/// plug-in hears silence, as from a host whose transport stands still.
class PlayEngine final : public IAudioClient {
  public:
    /// `plugin` outlives this; `tempo` in beats per minute.
    PlayEngine(Vardo::IPluginBase& plugin, double tempo);

    // ---- Threads: main
    /// Only while no clock runs. `stream` is not owned; null to listen.
    void setStream(FileStream* stream) { stream_ = stream; }
    void setPlaying(bool playing) { playing_ = playing; }
    bool isPlaying() const { return playing_; }
    /// How often the sound broke off: the stream was read too late, or the device ran dry.
    int numDropOuts() const { return dropOuts_; }

    // IAudioClient
    void prepare(double sampleRate, int usualFrames) override;
    void process(const AudioBlock& block) noexcept ORVEL_NONBLOCKING override;

  private:
    int takeStream(int frames, std::int64_t& position) noexcept;
    static void fade(const AudioBlock& block, float from, float to) noexcept;
    void processRun(const AudioBlock& block,
                    int offset,
                    int frames,
                    bool playing,
                    std::int64_t position) noexcept;

    Vardo::IPluginBase& plugin_;
    double tempo_;
    double sampleRate_ = 0;
    FileStream* stream_ = nullptr;
    Vardo::CNChannelBuffer input_;  ///< a copy that the plug-in may spoil
    Vardo::CNChannelBuffer output_; ///< where the clock has none
    Core::Relaxed<bool> playing_{true};
    Core::Relaxed<int> dropOuts_{0}; // written by the audio thread
    // Of the audio thread.
    bool wasPlaying_ = true;
    bool starved_ = false;
    std::int64_t listened_ = 0; ///< frames of the input
};

} // namespace Standalone

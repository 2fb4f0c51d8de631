// Plays an audio source through a plug-in, as a host with a running transport does.
#pragma once

#include "AudioSource.h"
#include "BlockPlan.h"
#include "frame/ChannelBuffer.h"

#include <cstdint>
#include <functional>

namespace Vardo {
class IPluginBase;
}

namespace Standalone {

/// The host's part of the work: rate and block size, blocks, transport, and a look at what comes
/// back, since an analyser must never change the audio.
/// Threads: one, which is audio and main thread in turn.
class Player {
  public:
    /// Declares sample rate and block size to the plug-in. `blockSize` is the largest number of
    /// samples in one process call; `tempo` in beats per minute. Plug-in and source outlive this.
    Player(Vardo::IPluginBase& plugin, AudioSource& source, int blockSize, double tempo);

    /// Plays to the end and gives the number of frames played, silence behind a very short source
    /// not counted. `progress` hears that number now and then, `afterBlock` after every block the
    /// plug-in got; both may be empty.
    /// Fails: throws UserError when the source cannot be read on, and std::runtime_error when what
    /// the plug-in gives back differs from what it was given in a single bit.
    using Listener = std::function<void(std::int64_t frames)>;
    std::int64_t play(const Listener& progress, const Listener& afterBlock = {});

  private:
    void fill();
    void pad(int samples);
    void declareBlock(int samples);
    void playBlock(int samples);
    void processCall(int offset, int samples);

    Vardo::IPluginBase& plugin_;
    AudioSource& source_;
    BlockPlan plan_;
    int callSize_; ///< samples in one process call, at most
    double tempo_;
    int declared_ = 0;

    Vardo::CNChannelBuffer pending_; ///< read, not yet played: available_ samples from begin_ on
    int begin_ = 0;
    int available_ = 0;
    bool ended_ = false;

    Vardo::CNChannelBuffer input_; ///< what the plug-in gets, a copy it could spoil
    Vardo::CNChannelBuffer output_;
    std::int64_t position_ = 0; ///< frames played
};

} // namespace Standalone

// The audio thread's work.
#include "PlayEngine.h"

#include "FileStream.h"
#include "frame/PluginBase.h"
#include "frame/ProcessContext.h"

#include <algorithm>
#include <utility>

namespace Standalone {

namespace {
constexpr int kChannels = 2;
// An analyser works on blocks of at least this.
constexpr int kSmallestBlock = 10;
} // namespace

PlayEngine::PlayEngine(Vardo::IPluginBase& plugin, double tempo)
    : plugin_(plugin)
    , tempo_(tempo) {}

void PlayEngine::prepare(double sampleRate, int usualFrames) {
    const int frames = std::max(usualFrames, kSmallestBlock);
    if (sampleRate != sampleRate_) plugin_.setSampleRate(sampleRate);
    if (frames != input_.numSamples()) {
        plugin_.setBlockSize(frames);
        input_.resize(frames, kChannels);
        output_.resize(frames, kChannels);
    }
    sampleRate_ = sampleRate;
    starved_ = false;
}

void PlayEngine::process(const AudioBlock& block) noexcept {
    if (block.brokeOff) dropOuts_ = dropOuts_ + 1;
    const bool wanted = playing_;
    const bool turning = std::exchange(wasPlaying_, wanted) != wanted;
    const bool playing = wanted || turning; // a block longer, to fade out
    for (int done = 0; done < block.frames;) {
        int frames = std::min(block.frames - done, input_.numSamples());
        std::int64_t position = 0;
        bool heard = playing;
        if (playing && stream_ != nullptr) {
            const int taken = takeStream(frames, position);
            heard = taken > 0;
            if (heard) frames = taken;
        } else if (playing && block.inputs[0] != nullptr) {
            const float* const inputs[kChannels] = {block.inputs[0] + done, block.inputs[1] + done};
            input_.copyFrom(inputs, kChannels, frames);
            position = listened_;
            listened_ += frames;
        } else {
            heard = false;
        }
        processRun(block, done, frames, heard, position);
        done += frames;
    }
    if (turning) fade(block, wanted ? 0.0F : 1.0F, wanted ? 1.0F : 0.0F);
}

/// No click where playing pauses and goes on. Only what is heard fades, not what is analysed.
void PlayEngine::fade(const AudioBlock& block, float from, float to) noexcept {
    if (block.outputs[0] == nullptr) return;
    const float step = (to - from) / static_cast<float>(std::max(block.frames, 1));
    for (int i = 0; i < block.frames; ++i)
        for (float* output : block.outputs)
            output[i] *= from + static_cast<float>(i) * step;
}

/// Fills the input with what follows in the stream. 0 when nothing is read yet.
int PlayEngine::takeStream(int frames, std::int64_t& position) noexcept {
    const FileStream::Run run = stream_->read(input_.channel(0), input_.channel(1), frames);
    position = run.position;
    // Many calls may pass until the reading thread has caught up: one drop-out.
    const bool starved = run.frames == 0;
    if (starved && !starved_ && !stream_->isSeeking()) dropOuts_ = dropOuts_ + 1;
    starved_ = starved;
    return run.frames;
}

void PlayEngine::processRun(
    const AudioBlock& block, int offset, int frames, bool playing, std::int64_t position) noexcept {
    if (!playing) input_.clear(frames);
    const bool hasOutput = block.outputs[0] != nullptr;
    float* outputs[kChannels] = {hasOutput ? block.outputs[0] + offset : output_.channel(0),
                                 hasOutput ? block.outputs[1] + offset : output_.channel(1)};
    Vardo::CProcessContext context(input_.channels(), kChannels, outputs, kChannels, nullptr,
                                   frames);
    const auto samples = static_cast<double>(position);
    context.setTempo(static_cast<float>(tempo_));
    context.setPlaying(playing);
    context.setSamplePosition(samples);
    context.setPpqPosition(samples / sampleRate_ * tempo_ / 60);
    plugin_.process(context);
}

} // namespace Standalone

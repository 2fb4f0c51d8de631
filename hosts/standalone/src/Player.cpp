// Plays an audio source through a plug-in.
#include "Player.h"

#include "frame/PluginBase.h"
#include "frame/ProcessContext.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>

namespace Standalone {
namespace {

constexpr int kChannels = 2;
// Samples. Enough to keep reads and progress reports rare.
constexpr int kReadAhead = 32768;

} // namespace

Player::Player(Vardo::IPluginBase& plugin, AudioSource& source, int blockSize, double tempo)
    : plugin_(plugin)
    , source_(source)
    , plan_(blockSize)
    , callSize_(std::max(blockSize, 1))
    , tempo_(tempo)
    , pending_(plan_.lookAhead() + std::max(plan_.blockSize(), kReadAhead), kChannels)
    , input_(std::min(callSize_, plan_.largestBlock()), kChannels)
    , output_(input_.numSamples(), kChannels) {
    plugin_.setSampleRate(source_.info().sampleRate);
    declareBlock(plan_.blockSize());
}

std::int64_t Player::play(const Listener& progress, const Listener& afterBlock) {
    for (;;) {
        if (available_ < plan_.lookAhead() && !ended_) {
            fill();
            if (progress) progress(position_);
        }
        const int block = plan_.nextBlock(available_, ended_);
        if (block == 0) break;
        const int silence = std::max(0, block - available_);
        pad(silence);
        declareBlock(block);
        playBlock(block);
        position_ -= silence;
        if (afterBlock) afterBlock(position_);
    }
    if (progress) progress(position_);
    return position_;
}

void Player::fill() {
    for (int c = 0; c < kChannels; ++c)
        std::memmove(pending_.channel(c), pending_.channel(c) + begin_,
                     sizeof(float) * static_cast<std::size_t>(available_));
    begin_ = 0;
    const int room = pending_.numSamples() - available_;
    const int got =
        source_.read(pending_.channel(0) + available_, pending_.channel(1) + available_, room);
    available_ += got;
    ended_ = got < room;
}

void Player::pad(int samples) {
    for (int c = 0; c < kChannels; ++c)
        std::fill_n(pending_.channel(c) + begin_ + available_, samples, 0.0F);
    available_ += samples;
}

void Player::declareBlock(int samples) {
    if (samples == declared_) return;
    plugin_.setBlockSize(samples);
    declared_ = samples;
}

void Player::playBlock(int samples) {
    for (int done = 0; done < samples;) {
        const int call = std::min(callSize_, samples - done);
        processCall(begin_, call);
        begin_ += call;
        available_ -= call;
        position_ += call;
        done += call;
    }
}

void Player::processCall(int offset, int samples) {
    const float* original[kChannels] = {pending_.channel(0) + offset, pending_.channel(1) + offset};
    input_.copyFrom(original, kChannels, samples);

    const double rate = source_.info().sampleRate;
    const auto position = static_cast<double>(position_);
    Vardo::CProcessContext context(input_.channels(), kChannels, output_.channels(), kChannels,
                                   nullptr, samples);
    context.setTempo(static_cast<float>(tempo_));
    context.setPlaying(true);
    context.setSamplePosition(position);
    context.setPpqPosition(position / rate * tempo_ / 60);
    plugin_.process(context);

    for (int c = 0; c < kChannels; ++c)
        if (std::memcmp(output_.channel(c), original[c],
                        sizeof(float) * static_cast<std::size_t>(samples)) != 0)
            throw std::runtime_error("the analyser changed the audio in the block at frame " +
                                     std::to_string(position_) +
                                     "; this is a fault of the program, please report it");
}

} // namespace Standalone

// Between a sound card and a recording of another sample rate, by libsamplerate.
#include "RateConverter.h"

#include <samplerate.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace Standalone {

namespace {
constexpr int kChannels = 2;
} // namespace

struct RateConverter::Converter {
    explicit Converter(RateConverter& owner) {
        int error = 0;
        // 121 dB signal to noise, 90 % of the bandwidth: more than ears or most cards have.
        state = src_callback_new(
            [](void* self, float** data) { return static_cast<RateConverter*>(self)->pull(data); },
            SRC_SINC_MEDIUM_QUALITY, kChannels, &error, &owner);
        if (state == nullptr) throw std::bad_alloc();
    }
    ~Converter() { src_delete(state); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    SRC_STATE* state;
};

RateConverter::RateConverter(IAudioClient& client, double sourceRate)
    : client_(client)
    , sourceRate_(sourceRate)
    , converter_(std::make_unique<Converter>(*this)) {}

RateConverter::~RateConverter() = default;

void RateConverter::prepare(double sampleRate, int usualFrames) {
    ratio_ = sampleRate / sourceRate_;
    const auto card = static_cast<std::size_t>(std::max(usualFrames, 1));
    const auto source = static_cast<std::size_t>(std::ceil(static_cast<double>(card) / ratio_));
    left_.assign(source, 0);
    right_.assign(source, 0);
    interleaved_.assign(source * kChannels, 0);
    converted_.assign(card * kChannels, 0);
    client_.prepare(sourceRate_, static_cast<int>(source));
}

void RateConverter::process(const AudioBlock& block) noexcept {
    brokeOff_ = brokeOff_ || block.brokeOff;
    const int most = static_cast<int>(converted_.size()) / kChannels;
    for (int done = 0; done < block.frames;) {
        const int wanted = std::min(most, block.frames - done);
        const auto got = static_cast<int>(
            src_callback_read(converter_->state, ratio_, wanted, converted_.data()));
        std::fill(converted_.begin() + std::max(got, 0) * kChannels, converted_.end(), 0.0F);
        for (int i = 0; i < wanted; ++i)
            for (int c = 0; c < kChannels; ++c)
                block.outputs[c][done + i] =
                    converted_[static_cast<std::size_t>(i * kChannels + c)];
        done += wanted;
    }
}

/// One call of the client. Gives its frames.
long RateConverter::pull(float** interleaved) noexcept {
    AudioBlock block;
    block.outputs[0] = left_.data();
    block.outputs[1] = right_.data();
    block.frames = static_cast<int>(left_.size());
    block.brokeOff = std::exchange(brokeOff_, false);
    client_.process(block);
    for (std::size_t i = 0; i < left_.size(); ++i) {
        interleaved_[i * kChannels] = left_[i];
        interleaved_[i * kChannels + 1] = right_[i];
    }
    *interleaved = interleaved_.data();
    return static_cast<long>(left_.size());
}

} // namespace Standalone

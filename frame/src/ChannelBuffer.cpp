#include "frame/ChannelBuffer.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace Vardo {

namespace {
constexpr std::size_t kFloatsPerLine = CNChannelBuffer::kAlignment / sizeof(float);

std::size_t roundUpToLine(std::size_t samples) {
    return (samples + kFloatsPerLine - 1) / kFloatsPerLine * kFloatsPerLine;
}
} // namespace

void CNChannelBuffer::AlignedDelete::operator()(float* samples) const noexcept {
    ::operator delete[](samples, std::align_val_t{kAlignment});
}

CNChannelBuffer::~CNChannelBuffer() = default;

void CNChannelBuffer::resize(int samples, int channels) {
    samples = std::max(samples, 0);
    channels = std::max(channels, 0);
    const std::size_t stride = roundUpToLine(static_cast<std::size_t>(samples));
    const std::size_t count = std::max<std::size_t>(stride * static_cast<std::size_t>(channels), 1);

    auto pointers = std::make_unique<float*[]>(static_cast<std::size_t>(channels));
    std::unique_ptr<float[], AlignedDelete> storage(
        new (std::align_val_t{kAlignment}) float[count]);
    std::fill_n(storage.get(), count, 0.0F);
    for (int i = 0; i < channels; ++i)
        pointers[static_cast<std::size_t>(i)] =
            storage.get() + stride * static_cast<std::size_t>(i);

    channels_ = std::move(pointers);
    storage_ = std::move(storage);
    numChannels_ = channels;
    numSamples_ = samples;
}

void CNChannelBuffer::swap(CNChannelBuffer& other) noexcept {
    std::swap(channels_, other.channels_);
    std::swap(storage_, other.storage_);
    std::swap(numChannels_, other.numChannels_);
    std::swap(numSamples_, other.numSamples_);
}

void CNChannelBuffer::clear() noexcept { clear(numSamples_); }

void CNChannelBuffer::clear(int samples) noexcept {
    samples = std::clamp(samples, 0, numSamples_);
    for (int i = 0; i < numChannels_; ++i)
        std::fill_n(channels_[i], samples, 0.0F);
}

void CNChannelBuffer::copyFrom(const float* const* source, int channels, int samples) noexcept {
    samples = std::clamp(samples, 0, numSamples_);
    for (int i = 0; i < std::min(channels, numChannels_); ++i)
        std::copy_n(source[i], samples, channels_[i]);
}

void CNChannelBuffer::copyTo(float* const* target, int channels, int samples) const noexcept {
    samples = std::clamp(samples, 0, numSamples_);
    for (int i = 0; i < std::min(channels, numChannels_); ++i)
        std::copy_n(channels_[i], samples, target[i]);
}

} // namespace Vardo

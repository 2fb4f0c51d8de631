// From buses to pairs.
#include "BusBlock.h"

#include <algorithm>

namespace Vardo {

namespace {
// No host has more; a number beyond it is not believed.
constexpr int kMostBuses = 256;

int count(const void* buses, int said) {
    return buses == nullptr ? 0 : std::clamp(said, 0, kMostBuses);
}
} // namespace

BusBlock::BusBlock(Steinberg::Vst::ProcessData& data, BusShape shape) noexcept
    : inputs_(data.inputs)
    , outputs_(data.outputs)
    , inputCount_(count(data.inputs, data.numInputs))
    , outputCount_(count(data.outputs, data.numOutputs))
    , shape_(shape) {
    for (int i = 0; i < std::min(inputCount_, shape.inputs); ++i) {
        const Bus& bus = inputs_[i];
        inputPointers_[2 * i] = channel(bus, 0);
        inputPointers_[2 * i + 1] = channel(bus, bus.numChannels > 1 ? 1 : 0);
        hasChannels_ = hasChannels_ || bus.numChannels > 0;
    }
    for (int i = 0; i < std::min(outputCount_, shape.outputs); ++i) {
        const Bus& bus = outputs_[i];
        outputPointers_[2 * i] = channel(bus, 0);
        outputPointers_[2 * i + 1] = channel(bus, 1);
        hasChannels_ = hasChannels_ || bus.numChannels > 0;
    }
    block_ = {inputPointers_,    2 * shape.inputs, outputPointers_,
              2 * shape.outputs, data.numSamples,  OutputMode::replace};
}

float* BusBlock::channel(const Bus& bus, int index) noexcept {
    return bus.channelBuffers32 == nullptr || index >= bus.numChannels
               ? nullptr
               : bus.channelBuffers32[index];
}

void BusBlock::passTheRest() noexcept {
    for (int i = 0; i < outputCount_; ++i)
        passTheRest(i);
}

void BusBlock::passTheRest(int bus) noexcept {
    const Bus& to = outputs_[bus];
    const int covered = bus < shape_.outputs ? 2 : 0;
    const int channels = std::min(static_cast<int>(to.numChannels), kMostChannels);
    for (int i = covered; i < channels; ++i) {
        float* target = channel(to, i);
        if (target == nullptr) continue;
        const float* source = bus < inputCount_ ? channel(inputs_[bus], i) : nullptr;
        if (source == nullptr)
            std::fill_n(target, block_.frames, 0.0F);
        else if (source != target)
            std::copy_n(source, block_.frames, target);
    }
}

void BusBlock::clearSilenceFlags() noexcept {
    for (int i = 0; i < outputCount_; ++i)
        outputs_[i].silenceFlags = 0;
}

} // namespace Vardo

// The copies between host and adapter.
#include "hosting/HostBlock.h"

#include <algorithm>

namespace Vardo {

void HostBlock::copyInputsTo(CNChannelBuffer& buffer) const noexcept {
    for (int i = 0; i < buffer.numChannels(); ++i) {
        const float* source = input(inputChannels == 1 && i == 1 ? 0 : i);
        if (source != nullptr)
            std::copy_n(source, frames, buffer.channel(i));
        else
            std::fill_n(buffer.channel(i), frames, 0.0F);
    }
}

void HostBlock::copyOutputsFrom(const CNChannelBuffer& buffer) const noexcept {
    for (int i = 0; i < std::min(outputChannels, buffer.numChannels()); ++i)
        write(i, 0, buffer.channel(i), frames);
}

void HostBlock::passThrough() const noexcept {
    // In pairs by way of a piece held aside: outputs may be the inputs, even crossed over.
    constexpr int kPiece = 256;
    float held[2][kPiece];
    for (int pair = 0; pair < outputChannels; pair += 2) {
        for (int offset = 0; offset < frames; offset += kPiece) {
            const int count = std::min(kPiece, frames - offset);
            for (int side = 0; side < 2; ++side) {
                const int channel = pair + side;
                const float* source = input(inputChannels == 1 && channel == 1 ? 0 : channel);
                if (source != nullptr)
                    std::copy_n(source + offset, count, held[side]);
                else
                    std::fill_n(held[side], count, 0.0F);
            }
            for (int side = 0; side < 2; ++side)
                write(pair + side, offset, held[side], count);
        }
    }
}

void HostBlock::write(int channel, int offset, const float* samples, int count) const noexcept {
    float* target = output(channel);
    if (target == nullptr) return;
    target += offset;
    if (mode == OutputMode::replace) {
        std::copy_n(samples, count, target);
        return;
    }
    for (int i = 0; i < count; ++i)
        target[i] += samples[i];
}

} // namespace Vardo

// The channels of one side of a block, as the plug-in gets them.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

namespace Vardo::Aax {

/// Pointers in pairs, made from a host's. Lives on the stack of one call.
class ChannelPointers {
  public:
    static constexpr int kMost = 128;

    /// `host` has the channels of a stem of one or two, then those of further stereo outputs; null
    /// stands for null in all places. Of a mono stem the only channel is both sides of the pair.
    ChannelPointers(float* const* host, int stemChannels, int channels) noexcept
        : size_(std::clamp(channels, 0, kMost)) {
        for (int i = 0; i < size_; ++i)
            at(i) = host == nullptr ? nullptr : host[stemChannels == 1 ? std::max(i - 1, 0) : i];
    }

    float** data() noexcept { return pointers_.data(); }
    int size() const noexcept { return size_; }

    /// The same from sample `offset` on, with `standIn` for what the host does not bring.
    ChannelPointers from(int offset, float* standIn) const noexcept {
        ChannelPointers result = *this;
        for (int i = 0; i < size_; ++i)
            result.at(i) = result.at(i) == nullptr ? standIn : result.at(i) + offset;
        return result;
    }

  private:
    float*& at(int i) noexcept { return pointers_[static_cast<std::size_t>(i)]; }

    std::array<float*, kMost> pointers_;
    int size_;
};

} // namespace Vardo::Aax

#include "analysis/LevelMetering.h"

#include <algorithm>

namespace Orvel {

namespace {
constexpr float kFullScale = 1.0F;
} // namespace

LevelMetering::LevelMetering() {
    for (Channel& channel : channels_) {
        channel.rms.setMaximumLength(kMaximumRmsMs);
        channel.histogram.setLength(kHistogramMs);
    }
}

void LevelMetering::setSampleRate(float sampleRate) {
    for (Channel& channel : channels_) {
        channel.rms.setSampleRate(sampleRate);
        channel.histogram.setSampleRate(sampleRate);
        channel.meter.setSampleRate(sampleRate);
    }
}

void LevelMetering::setRmsLength(float milliseconds) {
    for (Channel& channel : channels_)
        channel.rms.setLength(std::max(1.0F, milliseconds));
}

void LevelMetering::reset() {
    for (Channel& channel : channels_) {
        channel.peak = 0;
        channel.peakMax = 0;
        channel.rms.clear();
        channel.rmsFed = false;
        channel.histogram.clear();
        channel.meter.reset();
    }
}

void LevelMetering::carryOutRequests() noexcept {
    if (!oversResetWanted_ || !oversResetWanted_.exchange(false)) return;
    for (Channel& channel : channels_)
        channel.overs = 0;
}

void LevelMetering::setMode(MeteringMode mode) noexcept {
    if (mode == mode_) return;
    for (Channel& channel : channels_) {
        channel.rms.setDoubledPower(mode > MeteringMode::histogram);
        // What it counted before it was last switched off is no longer the last second.
        if (mode == MeteringMode::histogram) channel.histogram.clear();
    }
    mode_ = mode;
}

void LevelMetering::measure(const Slice& slice, MeteringMode mode, bool withMidAndSide) noexcept {
    carryOutRequests();
    setMode(mode);
    for (int i = 0; i < Vardo::kNumAnalysisChannels; ++i) {
        Channel& channel = channels_[index(i)];
        channel.peak = slice.peaks[i];
        channel.peakMax = std::max(channel.peakMax, channel.peak);
        if (channel.peak > kFullScale) channel.overs += 1.0F;
        if (isHistogramOn()) channel.histogram.feed(slice.channels[i], slice.count);

        channel.rmsFed = i <= Vardo::kRight || (withMidAndSide && i <= Vardo::kSide);
        if (!channel.rmsFed) continue;
        channel.rms.feed(slice.channels[i], slice.count);
        channel.meter.update(channel.peak, channel.rms.value(), slice.count);
    }
}

void LevelMetering::read(Vardo::AnalysisSnapshot& snapshot) const {
    for (int i = 0; i < Vardo::kNumAnalysisChannels; ++i) {
        const Channel& channel = channels_[index(i)];
        snapshot.levels[index(i)] = {channel.peak, channel.peakMax, static_cast<int>(channel.overs),
                                     channel.rms.value(), channel.rmsFed};
        snapshot.histogram[index(i)] = channel.histogram.counts();
    }
    snapshot.histogramEnabled = isHistogramOn();
    snapshot.dynamicRangeDb[0] = channels_[Vardo::kLeft].meter.dynamicRangeDb();
    snapshot.dynamicRangeDb[1] = channels_[Vardo::kRight].meter.dynamicRangeDb();
}

} // namespace Orvel

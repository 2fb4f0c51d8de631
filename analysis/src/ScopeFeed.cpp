#include "analysis/ScopeFeed.h"

#include "SampleCount.h"

#include <algorithm>
#include <cmath>

namespace Orvel {

namespace {

enum FeedChannel : int { kLane1, kLane2, kMarks, kEnvelope, kOverFlags, kNumFeedChannels };

constexpr float kFullScale = 1.0F;
constexpr float kSibilant = 0.5F; // of the envelope

} // namespace

ScopeFeed::ScopeFeed()
    : channels_(kLongestSlice, kNumFeedChannels) {
    provider_.SetNumLayers(kNumScopeLayers);
}

void ScopeFeed::setSampleRate(float sampleRate) {
    sampleRate_ = sampleRate;
    transients_.setSampleRate(sampleRate);
    sibilance_.setSampleRate(sampleRate);
    provider_.SetSampleRate(sampleRate);
}

void ScopeFeed::reset() {
    channels_.clear();
    transients_.reset();
    sibilance_.reset();
    provider_.Reset();
    firstTransient_ = -1;
}

void ScopeFeed::feed(const Slice& slice,
                     const ScopeTiming& timing,
                     const SyncPeriod& period,
                     std::int64_t samplesToSync,
                     std::int64_t streamPosition) noexcept {
    const int count = slice.count;
    selectLanes(slice, static_cast<ScopeChannelMode>(timing.channelMode.load()));

    firstTransient_ = transients_.process(channel(kLane1), channel(kLane2), count, channel(kMarks));
    if (firstTransient_ >= 0) noteTransients(count, streamPosition);
    if (sibilance_.process(channel(kLane1), channel(kLane2), count, channel(kEnvelope)))
        sibilantSamples_ += std::count_if(channel(kEnvelope), channel(kEnvelope) + count,
                                          [](float envelope) { return envelope > kSibilant; });
    std::transform(slice.channels[Vardo::kMax], slice.channels[Vardo::kMax] + count,
                   channel(kOverFlags),
                   [](float x) { return std::abs(x) > kFullScale ? 1.0F : 0.0F; });

    provider_.SetVisibleTime(static_cast<float>(period.milliseconds));
    provider_.setSyncEnabled(period.synchronised);
    provider_.setSamplesToSync(timing.mode() == ScopeSyncMode::transient ? firstTransient_
                                                                         : samplesToSync);
    const Sorel::ScopeLayerInput layers[kNumScopeLayers] = {
        {2, 4, channel(kLane1), channel(kLane2)}, {1, 0, channel(kLane1), nullptr},
        {1, 0, channel(kLane2), nullptr},         {1, 0, channel(kMarks), nullptr},
        {1, 0, channel(kEnvelope), nullptr},      {1, 0, channel(kOverFlags), nullptr}};
    const Sorel::ScopeLayerInput* inputs[kNumScopeLayers];
    std::transform(std::begin(layers), std::end(layers), inputs,
                   [](const auto& layer) { return &layer; });
    provider_.Process(inputs, count);
}

void ScopeFeed::selectLanes(const Slice& slice, ScopeChannelMode mode) noexcept {
    const float* first = slice.left();
    const float* second = slice.right();
    switch (mode) {
    case ScopeChannelMode::leftAndRight:
        break;
    case ScopeChannelMode::leftOnly:
        second = first;
        break;
    case ScopeChannelMode::rightOnly:
        first = second;
        break;
    case ScopeChannelMode::monoMix:
        first = second = slice.channels[Vardo::kMid];
        break;
    case ScopeChannelMode::max:
        first = second = slice.channels[Vardo::kMax];
        break;
    }
    std::copy_n(first, slice.count, channel(kLane1));
    std::copy_n(second, slice.count, channel(kLane2));
}

void ScopeFeed::noteTransients(int count, std::int64_t streamPosition) noexcept {
    for (int i = firstTransient_; i < count; ++i) {
        if (channel(kMarks)[i] == 0.0F) continue;
        const auto place = static_cast<std::size_t>(transientCount_) % transientPositions_.size();
        transientPositions_[place] = streamPosition + i;
        ++transientCount_;
    }
}

void ScopeFeed::read(Vardo::AnalysisSnapshot& snapshot) const {
    snapshot.transientCount = transientCount_;
    snapshot.transients = transientPositions_;
    snapshot.sibilanceVoice = static_cast<int>(sibilance_.voice());
    snapshot.sibilanceSeconds = static_cast<double>(sibilantSamples_) / double{sampleRate_};
}

} // namespace Orvel

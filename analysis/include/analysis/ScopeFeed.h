// What the scope page needs of each slice: its signals, its marks, its table.
#pragma once

#include "analysis/ScopeDataProviderSync.h"
#include "analysis/ScopeTiming.h"
#include "analysis/SibilanceDetector.h"
#include "analysis/Slice.h"
#include "analysis/TransientDetector.h"
#include "core/RealTime.h"
#include "frame/AnalysisSnapshot.h"
#include "frame/ChannelBuffer.h"

#include <cstdint>

namespace Orvel {

/// Layers of the scope's table.
enum ScopeLayer : int {
    kScopeBothLanes = 0,
    kScopeFirstLane = 1,
    kScopeSecondLane = 2,
    kScopeTransients = 3, ///< 1 at a transient
    kScopeSibilance = 4,  ///< envelope, 0 to 1
    kScopeOvers = 5,      ///< 1 where a channel is beyond full scale
};
inline constexpr int kNumScopeLayers = 6;

/// Chooses the signals of the two lanes, finds transients and sibilance in them, and takes columns.
/// Stands still while it is not fed. Unit: linear amplitude.
/// Threads: `feed` on the analysing thread; `provider` for its reader on the GUI thread; `setVoice`
/// anywhere; the rest under the analysis lock.
class ScopeFeed {
  public:
    ScopeFeed();

    /// Hz. Throws std::bad_alloc.
    void setSampleRate(float sampleRate);
    void reset();
    void setVoice(SibilanceVoice voice) noexcept { sibilance_.setVoice(voice); }

    /// One slice, whose first sample is number `streamPosition` of all that were analysed.
    /// `samplesToSync`: from its first sample to the next boundary of the grid; negative for none.
    void feed(const Slice& slice,
              const ScopeTiming& timing,
              const SyncPeriod& period,
              std::int64_t samplesToSync,
              std::int64_t streamPosition) noexcept ORVEL_NONBLOCKING;
    /// The scope is frozen or another page is active.
    void skip() noexcept ORVEL_NONBLOCKING { firstTransient_ = -1; }

    /// Offset of the first transient in the last slice that was fed, -1 for none.
    int firstTransient() const noexcept { return firstTransient_; }
    CScopeDataProvider_Sync& provider() noexcept { return provider_; }

    void read(Vardo::AnalysisSnapshot& snapshot) const;

  private:
    void selectLanes(const Slice& slice, ScopeChannelMode mode) noexcept ORVEL_NONBLOCKING;
    void noteTransients(int count, std::int64_t streamPosition) noexcept ORVEL_NONBLOCKING;
    float* channel(int index) noexcept { return channels_.channel(index); }

    Vardo::CNChannelBuffer channels_; // lanes, transients, sibilance, overs of one slice
    CTransientDetector transients_;
    SibilanceDetector sibilance_;
    CScopeDataProvider_Sync provider_;
    int firstTransient_ = -1;

    // For programs without a window.
    std::int64_t transientCount_ = 0;
    Vardo::TransientPositions transientPositions_{};
    std::int64_t sibilantSamples_ = 0;
    float sampleRate_ = 44100.0F;
};

} // namespace Orvel

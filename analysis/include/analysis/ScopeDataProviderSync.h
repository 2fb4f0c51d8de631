// The scope's table, started over at sync points, so that what repeats stands still.
#pragma once

#include "analysis/ScopeDataProvider.h"

namespace Orvel {

/// With synchronisation on, column 0 begins with the sample at the sync point, and the picture
/// stands when it is full; with it off, it is a free-running ring. Periods shorter than the table
/// are drawn with several columns per sample. Threads: as its base; `setViewOffset` on the GUI
/// thread.
class CScopeDataProvider_Sync final : public Sorel::CMultiLayerScopeDataProvider {
  public:
    void Reset() override;
    /// A change starts over with an empty table; one that falls into a change of the width is left
    /// out, so say it again with every slice. Analysing thread.
    void setSyncEnabled(bool enabled) ORVEL_NONBLOCKING;
    bool isSyncEnabled() const { return syncEnabled_; }
    /// 0 or 1: every sync point starts over; N: only each N-th.
    void setSyncEvery(int points) { syncEvery_ = points; }
    /// Before each `Process`: samples from its first one to a sync point; negative for none.
    void setSamplesToSync(std::int64_t samples) ORVEL_NONBLOCKING { samplesToSync_ = samples; }

    /// Columns by which the picture is shifted to the left; back to 0 with the next sync point and
    /// with a change of `setSyncEnabled`.
    void setViewOffset(float columns) { viewOffset_ = columns; }
    float viewOffset() const { return viewOffset_; }

    /// May be below 1.
    double samplesPerColumn() const override { return rawSamplesPerColumn(); }

  private:
    void capture(const Sorel::ScopeLayerInput* const* inputs, int numSamples) override;
    void PushColumn() override;
    int firstColumn(int writeColumn) override;
    bool restartsHere() ORVEL_NONBLOCKING;
    void restart() ORVEL_NONBLOCKING;
    void zeroAllLayers() ORVEL_NONBLOCKING;
    void unshift() ORVEL_NONBLOCKING;

    Core::Relaxed<bool> syncEnabled_{false};
    int syncEvery_ = 0;
    int syncHits_ = 0;
    std::int64_t sampleCount_ = 0;     // since the last restart
    std::int64_t lastColumnIndex_ = 0; // by sampleCount_
    std::int64_t samplesToSync_ = -1;
    Core::Relaxed<float> viewOffset_{0.0F};
    Core::Relaxed<float> viewOffsetShown_{0.0F}; // of the last reading
};

} // namespace Orvel

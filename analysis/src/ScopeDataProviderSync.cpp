#include "analysis/ScopeDataProviderSync.h"

#include <algorithm>
#include <cmath>

namespace Orvel {

void CScopeDataProvider_Sync::Reset() {
    CMultiLayerScopeDataProvider::Reset();
    sampleCount_ = 0;
    lastColumnIndex_ = 0;
}

void CScopeDataProvider_Sync::setSyncEnabled(bool enabled) {
    if (enabled == syncEnabled_ || !tryEnter()) return;
    syncEnabled_ = enabled;
    zeroAllLayers();
    unshift();
    Reset();
    leave();
}

void CScopeDataProvider_Sync::capture(const Sorel::ScopeLayerInput* const* inputs, int numSamples) {
    // With less than a sample per column, a virtual sample is a column and real ones are repeated.
    const double perColumn = samplesPerColumn();
    const double scale = std::min(1.0, perColumn);
    const int available = perColumn < 1 ? static_cast<int>(numSamples / perColumn) : numSamples;
    std::int64_t toSync =
        samplesToSync_ < 0 ? -1
                           : static_cast<std::int64_t>(static_cast<double>(samplesToSync_) / scale);

    for (int position = 0; position < available;) {
        int chunk = std::max(1, static_cast<int>(perColumn - columnFill_));
        chunk = std::min(chunk, available - position);
        if (toSync >= 0 && toSync < chunk) chunk = static_cast<int>(toSync);
        if (chunk > 0) {
            const int first = static_cast<int>(position * scale);
            gather(inputs, std::min(first, numSamples - 1), chunk);
        }
        position += chunk;

        if (toSync >= 0) toSync -= chunk;
        if (toSync == 0) {
            toSync = -1; // at most one sync point in a slice
            if (restartsHere()) {
                restart();
                continue;
            }
        }

        sampleCount_ += chunk;
        const std::int64_t index = std::llround(static_cast<double>(sampleCount_) / perColumn);
        if (index == lastColumnIndex_) {
            columnFill_ += chunk;
        } else {
            lastColumnIndex_ = index;
            columnFill_ = 0;
            PushColumn();
        }
    }
    samplesToSync_ = toSync;
}

bool CScopeDataProvider_Sync::restartsHere() {
    if (!syncEnabled_) return false;
    if (syncEvery_ == 0) return true;
    if (++syncHits_ < syncEvery_) return false;
    syncHits_ = 0;
    return true;
}

void CScopeDataProvider_Sync::restart() {
    // A shifted picture shows columns from both sides of the point: none of the old may stay.
    if (viewOffset_ > 0) zeroAllLayers();
    unshift();
    Reset();
}

void CScopeDataProvider_Sync::zeroAllLayers() {
    for (int layer = 0; layer < GetNumLayers(); ++layer)
        zeroLayer(layer);
}

void CScopeDataProvider_Sync::unshift() {
    viewOffset_ = 0.0F;
    viewOffsetShown_ = 0.0F;
}

void CScopeDataProvider_Sync::PushColumn() {
    const int width = numColumns();
    if (writeColumn_ < width) storeColumn(writeColumn_);
    if (writeColumn_ + 1 < width) {
        writeColumn_ = writeColumn_ + 1;
    } else if (syncEnabled_ && viewOffsetShown_ == 0.0F) {
        writeColumn_ = width; // full: stands still until the next sync point
    } else {
        writeColumn_ = 0;
        sampleCount_ = 0;
    }
}

int CScopeDataProvider_Sync::firstColumn(int writeColumn) {
    const float offset = viewOffset_;
    viewOffsetShown_ = offset;
    return static_cast<int>(offset + static_cast<float>(syncEnabled_ ? 0 : writeColumn));
}

} // namespace Orvel

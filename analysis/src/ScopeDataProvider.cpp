#include "analysis/ScopeDataProvider.h"

#include "kernels/Kernels.h"

#include <algorithm>
#include <bit>

namespace Sorel {

namespace {

static_assert(std::atomic<std::uint64_t>::is_always_lock_free);

std::uint64_t pack(ScopeColumn column) { return std::bit_cast<std::uint64_t>(column); }
ScopeColumn unpack(std::uint64_t bits) { return std::bit_cast<ScopeColumn>(bits); }

void widen(ScopeColumn& column, const float* samples, int count) {
    float lowest = 0;
    float highest = 0;
    Orvel::kernels().findRange(samples, count, &lowest, &highest);
    column.min = std::min(column.min, lowest);
    column.max = std::max(column.max, highest);
}

ScopeColumn rangeOf(const ScopeLayerInput& input, int offset, int count) {
    if (input.numChannels != 1 && input.numChannels != 2) return {};
    const bool left = input.numChannels == 1 || input.channelSelection != 2;
    const bool right = input.numChannels == 2 && input.channelSelection != 1;
    const float first = (left ? input.left : input.right)[offset];
    ScopeColumn range{first, first};
    if (left) widen(range, input.left + offset, count);
    if (right) widen(range, input.right + offset, count);
    return range;
}

} // namespace

CMultiLayerScopeDataProvider::CMultiLayerScopeDataProvider() = default;

void CMultiLayerScopeDataProvider::allocate(int numColumns) {
    for (int i = 0; i < numLayers_; ++i)
        layers_[static_cast<std::size_t>(i)].columns =
            std::make_unique<Cell[]>(static_cast<std::size_t>(numColumns));
}

void CMultiLayerScopeDataProvider::SetNumLayers(int count) {
    for (Layer& layer : layers_)
        layer.columns.reset();
    numLayers_ = std::clamp(count, 0, kMaxLayers);
    allocate(numColumns_);
}

void CMultiLayerScopeDataProvider::SetNumColumns(int numColumns) {
    numColumns = std::max(1, numColumns);
    const Core::Threads::GateHold nobodyWrites(gate_);
    allocate(numColumns);
    numColumns_ = numColumns;
    Reset();
    readStart_ = 0;
    version_.fetch_add(1, std::memory_order_release);
}

void CMultiLayerScopeDataProvider::Reset() {
    columnFill_ = 0;
    writeColumn_ = 0;
}

double CMultiLayerScopeDataProvider::rawSamplesPerColumn() const {
    const float perMillisecond = visibleTimeMs_ * sampleRate_;
    return double{perMillisecond} * 0.001 / numColumns_;
}

double CMultiLayerScopeDataProvider::samplesPerColumn() const {
    return std::max(1.0, rawSamplesPerColumn());
}

// ---- analysing thread

void CMultiLayerScopeDataProvider::Process(const ScopeLayerInput* const* inputs, int numSamples) {
    if (!gate_.tryEnter()) return;
    capture(inputs, numSamples);
    gate_.leave();
}

void CMultiLayerScopeDataProvider::capture(const ScopeLayerInput* const* inputs, int numSamples) {
    const double perColumn = samplesPerColumn();
    for (int position = 0; position < numSamples;) {
        const int missing = std::max(1, static_cast<int>(perColumn - columnFill_));
        const int chunk = std::min(missing, numSamples - position);
        gather(inputs, position, chunk);
        if (columnFill_ + chunk >= perColumn) {
            columnFill_ = 0;
            PushColumn();
        } else {
            columnFill_ += chunk;
        }
        position += chunk;
    }
}

void CMultiLayerScopeDataProvider::gather(const ScopeLayerInput* const* inputs,
                                          int offset,
                                          int count) {
    for (int i = 0; i < numLayers_; ++i) {
        Layer& layer = layers_[static_cast<std::size_t>(i)];
        ScopeColumn range = rangeOf(*inputs[i], offset, count);
        if (columnFill_ > 0) {
            range.min = std::min(range.min, layer.runningMin.load());
            range.max = std::max(range.max, layer.runningMax.load());
        }
        layer.runningMin = range.min;
        layer.runningMax = range.max;
    }
}

void CMultiLayerScopeDataProvider::storeColumn(int column) {
    for (int i = 0; i < numLayers_; ++i) {
        Layer& layer = layers_[static_cast<std::size_t>(i)];
        layer.columns[static_cast<std::size_t>(column)].store(
            pack({layer.runningMin, layer.runningMax}), std::memory_order_relaxed);
    }
    version_.fetch_add(1, std::memory_order_release);
}

void CMultiLayerScopeDataProvider::PushColumn() {
    storeColumn(writeColumn_);
    writeColumn_ = writeColumn_ + 1 < numColumns_ ? writeColumn_ + 1 : 0;
}

void CMultiLayerScopeDataProvider::zeroLayer(int index) {
    Layer& layer = layers_[static_cast<std::size_t>(index)];
    layer.runningMin = 0.0F;
    layer.runningMax = 0.0F;
    for (int column = 0; column < numColumns_; ++column)
        layer.columns[static_cast<std::size_t>(column)].store(0, std::memory_order_relaxed);
    version_.fetch_add(1, std::memory_order_release);
}

// ---- reader

bool CMultiLayerScopeDataProvider::TryLock() {
    readStart_ = writeColumn_;
    return true;
}

void CMultiLayerScopeDataProvider::ClearLayer(int layer) {
    if (layer >= 0 && layer < numLayers_) zeroLayer(layer);
}

int CMultiLayerScopeDataProvider::GetFirstPlace() {
    // Any whole number of columns to either side is a place on the ring.
    const int place = firstColumn(readStart_) % numColumns_;
    return place < 0 ? place + numColumns_ : place;
}

int CMultiLayerScopeDataProvider::GetLayerData(int layer, ScopeColumn* destination, int count) {
    if (layer < 0 || layer >= numLayers_) return 1;
    const Cell* const columns = layers_[static_cast<std::size_t>(layer)].columns.get();
    const int width = numColumns_;
    int column = GetFirstPlace();
    for (int i = 0; i < std::min(count, width); ++i) {
        destination[i] =
            unpack(columns[static_cast<std::size_t>(column)].load(std::memory_order_relaxed));
        if (++column == width) column = 0;
    }
    return 1;
}

} // namespace Sorel

// The scope's table: for every pixel column the lowest and the highest sample, in several layers.
#pragma once

#include "core/RealTime.h"
#include "core/RealtimeGate.h"
#include "core/Relaxed.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

namespace Sorel {

/// Lowest and highest sample of one column. Linear amplitude.
struct ScopeColumn {
    float min = 0;
    float max = 0;
};

/// The reader's view of the table.
/// Threads: one reader, the GUI thread. A column that is written meanwhile is old or new, never a
/// mixture; reader and writer never wait for each other.
class IScopeDataProvider {
  public:
    virtual int GetNumLayers() = 0;
    /// Begins one reading of all layers, so that they show the same moment. False: there is nothing
    /// to read now, keep the last picture.
    virtual bool TryLock() = 0;
    virtual void Unlock() = 0;
    /// Zeroes one layer.
    virtual void ClearLayer(int layer) = 0;
    /// Changes the width, at least 1, and starts over. Waits for a slice in progress.
    virtual void SetNumColumns(int numColumns) = 0;
    /// Where on the ring the leftmost column of this reading lies, 0 to the width - 1. A place
    /// keeps its column until the ring comes round: a reader can tell scrolling from change.
    virtual int GetFirstPlace() = 0;
    /// Another number than at the last reading, unless all columns are as they were then.
    virtual unsigned GetVersion() = 0;
    /// Copies up to `count` columns from left to right. Gives 1.
    virtual int GetLayerData(int layer, ScopeColumn* destination, int count) = 0;

  protected:
    ~IScopeDataProvider() = default;
};

/// What the owner feeds one layer with.
struct ScopeLayerInput {
    int numChannels = 1;      ///< 1 or 2; anything else reads as silence
    int channelSelection = 0; ///< of two: 1 left only, 2 right only, else both
    const float* left = nullptr;
    const float* right = nullptr;
};

/// The table as a free-running ring: the picture scrolls.
/// Threads: `Process` and the setters of time and rate on the analysing thread (or under its lock);
/// the reader's operations on the GUI thread; `SetNumLayers` only during set-up.
class CMultiLayerScopeDataProvider : public IScopeDataProvider {
  public:
    static constexpr int kMaxLayers = 10;

    CMultiLayerScopeDataProvider();
    virtual ~CMultiLayerScopeDataProvider() = default;
    CMultiLayerScopeDataProvider(const CMultiLayerScopeDataProvider&) = delete;
    CMultiLayerScopeDataProvider& operator=(const CMultiLayerScopeDataProvider&) = delete;

    int GetNumLayers() override { return numLayers_; }
    bool TryLock() override;
    void Unlock() override {}
    void ClearLayer(int layer) override;
    void SetNumColumns(int numColumns) override;
    int GetFirstPlace() override;
    unsigned GetVersion() override { return version_.load(std::memory_order_acquire); }
    int GetLayerData(int layer, ScopeColumn* destination, int count) override;

    /// Starts over at the first column; what is drawn stays.
    virtual void Reset();
    void SetVisibleTime(float milliseconds) { visibleTimeMs_ = milliseconds; }
    void SetSampleRate(float hz) { sampleRate_ = hz; }
    /// Cut to kMaxLayers. Throws std::bad_alloc.
    void SetNumLayers(int count);
    /// One input per layer; `numSamples` samples each. A call that falls into a change of the width
    /// is left out.
    void Process(const ScopeLayerInput* const* inputs, int numSamples) ORVEL_NONBLOCKING;

    int numColumns() const { return numColumns_; }
    /// Samples that form one column at the settings of the moment.
    virtual double samplesPerColumn() const;

  protected:
    /// The gate that keeps the table from changing its width. Analysing thread: false means that it
    /// is changing now, and what was to be done is left out.
    bool tryEnter() ORVEL_NONBLOCKING { return gate_.tryEnter(); }
    void leave() ORVEL_NONBLOCKING { gate_.leave(); }
    /// Inside the gate: takes the samples in.
    virtual void capture(const ScopeLayerInput* const* inputs, int numSamples) ORVEL_NONBLOCKING;
    /// Inside the gate: stores the running pair of every layer and moves on.
    virtual void PushColumn() ORVEL_NONBLOCKING;
    /// Reader: the column that is drawn first; the reading began with `writeColumn` next in turn.
    virtual int firstColumn(int writeColumn) { return writeColumn; }
    /// Zeroes a layer's columns and its running pair.
    void zeroLayer(int layer) ORVEL_NONBLOCKING;

    double rawSamplesPerColumn() const;
    /// Takes `count` samples from `offset` on into the running pairs.
    void gather(const ScopeLayerInput* const* inputs, int offset, int count) ORVEL_NONBLOCKING;
    void storeColumn(int column) ORVEL_NONBLOCKING;

    int columnFill_ = 0;                // samples in the running pairs
    Core::Relaxed<int> writeColumn_{0}; // next column to write; the reader looks at it

  private:
    using Cell = std::atomic<std::uint64_t>; // one ScopeColumn
    struct Layer {
        std::unique_ptr<Cell[]> columns;
        // Analysing thread; the reader's ClearLayer may zero them as well.
        Core::Relaxed<float> runningMin{0.0F};
        Core::Relaxed<float> runningMax{0.0F};
    };
    void allocate(int numColumns);

    Core::Relaxed<float> visibleTimeMs_{200.0F};
    Core::Relaxed<float> sampleRate_{44100.0F};
    Core::Relaxed<int> numColumns_{200};
    int numLayers_ = 0;
    std::array<Layer, kMaxLayers> layers_;
    Core::Threads::RealtimeGate gate_; // against changes of the width
    int readStart_ = 0;                // reader: writeColumn_ when the reading began
    std::atomic<unsigned> version_{0}; // counts the changes of columns
};

} // namespace Sorel

// The audio thread's side of the analysis: collects host blocks into whole chunks.
#pragma once

#include "analysis/AnalysisBlock.h"
#include "core/RealTime.h"
#include "frame/ChannelBuffer.h"

namespace Orvel {

/// What one host block says of the transport, with the tempo already valid.
struct BlockTransport {
    bool playing = false;
    float tempo = 120.0F;         ///< beats per minute
    double position = 0;          ///< quarter notes, of the block's first sample
    double quartersPerSample = 0; ///< at this tempo and the sample rate
};

/// Two capture buffers, two records, and how far the chunk of the moment is filled.
/// Threads: `add`, `finish` and `exchange` on the audio thread; `resize` on a thread that keeps the
/// audio thread out.
class ChunkCapture {
  public:
    /// Shortest chunk: shorter blocks from a host are collected.
    static constexpr int kMinimumLength = 10;
    static int lengthForBlockSize(int samples) {
        return samples > kMinimumLength ? samples : kMinimumLength;
    }

    explicit ChunkCapture(int chunkLength);

    /// Starts over with an empty chunk of that length. Throws std::bad_alloc, changing nothing.
    void resize(int chunkLength);
    int chunkLength() const { return chunkLength_; }

    /// Takes samples into the chunk, as many as it still lacks, from `offset` in the host's block
    /// of `count` samples. Gives how many it took.
    int add(const float* left,
            const float* right,
            int offset,
            int count,
            const BlockTransport& transport) noexcept ORVEL_NONBLOCKING;
    bool isFull() const { return remaining_ == 0; }
    /// Writes the transport into the full write record.
    void finish(const BlockTransport& transport, bool resetFirst) noexcept ORVEL_NONBLOCKING;
    /// Swaps the two records and starts an empty chunk. Under the analysis lock, nothing in flight.
    void exchange() noexcept ORVEL_NONBLOCKING;

    const AnalysisBlock& readRecord() const { return *read_; }

  private:
    void pointRecords();

    int chunkLength_;
    int remaining_;            // samples the chunk still lacks
    bool playing_ = false;     // of the block that added last
    double firstPosition_ = 0; // quarter notes, of the chunk's first sample
    Vardo::CNChannelBuffer buffers_[2];
    AnalysisBlock records_[2];
    AnalysisBlock* write_ = &records_[0];
    AnalysisBlock* read_ = &records_[1];
};

} // namespace Orvel

// How a recording is cut into the blocks that a plug-in analyses.
#pragma once

#include <cstdint>

namespace Standalone {

/// Samples. An analyser never works on less at a time, whatever block size a host declares.
inline constexpr int kSmallestBlock = 10;

/// Cuts a stream of unknown length so that every sample is in exactly one block and none is
/// shorter than kSmallestBlock. All blocks have the planned size, but the last one or two: the rest
/// is a smaller block; a rest below the smallest shares out the last full block's samples with it
/// (two blocks of about half that, or a single one slightly larger, where halves were too short).
/// Only a whole stream shorter than kSmallestBlock needs silence behind it.
class BlockPlan {
  public:
    /// `blockSize` below kSmallestBlock counts as that.
    explicit BlockPlan(int blockSize);

    int blockSize() const { return blockSize_; }
    /// Samples; no block is ever longer.
    int largestBlock() const;
    /// Samples that must be at hand before a block can be cut while more may follow.
    int lookAhead() const { return blockSize_ + kSmallestBlock; }

    /// Length of the next block when `available` samples are left or at hand; `ended` says that no
    /// more will follow. 0 while more must be read, and when nothing is left. Longer than
    /// `available` only for a stream that is too short as a whole.
    int nextBlock(std::int64_t available, bool ended) const;

  private:
    int blockSize_;
};

} // namespace Standalone

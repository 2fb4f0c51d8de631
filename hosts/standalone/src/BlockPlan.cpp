// How a recording is cut into blocks.
#include "BlockPlan.h"

#include <algorithm>

namespace Standalone {

BlockPlan::BlockPlan(int blockSize)
    : blockSize_(std::max(blockSize, kSmallestBlock)) {}

int BlockPlan::largestBlock() const {
    // Two halves need 20 samples; below that block and rest stay together.
    return std::max(blockSize_, std::min(blockSize_ + kSmallestBlock, 2 * kSmallestBlock) - 1);
}

int BlockPlan::nextBlock(std::int64_t available, bool ended) const {
    // After a full block there is always enough left for another one.
    if (available >= lookAhead()) return blockSize_;
    if (!ended || available <= 0) return 0;

    const int left = static_cast<int>(available);
    if (left <= blockSize_) return std::max(left, kSmallestBlock);
    return left >= 2 * kSmallestBlock ? left - left / 2 : left;
}

} // namespace Standalone

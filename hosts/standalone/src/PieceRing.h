// A ring of short runs of audio between one thread that reads a file and one that plays it.
#pragma once

#include "core/RealTime.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Standalone {

/// Frames that follow each other in their source.
struct Piece {
    static constexpr int kMostFrames = 1024;

    std::array<float, kMostFrames> left;
    std::array<float, kMostFrames> right;
    int frames = 0;
    std::int64_t position = 0;    ///< of the first frame in the source
    std::uint32_t generation = 0; ///< of the seek it was read for
};

/// Threads: one writes, one reads; neither ever waits for the other.
class PieceRing {
  public:
    /// `pieces` at least 1. Takes all its memory here.
    explicit PieceRing(std::size_t pieces)
        : pieces_(pieces) {}

    // ---- The writing thread
    /// The next piece to fill; null when the ring is full.
    Piece* free() noexcept ORVEL_NONBLOCKING {
        const std::uint64_t written = written_.load(std::memory_order_relaxed);
        if (written - taken_.load(std::memory_order_acquire) == pieces_.size()) return nullptr;
        return &pieces_[written % pieces_.size()];
    }
    /// Hands over the piece that `free` gave.
    void push() noexcept ORVEL_NONBLOCKING {
        written_.store(written_.load(std::memory_order_relaxed) + 1, std::memory_order_release);
    }

    // ---- The reading thread
    /// The oldest piece; null when the ring is empty.
    const Piece* front() const noexcept ORVEL_NONBLOCKING {
        const std::uint64_t taken = taken_.load(std::memory_order_relaxed);
        if (taken == written_.load(std::memory_order_acquire)) return nullptr;
        return &pieces_[taken % pieces_.size()];
    }
    /// Gives the piece that `front` gave back.
    void pop() noexcept ORVEL_NONBLOCKING {
        taken_.store(taken_.load(std::memory_order_relaxed) + 1, std::memory_order_release);
    }

  private:
    static constexpr std::size_t kCacheLine = 64;

    std::vector<Piece> pieces_;
    alignas(kCacheLine) std::atomic<std::uint64_t> written_{0}; // by the writing thread
    alignas(kCacheLine) std::atomic<std::uint64_t> taken_{0};   // by the reading thread
};

} // namespace Standalone

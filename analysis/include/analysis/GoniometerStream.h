// The latest points of the goniometer, for the view that draws them.
#pragma once

#include "core/RealTime.h"
#include "core/Relaxed.h"

#include <array>
#include <atomic>
#include <cstdint>

namespace Orvel {

/// Where a sample stands: side to the right, mid upwards, both -1 to 1.
struct GoniometerPoint {
    float side = 0; ///< right - left, halved
    float mid = 0;  ///< right + left, halved
};

/// A signal up to full scale is drawn at 0.9 of its size; a slice that goes beyond is drawn so that
/// it just reaches the edge, and never leaves it. Threads: `push` on the analysing thread, `read`
/// on the GUI thread; neither waits, and a point is old or new, never a mixture.
class GoniometerStream {
  public:
    static constexpr std::size_t kNumPoints = 4096;

    GoniometerStream();

    /// One slice; the oldest points go.
    void push(const float* left, const float* right, int count) noexcept ORVEL_NONBLOCKING;
    /// All points, oldest first; those that were never written are in the centre.
    void read(std::array<GoniometerPoint, kNumPoints>& points) const noexcept;

  private:
    std::array<std::atomic<std::uint64_t>, kNumPoints> ring_; // one GoniometerPoint each
    Core::Relaxed<std::uint32_t> next_{0};
};

} // namespace Orvel

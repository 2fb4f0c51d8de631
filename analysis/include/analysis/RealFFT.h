// A forward Fourier transform of real samples.
#pragma once

#include "core/RealTime.h"
#include "frame/ChannelBuffer.h"

#include <memory>

namespace Orvel {

struct FftPlan;

/// One size at a time, a power of two. The transform is scaled by 1/N: a full-scale sine at the
/// centre of a bin has the magnitude 0.5 there.
/// Threads: `setSize` on the main thread; the rest on one thread at a time, never beside `setSize`.
/// What does not change while transforming (plan and factors) is made once per process and size,
/// in well below a millisecond, and shared by all instances.
class CRealFFT {
  public:
    static constexpr int kSmallestSize = 32;
    static constexpr int kLargestSize = 1 << 22;

    CRealFFT();
    ~CRealFFT();

    /// Rounds `length` up to a power of two within the two sizes above. Fails: std::bad_alloc, and
    /// the old size stays.
    void setSize(int length);
    int size() const noexcept { return size_; }
    /// The size that `setSize` would choose.
    static int sizeFor(int length) noexcept;

    /// From `size()` samples the bins 0..size()/2 as pairs of real and imaginary part, size() + 2
    /// floats. Nothing happens before the first `setSize`.
    void forward(const float* input, float* output) noexcept ORVEL_NONBLOCKING;

    /// The levels of the same bins, of `size()` samples times `window`: 20 log10 of the magnitude
    /// plus `calibrationDb`, and at least `floorDb`. Samples below -260 dBFS count as 0.
    /// Single precision: within 0.001 dB of exact arithmetic for bins down to 80 dB below the
    /// highest in noise, down to 60 dB below a lone tone; 80 dB below one, up to 0.006 dB.
    void forwardToDb(const float* input,
                     const float* window,
                     float calibrationDb,
                     float floorDb,
                     float* db) noexcept ORVEL_NONBLOCKING;

  private:
    void transformPieces() noexcept;
    float* pieces() noexcept { return scratch_.channel(0); }
    float* transformed() noexcept { return scratch_.channel(1); }

    int size_ = 0;
    std::shared_ptr<const FftPlan> plan_;
    Vardo::CNChannelBuffer scratch_;
};

} // namespace Orvel

// What all transforms of one size share: the plan and the twiddle factors.
#pragma once

#include <memory>
#include <vector>

namespace Orvel {

/// Four complex transforms of `pieceSize` points, out of place; see SpectrumKernels. Read only once
/// made, and so usable by any number of threads.
///
/// Plans are estimated, not measured. Measuring one takes FFTW a quarter of a second at 16384
/// points and seconds at the largest sizes, and gives sums in another order at each start of a
/// program; estimating takes a tenth of a millisecond, and for pieces of at most some thousand
/// points the plan is as fast.
struct FftPlan {
    explicit FftPlan(int pieceSize);
    ~FftPlan();
    FftPlan(const FftPlan&) = delete;
    FftPlan& operator=(const FftPlan&) = delete;

    static constexpr int kPieces = 4;
    /// Floats in a buffer for `execute`.
    static int bufferSize(int pieceSize);

    /// `in` and `out` are two such buffers, aligned as those of CNChannelBuffer.
    void execute(float* in, float* out) const noexcept;

    int pieceSize;
    std::vector<float> twiddles;
    void* plan = nullptr;
};

/// The one plan of this size in the process, made when first asked for. Threads: any but the audio
/// and the analysing thread; takes a lock, as FFTW's planner can serve only one at a time.
/// Fails: std::bad_alloc.
std::shared_ptr<const FftPlan> fftPlan(int pieceSize);

} // namespace Orvel

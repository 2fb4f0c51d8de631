#include "analysis/RealFFT.h"

#include "FftPlan.h"
#include "kernels/SpectrumKernels.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace Orvel {

static_assert(CRealFFT::kSmallestSize == 8 * kSmallestPiece);

CRealFFT::CRealFFT() = default;
CRealFFT::~CRealFFT() = default;

int CRealFFT::sizeFor(int length) noexcept {
    const auto wanted = static_cast<unsigned>(std::clamp(length, kSmallestSize, kLargestSize));
    return static_cast<int>(std::bit_ceil(wanted));
}

void CRealFFT::setSize(int length) {
    const int size = sizeFor(length);
    if (size == size_) return;
    auto plan = fftPlan(size / 8);
    scratch_.resize(FftPlan::bufferSize(size / 8), 2);
    plan_ = std::move(plan);
    size_ = size;
}

void CRealFFT::transformPieces() noexcept { plan_->execute(pieces(), transformed()); }

void CRealFFT::forward(const float* input, float* output) noexcept {
    if (size_ == 0) return;
    const SpectrumKernels& kernels = spectrumKernels();
    kernels.split(input, nullptr, plan_->pieceSize, pieces());
    transformPieces();
    // The pieces join to twice the transform.
    kernels.joinToBins(transformed(), plan_->twiddles.data(), plan_->pieceSize,
                       0.5F / static_cast<float>(size_), output);
}

void CRealFFT::forwardToDb(const float* input,
                           const float* window,
                           float calibrationDb,
                           float floorDb,
                           float* db) noexcept {
    if (size_ == 0) return;
    const SpectrumKernels& kernels = spectrumKernels();
    kernels.split(input, window, plan_->pieceSize, pieces());
    transformPieces();
    const double scaleDb = -20 * std::log10(2.0 * size_);
    kernels.joinToDb(transformed(), plan_->twiddles.data(), plan_->pieceSize,
                     static_cast<float>(double{calibrationDb} + scaleDb), floorDb, db);
}

} // namespace Orvel

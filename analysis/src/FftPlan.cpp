#include "FftPlan.h"

#include "frame/ChannelBuffer.h"
#include "kernels/SpectrumKernels.h"

#include <cmath>
#include <fftw3.h>
#include <map>
#include <mutex>
#include <new>
#include <numbers>

namespace Orvel {

namespace {

fftwf_complex* complexNumbers(float* at) { return reinterpret_cast<fftwf_complex*>(at); }

std::vector<float> makeTwiddles(int m) {
    std::vector<float> twiddles(static_cast<std::size_t>(numTwiddles(m)));
    for (int r = 1; r < 8; ++r) {
        for (int k = 0; k <= m / 2; ++k) {
            const double angle = -2 * std::numbers::pi * r * k / (8.0 * m);
            float* const at = twiddles.data() + twiddleIndex(r, k);
            at[0] = static_cast<float>(std::cos(angle));
            at[kTwiddleBlock] = static_cast<float>(std::sin(angle));
        }
    }
    return twiddles;
}

/// Plans live as long as the process: an instance made after the last one went finds them again.
struct Plans {
    std::mutex lock;
    std::map<int, std::shared_ptr<const FftPlan>> bySize;
};
Plans& plans() {
    static Plans all;
    return all;
}

} // namespace

FftPlan::FftPlan(int size)
    : pieceSize(size)
    , twiddles(makeTwiddles(size)) {
    // An estimate looks at no data, only at where it lies.
    Vardo::CNChannelBuffer buffers(bufferSize(size), 2);
    const int distance = pieceStride(size) / 2;
    plan = fftwf_plan_many_dft(1, &size, kPieces, complexNumbers(buffers.channel(0)), nullptr, 1,
                               distance, complexNumbers(buffers.channel(1)), nullptr, 1, distance,
                               FFTW_FORWARD, FFTW_ESTIMATE | FFTW_DESTROY_INPUT);
    if (plan == nullptr) throw std::bad_alloc();
}

int FftPlan::bufferSize(int pieceSize) { return kPieces * pieceStride(pieceSize); }

FftPlan::~FftPlan() { fftwf_destroy_plan(static_cast<fftwf_plan>(plan)); }

void FftPlan::execute(float* in, float* out) const noexcept {
    fftwf_execute_dft(static_cast<fftwf_plan>(plan), complexNumbers(in), complexNumbers(out));
}

std::shared_ptr<const FftPlan> fftPlan(int pieceSize) {
    Plans& all = plans();
    const std::scoped_lock locked(all.lock);
    auto& plan = all.bySize[pieceSize];
    if (plan == nullptr) plan = std::make_shared<FftPlan>(pieceSize);
    return plan;
}

} // namespace Orvel

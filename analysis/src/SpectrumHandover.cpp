#include "analysis/SpectrumHandover.h"

#include <algorithm>
#include <utility>

namespace Orvel {

void SpectrumHandover::prepare(int fftSize) {
    const auto bins = static_cast<std::size_t>(SpectrumFrame::numBins(fftSize));
    wantedSize_ = fftSize; // the reader makes room in its own frame before it gives it back
    merged_.levelsDb.assign(bins, kLowestShownDb);
    merged_.fftSize = fftSize;
    // The writer is kept out, so its frame and the one that it gets in exchange are ours.
    for (int i = 0; i < 2; ++i) {
        frames_[back_].fftSize = 0;
        frames_[back_].levelsDb.assign(bins, kLowestShownDb);
        back_ = middle_.exchange(back_, std::memory_order_acq_rel) & ~kFresh;
    }
}

void SpectrumHandover::push(const float* levelsDb, int fftSize) noexcept {
    if (!visible_) return;
    SpectrumFrame& frame = frames_[back_];
    const bool fits = frame.hasRoomFor(fftSize) && merged_.fftSize == fftSize;
    // One without room is sent round empty: it comes back with room once the reader had it.
    frame.fftSize = fits ? fftSize : 0;
    if (fits) {
        const int bins = SpectrumFrame::numBins(fftSize);
        float* const out = frame.levelsDb.data();
        for (int i = 0; i < bins; ++i)
            out[i] = std::max(kLowestShownDb, levelsDb[i]);
        if (!consumed_) {
            float* const merged = merged_.levelsDb.data();
            for (int i = 0; i < bins; ++i)
                merged[i] = std::max(merged[i], out[i]);
            std::copy_n(merged, bins, out);
        }
    }
    publish();
}

void SpectrumHandover::publish() noexcept {
    back_ = middle_.exchange(back_ | kFresh, std::memory_order_acq_rel) & ~kFresh;
}

bool SpectrumHandover::take(SpectrumFrame& frame) {
    if ((middle_.load(std::memory_order_relaxed) & kFresh) == 0) return false;
    const int size = wantedSize_;
    if (!frames_[front_].hasRoomFor(size))
        frames_[front_].levelsDb.resize(static_cast<std::size_t>(SpectrumFrame::numBins(size)));
    front_ = middle_.exchange(front_, std::memory_order_acq_rel) & ~kFresh;
    if (frames_[front_].fftSize == 0) return false;
    std::swap(frames_[front_], frame);
    return true;
}

} // namespace Orvel

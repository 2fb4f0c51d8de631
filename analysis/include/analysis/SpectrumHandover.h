// Carries spectra from the analysing thread to one view.
#pragma once

#include "core/RealTime.h"
#include "core/Relaxed.h"

#include <array>
#include <atomic>
#include <vector>

namespace Orvel {

/// The lowest level a view shows, dB; what it is given is never lower.
inline constexpr float kLowestShownDb = -72.0F;

/// One spectrum for display: levels in dB of the bins 0..fftSize/2, none below `kLowestShownDb`.
struct SpectrumFrame {
    int fftSize = 0; ///< 0: no frame
    std::vector<float> levelsDb;

    static int numBins(int fftSize) { return fftSize / 2 + 1; }
    bool hasRoomFor(int size) const { return static_cast<int>(levelsDb.size()) >= numBins(size); }
};

/// Three frames go round between writer, reader and the place where they meet, so that nobody
/// waits, copies twice or sees half a frame. A frame that the view did not fetch in time is
/// replaced by the next.
///
/// Until a view has been painted for the first time, frames are merged to the highest level of each
/// bin, so that its first picture has everything since it was opened.
///
/// Threads: `push` on the analysing thread; `prepare` on the main thread while the analysing thread
/// is kept out by the analysis lock; `take` and the switches on the GUI thread, beside both.
class SpectrumHandover {
  public:
    /// Makes room for frames of that size and starts merging anew. A frame not yet fetched is lost.
    /// Fails: std::bad_alloc; frames may then be dropped, nothing else happens.
    void prepare(int fftSize);

    /// A view that is not visible gets nothing.
    void setVisible(bool visible) noexcept { visible_ = visible; }
    bool isVisible() const noexcept { return visible_; }
    /// At the end of each paint.
    void setConsumed() noexcept { consumed_ = true; }

    /// The levels of bins 0..fftSize/2, in dB. Without `prepare` for that size the frame is
    /// dropped.
    void push(const float* levelsDb, int fftSize) noexcept ORVEL_NONBLOCKING;

    /// Exchanges `frame` for the newest one; false when there is none since the last call. The view
    /// compares its size: a frame of a size it is not set up for is to be dropped. Fails:
    /// std::bad_alloc, and `frame` stays.
    bool take(SpectrumFrame& frame);

  private:
    static constexpr unsigned kFresh = 4; // beside the number of a frame, 0..2

    void publish() noexcept;

    std::array<SpectrumFrame, 3> frames_;
    unsigned back_ = 0;               // the writer's
    std::atomic<unsigned> middle_{1}; // where both meet; the flag says that the writer was there
    unsigned front_ = 2;              // the reader's
    SpectrumFrame merged_;            // the writer's
    Core::Relaxed<int> wantedSize_{0};
    Core::Relaxed<bool> visible_{false};
    Core::Relaxed<bool> consumed_{false};
};

} // namespace Orvel

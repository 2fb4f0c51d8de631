#include "analysis/SpectrumPeakHold.h"

#include "analysis/SpectrumHandover.h"

#include <algorithm>

namespace Orvel {

void SpectrumPeakHold::setReset(float dbPerSecond) noexcept {
    falls_ = dbPerSecond > 0;
    if (!falls_) return;
    decay_ = dbPerSecond * 0.001F;
    holdMs_ = 2000 - std::clamp(dbPerSecond - 24, 0.0F, 24.0F) / 24 * 1500;
}

void SpectrumPeakHold::step(float level,
                            float ms,
                            float& peakDb,
                            float& remainingMs) const noexcept {
    if (level >= peakDb) {
        peakDb = level;
        remainingMs = holdMs_;
    } else if (!falls_) {
        return;
    } else if (remainingMs > 0) {
        remainingMs -= ms;
    } else if (peakDb > kLowestShownDb) {
        peakDb = std::max(kLowestShownDb, peakDb - decay_ * ms);
    }
}

} // namespace Orvel

#include "analysis/SpectrumPeakHold.h"

#include <algorithm>

namespace Orvel {

void SpectrumPeakHold::setReset(float dbPerSecond) noexcept {
    falls_ = dbPerSecond > 0;
    if (!falls_) return;
    decay_ = dbPerSecond * 0.001F;
    holdMs_ = 2000 - std::clamp(dbPerSecond - 24, 0.0F, 24.0F) / 24 * 1500;
}

} // namespace Orvel

// Which frequencies have a line in a spectrum.
#pragma once

#include "analysis/SpectrumScale.h"

#include <span>
#include <string>
#include <vector>

namespace Sorel {

struct FrequencyLine {
    double hz = 0.0;
    double x = 0.0; ///< from the left edge, in the scale's unit; not rounded
    std::string text;
};

/// Octaves from 30 Hz. The width is cut into 25 slots; each takes the octave nearest to its
/// frequency, in hertz, and what several take is there once: so a linear scale thins out the low
/// octaves by itself.
class FrequencyGrid {
  public:
    void place(const Orvel::FrequencyScale& scale);
    std::span<const FrequencyLine> lines() const { return lines_; }

  private:
    std::vector<FrequencyLine> lines_;
};

/// Pixels that a number of this many digits takes in bold 9 px, for leaving out what would overlap.
inline double gridTextWidth(const FrequencyLine& line) {
    return 5.0 * static_cast<double>(line.text.size());
}

} // namespace Sorel

// How often each level occurred, as a column of light.
#pragma once

#include "analysis/DisplayRecord.h"
#include "draw/DrawContext.h"
#include "views/MeterScale.h"

#include <array>
#include <cstdint>
#include <span>

namespace Sorel {

/// The counts of one decibel each, spread over the rows of a meter's bar so that they glow into
/// each other: between the middles of two bins a raised cosine leads from one to the other.
class HistogramColumn {
  public:
    static constexpr int kNumRows = 272;
    using Counts = std::array<int, Orvel::kNumShownBins>;
    using Shades = std::array<std::uint8_t, kNumRows>; ///< alpha of each row, from the top down

    /// Which bins each row shows.
    void setScale(const MeterScale& scale);
    /// A bin of `highest` counts shines in full.
    Shades shades(const Counts& counts, int highest) const;

    /// `area` is kNumRows pixels high.
    static void draw(CDrawContext& context, const CRect& area, const Shades& shades, CColor color);

  private:
    struct Row {
        int bin = 0;     ///< the lower of two
        float above = 0; ///< 0..1, how much of the upper one
    };
    std::array<Row, kNumRows> rows_{};
};

} // namespace Sorel

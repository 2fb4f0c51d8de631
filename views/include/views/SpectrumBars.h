// A spectrum as bars with peaks.
#pragma once

#include "analysis/SpectrumModel.h"
#include "views/ChangedRows.h"
#include "views/SpectrumAxes.h"

#include <vector>

namespace Sorel {

/// Bars on whole pixels, one pixel apart. Where a scale makes bands narrower than a pixel, the
/// loudest of those that share one is shown. Threads: GUI thread.
class SpectrumBars {
  public:
    /// Takes the levels of the moment. True when all of the picture changes by it, else what does
    /// is entered in `changes`, by rows from the top of the room.
    bool update(const Orvel::SpectrumModel& model, const CRect& room, ChangedRows& changes);
    /// dB, of the bar at `x` in the parent's pixels. A gap belongs to the bar on its right.
    float levelAt(double x) const { return barAt(x).levelDb; }
    float peakAt(double x) const { return barAt(x).peakDb; }
    void drawBars(CDrawContext& context, const SpectrumAxes& axes);
    void drawPeaks(CDrawContext& context, const CRect& room) const;

  private:
    /// Pixels of the parent.
    struct Bar {
        double left = 0.0;
        double right = 0.0;
        double top = 0.0;
        double peak = 0.0;
        float levelDb = Orvel::kLowestShownDb;
        float peakDb = Orvel::kLowestShownDb;
        bool standsAs(const Bar& other) const { return left == other.left && right == other.right; }
    };

    const Bar& barAt(double x) const;

    std::vector<Bar> bars_; // as drawn
    std::vector<Bar> next_;
    CPath corner_; // of the outermost bars, while drawing
};

} // namespace Sorel

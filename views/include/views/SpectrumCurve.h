// A spectrum as a filled line, with the line of its peaks.
#pragma once

#include "analysis/SpectrumModel.h"
#include "views/ChangedRows.h"
#include "views/ColumnRange.h"
#include "views/SpectrumAxes.h"

#include <vector>

namespace Sorel {

/// One level a pixel column. A column that holds the centres of several bins shows what the
/// analysis makes of them (the highest, or their energy); between bins that lie further apart than
/// a column the curve swings as a raised cosine, so that every bin stands at its own frequency.
/// Threads: GUI thread.
class SpectrumCurve {
  public:
    /// Takes the levels of the moment. True when all of the picture changes by it, else what does
    /// is entered in `changes`, by rows of a picture `height` high.
    bool update(const Orvel::SpectrumModel& model, double height, ChangedRows& changes);
    /// dB; `column` pixels from the left edge.
    float levelAt(int column) const { return at(level_, column); }
    float peakAt(int column) const { return at(peak_, column); }

    void drawFill(CDrawContext& context, const SpectrumAxes& axes);
    void drawLevels(CDrawContext& context, const CRect& room);
    void drawPeaks(CDrawContext& context, const CRect& room);

  private:
    /// Bins first..end - 1, or, when there are none, `part` of the way from bin `first` on.
    struct Column {
        int first = 0;
        int end = 0;
        float part = 0.0F;
    };
    /// What the columns were placed for.
    struct Format {
        double width = 0.0;
        double highestHz = 0.0;
        double binHz = 0.0;
        bool linear = false;
        friend bool operator==(const Format&, const Format&) = default;
    };

    static float at(const std::vector<float>& levels, int column);
    bool place(const Orvel::SpectrumModel& model);
    void measure(Orvel::AnalyzeMode mode,
                 Orvel::SpectrumLevels bins,
                 std::vector<float>& shown,
                 double height,
                 ChangedRows& changes);
    static void enter(const std::vector<float>& shown,
                      std::size_t column,
                      float before,
                      double height,
                      ChangedRows& changes);
    ColumnRange toPaint(const CDrawContext& context, const CRect& room) const;
    void drawTrace(CDrawContext& context,
                   const CRect& room,
                   const std::vector<float>& levels,
                   CColor color,
                   double width);

    Format format_;
    std::vector<Column> columns_;
    std::vector<float> level_; // dB, as drawn
    std::vector<float> peak_;
    std::vector<float> upper_;
    std::vector<float> lower_; // heights, while drawing
};

} // namespace Sorel

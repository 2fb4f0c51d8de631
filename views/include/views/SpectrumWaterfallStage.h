// What stands around the rows of the waterfall: floor, walls, lines and numbers.
#pragma once

#include "draw/DrawContext.h"
#include "views/FrequencyGrid.h"
#include "views/WaterfallProjection.h"

#include <span>

namespace Sorel {

/// Threads: GUI thread.
class SpectrumWaterfallStage {
  public:
    /// `scaleWidth`: where the lines' x end. `rotate` 0..1: above 0.8 every second level is left
    /// out, and more where their numbers would touch.
    void place(const WaterfallProjection& projection, double rotate, double scaleWidth);

    /// Under the rows.
    void drawBehind(CDrawContext& context, std::span<const FrequencyLine> frequencies);
    /// Over them.
    void drawInFront(CDrawContext& context, std::span<const FrequencyLine> frequencies);

  private:
    void fillFace(CDrawContext& context, CPoint a, CPoint b, CPoint c, CPoint d, CColor color);
    static void line(CDrawContext& context, CPoint a, CPoint b);
    void drawLevelNumber(CDrawContext& context, CPoint corner, double left, int db) const;
    void drawFrequencies(CDrawContext& context, std::span<const FrequencyLine> frequencies) const;

    WaterfallProjection projection_;
    double scaleWidth_ = 1.0;
    int levelStep_ = 1;
    CPath face_;
};

} // namespace Sorel

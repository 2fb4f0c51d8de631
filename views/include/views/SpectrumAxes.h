// Lines, numbers and shades around a flat spectrum.
#pragma once

#include "draw/DrawContext.h"
#include "views/FrequencyGrid.h"
#include "views/StillPicture.h"

namespace Sorel {

/// Levels from +9 dB at the top to -72 dB at the bottom of `room`, frequencies from 20 Hz at its
/// left to half the sample rate at its right. What is drawn lies in three layers: lines under the
/// picture, the shade of the left edge over its fill, and foot and numbers over everything.
class SpectrumAxes {
  public:
    static constexpr double kFootHeight = 13.0; ///< pixels that the frequency numbers take

    /// `cornerRadius`: of the two corners at the foot, 0 for none.
    void setRoom(const CRect& room, double cornerRadius);
    /// Its width must be the room's.
    void setScale(const Orvel::FrequencyScale& scale);

    const FrequencyGrid& grid() const { return grid_; }
    const CRect& room() const { return room_; }
    double cornerRadius() const { return cornerRadius_; }
    /// On the pixel grid: hairlines at + 0.5.
    double levelLine(float db) const;
    double frequencyLine(double position) const;

    /// Ground and lines of `view`.
    void drawLines(CDrawContext& context, const CView& view);
    /// See CView::covers.
    bool covers(const CRect& rect) const { return lines_.covers(rect); }
    void drawLeftShade(CDrawContext& context);
    void drawNumbers(CDrawContext& context);

  private:
    void paintLines(CDrawContext& context) const;
    void paintLeftShade(CDrawContext& context, const CRect& shade) const;
    void drawLevels(CDrawContext& context) const;
    void drawFrequencies(CDrawContext& context) const;

    CRect room_;
    double cornerRadius_ = 0.0;
    FrequencyGrid grid_;
    CPath foot_;
    StillPicture lines_; // with the ground
    StillPicture leftShade_;
    StillPicture frequencies_;
    StillPicture levels_;
};

/// A box whose two lower corners are rounded by these radii.
void addFootedBox(CPath& path, const CRect& box, double leftRadius, double rightRadius);

} // namespace Sorel

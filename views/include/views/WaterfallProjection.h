// From frequency, level and age to pixels: the one place that knows how the waterfall is turned.
#pragma once

#include "draw/Geometry.h"

namespace Sorel {

/// The newest row stands in front, from the left edge down to the right; older ones behind it, up
/// and to the right. Turning further stretches the width and flattens the height.
class WaterfallProjection {
  public:
    WaterfallProjection() = default;
    /// `rotate` 0..1.
    WaterfallProjection(const CRect& room, double rotate)
        : room_(room)
        , widthX_((rotate * 0.35 + 0.4) * room.width())
        , heightY_((rotate * -0.35 + 0.5) * room.height()) {}

    const CRect& room() const { return room_; }
    /// Pixels that a row runs to the right.
    double rowWidth() const { return widthX_ - 2.0 * kMargin; }
    /// Pixels that its right end lies lower than its left one.
    double rowFall() const { return (room_.height() - heightY_) * 0.5; }
    /// Pixels from -72 dB up to +9 dB.
    double levelHeight() const { return heightY_ - 2.0 * kMargin; }

    /// `along` the row 0..1; `depth` 0 (newest) to 1 (oldest); `down` from +9 dB (0) to -72 dB (1).
    CPoint at(double along, double depth, double down) const {
        return {room_.left + kMargin + (room_.width() - widthX_) * depth + rowWidth() * along,
                room_.top + kMargin + levelHeight() * down +
                    (room_.height() - heightY_) * (1.0 + along - depth) * 0.5};
    }

  private:
    static constexpr double kMargin = 5.0;

    CRect room_;
    double widthX_ = 0.0;
    double heightY_ = 0.0;
};

} // namespace Sorel

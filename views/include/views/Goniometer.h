// The stereo image as a cloud: mono stands upright, opposite polarity lies flat.
#pragma once

#include "analysis/AnalyserParameters.h"
#include "views/DisplayControl.h"
#include "views/SplineDots.h"
#include "views/StillPicture.h"

#include <span>

namespace Sorel {

/// The last 4096 samples, side to the right and mid upwards. 330 by 330 pixels with the picture
/// inset by 15. Paints again only when a point has moved.
class CGoniometer : public IDisplayControl {
  public:
    CGoniometer(const CRect& size, Orvel::COrvelScope* analyser);

    /// No parameter changes it.
    static std::span<const Orvel::ParameterId> parameters() { return {}; }

    /// What onIdle feeds it with. Asks for a repaint of what changes; true when anything does.
    /// Rate in Hz.
    bool setPoints(const SplineDots::Points& points, float sampleRate);

    void draw(CDrawContext& context) override;
    bool covers(const CRect& rect) const override { return guides_.covers(rect); }
    void onIdle() override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    const char* getClassName() const override { return "CGoniometer"; }

  private:
    CRect plotRect() const;
    CPoint centre() const;
    void placeDots();
    void drawGuides(CDrawContext& context) const;
    void drawDiagonals(CDrawContext& context) const;
    void drawOverlay(CDrawContext& context);

    SplineDots::Points points_{};
    SplineDots::Points latest_{};
    SplineDots dots_;
    CRect dotsRect_;      // whole pixels around them
    StillPicture guides_; // below the dots, with the ground
    StillPicture diagonals_;
    float sampleRate_ = 44100; ///< Hz
};

/// 80 at 44.1 kHz, 50 at 192 kHz: more dots a second, fainter dots.
int goniometerDotAlpha(float sampleRate);

} // namespace Sorel

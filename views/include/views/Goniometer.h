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

    /// What onIdle feeds it with; true when the picture has changed. Rate in Hz.
    bool setPoints(const SplineDots::Points& points, float sampleRate);

    void draw(CDrawContext& context) override;
    void onIdle() override;
    const char* getClassName() const override { return "CGoniometer"; }

  private:
    CRect plotRect() const;
    CPoint centre() const;
    void drawGuides(CDrawContext& context) const;
    void drawOverlay(CDrawContext& context) const;

    SplineDots::Points points_{};
    SplineDots::Points latest_{};
    SplineDots dots_;
    StillPicture guides_;      // below the dots
    StillPicture overlay_;     // above them
    float sampleRate_ = 44100; ///< Hz
};

/// 80 at 44.1 kHz, 50 at 192 kHz: more dots a second, fainter dots.
int goniometerDotAlpha(float sampleRate);

} // namespace Sorel

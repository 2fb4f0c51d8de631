// How alike left and right are, as a bar to the left or the right and as a number.
#pragma once

#include "analysis/AnalyserParameters.h"
#include "views/DisplayControl.h"
#include "views/StillPicture.h"

#include <span>

namespace Sorel {

/// 330 by 44 pixels. Red to the left: antiphase; green to the right: mono; amber around 0.
class CCorrelationMeter : public IDisplayControl {
  public:
    CCorrelationMeter(const CRect& size, Orvel::COrvelScope* analyser);

    /// No parameter changes it.
    static std::span<const Orvel::ParameterId> parameters() { return {}; }

    /// -1 to 1; anything else is brought into that, what is no number to 0. True when the picture
    /// has changed.
    bool setValue(float value);
    /// What is drawn: the bar in the coordinates of the parent, and its colour.
    CRect fillRect() const;
    CColor fillColor() const;

    void draw(CDrawContext& context) override;
    void onIdle() override;
    const char* getClassName() const override { return "CCorrelationMeter"; }

  private:
    CRect barRect() const;
    /// What the number shows.
    int hundredths() const;
    void drawScale(CDrawContext& context) const;

    float value_ = 0;
    StillPicture scale_;
};

} // namespace Sorel

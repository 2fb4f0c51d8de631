// The scope: waveforms with marks, between a ruler of beats and one of milliseconds.
#pragma once

#include "analysis/AnalyserParameters.h"
#include "controls/WheelNotches.h"
#include "core/Relaxed.h"
#include "views/DisplayControl.h"
#include "views/ScopeRenderer.h"
#include "views/ScopeRulers.h"
#include "views/StillPicture.h"

#include <span>

namespace Sorel {

/// Shows the engine's table of columns, one a pixel. Under the mouse it reads levels; the wheel
/// changes the time shown; where the picture is synchronised to a grid, "Sync" arms a marker, and
/// the next click makes its place the left edge. A control click on "Sync" takes that back.
/// Threads: GUI thread; SetPeriod and SetTempo on any.
class CScope final : public IDisplayControl {
  public:
    explicit CScope(const CRect& size, Orvel::COrvelScope* analyser = nullptr);

    /// What the view must be told of by onParameterChanged.
    static std::span<const Orvel::ParameterId> parameters();

    /// Milliseconds over the whole width; follows the engine where there is one.
    void SetPeriod(float milliseconds);
    /// Beats per minute, as above.
    void SetTempo(float beatsPerMinute);
    /// See Orvel::ScopeChannelMode.
    void SetChannelMode(int mode);
    /// What the wheel changes; null for nothing.
    void SetWheelParameter(Vardo::IPluginParameter* parameter);
    /// Switching on starts with an empty layer.
    void SetLayerVisible(int layer, bool on);

    void draw(CDrawContext& context) override;
    void DrawCursor(CDrawContext& context, CPoint position) override;
    void onIdle() override;
    void onParameterChanged(int parameterIndex) override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    int onMouseMoved(CPoint where, std::int32_t* buttons) override;
    using CView::onWheel;
    bool onWheel(CPoint where, float distance, std::int32_t* buttons) override;

  private:
    void applyColours();
    void applyParameters(bool clearing);
    void showLayer(int layer, bool on, bool clearing);
    void layOutRulers();
    void takeTiming();

    void drawRulers(CDrawContext& context);
    void drawLabels(CDrawContext& context, const Ruler& ruler, double baseline);
    void drawSync(CDrawContext& context);
    void drawLaneNames(CDrawContext& context);

    bool isOnSyncLabel(CPoint where) const {
        return showSyncLabel_ && syncLabelRect_.contains(where);
    }
    void arm(bool on);
    void moveMarker(CPoint where);
    void moveGrid(double milliseconds);

    CStereoScopeRenderer renderer_;
    Core::Relaxed<float> periodMs_{5000.0F};
    Core::Relaxed<float> tempo_{120.0F};
    CRect dataRect_;
    CRect beatRulerRect_;
    CRect timeRulerRect_;
    CRect syncLabelRect_;
    bool syncMarkerActive_ = false;
    double syncMarkerX_ = 0.0;
    bool showSyncLabel_ = false;
    Ruler beats_;
    Ruler times_;
    float shownPeriodMs_ = 0.0F; // of the rulers
    float shownTempo_ = 0.0F;
    int channelMode_ = -1;
    StillPicture laneNames_[2];
    Vardo::IPluginParameter* wheelParameter_ = nullptr;
    WheelNotches notches_;
};

} // namespace Sorel

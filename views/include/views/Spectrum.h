// The spectrum: bars, a line with peaks, or a waterfall that can be turned.
#pragma once

#include "analysis/AnalyserParameters.h"
#include "analysis/DisplayRecord.h"
#include "analysis/SpectrumModel.h"
#include "tree/TimerObject.h"
#include "views/DisplayControl.h"
#include "views/SpectrumAxes.h"
#include "views/SpectrumBars.h"
#include "views/SpectrumCurve.h"
#include "views/SpectrumWaterfallPainter.h"
#include "views/SpectrumWaterfallStage.h"

#include <memory>
#include <span>

namespace Sorel {

/// Every 25 ms a timer takes the newest frame from the engine, moves levels, peaks and rows on, and
/// asks for a repaint of what changes by that: silence and freeze cost nothing. While it is
/// hidden the engine hands over nothing; shown again, it starts from -72 dB, unless it is frozen: a
/// frozen picture stays, in its own format, until it is let go.
class CSpectrum final : public IDisplayControl, public CTimerObject {
  public:
    /// `view`: which frames are shown. The one of the spectrum page fills a well with round
    /// corners.
    CSpectrum(const CRect& size,
              Orvel::COrvelScope* analyser,
              Orvel::DisplayRecord::SpectrumView view = Orvel::DisplayRecord::kSpectrumPage);
    ~CSpectrum() override;

    /// What changes the picture or the measuring; to be entered for onParameterChanged.
    static std::span<const Orvel::ParameterId> parameters();

    // Each asks for a repaint.
    /// Samples in a frame. Clears the levels when it changes.
    void SetFFTSize(int size);
    void SetNumBands(int count);          ///< 8, 16, 32, 64 or 128
    void SetPeakReset(float dbPerSecond); ///< 0: peaks stand
    void SetDrawPeak(bool on);
    void SetLinearScale(bool on);
    void SetDrawLine(bool on);
    void SetWaterfall(bool on);
    void SetProjector(double hz); ///< limited to what is shown; at 20 Hz it is parked and not drawn
    void SetAnalyzeMode(Orvel::AnalyzeMode mode);

    const Orvel::SpectrumModel& model() const { return model_; }
    double projectorHz() const { return projectorHz_; }
    /// "Highest: -11.9dB @ 46.9Hz (#F-2)"
    const char* highestText() const { return highestText_.c_str(); }

    // CTimerObject
    void onTimer(std::int64_t elapsedMilliseconds) override;

    void draw(CDrawContext& context) override;
    void DrawLabel(CDrawContext& context) override;
    /// Cross and read-out: frequency, note, peak and level as drawn.
    void DrawCursor(CDrawContext& context, CPoint position) override;
    void onIdle() override { followVisibility(); }
    void onParameterChanged(int parameterIndex) override;
    bool covers(const CRect& rect) const override { return !waterfallMode_ && axes_.covers(rect); }
    void setVisible(bool state) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    int removed(CViewContainer* parent) override;
    /// In the waterfall a drag with the left button turns it.
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    int onMouseMoved(CPoint where, std::int32_t* buttons) override;
    int onMouseUp(CPoint where, std::int32_t* buttons) override;
    const char* getClassName() const override { return "CSpectrum"; }
    bool isTypeOf(const char* name) const override;

  private:
    float plain(Orvel::ParameterId id) const;
    bool isOn(Orvel::ParameterId id) const { return plain(id) > 0.5F; }
    void readParameter(Orvel::ParameterId id);
    void followEngine();
    void followVisibility();
    void showVisible(bool visible);
    void layOut();
    void endDrag();

    void showFrozenFrame();
    void updatePicture();

    /// True when all of the picture changes; else see changes_.
    bool measurePicture();
    void askForChanges();
    bool waterfallMoved(int steps); ///< whether the picture changes
    bool updateHighest();           ///< whether the text changes
    CRect highestRoom() const;

    // SpectrumDraw.cpp
    void drawFlat(CDrawContext& context);
    void drawWaterfall(CDrawContext& context);
    void drawNewestRow(CDrawContext& context, const WaterfallProjection& projection);
    void drawEdges(CDrawContext& context);
    void drawHighest(CDrawContext& context);
    void drawHighestWords(CDrawContext& context);
    void drawProjector(CDrawContext& context) const;

    Orvel::DisplayRecord::SpectrumView view_;
    Orvel::SpectrumModel model_;
    SpectrumAxes axes_;
    SpectrumCurve curve_;
    SpectrumBars bars_;
    ChangedRows changes_;
    StillPicture highestBed_;
    std::vector<double> highestPlaces_; // of its words, from the right edge; found once
    SpectrumWaterfallStage stage_;
    std::unique_ptr<SpectrumWaterfallPainter> rows_; // large: made when first needed
    bool lineMode_ = true;
    bool waterfallMode_ = false;
    bool drawPeak_ = true;
    bool shown_ = false; // as the engine was told
    int sameRows_ = 0;   // how many of the newest are alike
    double projectorHz_ = 500.0;
    double rotate_ = 0.65;
    Core::CStringBufferd<64> highestText_;
    std::vector<CPoint> newest_; // while drawing

    bool dragActive_ = false;
    double dragValue_ = 0.0;
    CPoint dragOrigin_;
};

} // namespace Sorel

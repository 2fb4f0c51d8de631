// The level meter of one channel: bar, held peak, scale and dynamic range.
#pragma once

#include "analysis/AnalyserParameters.h"
#include "views/DisplayControl.h"
#include "views/MeterFeed.h"
#include "views/MeterScale.h"
#include "views/OverBox.h"
#include "views/StillPicture.h"

#include <functional>
#include <span>

namespace Sorel {

/// A meter of 62 by 375 pixels, or half of a CVUMeter_Stereo. The engine runs the ballistics; this
/// turns levels into rows of pixels, and only what moves a row makes it paint again.
class CVUMeter_Mono : public IDisplayControl {
  public:
    /// Numbered as in the engine's display record: Left, Right, Mid, Side. `name` outlives the
    /// meter.
    CVUMeter_Mono(const CRect& size, Orvel::COrvelScope* analyser, int channel, const char* name);

    /// None: the metering mode is read with every picture.
    static std::span<const Orvel::ParameterId> parameters() { return {}; }

    /// Mirrored: the scale stands on the right.
    void SetFlipped(bool flipped) {
        flipped_ = flipped;
        still_.invalidate();
    }
    void setShowOvers(bool on) { showOvers_ = on; }
    void setShowDr(bool on) { showDr_ = on; }
    /// Heard after a click has set the counts of overs back.
    void setResetCallback(std::function<void()> heard) { resetHeard_ = std::move(heard); }

    // ---- For whoever feeds it; each answers whether the picture has changed --------------------
    bool setMode(Orvel::MeteringMode mode);
    bool setLevels(const MeterLevels& levels);
    /// Shown in the histogram mode alone.
    bool setHistogram(const HistogramColumn::Counts& counts, int highest);

    Orvel::MeteringMode mode() const { return mode_; }
    /// Tenths of a dB on the scale of the mode, as the read-out shows it.
    int heldTenths() const { return picture_.heldTenths; }
    /// Asks for a repaint, in `view` that shows this meter, of what changed since the last call.
    void askForChanges(CView& view);
    /// Everything but the box of overs.
    void drawChannel(CDrawContext& context);

    void draw(CDrawContext& context) override;
    void onIdle() override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    const char* getClassName() const override { return "CVUMeter_Mono"; }

  private:
    /// All that drawing depends on. Rows count down from the top of the view; kFoot is none.
    struct Picture {
        int rmsRow = 0;
        int peakRow = 0;
        int holdRow = 0;
        float rmsDb = 0; ///< the end of the bar; follows its row
        CColor rmsColor;
        CColor peakColor;
        CColor holdColor;
        int heldTenths = -960;
        int drTenths = -960;
        HistogramColumn::Shades shades{};
    };

    bool refresh();
    CRect changedRows() const;
    CRect drRoom() const;
    bool isHistogram() const { return mode_ == Orvel::MeteringMode::histogram; }
    CRect columns(double from, double to, double top, double bottom) const;
    double across(double x) const;
    HorizontalAlign outwards() const;
    void drawTicks(CDrawContext& context) const;
    void drawBars(CDrawContext& context) const;
    void drawHistogram(CDrawContext& context) const;
    void drawRow(CDrawContext& context, int row, int rows, CColor color) const;
    void drawName(CDrawContext& context) const;
    void drawDr(CDrawContext& context) const;

    const char* name_;
    bool flipped_ = false;
    bool showOvers_ = true;
    bool showDr_ = true;
    Orvel::MeteringMode mode_ = Orvel::MeteringMode::peak;
    const MeterScale* scale_;
    const MeterScale* stillScale_ = nullptr; // in still_
    StillPicture still_;
    HistogramColumn column_;
    MeterFeed feed_;
    MeterLevels levels_;
    Picture picture_;
    Picture asked_; // what askForChanges has seen
    OverBox overs_;
    std::function<void()> resetHeard_;
};

/// The metering mode as the parameter has it.
Orvel::MeteringMode meteringMode(Orvel::COrvelScope* analyser);

} // namespace Sorel

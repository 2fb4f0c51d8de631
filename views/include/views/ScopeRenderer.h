// Draws the scope's layers: waveforms, transients, sibilance, overs.
#pragma once

#include "analysis/ScopeDataProvider.h"
#include "draw/Bitmap.h"
#include "views/ColumnRange.h"
#include "views/ScopeStrip.h"

#include <optional>
#include <span>
#include <vector>

namespace Sorel {

/// How one layer looks, and the copy of its columns that is drawn.
struct ScopeRenderLayer {
    std::vector<ScopeColumn> columns; ///< as they lie on the provider's ring
    CColor lineColour{255, 255, 255, 255};
    CColor fillColour{40, 40, 40, 255};
    // Of the gradient in a filled curve.
    CColor topFade{40, 40, 40, 255};
    CColor midFade{40, 40, 40, 255};
    CColor bottomFade{40, 40, 40, 255};
    float lineWidth = 0.4F;
    enum DrawMode { kLine = 0, kGradient = 1, kGradientToo = 2 };
    int drawMode = kGradientToo;
    int gradientSteps = 1;
    bool visible = false;
};

/// Draws every visible layer as a curve over the whole rectangle.
/// Threads: GUI thread.
class CNewScopeRenderer {
  public:
    CNewScopeRenderer() = default;
    CNewScopeRenderer(const CNewScopeRenderer&) = delete;
    CNewScopeRenderer& operator=(const CNewScopeRenderer&) = delete;

    virtual void Draw(CDrawContext& context, const CRect& rect);
    virtual void DrawLayerCurve(CDrawContext& context, const CRect& rect, int layer);
    virtual ~CNewScopeRenderer() = default;

    /// Makes room for the provider's layers, `numColumns` wide. Null: there is nothing to draw.
    /// `provider` outlives the renderer. Throws std::bad_alloc.
    void attach(IScopeDataProvider* provider, int numColumns);
    int numLayers() const { return static_cast<int>(layers_.size()); }
    int numColumns() const { return numColumns_; }
    ScopeRenderLayer& layer(int index) { return layers_[static_cast<std::size_t>(index)]; }
    /// Copies all visible layers. Gives the columns that look different from the last copy in a
    /// picture `height` pixels high; a signal that moves by less than can be seen is still.
    ColumnRange fetch(double height);
    /// How many samples a column stands for: with few of them the curve is drawn as a line.
    void setSamplesPerColumn(double samples) { samplesPerColumn_ = samples; }
    /// A change of one column shows in its neighbours too: the line runs from sample to sample.
    bool drawsTrace() const;
    /// Zeroes the provider's layer and the copy.
    void clearLayer(int index);

  protected:
    /// What a column of this layer looks like in a picture of that height; equal marks look equal.
    struct ColumnMark {
        int low = 0;
        int high = 0;
        friend bool operator==(const ColumnMark&, const ColumnMark&) = default;
    };
    virtual ColumnMark markOf(ScopeColumn column, int layer, double height) const;
    /// What fetch found: a column at this place of the ring looks different.
    virtual void placeChanged(int /*layer*/, int /*place*/) {}
    /// The place of the display's column 0.
    int firstPlace() const { return firstPlace_; }
    /// Of column `column` of the display.
    ScopeColumn columnOf(const ScopeRenderLayer& drawn, int column) const {
        const int place = firstPlace_ + column;
        return drawn
            .columns[static_cast<std::size_t>(place < numColumns_ ? place : place - numColumns_)];
    }
    /// The columns that meet the context's clip, and those at most `before` and `after` them.
    ColumnRange clipped(const CDrawContext& context, const CRect& rect, int before, int after);

  private:
    /// What the columns of a reading depend on.
    struct Reading {
        unsigned version = 0;
        unsigned visibleLayers = 0;
        int firstPlace = 0;
        double height = 0;
        friend bool operator==(const Reading&, const Reading&) = default;
    };
    unsigned visibleLayers() const;
    bool looksMoved(int index, int first, double height);

    IScopeDataProvider* provider_ = nullptr;
    int numColumns_ = 0;
    int firstPlace_ = 0;
    std::optional<Reading> lastReading_;
    std::vector<ScopeRenderLayer> layers_;
    std::vector<ScopeColumn> incoming_; // from left to right, as is the next
    std::vector<ScopeColumn> ordered_;
    std::vector<float> upper_; // of the curve being drawn
    std::vector<float> lower_;
    std::vector<float> trace_;
    double samplesPerColumn_ = 1e9;
};

/// Layer 0 over the whole rectangle, or 1 and 2 in an upper and a lower lane; 3 transients,
/// 4 sibilance, 5 overs as marks.
class CStereoScopeRenderer final : public CNewScopeRenderer {
  public:
    enum Layer : int { kBoth, kUpperLane, kLowerLane, kTransients, kSibilance, kOvers };

    void Draw(CDrawContext& context, const CRect& rect) override;
    /// A fade to the right from each transient.
    virtual void DrawTransientMarks(CDrawContext& context, const CRect& rect, int layer);
    /// A shade that is the stronger the more sibilant the column is.
    virtual void DrawSibilance(CDrawContext& context, const CRect& rect, int layer);
    /// Short strokes at the edges.
    virtual void DrawOvers(CDrawContext& context, const CRect& rect, int layer);

    /// A mark reaches this many columns to the right of its own.
    static constexpr int kMarkReach = 12;

    static CRect upperLane(const CRect& rect);
    static CRect lowerLane(const CRect& rect);

  private:
    /// What decides how the lanes look, besides their columns.
    struct Look {
        bool visible[3] = {};
        CColor colours[4] = {};
        float lineWidth = 0.0F;
        friend bool operator==(const Look&, const Look&) = default;
    };
    ColumnMark markOf(ScopeColumn column, int layer, double height) const override;
    void placeChanged(int layer, int place) override;
    bool hasTwoLanes() { return !layer(kBoth).visible; }
    CRect laneRect(const CRect& rect, int lane) const;
    void drawLanes(CDrawContext& context, const CRect& rect);
    void followLook();
    void shadeColumn(int column, CColor colour);

    ScopeStrip strip_; ///< of the lanes, where they are bands
    int stripWidth_ = 0;
    Look look_;
    Counted<CBitmap> shades_; ///< of the sibilance, a pixel a column
};

} // namespace Sorel

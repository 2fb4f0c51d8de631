// What views draw with: shapes, text and pictures in their own coordinates.
#pragma once

#include "draw/BaseObject.h"
#include "draw/FontDesc.h"
#include "draw/Renderer.h"

#include <memory>
#include <vector>

namespace Sorel {

class IOSBitmap;

/// Whatever a context paints for: a view or a frame.
class IDrawOwner {
  public:
    /// The owner's rectangle; a context of its own surface takes the size from it.
    virtual CRect drawArea() = 0;
    /// Where the owner's window stands on the screen; 0, 0 when it has none.
    virtual CPoint drawScreenOrigin() = 0;
    /// The surface to borrow; null pointers for none.
    struct Surface {
        CRenderer* renderer = nullptr;
        IOSBitmap* bitmap = nullptr;
    };
    virtual Surface drawSurface() = 0;

  protected:
    ~IDrawOwner() = default;
};

enum DrawStyle : std::int32_t { kStroked = 0, kFilled = 1, kFilledAndStroked = 2 };

/// Additive blending; every other mode is plain alpha blending.
inline constexpr std::int32_t kAddMode = 4;

/// A drawing surface with an origin. All operations take coordinates local to `offset()`, in
/// pixels; nothing is rounded, so sharp one-pixel lines lie at whole numbers + 0.5.
/// Threads: one at a time; the GUI thread for contexts of views.
/// Fails:   without a renderer nothing is drawn and widths are 0.
class CDrawContext : public CBaseObject {
  public:
    /// Borrows the owner's surface when it has one, else makes its own of the owner's size (of
    /// 1000 by 1000 without owner, unless told not to). The platform handles are kept for the
    /// platform's sake.
    enum class OwnSurface : std::uint8_t { kWhenNeeded, kNever };
    explicit CDrawContext(IDrawOwner* owner,
                          void* platformContext = nullptr,
                          void* platformWindow = nullptr,
                          OwnSurface ownSurface = OwnSurface::kWhenNeeded);
    ~CDrawContext() override;

    /// Draws into another surface from now on; it and its renderer are not owned.
    void bind(CRenderer* renderer, IOSBitmap* surface);
    CRenderer* renderer() const { return renderer_; }
    IOSBitmap* surface() const { return surface_; }
    bool ownsSurface() const { return ownedSurface_ != nullptr; }
    void* platformContext() const { return platformContext_; }
    CPoint screenOrigin() const { return screenOrigin_; }

    /// Added to every coordinate.
    CPoint offset() const { return offset_; }
    void setOffset(CPoint offset) { offset_ = offset; }

    // ---- Lines and shapes ---------------------------------------------------------------------
    void moveTo(CPoint point);
    void lineTo(CPoint point);
    void drawLine(double x1, double y1, double x2, double y2);
    /// Styles other than 0, 1, 2 draw with the fill and line state of the last call.
    void drawRect(const CRect& rect, std::int32_t style = kStroked);
    void drawRoundRect(const CRect& rect, float radius, std::int32_t style = kStroked);
    void drawEllipse(const CRect& rect, std::int32_t style = kStroked);
    void drawPath(const CPath& path, std::int32_t style = kStroked);
    void drawPolyline(std::span<const CPoint> points);
    void drawPoint(double x, double y, CColor color);
    /// Thousands of points at a time: see CRenderer::plotPoints.
    void
    drawPoints(CPoint origin, std::span<const float> x, std::span<const float> y, CColor color);
    /// The whole surface becomes 0, 0, 0, 0.
    void clear();

    // ---- Gradients (their coordinates are local too) -------------------------------------------
    void fillRect(const CRect& rect, const CLinearGradient& gradient);
    void fillRoundRect(const CRect& rect, double radius, const CLinearGradient& gradient);
    void fillPath(const CPath& path, const CLinearGradient& gradient);
    void drawColumnBand(const CColumnBand& band,
                        const CLinearGradient& gradient,
                        CColor outline,
                        double outlineWidth);
    void drawColumnLine(
        double left, double columnWidth, std::span<const float> y, CColor color, double width);

    // ---- State --------------------------------------------------------------------------------
    void setLineWidth(double width);
    double getLineWidth() const { return lineWidth_; }
    void setFrameColor(CColor color);
    CColor getFrameColor() const { return frameColor_; }
    void setFillColor(CColor color);
    CColor getFillColor() const { return fillColor_; }
    void setFontColor(CColor color) { fontColor_ = color; }
    CColor getFontColor() const { return fontColor_; }
    void setDrawMode(std::int32_t mode);
    std::int32_t getDrawMode() const { return drawMode_; }
    /// Local coordinates.
    void setClipRect(const CRect& rect);
    CRect getClipRect() const;
    /// Surface coordinates.
    const CRect& clipRect() const { return clipRect_; }
    /// The owner's size, or 0, 0, 1000, 1000 without owner, plus the offset.
    void resetClipRect();

    // ---- Text ---------------------------------------------------------------------------------
    /// Size 0 takes the font's own, another becomes the font's own.
    void setFont(CFontDesc* font, double size = 0.0, std::int32_t style = kRegularFont);
    double getFontSize() const { return fontSize_; }
    /// Pixels; 0 without a surface.
    double getStringWidth(std::string_view text) const;
    /// One line, clipped to `rect`, vertically centred in it.
    void drawString(std::string_view text,
                    const CRect& rect,
                    bool useFontColor = true,
                    HorizontalAlign align = HorizontalAlign::kCentre);
    /// Lines parted by 0x0A, one (whole-pixel) font height apart, the block centred in `rect`.
    void drawStringMultiLine(std::string_view text,
                             const CRect& rect,
                             bool useFontColor = true,
                             HorizontalAlign align = HorizontalAlign::kCentre);
    /// In the font colour, standing on `baseline`; x is the left end, middle or right end.
    void drawStringAt(std::string_view text,
                      CPoint baseline,
                      HorizontalAlign align = HorizontalAlign::kLeft);

  private:
    CRect onSurface(const CRect& local) const { return local.moved(offset_); }
    CLinearGradient onSurface(CLinearGradient gradient) const;
    const CPath& onSurface(const CPath& path);
    std::span<const float> onSurface(std::span<const float> y, std::vector<float>& moved) const;
    void applyState();
    void applyLine();
    void applyStyle(std::int32_t style);
    void setSurfaceClip(const CRect& onSurfaceRect);
    void useFont() const;
    CRect textClip(const CRect& rect) const;
    void drawLines(std::string_view text,
                   const CRect& rect,
                   bool useFontColor,
                   HorizontalAlign align,
                   bool multiLine);

    CPoint screenOrigin_;
    CPoint offset_;
    void* platformContext_;
    void* platformWindow_;
    IDrawOwner* owner_;
    /// Null until setFont: the default font then. It is looked up when text is drawn, not before:
    /// reading the fonts uses the one archive reader, and a picture may be loading through it.
    Counted<CFontDesc> font_;
    std::int32_t fontStyle_ = kBoldFont;
    CColor fontColor_ = kWhiteCColor;
    CPoint penLocation_;
    double lineWidth_ = 1.0;
    CColor frameColor_ = kWhiteCColor;
    CColor fillColor_ = kBlackCColor;
    std::int32_t drawMode_ = 0;
    CRect clipRect_;
    CRenderer* renderer_ = nullptr;
    IOSBitmap* surface_ = nullptr;
    double fontSize_ = 12.0;
    std::vector<CPoint> points_; ///< of the polyline being drawn
    CPath path_;                 ///< the path being drawn, on the surface
    std::vector<float> upper_;   ///< and the columns
    std::vector<float> lower_;
    std::unique_ptr<IOSBitmap> ownedSurface_;
    std::unique_ptr<CRenderer> ownedRenderer_;
};

} // namespace Sorel

// The drawing front end over AGG: paths, text and pictures into 32-bit premultiplied pixels.
#pragma once

#include "draw/Geometry.h"
#include "draw/Path.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

namespace Sorel {

class IOSBitmap;

enum class TextMode : std::int32_t { kGrey = 1, kOutline = 2, kMono = 3 };
enum class HorizontalAlign : std::int32_t { kLeft = 0, kCentre = 1, kRight = 2 };
enum class VerticalAlign : std::int32_t { kBaseline = 0, kCentre = 1 };
enum class BlendMode : std::int32_t { kAlpha = 0, kAdd = 4 };

/// One per surface; lives as long as the surface, so that a paint allocates nothing.
/// Shape:   a pixel (x, y) covers x..x+1, y..y+1; coordinates are surface pixels in double.
/// Threads: one at a time, normally the GUI thread.
/// Fails:   without pixels every operation does nothing and widths are 0; NaN and infinite
///          coordinates draw nothing; everything is clipped to the clip box inside the surface.
class CRenderer {
  public:
    CRenderer();
    ~CRenderer();
    CRenderer(const CRenderer&) = delete;
    CRenderer& operator=(const CRenderer&) = delete;

    /// Binds to pixels (premultiplied BGRA, top row first, stride in bytes; kept, not owned) and
    /// resets: line black, fill white, line width 1, alpha 1, clip box the whole surface, blend
    /// mode alpha. Null detaches.
    void attach(std::uint8_t* pixels, int width, int height, int stride);
    void attach(IOSBitmap& surface);

    /// Drawing stays inside the pixels that `box` touches.
    void clipBox(const CRect& box);
    const CRect& clipBox() const;
    /// Sets every pixel of the surface, regardless of clip box and blend mode.
    void clear(CColor color);

    // ---- State ----------------------------------------------------------------------------
    void fillColor(CColor color);
    void noFill();
    void lineColor(CColor color);
    void noLine();
    /// What fill and line are now, for callers that must give them back.
    struct Paint {
        CColor fill;
        CColor line;
        bool fills = true;
        bool strokes = true;
    };
    Paint paint() const;
    void setPaint(const Paint& paint);
    /// Pixels, may be below 1.
    void lineWidth(double width);
    double lineWidth() const;
    void antiAlias(bool on);
    void blendMode(BlendMode mode);
    BlendMode blendMode() const;
    /// 0..1, multiplies every alpha.
    void masterAlpha(double alpha);
    double masterAlpha() const;

    // ---- Shapes: fill, then stroke, as the state says ---------------------------------------
    void line(double x1, double y1, double x2, double y2);
    void rectangle(const CRect& rect);
    void roundedRect(const CRect& rect, double radius);
    void ellipse(CPoint centre, double radiusX, double radiusY);
    void path(const CPath& path);
    /// An open line through the points, round joins.
    void polyline(std::span<const CPoint> points);
    /// Blends one pixel.
    void plotPixel(int x, int y, CColor color);
    /// Blends the pixel that each point x[i], y[i], moved by `origin`, lies in; a pixel that
    /// several points lie in, several times. Points that are not finite are left out.
    void
    plotPoints(CPoint origin, std::span<const float> x, std::span<const float> y, CColor color);

    // ---- Gradients; fill and line state are not used -----------------------------------------
    void fillRectangle(const CRect& rect, const CLinearGradient& gradient);
    void fillRoundedRect(const CRect& rect, double radius, const CLinearGradient& gradient);
    void fillPath(const CPath& path, const CLinearGradient& gradient);
    /// Fills the band with the gradient and draws its closed outline in `outline`, `outlineWidth`
    /// pixels wide (0: none). Looks as path() does within 3 grey levels, at a fraction of the time.
    void columnBand(const CColumnBand& band,
                    const CLinearGradient& gradient,
                    CColor outline,
                    double outlineWidth);
    /// A line from column to column, one y a column, as `upper` of a band is.
    void columnLine(
        double left, double columnWidth, std::span<const float> y, CColor color, double width);

    // ---- Text ------------------------------------------------------------------------------
    /// `name` is the cache's key and must differ for different data; `data` (a TrueType file) must
    /// stay valid as long as the process draws. `height` in pixels (the em). Angle in radians.
    void font(const char* name,
              std::span<const std::byte> data,
              double height,
              TextMode mode,
              double angle = 0.0);
    /// Ascent minus descent of the current font, pixels.
    double fontHeight() const;
    void textAlignment(HorizontalAlign horizontal, VerticalAlign vertical);
    /// UTF-8 in the fill colour. Vertically centred text stands on the whole-pixel baseline
    /// round(y + 0.36 * height), so that rows of labels line up whatever their letters.
    void text(double x, double y, std::string_view utf8);
    /// Pixels from the first pen position to the last.
    double textWidth(std::string_view utf8) const;

    // ---- Pictures --------------------------------------------------------------------------
    /// Blends the rectangle of `source` that starts at `sourceX`, `sourceY` onto `x`, `y`, all
    /// whole pixels. Parts outside either surface are left out. `alpha` 0..1.
    void copyImage(IOSBitmap& source,
                   int sourceX,
                   int sourceY,
                   int width,
                   int height,
                   int x,
                   int y,
                   double alpha = 1.0);
    /// Scales `sourceRect` onto `destRect`, bilinear, area-averaged when it shrinks.
    void stretchImage(IOSBitmap& source,
                      const CRect& sourceRect,
                      const CRect& destRect,
                      double alpha = 1.0);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace Sorel

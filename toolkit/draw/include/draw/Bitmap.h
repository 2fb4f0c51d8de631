// Pictures: decoded from PNG, or empty ones to draw into.
#pragma once

#include "draw/BaseObject.h"
#include "draw/DrawContext.h"
#include "draw/OSBitmap.h"
#include "draw/PNGStream.h"

#include <string>

namespace Sorel {

/// A picture with alpha. Colours are premultiplied when it is loaded, c * a >> 8, so that drawing
/// divides nothing (opaque white is stored as 254).
/// Threads: GUI thread.
class CBitmap : public CBaseObject {
  public:
    enum class Source : std::uint8_t { kArchive, kFile };

    CBitmap();
    /// Loads at once; see loadFromArchive and loadFromFile.
    explicit CBitmap(const std::string& name, Source source = Source::kArchive);
    /// Off-screen picture, see createEmpty.
    CBitmap(int width, int height);
    ~CBitmap() override;
    CBitmap(const CBitmap&) = delete;

    /// Blends the part of the picture at `offset` onto `rect` of the context, 1:1, cut at the
    /// context's clip rectangle. Fractions of the position are dropped.
    virtual void draw(CDrawContext& context, const CRect& rect, CPoint offset = {});
    virtual void drawTransparent(CDrawContext& context, const CRect& rect, CPoint offset = {});
    /// `alpha` 0..255.
    virtual void drawAlpha(CDrawContext& context, const CRect& rect, CPoint offset, int alpha);
    /// Scales `srcRect` onto `destRect`.
    virtual void drawStretchedAlpha(CDrawContext& context,
                                    const CRect& destRect,
                                    const CRect& srcRect,
                                    int alpha);
    /// As above, after cutting `destRect` (and the source with it) to the context's clip.
    virtual void
    drawStretched(CDrawContext& context, const CRect& destRect, const CRect& srcRect, int alpha);

    virtual bool loadFromFile(const std::string& utf8Path);
    virtual void reset();
    virtual bool loadFromArchive(const char* name);
    /// True also for a damaged picture: it then holds the rows that could be decoded. False for a
    /// null stream or when nothing is known of its size.
    virtual bool loadFromStream(ISorelPNGStream* stream);

    /// A transparent picture of this size to draw into.
    void createEmpty(int width, int height);

    bool isLoaded() const { return loaded_; }
    /// Pixels; 0 when nothing is loaded.
    double getWidth() const { return width_; }
    double getHeight() const { return height_; }
    // Whoever asks for these may draw into the picture.
    IOSBitmap& surface() { return open(surface_); }
    CRenderer& renderer() { return open(renderer_); }
    CDrawContext& context() { return open(*context_); }

  private:
    /// From now on nothing is known of the pixels.
    template <class Way>
    Way& open(Way& way) {
        surface_.isOpaque = false;
        return way;
    }
    void bindSurface();
    void blend(CDrawContext& context, const CRect& rect, CPoint offset, double alpha);

    CMemoryBitmap surface_;
    CRenderer renderer_;
    Counted<CDrawContext> context_;
    bool loaded_ = false;
    double width_ = 0.0;
    double height_ = 0.0;
};

} // namespace Sorel

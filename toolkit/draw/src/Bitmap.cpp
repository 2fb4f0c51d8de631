// Pictures: loading, and drawing them through a context.
#include "draw/Bitmap.h"

#include "PNGDecoder.h"

namespace Sorel {

CBitmap::CBitmap()
    : context_(Counted<CDrawContext>::make(
          nullptr, nullptr, nullptr, CDrawContext::OwnSurface::kNever)) {
    bindSurface();
}

CBitmap::CBitmap(const std::string& name, Source source)
    : CBitmap() {
    if (source == Source::kFile)
        CBitmap::loadFromFile(name);
    else
        CBitmap::loadFromArchive(name.c_str());
}

CBitmap::CBitmap(int width, int height)
    : CBitmap() {
    createEmpty(width, height);
}

CBitmap::~CBitmap() = default;

void CBitmap::bindSurface() {
    renderer_.attach(surface_);
    context_->bind(&renderer_, &surface_);
}

void CBitmap::reset() {
    width_ = height_ = 0.0;
    loaded_ = false;
    surface_.destroy();
    bindSurface();
}

void CBitmap::createEmpty(int width, int height) {
    reset();
    if (!surface_.create(width, height)) return;
    width_ = surface_.width;
    height_ = surface_.height;
    loaded_ = true;
    bindSurface();
}

bool CBitmap::loadFromFile(const std::string& utf8Path) {
    reset();
    PNGFileStream stream(utf8Path);
    return stream.isOpen() && loadFromStream(&stream);
}

bool CBitmap::loadFromArchive(const char* name) {
    reset();
    PNGNewResourceStream stream(name);
    return stream.isOpen() && loadFromStream(&stream);
}

bool CBitmap::loadFromStream(ISorelPNGStream* stream) {
    reset();
    if (stream == nullptr || !decodePng(*stream, surface_)) return false;
    width_ = surface_.width;
    height_ = surface_.height;
    loaded_ = true;
    bindSurface();
    return true;
}

// ---- Drawing -----------------------------------------------------------------------------------

void CBitmap::blend(CDrawContext& context, const CRect& rect, CPoint offset, double alpha) {
    CRenderer* const renderer = context.renderer();
    const auto isWhole = [](double v) { return std::abs(v) <= 1e6; };
    if (renderer == nullptr || !loaded_ || !isWhole(rect.left) || !isWhole(rect.top) ||
        !isWhole(rect.width()) || !isWhole(rect.height()) || !isWhole(offset.x) ||
        !isWhole(offset.y))
        return;
    const CPoint to = rect.topLeft() + context.offset();
    if (!isWhole(to.x) || !isWhole(to.y)) return;
    const auto whole = [](double v) { return static_cast<int>(v); };
    renderer->copyImage(surface_, whole(offset.x), whole(offset.y), whole(std::abs(rect.width())),
                        whole(std::abs(rect.height())), whole(std::floor(to.x)),
                        whole(std::floor(to.y)), alpha);
}

void CBitmap::draw(CDrawContext& context, const CRect& rect, CPoint offset) {
    blend(context, rect, offset, 1.0);
}

void CBitmap::drawTransparent(CDrawContext& context, const CRect& rect, CPoint offset) {
    draw(context, rect, offset);
}

void CBitmap::drawAlpha(CDrawContext& context, const CRect& rect, CPoint offset, int alpha) {
    blend(context, rect, offset, alpha / 255.0);
}

void CBitmap::drawStretchedAlpha(CDrawContext& context,
                                 const CRect& destRect,
                                 const CRect& srcRect,
                                 int alpha) {
    if (context.renderer() != nullptr && loaded_)
        context.renderer()->stretchImage(surface_, srcRect, destRect.moved(context.offset()),
                                         alpha / 255.0);
}

void CBitmap::drawStretched(CDrawContext& context,
                            const CRect& destRect,
                            const CRect& srcRect,
                            int alpha) {
    const CRect part = destRect.intersected(context.getClipRect());
    if (part.isEmpty()) return;
    const double perX = srcRect.width() / destRect.width();
    const double perY = srcRect.height() / destRect.height();
    drawStretchedAlpha(context, part,
                       {srcRect.left + (part.left - destRect.left) * perX,
                        srcRect.top + (part.top - destRect.top) * perY,
                        srcRect.right - (destRect.right - part.right) * perX,
                        srcRect.bottom - (destRect.bottom - part.bottom) * perY},
                       alpha);
}

} // namespace Sorel

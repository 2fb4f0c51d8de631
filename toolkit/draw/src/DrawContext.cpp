// Local coordinates onto the surface; state onto the renderer.
#include "draw/DrawContext.h"

#include "draw/OSBitmap.h"

namespace Sorel {

namespace {

constexpr CRect kNoOwnerArea{0.0, 0.0, 1000.0, 1000.0};

} // namespace

// A renderer may be shared by several contexts. What each call needs is therefore handed over with
// the call; nothing relies on what the renderer was told before.

CDrawContext::CDrawContext(IDrawOwner* owner,
                           void* platformContext,
                           void* platformWindow,
                           OwnSurface ownSurface)
    : platformContext_(platformContext)
    , platformWindow_(platformWindow)
    , owner_(owner)
    , clipRect_(owner != nullptr ? owner->drawArea() : kNoOwnerArea) {
    if (owner_ != nullptr) {
        screenOrigin_ = owner_->drawScreenOrigin();
        const IDrawOwner::Surface borrowed = owner_->drawSurface();
        renderer_ = borrowed.renderer;
        surface_ = borrowed.bitmap;
    }
    if (renderer_ == nullptr && ownSurface == OwnSurface::kWhenNeeded) {
        const auto whole = [](double v) { return static_cast<int>(std::clamp(v, 0.0, 1e6)); };
        auto bitmap = std::make_unique<CMemoryBitmap>();
        if (bitmap->create(whole(clipRect_.width()), whole(clipRect_.height()))) {
            ownedSurface_ = std::move(bitmap);
            ownedRenderer_ = std::make_unique<CRenderer>();
            ownedRenderer_->attach(*ownedSurface_);
            renderer_ = ownedRenderer_.get();
            surface_ = ownedSurface_.get();
        }
    }
    applyState();
}

CDrawContext::~CDrawContext() = default;

void CDrawContext::bind(CRenderer* renderer, IOSBitmap* surface) {
    renderer_ = renderer;
    surface_ = surface;
    ownedRenderer_.reset();
    ownedSurface_.reset();
    if (surface_ != nullptr)
        clipRect_ = {0.0, 0.0, double(surface_->width), double(surface_->height)};
    applyState();
}

void CDrawContext::applyState() {
    if (renderer_ == nullptr) return;
    renderer_->lineColor(frameColor_);
    renderer_->fillColor(fillColor_);
    renderer_->lineWidth(lineWidth_);
    renderer_->clipBox(clipRect_);
    setDrawMode(drawMode_);
}

// ---- State -------------------------------------------------------------------------------------

void CDrawContext::setLineWidth(double width) {
    lineWidth_ = width;
    if (renderer_ != nullptr) renderer_->lineWidth(width);
}

void CDrawContext::setFrameColor(CColor color) {
    frameColor_ = color;
    if (renderer_ != nullptr) renderer_->lineColor(color);
}

void CDrawContext::setFillColor(CColor color) {
    fillColor_ = color;
    if (renderer_ != nullptr) renderer_->fillColor(color);
}

void CDrawContext::setDrawMode(std::int32_t mode) {
    drawMode_ = mode;
    if (renderer_ != nullptr)
        renderer_->blendMode(mode == kAddMode ? BlendMode::kAdd : BlendMode::kAlpha);
}

void CDrawContext::setSurfaceClip(const CRect& onSurfaceRect) {
    clipRect_ = onSurfaceRect;
    if (renderer_ != nullptr) renderer_->clipBox(clipRect_);
}

void CDrawContext::setClipRect(const CRect& rect) { setSurfaceClip(onSurface(rect)); }

CRect CDrawContext::getClipRect() const { return clipRect_.moved(-offset_.x, -offset_.y); }

void CDrawContext::resetClipRect() {
    const CRect area = owner_ != nullptr ? owner_->drawArea() : kNoOwnerArea;
    setClipRect({0.0, 0.0, area.width(), area.height()});
}

// ---- Lines and shapes --------------------------------------------------------------------------

void CDrawContext::applyStyle(std::int32_t style) {
    if (style < kStroked || style > kFilledAndStroked) return;
    if (style == kStroked)
        renderer_->noFill();
    else
        renderer_->fillColor(fillColor_);
    if (style == kFilled)
        renderer_->noLine();
    else
        renderer_->lineColor(frameColor_);
    renderer_->lineWidth(lineWidth_);
}

void CDrawContext::applyLine() {
    renderer_->lineColor(frameColor_);
    renderer_->lineWidth(lineWidth_);
}

const CPath& CDrawContext::onSurface(const CPath& path) {
    path_.clear();
    const CPoint* p = path.points().data();
    for (const CPath::Verb verb : path.verbs())
        switch (verb) {
        case CPath::Verb::kMove:
            path_.moveTo(p[0].x + offset_.x, p[0].y + offset_.y);
            p += 1;
            break;
        case CPath::Verb::kLine:
            path_.lineTo(p[0].x + offset_.x, p[0].y + offset_.y);
            p += 1;
            break;
        case CPath::Verb::kQuad:
            path_.quadTo(p[0] + offset_, p[1] + offset_);
            p += 2;
            break;
        case CPath::Verb::kCubic:
            path_.cubicTo(p[0] + offset_, p[1] + offset_, p[2] + offset_);
            p += 3;
            break;
        case CPath::Verb::kClose:
            path_.close();
            break;
        }
    return path_;
}

void CDrawContext::moveTo(CPoint point) { penLocation_ = point + offset_; }

void CDrawContext::lineTo(CPoint point) {
    const CPoint from = penLocation_;
    penLocation_ = point + offset_;
    if (renderer_ == nullptr) return;
    applyLine();
    renderer_->line(from.x, from.y, penLocation_.x, penLocation_.y);
}

void CDrawContext::drawLine(double x1, double y1, double x2, double y2) {
    if (renderer_ == nullptr) return;
    applyLine();
    renderer_->line(x1 + offset_.x, y1 + offset_.y, x2 + offset_.x, y2 + offset_.y);
}

void CDrawContext::drawRect(const CRect& rect, std::int32_t style) {
    if (renderer_ == nullptr) return;
    applyStyle(style);
    renderer_->rectangle(onSurface(rect));
}

void CDrawContext::drawRoundRect(const CRect& rect, float radius, std::int32_t style) {
    if (renderer_ == nullptr) return;
    applyStyle(style);
    renderer_->roundedRect(onSurface(rect), double{radius});
}

void CDrawContext::drawEllipse(const CRect& rect, std::int32_t style) {
    if (renderer_ == nullptr) return;
    applyStyle(style);
    renderer_->ellipse(rect.centre() + offset_, rect.width() * 0.5, rect.height() * 0.5);
}

void CDrawContext::drawPath(const CPath& path, std::int32_t style) {
    if (renderer_ == nullptr) return;
    applyStyle(style);
    renderer_->path(onSurface(path));
}

void CDrawContext::drawPolyline(std::span<const CPoint> points) {
    if (renderer_ == nullptr) return;
    applyLine();
    points_.clear();
    for (const CPoint p : points)
        points_.push_back(p + offset_);
    renderer_->polyline(points_);
}

void CDrawContext::drawPoint(double x, double y, CColor color) {
    const double px = std::floor(x + offset_.x);
    const double py = std::floor(y + offset_.y);
    if (renderer_ == nullptr || !(std::abs(px) <= 1e6) || !(std::abs(py) <= 1e6)) return;
    renderer_->plotPixel(static_cast<int>(px), static_cast<int>(py), color);
}

void CDrawContext::drawPoints(CPoint origin,
                              std::span<const float> x,
                              std::span<const float> y,
                              CColor color) {
    if (renderer_ != nullptr) renderer_->plotPoints(origin + offset_, x, y, color);
}

void CDrawContext::clear() {
    if (renderer_ != nullptr) renderer_->clear({0, 0, 0, 0});
}

// ---- Gradients ---------------------------------------------------------------------------------

CLinearGradient CDrawContext::onSurface(CLinearGradient gradient) const {
    gradient.from = gradient.from + offset_;
    gradient.to = gradient.to + offset_;
    return gradient;
}

void CDrawContext::fillRect(const CRect& rect, const CLinearGradient& gradient) {
    if (renderer_ != nullptr) renderer_->fillRectangle(onSurface(rect), onSurface(gradient));
}

void CDrawContext::fillRoundRect(const CRect& rect,
                                 double radius,
                                 const CLinearGradient& gradient) {
    if (renderer_ != nullptr)
        renderer_->fillRoundedRect(onSurface(rect), radius, onSurface(gradient));
}

void CDrawContext::fillPath(const CPath& path, const CLinearGradient& gradient) {
    if (renderer_ != nullptr) renderer_->fillPath(onSurface(path), onSurface(gradient));
}

std::span<const float> CDrawContext::onSurface(std::span<const float> y,
                                               std::vector<float>& moved) const {
    if (offset_.y == 0.0) return y;
    moved.resize(y.size());
    std::transform(y.begin(), y.end(), moved.begin(),
                   [dy = static_cast<float>(offset_.y)](float v) { return v + dy; });
    return moved;
}

void CDrawContext::drawColumnBand(const CColumnBand& band,
                                  const CLinearGradient& gradient,
                                  CColor outline,
                                  double outlineWidth) {
    if (renderer_ == nullptr) return;
    renderer_->columnBand({band.left + offset_.x, band.columnWidth, onSurface(band.upper, upper_),
                           onSurface(band.lower, lower_)},
                          onSurface(gradient), outline, outlineWidth);
}

void CDrawContext::drawColumnLine(
    double left, double columnWidth, std::span<const float> y, CColor color, double width) {
    if (renderer_ != nullptr)
        renderer_->columnLine(left + offset_.x, columnWidth, onSurface(y, upper_), color, width);
}

} // namespace Sorel

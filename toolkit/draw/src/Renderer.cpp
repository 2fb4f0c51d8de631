// The renderer's state and its shapes.
#include "draw/Renderer.h"

#include "RendererState.h"
#include "draw/OSBitmap.h"

namespace Sorel {

CRenderer::CRenderer()
    : state_(std::make_unique<State>()) {}
CRenderer::~CRenderer() = default;

void CRenderer::attach(std::uint8_t* pixels, int width, int height, int stride) {
    State& s = *state_;
    s.surface.attach(pixels, width, height, stride);
    s.clip = {0.0, 0.0, double(s.surface.bounds().right), double(s.surface.bounds().bottom)};
    s.paint = {kWhiteCColor, kBlackCColor, true, true};
    s.lineWidth = 1.0;
    s.masterAlpha = 1.0;
    s.shapes.antiAlias(true);
}

void CRenderer::attach(IOSBitmap& surface) {
    attach(surface.getPixels(), surface.width, surface.height, surface.stride);
}

void CRenderer::clipBox(const CRect& box) {
    state_->clip = box;
    state_->surface.setClip(box);
}
const CRect& CRenderer::clipBox() const { return state_->clip; }

void CRenderer::clear(CColor color) {
    const Surface& surface = state_->surface;
    const Pixels::Pixel pixel = Pixels::premultiplied(color);
    for (int y = 0; y < surface.bounds().height(); ++y) {
        auto* const row = reinterpret_cast<Pixels::Pixel*>(surface.at(0, y));
        std::fill(row, row + surface.bounds().width(), pixel);
    }
}

void CRenderer::fillColor(CColor color) {
    state_->paint.fill = color;
    state_->paint.fills = true;
}
void CRenderer::noFill() { state_->paint.fills = false; }
void CRenderer::lineColor(CColor color) {
    state_->paint.line = color;
    state_->paint.strokes = true;
}
void CRenderer::noLine() { state_->paint.strokes = false; }
CRenderer::Paint CRenderer::paint() const { return state_->paint; }
void CRenderer::setPaint(const Paint& paint) { state_->paint = paint; }
void CRenderer::lineWidth(double width) { state_->lineWidth = width; }
double CRenderer::lineWidth() const { return state_->lineWidth; }
void CRenderer::antiAlias(bool on) { state_->shapes.antiAlias(on); }
void CRenderer::blendMode(BlendMode mode) { state_->surface.setMode(mode); }
BlendMode CRenderer::blendMode() const { return state_->surface.mode(); }
void CRenderer::masterAlpha(double alpha) {
    state_->masterAlpha = alpha > 0.0 ? std::min(alpha, 1.0) : 0.0;
}
double CRenderer::masterAlpha() const { return state_->masterAlpha; }

void CRenderer::State::drawFigure(Corners corners) {
    if (paint.fills) shapes.fill(figure, surface, ink(paint.fill));
    if (paint.strokes) shapes.stroke(figure, lineWidth, corners, surface, ink(paint.line));
}

void CRenderer::State::fillBox(const PixelBox& box, CColor color) const {
    if (box.width() == 1 && !box.isEmpty() && surface.mode() == BlendMode::kAlpha) {
        surface.column(box.left, box.top, box.bottom, color); // grids are made of these
        return;
    }
    for (int y = box.top; y < box.bottom; ++y)
        surface.span(box.left, y, box.width(), color);
}

void CRenderer::line(double x1, double y1, double x2, double y2) {
    State& s = *state_;
    if (s.cannotDraw() || !s.paint.strokes) return;
    s.figure.clear();
    s.figure.moveTo(x1, y1);
    s.figure.lineTo(x2, y2);
    s.shapes.stroke(s.figure, s.lineWidth, Corners::kSharp, s.surface, s.ink(s.paint.line));
}

void CRenderer::rectangle(const CRect& rect) {
    State& s = *state_;
    if (s.cannotDraw()) return;
    // Grids are mostly outside of what is painted again.
    const PixelBox& box = s.surface.box();
    if (!s.paint.strokes && (rect.right <= box.left || rect.left >= box.right ||
                             rect.bottom <= box.top || rect.top >= box.bottom))
        return;
    s.figure.clear();
    s.figure.addRect(rect);
    const bool direct = s.paint.fills && isWholePixels(rect) && s.figure.isSound();
    if (direct)
        s.fillBox(pixelsTouched(rect, box), s.ink(s.paint.fill).color);
    else if (s.paint.fills)
        s.shapes.fill(s.figure, s.surface, s.ink(s.paint.fill));
    if (s.paint.strokes)
        s.shapes.stroke(s.figure, s.lineWidth, Corners::kSharp, s.surface, s.ink(s.paint.line));
}

void CRenderer::roundedRect(const CRect& rect, double radius) {
    State& s = *state_;
    if (s.cannotDraw()) return;
    s.figure.clear();
    s.figure.addRoundedRect(rect, radius);
    s.drawFigure(radius > 0.0 ? Corners::kRound : Corners::kSharp);
}

void CRenderer::ellipse(CPoint centre, double radiusX, double radiusY) {
    State& s = *state_;
    if (s.cannotDraw()) return;
    s.figure.clear();
    s.figure.addEllipse(centre, radiusX, radiusY);
    s.drawFigure(Corners::kRound);
}

void CRenderer::path(const CPath& path) {
    State& s = *state_;
    if (s.cannotDraw()) return;
    s.figure.clear();
    s.figure.addPath(path);
    s.drawFigure(Corners::kRound);
}

void CRenderer::polyline(std::span<const CPoint> points) {
    State& s = *state_;
    if (s.cannotDraw() || !s.paint.strokes) return;
    s.figure.clear();
    s.figure.addPolyline(points);
    s.shapes.stroke(s.figure, s.lineWidth, Corners::kRound, s.surface, s.ink(s.paint.line));
}

void CRenderer::plotPixel(int x, int y, CColor color) {
    const PixelBox& box = state_->surface.box();
    if (x < box.left || x >= box.right || y < box.top || y >= box.bottom) return;
    Pixels::blend(state_->surface.at(x, y), 1, state_->ink(color).color);
}

void CRenderer::plotPoints(CPoint origin,
                           std::span<const float> x,
                           std::span<const float> y,
                           CColor color) {
    State& s = *state_;
    if (s.cannotDraw()) return;
    const PixelBox& box = s.surface.box();
    const CColor ink = s.ink(color).color;
    // Counted from one pixel left of and above the box: a border of one pixel takes what is outside
    // (and what is no number), so that no point needs a branch.
    // In two steps, so that a point falls into the same pixel whatever the clip is.
    const auto originX = static_cast<float>(origin.x);
    const auto originY = static_cast<float>(origin.y);
    const auto beforeX = static_cast<float>(box.left - 1);
    const auto beforeY = static_cast<float>(box.top - 1);
    const auto behindX = static_cast<float>(box.width() + 1);
    const auto behindY = static_cast<float>(box.height() + 1);
    const auto width = static_cast<unsigned>(box.width());
    const auto height = static_cast<unsigned>(box.height());
    const std::ptrdiff_t stride = s.surface.stride();
    const std::ptrdiff_t start = (box.top - 1) * stride + 4 * std::ptrdiff_t{box.left - 1};

    constexpr std::size_t kChunk = 512;
    std::array<int, kChunk> columns;
    std::array<int, kChunk> rows;
    std::array<std::ptrdiff_t, kChunk> offsets;
    const auto inBorders = [](float position, float behind) {
        return static_cast<int>(std::min(behind, std::max(0.0F, position)));
    };
    const std::size_t count = std::min(x.size(), y.size());
    for (std::size_t first = 0; first < count; first += kChunk) {
        const std::size_t here = std::min(kChunk, count - first);
        // Apart from what follows, as several of these are done at a time.
        for (std::size_t i = 0; i < here; ++i) {
            columns[i] = inBorders(x[first + i] + originX - beforeX, behindX);
            rows[i] = inBorders(y[first + i] + originY - beforeY, behindY);
        }
        std::size_t inside = 0;
        for (std::size_t i = 0; i < here; ++i) {
            offsets[inside] = start + rows[i] * stride + 4 * std::ptrdiff_t{columns[i]};
            const unsigned across = static_cast<unsigned>(columns[i]) - 1 < width;
            const unsigned down = static_cast<unsigned>(rows[i]) - 1 < height;
            inside += across & down;
        }
        s.surface.points(static_cast<int>(inside), offsets.data(), ink);
    }
}

// ---- Gradients ---------------------------------------------------------------------------------

void CRenderer::State::fillFigure(const CLinearGradient& gradient) {
    const GradientTable table(faded(gradient, masterAlpha));
    shapes.fill(figure, surface, {kWhiteCColor, &table});
}

void CRenderer::fillRectangle(const CRect& rect, const CLinearGradient& gradient) {
    State& s = *state_;
    if (s.cannotDraw()) return;
    const GradientAxis axis(gradient);
    if (!isWholePixels(rect) || !(axis.isVertical() || axis.isHorizontal())) {
        s.figure.clear();
        s.figure.addRect(rect);
        s.fillFigure(gradient);
        return;
    }
    const PixelBox box = pixelsTouched(rect, s.surface.box());
    if (box.isEmpty()) return;
    const CLinearGradient colors = faded(gradient, s.masterAlpha);
    if (axis.isVertical()) {
        for (int y = box.top; y < box.bottom; ++y)
            s.surface.span(box.left, y, box.width(), colors.at(axis.at(0.0, y + 0.5)));
        return;
    }
    s.rowColors.clear();
    for (int x = box.left; x < box.right; ++x)
        s.rowColors.push_back(Pixels::premultiplied(colors.at(axis.at(x + 0.5, 0.0))));
    for (int y = box.top; y < box.bottom; ++y)
        s.surface.span(box.left, y, box.width(), s.rowColors.data(), std::uint8_t{255});
}

void CRenderer::fillRoundedRect(const CRect& rect, double radius, const CLinearGradient& gradient) {
    State& s = *state_;
    if (s.cannotDraw()) return;
    s.figure.clear();
    s.figure.addRoundedRect(rect, radius);
    s.fillFigure(gradient);
}

void CRenderer::fillPath(const CPath& path, const CLinearGradient& gradient) {
    State& s = *state_;
    if (s.cannotDraw()) return;
    s.figure.clear();
    s.figure.addPath(path);
    s.fillFigure(gradient);
}

} // namespace Sorel

#include "views/SpectrumWaterfallPainter.h"

#include "views/SpectrumColors.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Sorel {

namespace {

constexpr int kColors = 256; // from -72 dB up to +9 dB
constexpr float kOutlineWidth = 0.5F;
constexpr float kHalfOutline = kOutlineWidth * 0.5F;
constexpr float kOutlineAlpha = 135.0F / 255.0F;
constexpr std::uint32_t kOutline = 0xff000000U;

using ColorTable = std::array<std::uint32_t, kColors>;

std::uint32_t packed(CColor c) {
    return 0xff000000U | static_cast<std::uint32_t>(c.red << 16 | c.green << 8 | c.blue);
}

/// Row by row: they never change, whatever the view's size.
const std::array<ColorTable, Orvel::SpectrumWaterfall::kNumRows>& colorTables() {
    static const auto tables = [] {
        std::array<ColorTable, Orvel::SpectrumWaterfall::kNumRows> made;
        for (std::size_t row = 0; row < made.size(); ++row)
            for (std::size_t i = 0; i < kColors; ++i)
                made[row][i] =
                    packed(waterfallColor(static_cast<double>(i) / (kColors - 1),
                                          static_cast<double>(row) / (double(made.size()) - 1.0)));
        return made;
    }();
    return tables;
}

/// 0..256
std::uint32_t share(float amount) {
    return static_cast<std::uint32_t>(std::clamp(amount, 0.0F, 1.0F) * 256.0F + 0.5F);
}

/// All colours are opaque.
std::uint32_t
sum(std::uint32_t color, std::uint32_t part, std::uint32_t other, std::uint32_t otherPart) {
    const std::uint32_t redBlue = (color & 0xff00ff) * part + (other & 0xff00ff) * otherPart;
    const std::uint32_t green = (color & 0xff00) * part + (other & 0xff00) * otherPart;
    return 0xff000000U | (redBlue >> 8 & 0xff00ff) | (green >> 8 & 0xff00);
}

/// Blends `color` onto `pixel`; `amount` 0..1.
void blend(std::uint32_t& pixel, std::uint32_t color, float amount) {
    const std::uint32_t part = share(amount);
    pixel = sum(color, part, pixel, 256 - part);
}

/// The same, and black onto that.
void blendOutlined(std::uint32_t& pixel, std::uint32_t color, float amount, float black) {
    const std::uint32_t part = share(amount);
    const std::uint32_t light = 256 - share(black);
    pixel = sum(color, part * light >> 8, pixel, (256 - part) * light >> 8);
}

/// How much of each pixel in a column lies below a straight line across it, which begins at `low`
/// and ends `height` lower. Pixels are asked for from the top down.
class EdgeCoverage {
  public:
    /// `factor`: 0.5 / height.
    EdgeCoverage(float low, float height, float factor, int firstRow)
        : low_(low)
        , height_(height)
        , factor_(factor)
        , row_(static_cast<float>(firstRow))
        , area_(areaAbove(row_)) {}

    float next() {
        row_ += 1.0F;
        const float area = areaAbove(row_);
        return area - std::exchange(area_, area);
    }

  private:
    /// Of the column above `y`, what is below the line: a ramp's square, then all of it.
    float areaAbove(float y) const {
        const float below = std::max(0.0F, y - low_);
        const float ramp = std::min(below, height_);
        return ramp * ramp * factor_ + (below - ramp);
    }

    float low_;
    float height_;
    float factor_;
    float row_;
    float area_;
};

/// Half of what the outline measures from top to bottom where the curve changes by `slope` a pixel.
float halfOutline(float slope) { return 0.5F * kOutlineWidth * std::sqrt(1.0F + slope * slope); }

float overlap(float a0, float a1, float b0, float b1) {
    return std::max(0.0F, std::min(a1, b1) - std::max(a0, b0));
}

} // namespace

float SpectrumWaterfallPainter::Row::curveAt(float point) const {
    const float p = std::clamp(point, 0.0F, static_cast<float>(kPoints) - 1e-3F);
    const auto k = static_cast<std::size_t>(p);
    return y[k] + (y[k + 1] - y[k]) * (p - static_cast<float>(k));
}

void SpectrumWaterfallPainter::place(const Orvel::SpectrumWaterfall& rows,
                                     double fullHeight,
                                     const WaterfallProjection& projection) {
    for (int age = 0; age < kRows; ++age) {
        Row& row = rows_[static_cast<std::size_t>(age)];
        const double depth = age / (kRows - 1.0);
        const CPoint base = projection.at(0.0, depth, 1.0);
        row.left = static_cast<float>(base.x);
        row.right = static_cast<float>(base.x + projection.rowWidth());
        row.baseLeft = static_cast<float>(base.y);
        const Orvel::SpectrumWaterfall::Row& heights = rows.row(age);
        for (int k = 0; k <= kPoints; ++k) {
            const auto height = double{heights[static_cast<std::size_t>(std::min(k, kPoints - 1))]};
            row.y[static_cast<std::size_t>(k)] = static_cast<float>(
                projection.at(k / double{kPoints}, depth, height / fullHeight).y);
        }
    }
    pointsPerPixel_ = static_cast<float>(kPoints / projection.rowWidth());
    basePerPixel_ = static_cast<float>(projection.rowFall() / projection.rowWidth());
    colorsPerPixel_ = static_cast<float>((kColors - 1) / projection.levelHeight());
}

void SpectrumWaterfallPainter::paint(IOSBitmap& surface,
                                     const CRect& clip,
                                     const Orvel::SpectrumWaterfall& rows,
                                     double fullHeight,
                                     const WaterfallProjection& projection) {
    if (surface.getPixels() == nullptr || !(projection.levelHeight() > 0.0) || !(fullHeight > 0.0))
        return;
    const CRect area = clip.intersected(projection.room())
                           .intersected({0.0, 0.0, double(surface.width), double(surface.height)});
    const int top = static_cast<int>(std::floor(area.top));
    const int bottom = static_cast<int>(std::ceil(area.bottom));
    if (area.isEmpty()) return;
    place(rows, fullHeight, projection);
    auto* const pixels = reinterpret_cast<std::uint32_t*>(surface.getPixels());
    const std::ptrdiff_t stride = surface.stride / 4;
    const int left = static_cast<int>(std::floor(area.left));
    for (Row& row : rows_)
        row.entry = row.curveAt((static_cast<float>(left) - row.left) * pointsPerPixel_);
    for (int x = left; x < static_cast<int>(area.right); ++x)
        for (int count = findPieces(x, top, bottom); count-- > 0;)
            paintPiece(pixels + x, stride, pieces_[static_cast<std::size_t>(count)]);
}

/// From the newest row back; gives how many are to be seen. Columns come from left to right: a
/// row's curve leaves one where it enters the next.
int SpectrumWaterfallPainter::findPieces(int x, int top, int bottom) {
    int count = 0;
    int covered = bottom; // what newer rows hide altogether begins here
    const auto left = static_cast<float>(x);
    for (int age = 0; age < kRows; ++age) {
        Row& row = rows_[static_cast<std::size_t>(age)];
        if (row.left >= left + 1.0F || row.right <= left) continue;
        const float y0 = row.left < left ? row.entry : row.y[0];
        const float y1 = row.entry = row.curveAt((left + 1.0F - row.left) * pointsPerPixel_);
        if (covered <= top) continue;
        const float low = std::min(y0, y1);
        const float half = halfOutline(y1 - y0);
        const float base = row.baseLeft + basePerPixel_ * (left + 0.5F - row.left);
        const int first = std::max(top, static_cast<int>(low - half));
        const int end = std::min(covered, static_cast<int>(base + half) + 1);
        if (first >= end) continue;
        const float height = std::abs(y1 - y0);
        Piece& piece = pieces_[static_cast<std::size_t>(count++)];
        piece = {age, first, end, low, height, half, base, 1.0F, 0.0F};
        const bool atAnEnd = row.left > left - 1.0F || row.right < left + 2.0F;
        if (atAnEnd) cutEnd(row, left, piece);
        if (piece.weight < 1.0F) continue;
        const int full = static_cast<int>(low + height + half) + 1;
        if (full < static_cast<int>(base)) covered = std::min(covered, full);
    }
    return count;
}

void SpectrumWaterfallPainter::cutEnd(const Row& row, float left, Piece& piece) {
    const float right = left + 1.0F;
    piece.weight = overlap(left, right, row.left, row.right);
    for (const float end : {row.left, row.right})
        piece.side += overlap(left, right, end - kHalfOutline, end + kHalfOutline);
}

/// First the rows that curve and outline touch, then those inside, then the base line's.
void SpectrumWaterfallPainter::paintPiece(std::uint32_t* column,
                                          std::ptrdiff_t stride,
                                          const Piece& piece) const {
    const ColorTable& colors = colorTables()[static_cast<std::size_t>(piece.row)];
    const auto colorAt = [&](int y) {
        const float level = (piece.base - static_cast<float>(y) - 0.5F) * colorsPerPixel_;
        return colors[static_cast<std::size_t>(std::clamp(level, 0.0F, float{kColors - 1}))];
    };
    const int baseRow = static_cast<int>(piece.base);
    const int edgeEnd = static_cast<int>(piece.low + piece.height + piece.half) + 1;
    const int insideEnd = std::min(piece.bottom, baseRow);

    const float factor = 0.5F / std::max(piece.height, 1e-6F);
    const auto edge = [&](float shift) {
        return EdgeCoverage(piece.low + shift, piece.height, factor, piece.top);
    };
    EdgeCoverage curve = edge(0.0F);
    EdgeCoverage outlineTop = edge(-piece.half);
    EdgeCoverage outlineEnd = edge(piece.half);
    const auto paintEdge = [&](int y) {
        std::uint32_t& pixel = column[y * stride];
        const float belowBase = std::clamp(static_cast<float>(y) + 1.0F - piece.base, 0.0F, 1.0F);
        const float inside = curve.next() - belowBase;
        const float outline = outlineTop.next() - outlineEnd.next();
        blendOutlined(pixel, colorAt(y), inside * piece.weight,
                      outline * kOutlineAlpha * piece.weight);
    };
    int y = piece.top;
    for (; y < std::min(edgeEnd, piece.bottom); ++y)
        paintEdge(y);
    if (piece.weight >= 1.0F)
        for (; y < insideEnd; ++y)
            column[y * stride] = colorAt(y);
    for (; y < insideEnd; ++y)
        blend(column[y * stride], colorAt(y), piece.weight);
    for (; y < piece.bottom; ++y) {
        const float aboveBase = std::clamp(piece.base - static_cast<float>(y), 0.0F, 1.0F);
        blend(column[y * stride], colorAt(y), aboveBase * piece.weight);
    }
    if (piece.side <= 0.0F) return;
    for (y = piece.top; y < insideEnd; ++y)
        blend(column[y * stride], kOutline, piece.side * kOutlineAlpha);
}

} // namespace Sorel

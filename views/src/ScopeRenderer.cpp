#include "views/ScopeRenderer.h"

#include "views/ScopeTrace.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

namespace {
constexpr int kTraceAlpha = 225;
constexpr double kTraceWidth = 1.2;
} // namespace

void ColumnRange::add(int column) {
    first = isEmpty() ? column : std::min(first, column);
    end = std::max(end, column + 1);
}

void CNewScopeRenderer::attach(IScopeDataProvider* provider, int numColumns) {
    provider_ = provider;
    numColumns_ = std::max(0, numColumns);
    layers_.resize(provider != nullptr ? static_cast<std::size_t>(provider->GetNumLayers()) : 0);
    const auto columns = static_cast<std::size_t>(numColumns_);
    for (ScopeRenderLayer& layer : layers_)
        layer.columns.assign(columns, {});
    incoming_.assign(columns, {});
    upper_.reserve(columns);
    lower_.reserve(columns);
    trace_.reserve(columns);
}

bool CNewScopeRenderer::drawsTrace() const { return traceStrength(samplesPerColumn_) > 0.0; }

ColumnRange CNewScopeRenderer::fetch(double height) {
    ColumnRange changed;
    if (provider_ == nullptr || !provider_->TryLock()) return changed;
    for (int i = 0; i < numLayers(); ++i) {
        ScopeRenderLayer& target = layer(i);
        if (!target.visible) continue;
        provider_->GetLayerData(i, incoming_.data(), numColumns_);
        for (int c = 0; c < numColumns_; ++c) {
            const auto at = static_cast<std::size_t>(c);
            if (markOf(incoming_[at], i, height) == markOf(target.columns[at], i, height)) continue;
            target.columns[at] = incoming_[at];
            changed.add(c);
        }
    }
    provider_->Unlock();
    return changed;
}

void CNewScopeRenderer::clearLayer(int index) {
    if (provider_ == nullptr || index < 0 || index >= numLayers()) return;
    provider_->ClearLayer(index);
    std::fill(layer(index).columns.begin(), layer(index).columns.end(), ScopeColumn{});
}

namespace {
/// Height above the centre in quarters of a pixel: the least that a smooth line shows.
int quarterPixels(float value, double half) {
    return static_cast<int>(std::lround(4.0 * half * double{std::clamp(value, -1.0F, 1.0F)}));
}
} // namespace

CNewScopeRenderer::ColumnMark
CNewScopeRenderer::markOf(ScopeColumn column, int /*layer*/, double height) const {
    const double half = height * 0.5;
    return {quarterPixels(column.min, half), quarterPixels(column.max, half)};
}

ColumnRange
CNewScopeRenderer::clipped(const CDrawContext& context, const CRect& rect, int before, int after) {
    const CRect clip = context.getClipRect();
    const double first = std::floor(clip.left - rect.left) - before;
    const double end = std::ceil(clip.right - rect.left) + after;
    const double last = numColumns_;
    return {static_cast<int>(std::clamp(first, 0.0, last)),
            static_cast<int>(std::clamp(end, 0.0, last))};
}

void CNewScopeRenderer::Draw(CDrawContext& context, const CRect& rect) {
    for (int i = 0; i < numLayers(); ++i)
        if (layer(i).visible) DrawLayerCurve(context, rect, i);
}

void CNewScopeRenderer::DrawLayerCurve(CDrawContext& context, const CRect& rect, int index) {
    const ScopeRenderLayer& drawn = layer(index);
    const double strength = traceStrength(samplesPerColumn_);
    // Two columns more on each side, so that the outline's ends stay outside the clip.
    const ColumnRange range = clipped(context, rect, 2, 2);
    const auto first = static_cast<std::size_t>(range.first);
    const auto count = static_cast<std::size_t>(std::max(0, range.end - range.first));
    const double half = rect.height() * 0.5;
    const double centre = rect.top + half;
    // Rows that lie in the rectangle as a whole: the one between two lanes parts them.
    const double highest = std::ceil(rect.top) + 0.5;
    const double lowest = std::floor(rect.bottom) - 0.5;
    const auto yOf = [&](float value) {
        return centre - double{std::clamp(value, -1.0F, 1.0F)} * half;
    };
    // Whole pixels keep the tips of dense waves crisp; a single line shall be smooth.
    const auto edge = [&](float value) {
        const double y = strength > 0.0 ? yOf(value) : std::trunc(yOf(value)) + 0.5;
        return static_cast<float>(std::clamp(y, highest, lowest));
    };
    const std::span<const ScopeColumn> columns(drawn.columns);
    upper_.clear();
    lower_.clear();
    if (strength < 1.0) {
        for (const ScopeColumn column : columns.subspan(first, count)) {
            upper_.push_back(edge(column.max));
            lower_.push_back(edge(column.min));
        }
        CLinearGradient gradient = CLinearGradient::vertical(rect.top, rect.bottom);
        if (drawn.drawMode != ScopeRenderLayer::kLine)
            gradient.stop(0.0, drawn.topFade).stop(0.5, drawn.midFade).stop(1.0, drawn.bottomFade);
        context.drawColumnBand({rect.left + range.first, 1.0, upper_, lower_}, gradient,
                               drawn.lineColour, double{drawn.lineWidth});
    }
    if (strength <= 0.0) return;
    traceSamples(columns, samplesPerColumn_, trace_);
    upper_.clear();
    for (const float value : std::span<const float>(trace_).subspan(first, count))
        upper_.push_back(static_cast<float>(std::clamp(yOf(value), highest, lowest)));
    // In the middle of its column of pixels.
    context.drawColumnLine(rect.left + range.first + 0.5, 1.0, upper_,
                           drawn.lineColour.withAlpha(kTraceAlpha).faded(strength), kTraceWidth);
}

} // namespace Sorel

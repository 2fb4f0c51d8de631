#include "views/ScopeRenderer.h"

#include "views/ScopeTrace.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Sorel {

namespace {
constexpr int kTraceAlpha = 225;
constexpr double kTraceWidth = 1.2;
} // namespace

void CNewScopeRenderer::attach(IScopeDataProvider* provider, int numColumns) {
    provider_ = provider;
    numColumns_ = std::max(0, numColumns);
    layers_.resize(provider != nullptr ? static_cast<std::size_t>(provider->GetNumLayers()) : 0);
    const auto columns = static_cast<std::size_t>(numColumns_);
    for (ScopeRenderLayer& layer : layers_)
        layer.columns.assign(columns, {});
    incoming_.assign(columns, {});
    ordered_.reserve(columns);
    firstPlace_ = 0;
    lastReading_.reset();
    upper_.reserve(columns);
    lower_.reserve(columns);
    trace_.reserve(columns);
}

bool CNewScopeRenderer::drawsTrace() const { return traceStrength(samplesPerColumn_) > 0.0; }

ColumnRange CNewScopeRenderer::fetch(double height) {
    ColumnRange changed;
    if (provider_ == nullptr || numColumns_ == 0 || !provider_->TryLock()) return changed;
    const int first = std::clamp(provider_->GetFirstPlace(), 0, numColumns_ - 1);
    const Reading reading{provider_->GetVersion(), visibleLayers(), first, height};
    if (reading == lastReading_) { // frozen, or the host stands
        provider_->Unlock();
        return changed;
    }
    lastReading_ = reading;
    const int before = std::exchange(firstPlace_, first);
    for (int i = 0; i < numLayers(); ++i) {
        ScopeRenderLayer& target = layer(i);
        if (!target.visible) continue;
        provider_->GetLayerData(i, incoming_.data(), numColumns_);
        // Scrolled: everything moves, unless all columns look alike, as those of silence do.
        if (first != before && changed.end - changed.first < numColumns_ &&
            looksMoved(i, before, height))
            changed = {0, numColumns_};
        int place = first;
        for (int c = 0; c < numColumns_; ++c, place = place + 1 < numColumns_ ? place + 1 : 0) {
            const ScopeColumn incoming = incoming_[static_cast<std::size_t>(c)];
            ScopeColumn& drawn = target.columns[static_cast<std::size_t>(place)];
            if (incoming.min == drawn.min && incoming.max == drawn.max) continue;
            if (markOf(incoming, i, height) == markOf(drawn, i, height)) continue;
            drawn = incoming;
            changed.add(c);
            placeChanged(i, place);
        }
    }
    provider_->Unlock();
    return changed;
}

/// A bit for each.
unsigned CNewScopeRenderer::visibleLayers() const {
    unsigned layers = 0;
    for (const ScopeRenderLayer& layer : layers_)
        layers = 2 * layers + (layer.visible ? 1 : 0);
    return layers;
}

/// Whether the incoming columns look different from those that the display showed from the place
/// `first` on.
bool CNewScopeRenderer::looksMoved(int index, int first, double height) {
    const std::vector<ScopeColumn>& shown = layer(index).columns;
    int place = first;
    for (const ScopeColumn incoming : incoming_) {
        const ScopeColumn old = shown[static_cast<std::size_t>(place)];
        const bool same = incoming.min == old.min && incoming.max == old.max;
        if (!same && !(markOf(incoming, index, height) == markOf(old, index, height))) return true;
        if (++place == numColumns_) place = 0;
    }
    return false;
}

void CNewScopeRenderer::clearLayer(int index) {
    if (provider_ == nullptr || index < 0 || index >= numLayers()) return;
    provider_->ClearLayer(index);
    std::fill(layer(index).columns.begin(), layer(index).columns.end(), ScopeColumn{});
    for (int place = 0; place < numColumns_; ++place)
        placeChanged(index, place);
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
    return ColumnRange::toPaint(context, rect.left, numColumns_, before, after);
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
    upper_.clear();
    lower_.clear();
    if (strength < 1.0) {
        for (int c = range.first; c < range.end; ++c) {
            const ScopeColumn column = columnOf(drawn, c);
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
    ordered_.clear();
    for (int c = 0; c < numColumns_; ++c)
        ordered_.push_back(columnOf(drawn, c));
    traceSamples(ordered_, samplesPerColumn_, trace_);
    upper_.clear();
    for (int c = range.first; c < range.end; ++c)
        upper_.push_back(static_cast<float>(
            std::clamp(yOf(trace_[static_cast<std::size_t>(c)]), highest, lowest)));
    // In the middle of its column of pixels.
    context.drawColumnLine(rect.left + range.first + 0.5, 1.0, upper_,
                           drawn.lineColour.withAlpha(kTraceAlpha).faded(strength), kTraceWidth);
}

} // namespace Sorel

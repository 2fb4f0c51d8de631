// What the mouse does in the scope: sync marker and time zoom.
#include "analysis/OrvelScope.h"
#include "frame/ParameterDescription.h"
#include "tree/Frame.h"
#include "views/Scope.h"

#include <cmath>

namespace Sorel {

namespace {
constexpr double kSnapReach = 10.0;
constexpr double kZoomPerNotch = 1.2;
} // namespace

void CScope::arm(bool on) {
    syncMarkerActive_ = on;
    setDrawCursor(!on);
}

int CScope::onMouseDown(CPoint where, std::int32_t* buttons) {
    if ((*buttons & Buttons::kLeft) == 0) return IDisplayControl::onMouseDown(where, buttons);
    if (showSyncLabel_ && syncLabelRect_.contains(where)) {
        arm(!syncMarkerActive_);
        moveMarker(where);
        return kMouseHandledDone;
    }
    if (syncMarkerActive_ && analyser() != nullptr) {
        moveMarker(where);
        startAtMarker();
        arm(false);
        return kMouseHandledDone;
    }
    return IDisplayControl::onMouseDown(where, buttons);
}

int CScope::onMouseMoved(CPoint where, std::int32_t* buttons) {
    if (syncMarkerActive_) moveMarker(where);
    return IDisplayControl::onMouseMoved(where, buttons);
}

void CScope::moveMarker(CPoint where) {
    const Ruler* const ruler = beatRulerRect_.contains(where)   ? &beats_
                               : timeRulerRect_.contains(where) ? &times_
                                                                : nullptr;
    double x = std::clamp(where.x, dataRect_.left, dataRect_.right - 1.0);
    if (ruler != nullptr)
        if (const RulerLine* line = nearestLine(*ruler, x - dataRect_.left, kSnapReach))
            x = dataRect_.left + line->x;
    syncMarkerX_ = std::floor(x) + 0.5;
    setDirty(true);
}

/// The grid of sync points moves, and until the next one comes, so does what is drawn already.
void CScope::startAtMarker() {
    Orvel::ScopeTiming& timing = analyser()->scopeTiming();
    Orvel::CScopeDataProvider_Sync& table = analyser()->scopeTable();
    const double period{periodMs_.load()};
    const double markerMs = std::floor(syncMarkerX_ - dataRect_.left) / dataRect_.width() * period;

    double offset = double{timing.phaseOffsetMs.load()} - markerMs;
    while (offset < -period)
        offset += period;
    timing.phaseOffsetMs = static_cast<float>(offset);

    const double columns =
        markerMs * 0.001 * double{analyser()->sampleRate()} / table.samplesPerColumn();
    table.setViewOffset(static_cast<float>(
        std::fmod(double{table.viewOffset()} + columns, double(renderer_.numColumns()))));
}

bool CScope::onWheel(CPoint /*where*/, float distance, std::int32_t* /*buttons*/) {
    if (wheelParameter_ == nullptr || getFrame() == nullptr || distance == 0.0F) return false;
    double value{wheelParameter_->getValue()};
    if (wheelParameter_->getKind() == Vardo::kInteger) {
        // Touch pads send parts of a notch.
        wheelRest_ += distance;
        const float steps = std::trunc(wheelRest_);
        if (steps == 0.0F) return true;
        wheelRest_ -= steps;
        value -= double{steps};
    } else {
        value *= std::pow(kZoomPerNotch, -double{distance});
    }
    getFrame()->beginEdit(wheelParameter_);
    getFrame()->performEdit(wheelParameter_, double{wheelParameter_->plainToNormalized(value)},
                            nullptr);
    getFrame()->endEdit(wheelParameter_);
    return true;
}

} // namespace Sorel

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
    if (isOnSyncLabel(where)) {
        const bool setsBack = (*buttons & Buttons::kControl) != 0; // as on a dial
        if (setsBack) moveGrid(double{analyser()->scopeTiming().phaseOffsetMs.load()});
        arm(!syncMarkerActive_ && !setsBack);
        moveMarker(where);
        return kMouseHandledDone;
    }
    if (syncMarkerActive_ && analyser() != nullptr) {
        moveMarker(where);
        const double part = std::floor(syncMarkerX_ - dataRect_.left) / dataRect_.width();
        moveGrid(part * double{periodMs_.load()});
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

/// The sync points move to the right, and until the next one comes, what is drawn already moves as
/// far to the left.
void CScope::moveGrid(double milliseconds) {
    Orvel::ScopeTiming& timing = analyser()->scopeTiming();
    Orvel::CScopeDataProvider_Sync& table = analyser()->scopeTable();
    const double period{periodMs_.load()};

    double offset = double{timing.phaseOffsetMs.load()} - milliseconds;
    while (offset < -period)
        offset += period;
    timing.phaseOffsetMs = static_cast<float>(offset);

    // By pixels: with no audio coming the columns may still be those of another period.
    const double columns{double(renderer_.numColumns())};
    const double shift =
        std::fmod(double{table.viewOffset()} + milliseconds / period * columns, columns);
    table.setViewOffset(static_cast<float>(shift < 0.0 ? shift + columns : shift));
}

bool CScope::onWheel(CPoint /*where*/, float distance, std::int32_t* /*buttons*/) {
    if (wheelParameter_ == nullptr || getFrame() == nullptr || distance == 0.0F) return false;
    double value{wheelParameter_->getValue()};
    if (wheelParameter_->getKind() == Vardo::kInteger) {
        const double steps = notches_.take(double{distance});
        if (steps == 0.0) return true;
        value -= steps;
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

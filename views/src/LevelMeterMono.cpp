// What a meter knows, and when its picture changes.
#include "views/LevelMeterMono.h"

#include "MeterLayout.h"
#include "analysis/OrvelScope.h"

#include <cmath>
#include <tuple>

namespace Sorel {

using Orvel::MeteringMode;

namespace {

int tenths(float value) { return static_cast<int>(std::lround(value * 10.0F)); }

int rowOrNone(const MeterScale& scale, float db) {
    return scale.shows(db) ? scale.rowOf(db, MeterLayout::kHead, MeterLayout::kFoot)
                           : MeterLayout::kFoot;
}

} // namespace

MeteringMode meteringMode(Orvel::COrvelScope* analyser) {
    if (analyser == nullptr) return MeteringMode::peak;
    return static_cast<MeteringMode>(
        Orvel::indexValue(double{analyser->parameter(Orvel::kGlobalMeteringMode).getValue()}, 4));
}

CVUMeter_Mono::CVUMeter_Mono(const CRect& size,
                             Orvel::COrvelScope* analyser,
                             int channel,
                             const char* name)
    : IDisplayControl(size, analyser)
    , name_(name)
    , mode_(meteringMode(analyser))
    , scale_(&meterScale(mode_))
    , feed_(analyser, channel, 1) {
    static_assert(MeterLayout::kFoot - MeterLayout::kHead == HistogramColumn::kNumRows);
    column_.setScale(meterScale(MeteringMode::histogram));
    refresh();
}

bool CVUMeter_Mono::setMode(MeteringMode mode) {
    if (mode == mode_) return false;
    mode_ = mode;
    scale_ = &meterScale(mode);
    // What was counted before the mode was last left is history.
    picture_.shades.fill(0);
    refresh();
    return true;
}

bool CVUMeter_Mono::setLevels(const MeterLevels& levels) {
    levels_ = levels;
    return refresh();
}

bool CVUMeter_Mono::setHistogram(const HistogramColumn::Counts& counts, int highest) {
    const HistogramColumn::Shades shades = column_.shades(counts, highest);
    if (shades == picture_.shades) return false;
    picture_.shades = shades;
    return isHistogram();
}

/// Puts the levels into rows and tenths. True when any of these changed.
bool CVUMeter_Mono::refresh() {
    const float offset = peakOffsetDb(mode_);
    const float peakDb = meterDb(levels_.bar, offset);
    const float holdDb = meterDb(levels_.hold, offset);
    Picture next = picture_;
    next.rmsDb = meterDb(levels_.rms, offset);
    next.rmsRow = rowOrNone(*scale_, next.rmsDb);
    next.peakRow = rowOrNone(*scale_, peakDb);
    next.holdRow = rowOrNone(*scale_, holdDb);
    next.rmsColor = scale_->colorAt(next.rmsDb);
    next.peakColor = scale_->colorAt(peakDb);
    next.holdColor = scale_->colorAt(holdDb);
    next.heldTenths = tenths(holdDb);
    next.drTenths = tenths(std::isfinite(levels_.dynamicRangeDb)
                               ? std::clamp(levels_.dynamicRangeDb, -96.0F, 192.0F)
                               : -96.0F);
    const auto looks = [](const Picture& p) {
        return std::tie(p.rmsRow, p.peakRow, p.holdRow, p.rmsColor, p.peakColor, p.holdColor,
                        p.heldTenths, p.drTenths);
    };
    const bool changed = looks(next) != looks(picture_);
    picture_ = next;
    return changed;
}

void CVUMeter_Mono::askForChanges(CView& view) {
    if (const CRect rows = changedRows(); !rows.isEmpty()) view.invalidRect(rows);
    if (showDr_ && picture_.drTenths != asked_.drTenths) view.invalidRect(drRoom());
    asked_ = picture_;
}

/// Of the bed, from the highest to the lowest row that looks other than it did.
CRect CVUMeter_Mono::changedRows() const {
    using namespace MeterLayout;
    const bool recoloured = picture_.rmsColor != asked_.rmsColor ||
                            picture_.peakColor != asked_.peakColor ||
                            picture_.holdColor != asked_.holdColor;
    if (recoloured || picture_.shades != asked_.shades)
        return columns(kBedFrom, kBedTo, kHead, kFoot);
    int first = kFoot;
    int end = kHead;
    for (int Picture::*const row : {&Picture::rmsRow, &Picture::peakRow, &Picture::holdRow}) {
        if (picture_.*row == asked_.*row) continue;
        first = std::min({first, picture_.*row, asked_.*row});
        end = std::max({end, picture_.*row, asked_.*row});
    }
    return columns(kBedFrom, kBedTo, first, std::min(end + kHoldRows, kFoot));
}

void CVUMeter_Mono::onIdle() {
    const bool visible = isVisible();
    const bool news = feed_.poll(visible);
    if (!visible) return;
    if (analyser() != nullptr && setMode(meteringMode(analyser()))) setDirty(true);
    bool oversChanged = overs_.cool();
    if (feed_.areOversOld()) oversChanged |= overs_.setOldOvers(feed_.levels(0).overs);
    if (news) {
        setLevels(feed_.levels(0));
        oversChanged |= overs_.setOvers(feed_.levels(0).overs);
        if (isHistogram()) {
            HistogramColumn::Counts counts;
            int highest = 1;
            feed_.readHistogram(0, counts, highest);
            setHistogram(counts, highest);
        }
        askForChanges(*this);
    }
    if (oversChanged && showOvers_)
        invalidRect(MeterLayout::kMonoOverBox.moved(getViewSize().topLeft()));
}

int CVUMeter_Mono::onMouseDown(CPoint where, std::int32_t* buttons) {
    if ((*buttons & Buttons::kLeft) == 0) return IDisplayControl::onMouseDown(where, buttons);
    feed_.resetOvers();
    overs_.setOvers(0);
    setDirty(true);
    if (resetHeard_) resetHeard_();
    return kMouseHandledDone;
}

} // namespace Sorel

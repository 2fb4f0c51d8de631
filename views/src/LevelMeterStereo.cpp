#include "views/LevelMeterStereo.h"

#include "MeterLayout.h"
#include "analysis/OrvelScope.h"

namespace Sorel {

using namespace MeterLayout;

namespace {

constexpr CColor kReadOutBed{0, 0, 0, 185};
constexpr CColor kReadOutOutline{161, 163, 193, 50};
constexpr float kReadOutRadius = 2.0F;
constexpr double kReadOutSize = 9.0;
constexpr double kReadOutLongSize = 8.0;
constexpr int kLongTenths = 1000; ///< from +100 dB on a level has a digit more

CRect half(const CRect& whole, int i) {
    return CRect::ofSize(whole.left + i * kChannelWidth, whole.top, kChannelWidth, whole.height());
}

} // namespace

CVUMeter_Stereo::CVUMeter_Stereo(const CRect& size,
                                 Orvel::COrvelScope* analyser,
                                 const MeterPair& pair)
    : IDisplayControl(size, analyser)
    , pair_(pair)
    , channels_{CVUMeter_Mono(half(size, 0), analyser, pair.firstChannel, pair.names[0]),
                CVUMeter_Mono(half(size, 1), analyser, pair.firstChannel + 1, pair.names[1])}
    , feed_(analyser, pair.firstChannel, 2) {
    channels_[1].SetFlipped(true);
}

void CVUMeter_Stereo::setViewSize(const CRect& rect, bool invalidate) {
    IDisplayControl::setViewSize(rect, invalidate);
    for (int i = 0; i < 2; ++i)
        channel(i).setViewSize(half(rect, i), false);
}

bool CVUMeter_Stereo::setLevels(const MeterLevels& first, const MeterLevels& second) {
    const auto held = [this] {
        return std::pair(channels_[0].heldTenths(), channels_[1].heldTenths());
    };
    const auto before = held();
    bool changed = channels_[0].setLevels(first);
    changed |= channels_[1].setLevels(second);
    const bool oversChanged = overs_.setOvers(std::max(first.overs, second.overs));
    for (CVUMeter_Mono& channel : channels_)
        channel.askForChanges(*this);
    if (held() != before) askForPart(kReadOut);
    if (oversChanged) askForPart(kStereoOverBox);
    return changed || oversChanged;
}

void CVUMeter_Stereo::onIdle() {
    const bool visible = isVisible();
    const bool news = feed_.poll(visible);
    if (!visible) return;
    const Orvel::MeteringMode mode =
        analyser() != nullptr ? meteringMode(analyser()) : channel(0).mode();
    bool newMode = channel(0).setMode(mode);
    newMode |= channel(1).setMode(mode);
    if (newMode) setDirty(true);
    bool oversChanged = overs_.cool();
    if (feed_.areOversOld())
        oversChanged |= overs_.setOldOvers(std::max(feed_.levels(0).overs, feed_.levels(1).overs));
    if (oversChanged) askForPart(kStereoOverBox);
    if (!news) return;
    for (int i = 0; i < 2 && mode == Orvel::MeteringMode::histogram; ++i) {
        HistogramColumn::Counts counts;
        int highest = 1;
        feed_.readHistogram(i, counts, highest);
        channel(i).setHistogram(counts, highest);
    }
    setLevels(feed_.levels(0), feed_.levels(1));
}

void CVUMeter_Stereo::resetOvers() {
    feed_.resetOvers();
    overs_.setOvers(0);
    setDirty(true);
}

void CVUMeter_Stereo::resetAllOvers() {
    resetOvers();
    if (resetHeard_) resetHeard_();
}

int CVUMeter_Stereo::onMouseDown(CPoint where, std::int32_t* buttons) {
    if ((*buttons & Buttons::kLeft) == 0) return IDisplayControl::onMouseDown(where, buttons);
    resetAllOvers();
    return kMouseHandledDone;
}

void CVUMeter_Stereo::drawReadOut(CDrawContext& context) {
    const CPoint origin = getViewSize().topLeft();
    const CRect box = kReadOut.moved(origin);
    if (!box.touches(context.getClipRect())) return;
    context.setFillColor(kReadOutBed);
    context.drawRoundRect(box, kReadOutRadius, kFilled);
    context.setLineWidth(1.0);
    context.setFrameColor(kReadOutOutline);
    context.drawRoundRect(box.inset(0.5, 0.5), kReadOutRadius, kStroked);
    for (int i = 0; i < 2; ++i) {
        const double baseline = origin.y + kReadOutBaselines[i];
        context.setFont(kDefaultFont, kReadOutSize, kRegularFont);
        context.setFontColor(colors().text1);
        context.drawStringAt(pair_.readOut[i], {box.left + kReadOutMargin, baseline});
        const int tenths = channel(i).heldTenths();
        context.setFont(kDefaultFont, tenths < kLongTenths ? kReadOutSize : kReadOutLongSize,
                        kBoldFont);
        context.setFontColor(colors().main.withAlpha(255));
        context.drawStringAt(numberText(tenths / 10.0, 1, true) + "dB",
                             {box.right - kReadOutMargin, baseline}, HorizontalAlign::kRight);
    }
}

void CVUMeter_Stereo::draw(CDrawContext& context) {
    for (CVUMeter_Mono& channel : channels_)
        channel.drawChannel(context);
    overs_.draw(context, kStereoOverBox.moved(getViewSize().topLeft()));
    drawReadOut(context);
    IDisplayControl::draw(context);
}

} // namespace Sorel

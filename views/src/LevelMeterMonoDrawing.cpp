// How a meter looks.
#include "MeterLayout.h"
#include "views/LevelMeterMono.h"

#include <cmath>

namespace Sorel {

using namespace MeterLayout;

namespace {

constexpr CColor kBed{0, 0, 0, 64};
constexpr CColor kRmsToPeak{161, 163, 193, 24};
constexpr CColor kPeakOverHistogram{255, 255, 255, 200};
constexpr int kNameAlpha = 230;
constexpr double kHalfLine = 0.5;
constexpr double kNameSize = 9.0;
constexpr double kNumberSize = 9.0;
constexpr double kDrSize = 10.0;

/// The bar of a zone: a calm foot and a clear top, so that the eye goes to where the level ends.
CLinearGradient zoneFill(double top, CColor color) {
    CLinearGradient gradient = CLinearGradient::vertical(top + kFoot, top + kHead);
    constexpr auto kStops = static_cast<int>(CLinearGradient::kMaxStops);
    for (int i = 0; i < kStops; ++i) {
        const double height = i / double{kStops - 1};
        gradient.stop(height, color.faded(0.42 + 0.58 * std::pow(height, 1.1)));
    }
    return gradient;
}

} // namespace

/// From a distance to the outer edge.
double CVUMeter_Mono::across(double x) const {
    return flipped_ ? getViewSize().left + kChannelWidth - x : getViewSize().left + x;
}

CRect CVUMeter_Mono::columns(double from, double to, double top, double bottom) const {
    const double a = across(from);
    const double b = across(to);
    const double y = getViewSize().top;
    return {std::min(a, b), y + top, std::max(a, b), y + bottom};
}

HorizontalAlign CVUMeter_Mono::outwards() const {
    return flipped_ ? HorizontalAlign::kLeft : HorizontalAlign::kRight;
}

void CVUMeter_Mono::drawRow(CDrawContext& context, int row, int rows, CColor color) const {
    if (row >= kFoot) return;
    context.setFillColor(color);
    context.drawRect(
        columns(kBedFrom + kBarMargin, kBedTo - kBarMargin, row, std::min(row + rows, kFoot)),
        kFilled);
}

void CVUMeter_Mono::drawTicks(CDrawContext& context) const {
    context.setFillColor(kBed);
    context.drawRect(columns(kBedFrom, kBedTo, kHead, kFoot), kFilled);
    for (const MeterScale::Tick& tick : scale_->allTicks()) {
        const int row = scale_->rowOf(tick.db, kHead, kFoot);
        const bool reference = tick.db == 0.0F;
        context.setFillColor(colors().grid.faded(kHalfLine));
        context.drawRect(columns(kBedFrom, kBedTo, row, row + 1), kFilled);
        context.setFillColor(colors().grid);
        context.drawRect(columns(kTickFrom, kTickTo, row, row + 1), kFilled);
        context.setFont(kDefaultFont, kNumberSize, reference ? kBoldFont : kRegularFont);
        context.setFontColor(reference ? colors().text1.withAlpha(255) : colors().text1);
        context.drawStringAt(tick.label.data(),
                             {across(kNumbersEnd), getViewSize().top + row + kNumberDrop},
                             outwards());
    }
}

void CVUMeter_Mono::drawBars(CDrawContext& context) const {
    const double top = getViewSize().top;
    int foot = kFoot;
    for (const MeterScale::Zone& zone : scale_->allZones()) {
        if (picture_.rmsRow >= kFoot || picture_.rmsDb <= zone.fromDb) break;
        const int row = scale_->rowOf(std::min(picture_.rmsDb, zone.toDb), kHead, kFoot);
        const CRect piece = columns(kBedFrom + kBarMargin, kBedTo - kBarMargin, row, foot);
        if (row < foot) context.fillRect(piece, zoneFill(top, zone.color));
        foot = std::min(foot, row);
    }
    if (picture_.peakRow + 1 < picture_.rmsRow)
        drawRow(context, picture_.peakRow + 1, picture_.rmsRow - picture_.peakRow - 1, kRmsToPeak);
    drawRow(context, picture_.peakRow, 1, picture_.peakColor.withAlpha(255));
}

void CVUMeter_Mono::drawHistogram(CDrawContext& context) const {
    HistogramColumn::draw(context, columns(kBedFrom, kBedTo, kHead, kFoot), picture_.shades,
                          colors().text2);
    drawRow(context, picture_.peakRow, 1, kPeakOverHistogram);
    drawRow(context, picture_.rmsRow, 1, picture_.rmsColor.withAlpha(255));
}

void CVUMeter_Mono::drawName(CDrawContext& context) const {
    context.setFont(kDefaultFont, kNameSize, kBoldFont);
    context.setFontColor(colors().text1.withAlpha(kNameAlpha));
    context.drawStringAt(name_, {across(kNameMiddle), getViewSize().top + kNameBaseline},
                         HorizontalAlign::kCentre);
}

CRect CVUMeter_Mono::drRoom() const { return columns(0.0, kChannelWidth, kDrHead, kDrFoot); }

void CVUMeter_Mono::drawDr(CDrawContext& context) const {
    if (!showDr_ || !drRoom().touches(context.getClipRect())) return;
    context.setFont(kDefaultFont, kDrSize, kRegularFont);
    context.setFontColor(colors().text1);
    context.drawStringAt("DR " + numberText(picture_.drTenths / 10.0, 1) + "dB",
                         {across(kDrMiddle), getViewSize().top + kDrBaseline},
                         HorizontalAlign::kCentre);
}

void CVUMeter_Mono::drawChannel(CDrawContext& context) {
    if (stillScale_ != scale_) still_.invalidate();
    stillScale_ = scale_;
    still_.draw(context, getViewSize(), [this](CDrawContext& still) {
        drawTicks(still);
        drawName(still);
    });
    if (isHistogram())
        drawHistogram(context);
    else
        drawBars(context);
    drawRow(context, picture_.holdRow, kHoldRows, picture_.holdColor.withAlpha(255));
    context.setFillColor(colors().grid);
    context.drawRect(columns(kBedFrom, kBedTo, kFoot - 1, kFoot), kFilled);
    drawDr(context);
}

void CVUMeter_Mono::draw(CDrawContext& context) {
    drawChannel(context);
    if (showOvers_) overs_.draw(context, kMonoOverBox.moved(getViewSize().topLeft()));
    IDisplayControl::draw(context);
}

} // namespace Sorel

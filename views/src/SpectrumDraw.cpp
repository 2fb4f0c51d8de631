// How the spectrum view paints: the three pictures, and the read-outs over them.
#include "analysis/OrvelScope.h"
#include "views/NoteName.h"
#include "views/SoftBed.h"
#include "views/Spectrum.h"
#include "views/SpectrumColors.h"

#include <cmath>
#include <string_view>

namespace Sorel {

namespace {

constexpr double kTextInset = 8.0; // "Highest" ends before the right edge
constexpr double kTextBaseline = 14.0;
constexpr double kHighestWidth = 190.0;
constexpr double kHighestFoot = 20.0;
constexpr int kHighestBedAlpha = 215;
constexpr CPoint kLabelPlace{34.0, 14.0};
constexpr double kProjectorFoot = 12.0;
constexpr CPoint kProjectorText{4.0, 28.0};
constexpr double kProjectorTextWidth = 50.0;

constexpr double kHoverWidth = 80.0;
constexpr double kHoverHeight = 37.0;
constexpr double kHoverDistance = 15.0; // from the pointer
constexpr double kHoverBaselines[] = {11.0, 22.0, 33.0};

/// The words of "Highest", each as wide as it may become; the last is all the rest. They stand in
/// columns, so that what does not change does not move.
struct Word {
    std::string_view widest;
    HorizontalAlign align;
};
constexpr Word kHighestWords[] = {{"Highest:", HorizontalAlign::kLeft},
                                  {"-72.0dB", HorizontalAlign::kRight},
                                  {"@", HorizontalAlign::kLeft},
                                  {"96000.0Hz (#G-3)", HorizontalAlign::kLeft}};

/// Where each word is anchored, from the right edge of the view.
std::vector<double> placesOf(std::span<const Word> words, const CDrawContext& context) {
    std::vector<double> places(words.size());
    const double gap = context.getStringWidth(" ");
    double right = -kTextInset;
    for (std::size_t i = words.size(); i-- > 0;) {
        const double left = std::floor(right - context.getStringWidth(words[i].widest));
        places[i] = words[i].align == HorizontalAlign::kLeft ? left : right;
        right = std::floor(left - gap);
    }
    return places;
}

} // namespace

void CSpectrum::draw(CDrawContext& context) {
    if (waterfallMode_)
        drawWaterfall(context);
    else
        drawFlat(context);
    IDisplayControl::draw(context);
    if (analyser() != nullptr) analyser()->display().spectra[view_].setConsumed();
}

void CSpectrum::drawFlat(CDrawContext& context) {
    axes_.drawLines(context, *this);
    if (lineMode_)
        curve_.drawFill(context, axes_);
    else
        bars_.drawBars(context, axes_);
    axes_.drawLeftShade(context);
    drawEdges(context);
    axes_.drawNumbers(context);
    drawProjector(context);
    drawHighest(context);
}

/// The lines end above the numbers of the frequencies.
void CSpectrum::drawEdges(CDrawContext& context) {
    const CRect& room = getViewSize();
    const CRect clip = context.getClipRect();
    CRect above = room;
    above.bottom -= SpectrumAxes::kFootHeight;
    context.setClipRect(clip.intersected(above));
    // The live edge last: a steady tone's peaks lie exactly under it.
    if (drawPeak_ && lineMode_) curve_.drawPeaks(context, room);
    if (drawPeak_ && !lineMode_) bars_.drawPeaks(context, room);
    if (lineMode_) curve_.drawLevels(context, room);
    context.setClipRect(clip);
}

void CSpectrum::drawWaterfall(CDrawContext& context) {
    const CRect& room = getViewSize();
    if (analyser() != nullptr)
        rotate_ = std::clamp(double{plain(Orvel::kSpectrumRotate)}, 0.0, 1.0);
    const WaterfallProjection projection(room, rotate_);
    stage_.place(projection, rotate_, room.width());
    stage_.drawBehind(context, axes_.grid().lines());
    if (context.surface() != nullptr) {
        if (rows_ == nullptr) rows_ = std::make_unique<SpectrumWaterfallPainter>();
        rows_->paint(*context.surface(), context.clipRect(), model_.waterfall(), room.height(),
                     WaterfallProjection(room.moved(context.offset()), rotate_));
    }
    drawNewestRow(context, projection);
    stage_.drawInFront(context, axes_.grid().lines());
}

void CSpectrum::drawNewestRow(CDrawContext& context, const WaterfallProjection& projection) {
    const Orvel::SpectrumWaterfall::Row& row = model_.waterfall().row(0);
    newest_.clear();
    for (std::size_t k = 0; k <= row.size(); ++k) {
        const double height = double{row[std::min(k, row.size() - 1)]};
        newest_.push_back(projection.at(static_cast<double>(k) / static_cast<double>(row.size()),
                                        0.0, height / getViewSize().height()));
    }
    context.setFrameColor(colors().main.withAlpha(255));
    context.setLineWidth(1.0);
    context.drawPolyline(newest_);
}

/// As wide as the text and its bed may become.
CRect CSpectrum::highestRoom() const {
    const CRect& room = getViewSize();
    return {room.right - kHighestWidth, room.top, room.right, room.top + kHighestFoot};
}

/// Curves and the projector's line may pass under it.
void CSpectrum::drawHighest(CDrawContext& context) {
    const CRect room = highestRoom();
    if (!room.touches(context.getClipRect())) return;
    highestBed_.draw(context, room, [&](CDrawContext& still) {
        const CRect lines{room.left + kSoftBedReach, room.top + kTextBaseline - 7.0,
                          room.right - kTextInset, room.top + kTextBaseline};
        drawSoftBed(still, lines, colors().ground.withAlpha(kHighestBedAlpha));
    });
    drawHighestWords(context);
}

void CSpectrum::drawHighestWords(CDrawContext& context) {
    const CRect& room = getViewSize();
    context.setFont(kDefaultFont, 10.0, kRegularFont);
    context.setFontColor(colors().text2);
    if (highestPlaces_.empty()) highestPlaces_ = placesOf(kHighestWords, context);
    std::string_view rest = highestText_.c_str();
    for (std::size_t i = 0; i < std::size(kHighestWords); ++i) {
        const bool last = i + 1 == std::size(kHighestWords);
        const std::string_view word = last ? rest : rest.substr(0, rest.find(' '));
        context.drawStringAt(word, {room.right + highestPlaces_[i], room.top + kTextBaseline},
                             kHighestWords[i].align);
        rest.remove_prefix(std::min(word.size() + 1, rest.size()));
    }
}

void CSpectrum::drawProjector(CDrawContext& context) const {
    if (projectorHz_ <= double{Orvel::kLowestShownHz}) return;
    const CRect& room = getViewSize();
    const double x =
        std::min(axes_.frequencyLine(model_.scale().positionOf(projectorHz_)), room.right - 0.5);
    context.setFrameColor(colors().main);
    context.setLineWidth(1.0);
    context.drawLine(x, room.top, x, room.bottom - kProjectorFoot);
    const bool fits = x + kProjectorText.x + kProjectorTextWidth <= room.right;
    context.setFont(kDefaultFont, 9.0, kRegularFont);
    context.setFontColor(colors().main);
    context.drawStringAt(numberText(projectorHz_, 1) + "Hz",
                         {std::floor(x) + (fits ? kProjectorText.x : -kProjectorText.x),
                          room.top + kProjectorText.y},
                         fits ? HorizontalAlign::kLeft : HorizontalAlign::kRight);
}

void CSpectrum::DrawLabel(CDrawContext& context) {
    context.setFont(kDefaultFont, 11.0, kBoldFont);
    context.setFontColor(colors().bright);
    context.drawStringAt(label(), getViewSize().topLeft() + kLabelPlace);
}

void CSpectrum::DrawCursor(CDrawContext& context, CPoint position) {
    const CRect& room = getViewSize();
    const CPoint at{std::floor(position.x) + 0.5, std::floor(position.y) + 0.5};
    const double x = position.x - room.left;
    const double hz = model_.scale().limited(model_.scale().frequencyAt(x));
    // Of the column or the bar under the cross, so that what is read is what is seen.
    const int column = static_cast<int>(x);
    const float peak = lineMode_ ? curve_.peakAt(column) : bars_.peakAt(position.x);
    const float level = lineMode_ ? curve_.levelAt(column) : bars_.levelAt(position.x);
    const std::string lines[] = {numberText(hz, 1) + "Hz (" + noteName(hz) + ")",
                                 "Peak: " + numberText(double{peak}, 1) + "dB",
                                 "Mag: " + numberText(double{level}, 1) + "dB"};
    context.setFont(kDefaultFont, 10.0, kRegularFont);

    // Beside the pointer; on its other side where there is no room.
    const double width =
        std::max(kHoverWidth, std::ceil(context.getStringWidth(lines[0]) * 0.5 + 4.0) * 2.0);
    const double pointer = std::floor(position.x);
    const bool fits = pointer + kHoverDistance + width <= room.right;
    const double left = fits ? pointer + kHoverDistance : pointer - kHoverDistance - width;
    // Below "Highest", which the lines of the cross leave alone too.
    const CRect highest = highestRoom();
    const double highestTop = left + width > highest.left ? highest.bottom : room.top;
    const double top = std::clamp(std::floor(position.y - kHoverHeight * 0.5), highestTop,
                                  room.bottom - kHoverHeight);
    const CRect box = CRect::ofSize(left, top, width, kHoverHeight);

    context.setLineWidth(0.5);
    context.setFrameColor(colors().main);
    context.drawLine(at.x, at.x > highest.left ? highest.bottom : room.top, at.x, room.bottom);
    const double end = at.y < highest.bottom ? highest.left : room.right;
    const bool crossesBox = at.y > box.top && at.y < box.bottom;
    context.drawLine(room.left, at.y, crossesBox ? std::min(box.left, end) : end, at.y);
    if (crossesBox && box.right < end) context.drawLine(box.right, at.y, end, at.y);

    context.setFillColor(colors().shade);
    context.drawRoundRect(box, 2.0F, kFilled);
    context.drawRoundRect(box.inset(0.5, 0.5), 2.0F, kStroked);
    context.setFontColor(colors().main);
    for (std::size_t i = 0; i < std::size(lines); ++i)
        context.drawStringAt(lines[i], {box.centre().x, box.top + kHoverBaselines[i]},
                             HorizontalAlign::kCentre);
}

} // namespace Sorel

#include "views/SpectrumCurve.h"

#include "views/DisplayColors.h"
#include "views/SpectrumColors.h"

#include <cmath>
#include <limits>

namespace Sorel {

namespace {
constexpr float kVisibleDb = 0.02F; // a tenth of a pixel, less is not painted anew
constexpr float kFloorDb = Orvel::kLowestShownDb + 0.01F;

/// Columns stand in the middle of their pixels: so the tip of a tone is one bright pixel. One more
/// at each end reaches over the edges.
void toTheEdges(std::vector<float>& heights) {
    heights.front() = heights[1];
    heights.back() = heights[heights.size() - 2];
}
} // namespace

float SpectrumCurve::at(const std::vector<float>& levels, int column) {
    if (levels.empty()) return Orvel::kLowestShownDb;
    const int last = static_cast<int>(levels.size()) - 1;
    return levels[static_cast<std::size_t>(std::clamp(column, 0, last))];
}

bool SpectrumCurve::update(const Orvel::SpectrumModel& model) {
    bool changed = place(model);
    changed |= measure(model.analyzeMode(), model.smoothed(), level_);
    changed |= measure(model.analyzeMode(), model.peaks(), peak_);
    return changed;
}

bool SpectrumCurve::place(const Orvel::SpectrumModel& model) {
    const Orvel::FrequencyScale& scale = model.scale();
    const Format format{scale.width(), scale.highestHz(), model.binHz(), scale.isLinear()};
    if (format == format_) return false;
    format_ = format;
    columns_.clear();
    level_.clear();
    peak_.clear();
    if (!(format.binHz > 0.0)) return true;

    const int lastBin = Orvel::SpectrumFrame::numBins(model.fftSize()) - 1;
    const auto binFrom = [&](double x) { return scale.frequencyAt(x) / format.binHz; };
    const auto firstFrom = [&](double x) {
        return std::clamp(static_cast<int>(std::ceil(binFrom(x))), 0, lastBin + 1);
    };
    const int width = static_cast<int>(format.width);
    for (int c = 0; c < width; ++c) {
        Column column{firstFrom(c), firstFrom(c + 1.0), 0.0F};
        if (column.first == column.end) {
            const double bin = std::clamp(binFrom(c + 0.5), 0.0, double(lastBin));
            column.first = column.end = std::min(static_cast<int>(bin), lastBin - 1);
            column.part = static_cast<float>(bin - column.first);
        }
        columns_.push_back(column);
    }
    level_.assign(columns_.size(), Orvel::kLowestShownDb);
    peak_.assign(columns_.size(), Orvel::kLowestShownDb);
    return true;
}

bool SpectrumCurve::measure(Orvel::AnalyzeMode mode,
                            Orvel::SpectrumLevels bins,
                            std::vector<float>& shown) {
    // Half a bin up: frequencies that rounding cannot push into the bin below.
    const auto range = [&](int first, int end) {
        return Orvel::analyzeRange(mode, (first + 0.5) * bins.binHz, (end + 0.5) * bins.binHz,
                                   bins);
    };
    next_.resize(columns_.size());
    int bin = -2; // whose levels `here` and `there` are
    float here = 0.0F;
    float there = 0.0F;
    bool changed = false;
    for (std::size_t c = 0; c < columns_.size(); ++c) {
        const Column& column = columns_[c];
        float& level = next_[c];
        if (column.end > column.first) {
            level = range(column.first, column.end);
        } else {
            if (column.first != bin) {
                here = column.first == bin + 1 ? there : range(column.first, column.first + 1);
                there = range(column.first + 1, column.first + 2);
                bin = column.first;
            }
            level = here + Orvel::raisedCosine(column.part) * (there - here);
        }
        changed |= std::abs(level - shown[c]) > kVisibleDb;
    }
    if (changed) shown.swap(next_);
    return changed;
}

void SpectrumCurve::drawFill(CDrawContext& context, const SpectrumAxes& axes) {
    const CRect& room = axes.room();
    const auto top = static_cast<float>(room.top);
    const auto bottom = static_cast<float>(room.bottom);
    const std::size_t count = level_.size();
    if (count == 0) return;
    lower_.assign(count + 2, bottom);
    const double radius = std::min(axes.cornerRadius(), static_cast<double>(count) * 0.5);
    for (std::size_t c = 0; static_cast<double>(c) < radius; ++c) {
        const double across = radius - static_cast<double>(c) - 0.5;
        const double up = radius - std::sqrt(std::max(0.0, radius * radius - across * across));
        lower_[c + 1] = lower_[count - c] = static_cast<float>(room.bottom - up);
    }
    upper_.resize(count + 2);
    for (std::size_t c = 0; c < count; ++c)
        upper_[c + 1] = std::min(lower_[c + 1], Orvel::levelPosition(level_[c], top, bottom));
    toTheEdges(upper_);
    toTheEdges(lower_);
    context.drawColumnBand({room.left - 0.5, 1.0, upper_, lower_},
                           spectrumFill(room.top, room.bottom), {}, 0.0);
}

void SpectrumCurve::drawLevels(CDrawContext& context, const CRect& room) {
    drawTrace(context, room, level_, displayColors().main.withAlpha(255), 0.7);
}

void SpectrumCurve::drawPeaks(CDrawContext& context, const CRect& room) {
    drawTrace(context, room, peak_, displayColors().text2, 0.6);
}

/// Silence has no line: it would lie on the edge of the well.
void SpectrumCurve::drawTrace(CDrawContext& context,
                              const CRect& room,
                              const std::vector<float>& levels,
                              CColor color,
                              double width) {
    const std::size_t count = levels.size();
    if (count == 0) return;
    const auto silent = [&](std::size_t c) { return c >= count || levels[c] <= kFloorDb; };
    upper_.resize(count + 2);
    for (std::size_t c = 0; c < count; ++c) {
        const bool hidden = silent(c) && silent(c + 1) && (c == 0 || silent(c - 1));
        upper_[c + 1] = hidden ? std::numeric_limits<float>::quiet_NaN()
                               : Orvel::levelPosition(levels[c], static_cast<float>(room.top),
                                                      static_cast<float>(room.bottom));
    }
    toTheEdges(upper_);
    context.drawColumnLine(room.left - 0.5, 1.0, upper_, color, width);
}

} // namespace Sorel

#include "views/SpectrumCurve.h"

#include "views/DisplayColors.h"
#include "views/SpectrumColors.h"

#include <cmath>
#include <limits>
#include <utility>

namespace Sorel {

namespace {
constexpr float kVisibleDb = 0.02F; // a tenth of a pixel, less is not painted anew
constexpr float kLineReach = 1.5F;  // pixels beyond its heights that a line may colour
constexpr float kFloorDb = Orvel::kLowestShownDb + 0.01F;

} // namespace

float SpectrumCurve::at(const std::vector<float>& levels, int column) {
    if (levels.empty()) return Orvel::kLowestShownDb;
    const int last = static_cast<int>(levels.size()) - 1;
    return levels[static_cast<std::size_t>(std::clamp(column, 0, last))];
}

bool SpectrumCurve::update(const Orvel::SpectrumModel& model, double height, ChangedRows& changes) {
    const bool all = place(model);
    changes.begin(static_cast<int>(columns_.size()));
    measure(model.analyzeMode(), model.smoothed(), level_, height, changes);
    measure(model.analyzeMode(), model.peaks(), peak_, height, changes);
    return all;
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

void SpectrumCurve::measure(Orvel::AnalyzeMode mode,
                            Orvel::SpectrumLevels bins,
                            std::vector<float>& shown,
                            double height,
                            ChangedRows& changes) {
    const auto range = [&](int first, int end) {
        return Orvel::analyzeBins(mode, bins.db.data() + first,
                                  static_cast<std::size_t>(end - first));
    };
    int bin = -2; // whose levels `here` and `there` are
    float here = 0.0F;
    float there = 0.0F;
    for (std::size_t c = 0; c < columns_.size(); ++c) {
        const Column& column = columns_[c];
        float level;
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
        if (std::abs(level - shown[c]) <= kVisibleDb) continue;
        const float before = std::exchange(shown[c], level);
        enter(shown, c, before, height, changes);
    }
}

/// The lines to both neighbours move, and with them what their columns show.
void SpectrumCurve::enter(const std::vector<float>& shown,
                          std::size_t column,
                          float before,
                          double height,
                          ChangedRows& changes) {
    const float left = shown[column > 0 ? column - 1 : 0];
    const float right = shown[std::min(column + 1, shown.size() - 1)];
    const auto [low, high] = std::minmax({before, shown[column], left, right});
    const auto row = [height](float db) {
        return Orvel::levelPosition(db, 0.0F, static_cast<float>(height));
    };
    const int c = static_cast<int>(column);
    changes.add(c - 1, c + 2, row(high) - kLineReach, row(low) + kLineReach);
}

/// One column more on each side than what is to be painted, so that no line ends there.
ColumnRange SpectrumCurve::toPaint(const CDrawContext& context, const CRect& room) const {
    return ColumnRange::toPaint(context, room.left, static_cast<int>(level_.size()), 1, 1);
}

// Columns stand in the middle of their pixels: so the tip of a tone is one bright pixel. One more
// at each end reaches over the edges.

void SpectrumCurve::drawFill(CDrawContext& context, const SpectrumAxes& axes) {
    const CRect& room = axes.room();
    const auto top = static_cast<float>(room.top);
    const auto bottom = static_cast<float>(room.bottom);
    const ColumnRange range = toPaint(context, room);
    if (range.isEmpty()) return;
    const double radius = axes.cornerRadius();
    const auto footOf = [&](int column) {
        const double fromEdge =
            std::min(double(column), static_cast<double>(level_.size()) - 1.0 - column);
        const double across = radius - fromEdge - 0.5;
        if (across <= 0.0) return bottom;
        return static_cast<float>(room.bottom - radius +
                                  std::sqrt(std::max(0.0, radius * radius - across * across)));
    };
    upper_.clear();
    lower_.clear();
    for (int c = range.first - 1; c <= range.end; ++c) {
        lower_.push_back(footOf(std::clamp(c, 0, static_cast<int>(level_.size()) - 1)));
        upper_.push_back(std::min(lower_.back(), Orvel::levelPosition(levelAt(c), top, bottom)));
    }
    context.drawColumnBand({room.left + range.first - 0.5, 1.0, upper_, lower_},
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
    const ColumnRange range = toPaint(context, room);
    if (range.isEmpty()) return;
    const auto silent = [&](int column) { return at(levels, column) <= kFloorDb; };
    upper_.clear();
    for (int c = range.first - 1; c <= range.end; ++c) {
        const bool hidden = silent(c - 1) && silent(c) && silent(c + 1);
        upper_.push_back(hidden ? std::numeric_limits<float>::quiet_NaN()
                                : Orvel::levelPosition(at(levels, c), static_cast<float>(room.top),
                                                       static_cast<float>(room.bottom)));
    }
    context.drawColumnLine(room.left + range.first - 0.5, 1.0, upper_, color, width);
}

} // namespace Sorel

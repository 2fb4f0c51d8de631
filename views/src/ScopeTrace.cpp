#include "views/ScopeTrace.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

namespace {
constexpr double kLineAlone = 1.0; // samples per column
constexpr double kBandAlone = 4.0;

float middle(ScopeColumn column) { return 0.5F * (column.min + column.max); }
} // namespace

double traceStrength(double samplesPerColumn) {
    return std::clamp((kBandAlone - samplesPerColumn) / (kBandAlone - kLineAlone), 0.0, 1.0);
}

void traceSamples(std::span<const ScopeColumn> columns,
                  double samplesPerColumn,
                  std::vector<float>& amplitudes) {
    amplitudes.clear();
    for (const ScopeColumn column : columns)
        amplitudes.push_back(middle(column));
    if (!(samplesPerColumn > 0.0) || samplesPerColumn >= 1.0) return;

    // Equal neighbours are one sample, or several in a row: the first and the last of those are
    // half a sample inside their ends, and between them the line is level.
    const double half = 0.5 / samplesPerColumn;
    double lastX = -half;
    const std::size_t count = amplitudes.size();
    float last = count > 0 ? amplitudes[0] : 0.0F;
    for (std::size_t begin = 0; begin < count;) {
        std::size_t end = begin + 1;
        while (end < count && middle(columns[end]) == middle(columns[begin]))
            ++end;
        const double centre = 0.5 * double(begin + end - 1);
        const double first = begin == 0 ? 0.0 : std::min(centre, double(begin) - 0.5 + half);
        const float value = middle(columns[begin]);
        const double run = first - lastX;
        for (auto c = static_cast<std::size_t>(std::max(0.0, std::ceil(lastX)));
             double(c) < first && c < count; ++c)
            amplitudes[c] = last + (value - last) * static_cast<float>((double(c) - lastX) / run);
        lastX = end == count ? double(end) : std::max(centre, double(end) - 0.5 - half);
        last = value;
        begin = end;
    }
}

} // namespace Sorel

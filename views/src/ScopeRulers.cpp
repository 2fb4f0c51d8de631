#include "views/ScopeRulers.h"

#include "core/NumberText.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

namespace {

constexpr double kInvisible = 0.06;

// Beats are counted in 32nd notes, of which a beat has eight.
constexpr int kUnitsPerBeat = 8;
constexpr int kUnitsPerWhole = 32;
constexpr int kRoomyPixels = 50; // with this much room for a 32nd nothing needs to fade
constexpr int kTightPixels = 15; // the least room of a line
constexpr int kHeavyEvery = 4;

constexpr int kTimeSteps[] = {1, 3, 6, 12, 25, 50, 125, 250, 500};
constexpr int kTightTimePixels = 25;

constexpr int kLargestStep = 1 << 24;

/// Of the lines between two that stay: none at the least room, in full at twice that.
double finerFade(int spacing, int least) {
    return std::clamp(double(spacing - least) / least, 0.0, 1.0);
}

/// Adds line `i` unless it is past the end (false) or too faint.
template <class Describe>
void addLines(Ruler& ruler, double pixelsPerLine, double fade, int width, Describe describe) {
    for (int i = 1;; ++i) {
        RulerLine line;
        line.x = static_cast<int>(i * pixelsPerLine);
        if (line.x >= width) return;
        line.fade = i % 2 == 0 ? 1.0 : fade;
        if (line.fade < kInvisible) continue;
        Core::TextWriter text(line.label.data(), line.label.size());
        describe(i, line, text);
        ruler.lines.push_back(line);
    }
}

void writeBeat(int units, int step, Core::TextWriter& text) {
    const int inBeat = units % kUnitsPerBeat;
    if (inBeat == 0) {
        text.integer(units / kUnitsPerBeat);
        return;
    }
    int count = inBeat / step;
    int note = kUnitsPerWhole / step;
    if (count == 2 && note == 16) {
        count = 1;
        note = 8;
    }
    text.integer(count).text("/").integer(note);
}

} // namespace

void layOutBeats(Ruler& ruler, double tempo, double periodMs, int width) {
    ruler.lines.clear();
    ruler.spacing = 0;
    const double unitMs = 60000.0 / tempo / kUnitsPerBeat;
    const double pixelsPerUnit = unitMs / periodMs * width;
    if (!(tempo > 0.0 && periodMs > 0.0 && pixelsPerUnit > 0.0)) return;
    if (!(pixelsPerUnit < width)) return; // the first line lies outside

    int step = 1;
    const bool roomy = static_cast<int>(pixelsPerUnit) >= kRoomyPixels;
    while (static_cast<int>(step * pixelsPerUnit) < kTightPixels && step < kLargestStep)
        step *= 2;
    ruler.spacing = static_cast<int>(step * pixelsPerUnit);
    const double fade = roomy ? 1.0 : finerFade(ruler.spacing, kTightPixels);
    addLines(ruler, step * pixelsPerUnit, fade, width,
             [step](int i, RulerLine& line, Core::TextWriter& text) {
                 line.heavy = i % kHeavyEvery == 0;
                 line.wholeBeat = i * step % kUnitsPerBeat == 0;
                 writeBeat(i * step, step, text);
             });
}

void layOutTime(Ruler& ruler, double periodMs, int width) {
    ruler.lines.clear();
    ruler.spacing = 0;
    const double pixelsPerMs = width / periodMs;
    if (!(periodMs > 0.0 && pixelsPerMs > 0.0)) return;
    const auto fits = [&](int step) {
        return static_cast<int>(step * pixelsPerMs) >= kTightTimePixels;
    };
    const auto* found = std::find_if(std::begin(kTimeSteps), std::end(kTimeSteps), fits);
    int step = found != std::end(kTimeSteps) ? *found : *std::prev(found);
    while (!fits(step) && step < kLargestStep)
        step *= 2;
    ruler.spacing = static_cast<int>(std::min(step * pixelsPerMs, double(width)));
    addLines(ruler, step * pixelsPerMs, finerFade(ruler.spacing, kTightTimePixels), width,
             [step](int i, RulerLine&, Core::TextWriter& text) { text.integer(i * step); });
}

const RulerLine* nearestLine(const Ruler& ruler, double x, double reach) {
    const RulerLine* nearest = nullptr;
    for (const RulerLine& line : ruler.lines) {
        const double distance = std::abs(line.x - x);
        if (distance > reach) continue;
        reach = distance;
        nearest = &line;
    }
    return nearest;
}

} // namespace Sorel

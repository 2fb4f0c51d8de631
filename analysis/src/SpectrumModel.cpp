#include "analysis/SpectrumModel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace Orvel {

namespace {
// Part of the way to the level of the frame, per step. What reaches full scale is followed faster,
// whether it rises or falls.
constexpr float kNearFullScale = 0.85F;
constexpr float kElsewhere = 0.35F;

/// Several at a time: the highest of all is looked for in each step.
float highestOf(const std::vector<float>& levels) noexcept {
    std::array<float, 16> highest;
    highest.fill(kLowestShownDb);
    const std::size_t whole = levels.size() / highest.size() * highest.size();
    for (std::size_t i = 0; i < whole; i += highest.size())
        for (std::size_t lane = 0; lane < highest.size(); ++lane)
            highest[lane] = std::max(highest[lane], levels[i + lane]);
    for (std::size_t i = whole; i < levels.size(); ++i)
        highest[0] = std::max(highest[0], levels[i]);
    return *std::max_element(highest.begin(), highest.end());
}
} // namespace

SpectrumModel::SpectrumModel() = default;

void SpectrumModel::setFormat(double sampleRate, int fftSize) {
    if (sampleRate == sampleRate_ && fftSize == frame_.fftSize) return;
    const auto bins = static_cast<std::size_t>(SpectrumFrame::numBins(fftSize));
    std::vector<float> levels[4];
    for (auto& values : levels)
        values.resize(bins);
    frame_.levelsDb = std::move(levels[0]);
    smoothed_ = std::move(levels[1]);
    peak_ = std::move(levels[2]);
    peakTimeMs_ = std::move(levels[3]);
    frame_.fftSize = fftSize;
    sampleRate_ = sampleRate;
    binHz_ = fftSize > 0 ? sampleRate / fftSize : 0;
    scale_.setSampleRate(sampleRate);
    bands_.setSampleRate(sampleRate);
    clear();
}

void SpectrumModel::setBounds(float width, float top, float bottom) noexcept {
    scale_.setWidth(double{width});
    waterfall_.setHeights(top, bottom);
}

void SpectrumModel::setLine(bool on) noexcept {
    if (std::exchange(line_, on) != on) clearPeaks();
}

void SpectrumModel::setWaterfall(bool on) noexcept {
    if (std::exchange(showWaterfall_, on) != on) clearPeaks();
}

void SpectrumModel::setLinearScale(bool linear) noexcept {
    if (linear == scale_.isLinear()) return;
    scale_.setLinear(linear);
    clearPeaks();
}

void SpectrumModel::setNumBands(int count) noexcept {
    bands_.setShownCount(count);
    waterfall_.clear();
}

void SpectrumModel::clear() noexcept {
    std::fill(frame_.levelsDb.begin(), frame_.levelsDb.end(), kLowestShownDb);
    std::fill(smoothed_.begin(), smoothed_.end(), kLowestShownDb);
    setHighest(kLowestShownDb, double{kLowestShownHz});
    waitingMs_ = 0;
    clearPeaks();
}

void SpectrumModel::clearPeaks() noexcept {
    std::fill(peak_.begin(), peak_.end(), kLowestShownDb);
    std::fill(peakTimeMs_.begin(), peakTimeMs_.end(), 0.0F);
    bands_.clear();
    waterfall_.clear();
}

bool SpectrumModel::receive(SpectrumHandover& handover) {
    if (!handover.take(incoming_)) return false;
    // One made before the engine or the view changed its size.
    if (incoming_.fftSize != frame_.fftSize) return false;
    std::swap(incoming_, frame_);
    // A frame that was once longer keeps its room.
    frame_.levelsDb.resize(smoothed_.size());
    return true;
}

int SpectrumModel::advance(double elapsedMs) noexcept {
    if (frame_.fftSize == 0 || !(elapsedMs > 0)) return 0;
    waitingMs_ += elapsedMs;
    const double passed = std::floor(waitingMs_ / double{kStepMs});
    waitingMs_ -= passed * double{kStepMs};
    const int steps = static_cast<int>(std::min(passed, double{kMostSteps}));
    for (int i = 0; i < steps; ++i)
        step();
    return steps;
}

void SpectrumModel::step() noexcept {
    if (showWaterfall_)
        waterfall_.step(frame(), analyzeMode_, scale_);
    else if (line_)
        stepLine();
    else
        stepBands();
}

void SpectrumModel::stepLine() noexcept {
    const SpectrumPeakHold hold = hold_; // what is written below is none of it
    const std::size_t count = smoothed_.size();
    const float* const levels = frame_.levelsDb.data();
    float* const smoothed = smoothed_.data();
    float* const peaks = peak_.data();
    float* const waiting = peakTimeMs_.data();
    for (std::size_t i = 0; i < count; ++i) {
        const float level = levels[i];
        const float now =
            smoothed[i] + (level - smoothed[i]) * (level >= 0 ? kNearFullScale : kElsewhere);
        float peak = peaks[i];
        float wait = waiting[i];
        hold.step(level, kStepMs, peak, wait);
        smoothed[i] = now;
        peaks[i] = std::max(peak, now);
        waiting[i] = wait;
    }
    const float highest = highestOf(smoothed_);
    if (highest <= kLowestShownDb) {
        setHighest(kLowestShownDb, 0.0);
        return;
    }
    const auto bin = std::find(smoothed_.begin(), smoothed_.end(), highest) - smoothed_.begin();
    setHighest(highest, static_cast<double>(bin) * binHz_);
}

void SpectrumModel::stepBands() noexcept {
    bands_.step(frame(), analyzeMode_, hold_, kStepMs);
    float highest = kLowestShownDb;
    double hz = double{kLowestShownHz};
    for (const SpectrumBand& band : bands_.shown()) {
        if (band.value <= highest) continue;
        highest = band.value;
        hz = (double{band.lowHz} + double{band.highHz}) * 0.5;
    }
    setHighest(highest, hz);
}

void SpectrumModel::setHighest(float db, double hz) noexcept {
    highestDb_ = db;
    highestHz_ = scale_.limited(hz);
}

} // namespace Orvel

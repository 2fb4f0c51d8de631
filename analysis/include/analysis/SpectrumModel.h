// What a spectrum view shows, without drawing it.
#pragma once

#include "analysis/SpectrumBands.h"
#include "analysis/SpectrumHandover.h"
#include "analysis/SpectrumPeakHold.h"
#include "analysis/SpectrumRange.h"
#include "analysis/SpectrumScale.h"
#include "analysis/SpectrumWaterfall.h"

#include <vector>

namespace Orvel {

/// Turns frames as they come into motion at a steady pace: smoothed line with peaks, bands, or rows
/// of a waterfall, whichever is shown. Levels are dB, by bin of 0..fftSize/2, -72 or more.
/// Threads: the GUI thread owns it; nothing here is shared.
class SpectrumModel {
  public:
    static constexpr float kStepMs = 25;
    static constexpr int kMostSteps = 8; ///< at once; what a sleeping window missed is skipped

    SpectrumModel();

    /// Sample rate in Hz and size of the frames to come, as the engine has them. Clears everything
    /// when one of them changes. Fails: std::bad_alloc, and all stays as it was.
    void setFormat(double sampleRate, int fftSize);
    /// The room for the picture, in pixels.
    void setBounds(float width, float top, float bottom) noexcept;

    // What is shown: the waterfall, else the line, else bands. A change clears peaks, bands and
    // waterfall.
    void setLine(bool on) noexcept;
    void setWaterfall(bool on) noexcept;
    void setLinearScale(bool linear) noexcept;

    void setAnalyzeMode(AnalyzeMode mode) noexcept { analyzeMode_ = mode; }
    /// Bands to show: 8, 16, 32, 64 or 128. Clears the waterfall.
    void setNumBands(int count) noexcept;
    /// See SpectrumPeakHold.
    void setPeakReset(float dbPerSecond) noexcept { hold_.setReset(dbPerSecond); }
    /// All levels to -72 dB, as when the view is shown again.
    void clear() noexcept;

    /// Fetches the newest frame; gives whether there was one of the right size.
    bool receive(SpectrumHandover& handover);
    /// Moves on by the milliseconds that passed since the last call, in whole steps; the rest is
    /// kept for the next call. Gives how many steps were made: with 0 there is nothing to repaint.
    int advance(double elapsedMs) noexcept;

    const FrequencyScale& scale() const noexcept { return scale_; }
    AnalyzeMode analyzeMode() const noexcept { return analyzeMode_; }
    const SpectrumPeakHold& peakHold() const noexcept { return hold_; }
    double binHz() const noexcept { return binHz_; }
    int fftSize() const noexcept { return frame_.fftSize; } ///< 0 before `setFormat`
    SpectrumLevels frame() const noexcept { return {frame_.levelsDb, binHz_}; }
    SpectrumLevels smoothed() const noexcept { return {smoothed_, binHz_}; }
    SpectrumLevels peaks() const noexcept { return {peak_, binHz_}; }
    const SpectrumBands& bands() const noexcept { return bands_; }
    const SpectrumWaterfall& waterfall() const noexcept { return waterfall_; }

    /// The loudest bin of the line or the loudest band shown; not moved by the waterfall.
    float highestDb() const noexcept { return highestDb_; }
    double highestHz() const noexcept { return highestHz_; }

  private:
    void clearPeaks() noexcept;
    void step() noexcept;
    void stepLine() noexcept;
    void stepBands() noexcept;
    void setHighest(float db, double hz) noexcept;

    FrequencyScale scale_;
    double sampleRate_ = 0; // Hz
    double binHz_ = 0;
    bool line_ = true;
    bool showWaterfall_ = false;
    AnalyzeMode analyzeMode_ = AnalyzeMode::magnitude;
    SpectrumPeakHold hold_;

    SpectrumFrame frame_;
    SpectrumFrame incoming_; // exchanged with the hand-over
    std::vector<float> smoothed_;
    std::vector<float> peak_;
    std::vector<float> peakTimeMs_; // until the peak falls
    SpectrumBands bands_;
    SpectrumWaterfall waterfall_;
    float highestDb_ = kLowestShownDb;
    double highestHz_ = double{kLowestShownHz};
    double waitingMs_ = 0; // passed, but not yet a whole step
};

} // namespace Orvel

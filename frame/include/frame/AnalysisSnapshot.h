// Everything the analyser has measured, as plain numbers, for programs that have no window.
#pragma once

#include <array>
#include <cstdint>

namespace Vardo {

/// The five channels that every measure knows, in this order.
enum AnalysisChannel : int {
    kLeft = 0,  ///< left input after input gain
    kRight = 1, ///< right input after input gain
    kMid = 2,   ///< (Left + Right) x 0.5
    kSide = 3,  ///< (Left - Right) x 0.5
    kMax = 4,   ///< per sample the larger of Left and Right by magnitude, with its sign
};
inline constexpr int kNumAnalysisChannels = 5;

/// Pages of the editor. Which of them is active decides what is measured.
enum class AnalyserPage : int { scope = 0, spectrum = 1, stereoField = 2, system = 3 };

/// Level histogram: bins of 1 dB from -96 to +12 dB, and one for everything above.
inline constexpr int kNumHistogramBins = 109;
using HistogramCounts = std::array<std::int32_t, kNumHistogramBins>;

struct ChannelLevels {
    float peakLast = 0;  ///< largest magnitude in the last slice, linear
    float peakMax = 0;   ///< largest magnitude since construction or the last reset, linear
    int overs = 0;       ///< slices with a sample beyond full scale
    float rms = 0;       ///< of the sliding window, linear
    bool rmsFed = false; ///< whether the RMS window was fed in the last slice
};

struct AnalysisSnapshot {
    double sampleRate = 0; ///< Hz
    int chunkLength = 0;   ///< samples analysed at a time
    bool threaded = false; ///< whether the worker analyses, not the audio thread
    AnalyserPage page = AnalyserPage::scope;
    std::int64_t slices = 0; ///< analysed since construction
    std::array<ChannelLevels, kNumAnalysisChannels> levels;
    float dynamicRangeDb[2] = {-96.0F, -96.0F}; ///< Left and Right; -96 while there is none
    bool histogramEnabled = false;
    std::array<HistogramCounts, kNumAnalysisChannels> histogram{}; ///< of the last second
};

/// The read-only door to the analysis.
class IAnalysisReadout {
  public:
    /// Waits until every chunk handed over so far is analysed, then copies the results.
    /// Threads: any but the audio thread; it waits for the analysis.
    virtual void readAnalysis(AnalysisSnapshot& snapshot) = 0;

    /// Moves the analysis to the worker or to the audio thread, for this plug-in only: the user's
    /// setting stays as it is. Waits for a chunk in flight. Threads: as above.
    virtual void setThreadedProcessing(bool threaded) = 0;

  protected:
    ~IAnalysisReadout() = default;
};

} // namespace Vardo

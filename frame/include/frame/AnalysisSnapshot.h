// Everything the analyser has measured, as plain numbers, for programs that have no window.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

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

/// Sample numbers of the latest transients: number n (from 0) stands at n modulo the size.
using TransientPositions = std::array<std::int64_t, 1024>;

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

    // Measured while the scope page is active and not frozen.
    std::int64_t transientCount = 0; ///< since construction
    TransientPositions transients{}; ///< counted in samples analysed since construction
    int sibilanceVoice = 0;          ///< 0 off, 1 male, 2 female
    double sibilanceSeconds = 0;     ///< with the envelope above 0.5, since construction

    /// Measured while the stereo-field page is active: -1 antiphase, 0 unrelated, +1 mono.
    float correlation = 0;
};

/// The last finished spectrum.
struct SpectrumSnapshot {
    int fftSize = 0;
    double binHz = 0;
    std::int64_t frames = 0;  ///< finished since the size was set
    std::vector<float> midDb; ///< per bin from 0 to half the FFT, dB; 0 dB is a full-scale sine
    std::vector<float> sideDb;
};

/// Lowest and highest sample of one column of the scope, linear.
struct ScopeRange {
    float lowest = 0;
    float highest = 0;
};
/// Both lanes, first lane, second lane, transients, sibilance, overs; each from left to right.
using ScopeTable = std::array<std::vector<ScopeRange>, 6>;

/// The read-only door to the analysis.
class IAnalysisReadout {
  public:
    /// Waits until every chunk handed over so far is analysed, then copies the results.
    /// Threads: any but the audio thread; it waits for the analysis.
    virtual void readAnalysis(AnalysisSnapshot& snapshot) = 0;

    /// As above, the spectrum. Threads: as above.
    virtual void readSpectrum(SpectrumSnapshot& snapshot) = 0;

    /// Width of the scope's table, at least 1; starts over. Only for a plug-in whose editor, which
    /// sets the width as well, is closed. Threads: main thread.
    virtual void setScopeColumns(int columns) = 0;
    virtual void readScope(ScopeTable& table) = 0;

    /// Moves the analysis to the worker or to the audio thread, for this plug-in only: the user's
    /// setting stays as it is. Waits for a chunk in flight. Threads: as above.
    virtual void setThreadedProcessing(bool threaded) = 0;

  protected:
    ~IAnalysisReadout() = default;
};

} // namespace Vardo

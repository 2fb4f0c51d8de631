// The analyser: the one plug-in of this module.
#pragma once

#include "analysis/AnalyserEditor.h"
#include "analysis/AnalyserParameters.h"
#include "analysis/AnalysisLock.h"
#include "analysis/ChunkCapture.h"
#include "analysis/CorrelationBlock.h"
#include "analysis/DisplayRecord.h"
#include "analysis/LevelMetering.h"
#include "analysis/ScopeFeed.h"
#include "analysis/ScopeTiming.h"
#include "analysis/Slice.h"
#include "analysis/SpectrumAnalyser.h"
#include "analysis/TransportClock.h"
#include "core/DataStore.h"
#include "core/PersistentThread.h"
#include "core/RealTime.h"
#include "core/RealtimeGate.h"
#include "core/Relaxed.h"
#include "frame/AnalysisSnapshot.h"
#include "frame/ChannelBuffer.h"
#include "frame/PluginBase.h"
#include "frame/PluginParameter.h"
#include "frame/PropertyManager.h"

#include <atomic>
#include <memory>
#include <thread>

namespace Vardo {
class VardoCallback;
}

namespace Orvel {

/// Passes stereo audio through bit for bit, copies it aside in chunks of one host block, and runs
/// the chunks through everything that measures.
///
/// Threads. `process` runs on the host's audio thread. The analysis runs on the worker, or, with
/// threaded processing off, on the audio thread inside `process`; whichever it is at the moment is
/// the analysing thread. Everything else belongs to the main thread, except `setParameter`, which
/// any thread may call. One lock (AnalysisLock) guards the exchange of chunks, the analysis and all
/// that re-dimensions it; a gate keeps the audio thread out while its capture buffers change,
/// without making it wait.
///
/// Road of a block: process -> ChunkCapture -> AnalysisLock -> threadFunction -> analyseBlock ->
/// analyseSlice -> LevelMetering and the other members -> DisplayRecord.
class COrvelScope final : public Vardo::IPluginBase,
                          public Vardo::ParameterChangeListener,
                          public Core::Threads::IPersistentThreadCallback,
                          public Vardo::IAnalysisReadout {
  public:
    // What hosts may ask for; anything else is brought into these limits.
    static constexpr double kLowestSampleRate = 1000;     // Hz
    static constexpr double kHighestSampleRate = 1536000; // Hz
    static constexpr int kLongestChunk = 1 << 20;         // samples; longer blocks take several

    /// `callback` may be null; without a factory the analyser runs headless.
    explicit COrvelScope(Vardo::VardoCallback* callback, const EditorFactory& makeEditor = {});
    ~COrvelScope() override;

    // IPluginBase
    void process(Vardo::IProcessContext& context) ORVEL_NONBLOCKING override;
    void setParameter(Vardo::IPluginParameter* parameter, double value, int flags) override;
    int getNumParameters() override { return properties_.getNumParameters(); }
    Vardo::IPluginParameter* getParameter(int index) override {
        return properties_.getParameter(index);
    }
    void setSampleRate(double rate) override;
    void setBlockSize(int samples) override;
    int getChunk(void** data) override;
    void setChunk(const void* data, int size) override;
    void setBypass(bool bypassed) override;
    void reset() override;
    Vardo::IPluginEditor* getEditor() override { return editor_.get(); }
    void onIdle() override;
    Vardo::IAnalysisReadout* getAnalysis() override { return this; }

    // IAnalysisReadout
    void readAnalysis(Vardo::AnalysisSnapshot& snapshot) override;
    void readSpectrum(Vardo::SpectrumSnapshot& snapshot) override;
    void setScopeColumns(int columns) override;
    void readScope(Vardo::ScopeTable& table) override;
    void setThreadedProcessing(bool threaded) override;

    // ParameterChangeListener
    void parameterChanged(Vardo::IPluginParameter* parameter) override;

    // IPersistentThreadCallback
    void threadFunction(int argument) override;

    // For the editor and its pages.
    void setActivePage(int page); ///< 0 scope, 1 spectrum, 2 stereo field, 3 system; others ignored
    int activePage() const { return activePage_; }
    bool isThreaded() const { return threaded_; }
    /// Switches as the user does it: for this plug-in, and for all that are made later.
    void switchThreading(bool threaded);
    /// Clears the over counters: those on show at once, those that count with the next slice.
    void resetOvers() {
        metering_.requestOversReset();
        for (MeterDisplay& meter : display_.meters)
            meter.overs = 0;
    }
    float sampleRate() const { return sampleRate_; }
    /// Samples of the host's largest block; 0 before it said so.
    int blockSize() const { return blockSize_; }
    const TransportClock& transport() const { return clock_; }
    ScopeTiming& scopeTiming() { return timing_; }
    /// The scope's table, for its one reader.
    CScopeDataProvider_Sync& scopeTable() { return scope_.provider(); }
    float projectorFrequency() const { return projectorHz_; }
    DisplayRecord& display() { return display_; }
    Vardo::IPluginParameter& parameter(ParameterId id) {
        return *parameters_[static_cast<std::size_t>(id)];
    }

  private:
    // Audio thread.
    BlockTransport readTransport(Vardo::IProcessContext& context) const;
    void handOver(const BlockTransport& transport);

    // Analysing thread, under the lock.
    void analyseBlock(const AnalysisBlock& block) ORVEL_NONBLOCKING;
    struct SlicePlan {
        int count = 0;
        SyncPeriod period;
        std::int64_t samplesToSync = -1; // from the slice's first sample; negative: no grid
    };
    SlicePlan planSlice(int samplesLeft) const ORVEL_NONBLOCKING;
    void
    analyseSlice(const float* left, const float* right, const SlicePlan& plan) ORVEL_NONBLOCKING;
    void measure(const Slice& slice, const SlicePlan& plan) ORVEL_NONBLOCKING;
    void pushDisplay(const Slice& slice, bool stereoField, bool newSpectrum) ORVEL_NONBLOCKING;

    // Under the lock.
    void dimension();
    void dimensionSpectrum();
    void resetMeasures();
    void carryOutReset();

    // Any thread.
    bool isOnAudioThread() const;
    void setSwitchOff(ParameterId id);
    void setVoice();
    void setRmsLength(float milliseconds);
    void setSpectrum(int sizeIndex, float updateSpeed);
    template <typename Value>
    void storeTiming(Core::Relaxed<Value>& field, Value value);

    // State (AnalyserState.cpp).
    void loadParameters();
    void loadProjectorFrequency();
    void loadActivePage();
    void setProjectorPosition(double position);

    Vardo::VardoCallback* callback_;

    // Parameters and state.
    Core::Relaxed<float> sampleRate_{44100.0F}; // Hz
    Core::Relaxed<int> blockSize_{0};           // samples
    Vardo::CPropertyManager properties_;
    ParameterTable parameters_{};
    Core::CDataStore store_;
    std::atomic<bool> loadingState_{false};
    Core::Relaxed<bool> editorRefreshWanted_{false};
    Core::Relaxed<bool> hostRefreshWanted_{false};
    std::unique_ptr<IAnalyserEditor> editor_;

    // Values of parameters as the analysing thread reads them.
    Core::Relaxed<bool> bypassed_{false};
    Core::Relaxed<int> activePage_{0};
    Core::Relaxed<float> inputGain_{1.0F};
    Core::Relaxed<int> meteringMode_{0};
    ScopeTiming timing_;
    Core::Relaxed<bool> scopeFrozen_{false};
    Core::Relaxed<bool> showMaleEss_{false};
    Core::Relaxed<bool> showFemaleEss_{false};
    Core::Relaxed<int> fftSizeIndex_{3};
    Core::Relaxed<float> updateSpeed_{16.0F};
    Core::Relaxed<bool> spectrumFrozen_{false};
    Core::Relaxed<float> projectorHz_{kLowestProjectorHz};

    // The analysis; under the lock.
    TransportClock clock_;
    Vardo::CNChannelBuffer work_; // the five channels of the current slice
    LevelMetering metering_;
    float rmsLengthMs_ = 0;
    ScopeFeed scope_;
    std::unique_ptr<SpectrumAnalyser> spectrum_ = std::make_unique<SpectrumAnalyser>();
    CorrelationBlock correlation_;
    std::int64_t slices_ = 0;
    std::int64_t samplesAnalysed_ = 0;
    DisplayRecord display_;

    // Hand-over.
    AnalysisLock lock_;
    Core::Threads::RealtimeGate captureGate_; // before the lock, where both are taken
    ChunkCapture capture_;
    Core::Relaxed<bool> threaded_{true}; // changes under the lock
    Core::Relaxed<bool> resetWanted_{false};
    std::atomic<std::thread::id> audioThread_{};
    std::atomic<bool> closing_{false};
    Core::Threads::CPersistentThread worker_; // last: it uses everything above
};

} // namespace Orvel

#include "analysis/OrvelScope.h"

#include "SampleCount.h"
#include "ThreadingSetting.h"
#include "frame/BeatTimeList.h"
#include "frame/ProcessContext.h"
#include "frame/VardoCallback.h"
#include "kernels/Kernels.h"

#include <algorithm>
#include <cmath>

namespace Orvel {

namespace {

// The chunk until a host says how long its blocks are.
constexpr int kFirstChunkLength = 16384;

static_assert(COrvelScope::kHighestSampleRate * 0.001 == kLongestSlice);

} // namespace

COrvelScope::COrvelScope(Vardo::VardoCallback* callback, const EditorFactory& makeEditor)
    : callback_(callback)
    , work_(kLongestSlice, Vardo::kNumAnalysisChannels)
    , capture_(kFirstChunkLength)
    , threaded_(readThreadingSetting())
    , worker_(this) {
    Vardo::BeatTimeList::straight(); // made now, not on a host's automation thread
    parameters_ = createParameters(properties_, sampleRate_);
    for (Vardo::IPluginParameter* parameter : parameters_) {
        parameter->setImmediateListener(this);
        parameterChanged(parameter);
    }
    dimension();
    if (makeEditor) editor_ = makeEditor(*this);
}

COrvelScope::~COrvelScope() {
    closing_ = true;
    worker_.stop();
    // A chunk the worker no longer took: nobody may wait for it. Then see that no analysis runs.
    lock_.enter();
    lock_.leaveAnalysed();
    editor_.reset();
}

// ---- audio thread

void COrvelScope::process(Vardo::IProcessContext& context) {
    const int count = std::max(0, context.getNumSamples());
    const float* const* const inputs = context.getInputs();
    float* const* const outputs = context.getOutputs();
    if (inputs == nullptr || outputs == nullptr) return;
    for (int channel = 0; channel < 2; ++channel)
        if (inputs[channel] != outputs[channel])
            std::copy_n(inputs[channel], count, outputs[channel]);

    audioThread_.store(std::this_thread::get_id(), std::memory_order_relaxed);
    // Shut while the chunk changes its length: it starts over then, so nothing is lost that counts.
    if (!captureGate_.tryEnter()) return;
    const BlockTransport transport = readTransport(context);
    for (int offset = 0; offset < count;) {
        offset += capture_.add(inputs[0], inputs[1], offset, count, transport);
        if (capture_.isFull()) handOver(transport);
    }
    captureGate_.leave();
}

BlockTransport COrvelScope::readTransport(Vardo::IProcessContext& context) const {
    const double tempo{context.getTempo()};
    const double valid = TransportClock::isValidTempo(tempo) ? tempo : double{clock_.tempo()};
    return {context.isPlaying(), static_cast<float>(valid), context.getPpqPosition(),
            valid / (60.0 * double{sampleRate_})};
}

void COrvelScope::handOver(const BlockTransport& transport) {
    capture_.finish(transport, resetWanted_.exchange(false));

    lock_.enterIdle();
    capture_.exchange();
    const bool toWorker = threaded_ && worker_.isRunning();
    if (toWorker)
        lock_.handToWorker();
    else if (!closing_)
        analyseBlock(capture_.readRecord());
    lock_.leave();

    if (toWorker) worker_.signal(0);
}

// ---- analysing thread

void COrvelScope::threadFunction(int /*argument*/) {
    lock_.enter();
    if (!closing_ && lock_.isInFlight()) analyseBlock(capture_.readRecord());
    lock_.leaveAnalysed();
}

void COrvelScope::analyseBlock(const AnalysisBlock& block) {
    if (block.resetFirst) resetMeasures();
    clock_.beginChunk(block, double{sampleRate_});

    for (int offset = 0; offset < block.sampleCount;) {
        const SlicePlan plan = planSlice(block.sampleCount - offset);
        analyseSlice(block.channels[0] + offset, block.channels[1] + offset, plan);
        offset += plan.count;
    }
}

COrvelScope::SlicePlan COrvelScope::planSlice(int samplesLeft) const {
    const double rate{sampleRate_};
    SlicePlan plan;
    plan.period = timing_.period(double{clock_.tempo()});
    if (timing_.hasGrid())
        plan.samplesToSync =
            timing_.distanceToBoundary(plan.period.milliseconds, rate, clock_.position());

    // A transient of the last slice shortens this one, so that the meters move with it.
    const std::int64_t longest = sliceLength(rate);
    std::int64_t wanted =
        timing_.mode() == ScopeSyncMode::transient ? scope_.firstTransient() : plan.samplesToSync;
    if (wanted < 0) wanted = longest;
    plan.count = static_cast<int>(
        std::min<std::int64_t>(samplesLeft, std::clamp<std::int64_t>(wanted, 1, longest)));
    return plan;
}

void COrvelScope::analyseSlice(const float* left, const float* right, const SlicePlan& plan) {
    // The chunk itself is only read: memory that two cores write in turn is slow for both.
    float* const* const work = work_.channels();
    const float gain = inputGain_;
    const int count = plan.count;
    kernels().conditionInput(left, count, gain, work[Vardo::kLeft]);
    kernels().conditionInput(right, count, gain, work[Vardo::kRight]);

    Slice slice;
    slice.count = count;
    std::copy_n(work, Vardo::kNumAnalysisChannels, slice.channels);
    kernels().formChannels(work[Vardo::kLeft], work[Vardo::kRight], count, work[Vardo::kMid],
                           work[Vardo::kSide], work[Vardo::kMax], slice.peaks);
    measure(slice, plan);
    clock_.advance(count);
    samplesAnalysed_ += count;
    ++slices_;
}

void COrvelScope::measure(const Slice& slice, const SlicePlan& plan) {
    const auto page = static_cast<Vardo::AnalyserPage>(activePage_.load());
    const bool stereoField = page == Vardo::AnalyserPage::stereoField;
    metering_.measure(slice, static_cast<MeteringMode>(meteringMode_.load()), stereoField);

    if (page == Vardo::AnalyserPage::scope && !scopeFrozen_)
        scope_.feed(slice, timing_, plan.period, plan.samplesToSync, samplesAnalysed_);
    else
        scope_.skip();

    const bool spectra = stereoField || page == Vardo::AnalyserPage::spectrum;
    const bool newSpectrum = spectra && !spectrumFrozen_ && spectrum_->feed(slice);

    if (stereoField && slice.count > 1) correlation_.feed(slice.left(), slice.right(), slice.count);

    if (display_.isWatched()) pushDisplay(slice, stereoField, newSpectrum);
}

void COrvelScope::pushDisplay(const Slice& slice, bool stereoField, bool newSpectrum) {
    display_.pushLevels(metering_, stereoField);
    if (newSpectrum) {
        const auto push = [this](DisplayRecord::SpectrumView view, int channel) {
            display_.spectra[view].push(spectrum_->levelsDb(channel), spectrum_->fftSize());
        };
        push(stereoField ? DisplayRecord::kStereoMid : DisplayRecord::kSpectrumPage, Vardo::kMid);
        if (stereoField) push(DisplayRecord::kStereoSide, Vardo::kSide);
    }
    if (!stereoField) return;
    display_.goniometer.push(slice.left(), slice.right(), slice.count);
    display_.correlation = correlation_.correlation();
}

void COrvelScope::resetMeasures() {
    metering_.reset();
    scope_.reset();
    correlation_.reset();
    spectrum_->clear();
}

/// Sizes and times of all members for the sample rate of the moment.
void COrvelScope::dimension() {
    metering_.setSampleRate(sampleRate_);
    scope_.setSampleRate(sampleRate_);
    correlation_.setSampleRate(sampleRate_);
    dimensionSpectrum();
}

void COrvelScope::dimensionSpectrum() {
    spectrum_->configure(sampleRate_, fftSizeIndex_, updateSpeed_);
    for (SpectrumHandover& view : display_.spectra)
        view.prepare(spectrum_->fftSize());
}

// ---- main thread

void COrvelScope::setSampleRate(double rate) {
    if (!std::isfinite(rate)) return;
    const auto limited =
        static_cast<float>(std::clamp(rate, kLowestSampleRate, kHighestSampleRate));
    {
        const IdleAnalysis idle(lock_);
        sampleRate_ = limited;
        dimension();
    }
    // The projector stays at its frequency, so its parameter, a share of the range, moves.
    setProjectorPosition(projectorPosition(double{projectorHz_}, double{limited}));
}

void COrvelScope::setBlockSize(int samples) {
    const int length = ChunkCapture::lengthForBlockSize(std::min(samples, kLongestChunk));
    const Core::Threads::GateHold audioThreadStaysOut(captureGate_);
    const IdleAnalysis idle(lock_);
    capture_.resize(length);
    blockSize_ = std::max(samples, 0);
}

void COrvelScope::setBypass(bool bypassed) {
    const bool leaving = bypassed_ && !bypassed;
    bypassed_ = bypassed;
    if (leaving) reset();
}

void COrvelScope::reset() {
    // On the audio thread the chunk after this does it: no wait for the worker here.
    resetWanted_ = true;
    if (isOnAudioThread()) return;
    const IdleAnalysis idle(lock_);
    carryOutReset();
}

void COrvelScope::carryOutReset() {
    if (resetWanted_.exchange(false)) resetMeasures();
}

bool COrvelScope::isOnAudioThread() const {
    return audioThread_.load(std::memory_order_relaxed) == std::this_thread::get_id();
}

void COrvelScope::readAnalysis(Vardo::AnalysisSnapshot& snapshot) {
    const IdleAnalysis idle(lock_);
    carryOutReset();
    metering_.carryOutRequests();
    snapshot.sampleRate = double{sampleRate_};
    snapshot.chunkLength = capture_.chunkLength();
    snapshot.threaded = threaded_;
    snapshot.page = static_cast<Vardo::AnalyserPage>(activePage_.load());
    snapshot.slices = slices_;
    metering_.read(snapshot);
    scope_.read(snapshot);
    snapshot.correlation = correlation_.correlation();
}

void COrvelScope::readSpectrum(Vardo::SpectrumSnapshot& snapshot) {
    const IdleAnalysis idle(lock_);
    carryOutReset();
    const std::ptrdiff_t bins = spectrum_->fftSize() / 2 + 1;
    const float* const mid = spectrum_->levelsDb(Vardo::kMid);
    const float* const side = spectrum_->levelsDb(Vardo::kSide);
    snapshot.fftSize = spectrum_->fftSize();
    snapshot.binHz = double{sampleRate_} / spectrum_->fftSize();
    snapshot.frames = spectrum_->frames();
    snapshot.midDb.assign(mid, mid + bins);
    snapshot.sideDb.assign(side, side + bins);
}

void COrvelScope::setScopeColumns(int columns) { scope_.provider().SetNumColumns(columns); }

void COrvelScope::readScope(Vardo::ScopeTable& table) {
    const IdleAnalysis idle(lock_);
    CScopeDataProvider_Sync& provider = scope_.provider();
    std::vector<Sorel::ScopeColumn> columns(static_cast<std::size_t>(provider.numColumns()));
    provider.TryLock();
    for (std::size_t layer = 0; layer < table.size(); ++layer) {
        provider.GetLayerData(static_cast<int>(layer), columns.data(), provider.numColumns());
        table[layer].clear();
        for (const Sorel::ScopeColumn& column : columns)
            table[layer].push_back({column.min, column.max});
    }
    provider.Unlock();
}

void COrvelScope::setThreadedProcessing(bool threaded) {
    const IdleAnalysis idle(lock_);
    threaded_ = threaded;
}

void COrvelScope::switchThreading(bool threaded) {
    setThreadedProcessing(threaded);
    writeThreadingSetting(threaded);
}

void COrvelScope::setActivePage(int page) {
    if (page < 0 || page > static_cast<int>(Vardo::AnalyserPage::system)) return;
    activePage_ = page;
}

void COrvelScope::onIdle() {
    properties_.deliverPending();
    if (editorRefreshWanted_.exchange(false) && editor_ != nullptr && editor_->isOpen())
        editor_->parameterChanged();
    if (hostRefreshWanted_.exchange(false) && callback_ != nullptr) callback_->refreshParameters();
}

} // namespace Orvel

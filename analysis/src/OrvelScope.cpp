#include "analysis/OrvelScope.h"

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

int sliceLength(double sampleRate) { return std::max(1, static_cast<int>(sampleRate * 0.001)); }

} // namespace

COrvelScope::COrvelScope(Vardo::VardoCallback* callback, const EditorFactory& makeEditor)
    : callback_(callback)
    , work_(sliceLength(kHighestSampleRate), Vardo::kNumAnalysisChannels)
    , capture_(kFirstChunkLength)
    , threaded_(readThreadingSetting())
    , worker_(this) {
    Vardo::BeatTimeList::straight(); // made now, not on a host's automation thread
    parameters_ = createParameters(properties_, sampleRate_);
    for (Vardo::IPluginParameter* parameter : parameters_) {
        parameter->setImmediateListener(this);
        parameterChanged(parameter);
    }
    metering_.setSampleRate(sampleRate_);
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
        const int count = nextSliceLength(block.sampleCount - offset);
        analyseSlice(block.channels[0] + offset, block.channels[1] + offset, count);
        offset += count;
    }
}

int COrvelScope::nextSliceLength(int samplesLeft) const {
    const double rate{sampleRate_};
    const std::int64_t longest = sliceLength(rate);
    std::int64_t distance = -1;
    if (timing_.mode() == ScopeSyncMode::transient)
        distance = transientPosition_;
    else if (timing_.hasGrid())
        distance = timing_.distanceToBoundary(timing_.period(double{clock_.tempo()}).milliseconds,
                                              rate, clock_.position());
    if (distance < 0) distance = longest;
    return static_cast<int>(
        std::min<std::int64_t>(samplesLeft, std::clamp<std::int64_t>(distance, 1, longest)));
}

void COrvelScope::analyseSlice(const float* left, const float* right, int count) {
    // The chunk itself is only read: memory that two cores write in turn is slow for both.
    float* const* const work = work_.channels();
    const float gain = inputGain_;
    kernels().conditionInput(left, count, gain, work[Vardo::kLeft]);
    kernels().conditionInput(right, count, gain, work[Vardo::kRight]);

    Slice slice;
    slice.count = count;
    std::copy_n(work, Vardo::kNumAnalysisChannels, slice.channels);
    kernels().formChannels(work[Vardo::kLeft], work[Vardo::kRight], count, work[Vardo::kMid],
                           work[Vardo::kSide], work[Vardo::kMax], slice.peaks);

    const bool stereoFieldPage = activePage_ == static_cast<int>(Vardo::AnalyserPage::stereoField);
    metering_.measure(slice, static_cast<MeteringMode>(meteringMode_.load()), stereoFieldPage);
    if (display_.isWatched()) display_.pushLevels(metering_, stereoFieldPage);

    clock_.advance(count);
    ++slices_;
}

void COrvelScope::resetMeasures() { metering_.reset(); }

// ---- main thread

void COrvelScope::setSampleRate(double rate) {
    if (!std::isfinite(rate)) return;
    const auto limited =
        static_cast<float>(std::clamp(rate, kLowestSampleRate, kHighestSampleRate));
    {
        const IdleAnalysis idle(lock_);
        metering_.setSampleRate(limited);
        sampleRate_ = limited;
    }
    // The projector stays at its frequency, so its parameter, a share of the range, moves.
    setProjectorPosition(projectorPosition(double{projectorHz_}, double{limited}));
}

void COrvelScope::setBlockSize(int samples) {
    const int length = ChunkCapture::lengthForBlockSize(std::min(samples, kLongestChunk));
    const Core::Threads::GateHold audioThreadStaysOut(captureGate_);
    const IdleAnalysis idle(lock_);
    capture_.resize(length);
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

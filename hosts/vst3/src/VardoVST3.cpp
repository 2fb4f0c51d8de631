// Life of an effect: made, set up, switched on and off, taken down; and its state.
#include "VardoVST3.h"

#include "Guarded.h"
#include "StateStream.h"
#include "VardoVST3EditorView.h"
#include "frame/PluginModule.h"

#include <algorithm>
#include <cmath>

namespace Vardo {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {
constexpr int kIdlePeriodMs = 50; // the plug-in's own changes, for people to see
constexpr std::size_t kMidiEventsPerBlock = 1024;

PluginDescription recordAt(std::size_t index) {
    PluginDescriptionList records;
    getPluginDescriptions(records);
    return index < records.size() ? records[index] : PluginDescription{};
}
} // namespace

Vardo_VST3::Vardo_VST3(std::size_t recordIndex)
    : record_(recordAt(recordIndex))
    , idleLoop_(*this) {
    changes_.claimThread();
    midi_.reserve(kMidiEventsPerBlock);
    makePlugin();
}

Vardo_VST3::~Vardo_VST3() {
    idleLoop_.stop();
    HostContext::remove(this);
    parameters.removeAll();
    destroyPlugin();
}

tresult PLUGIN_API Vardo_VST3::queryInterface(const TUID iid, void** obj) {
    if (iid == nullptr || obj == nullptr) return kInvalidArgument;
    QUERY_INTERFACE(iid, obj, IMidiMapping::iid, IMidiMapping)
    return SingleComponentEffect::queryInterface(iid, obj);
}

// --- set-up -------------------------------------------------------------------------------------

bool Vardo_VST3::makePlugin() {
    plugin_.reset(createPlugin(this, static_cast<int>(record_.uniqueId)));
    if (plugin_ == nullptr) return false;
    plugin_->setSampleRate(sampleRate_);
    const auto inside = gate_.enter();
    if (inside) announceBlockSize(blockSize_);
    latency_ = std::max(plugin_->getLatency(), 0);
    return true;
}

void Vardo_VST3::destroyPlugin() {
    for (int i = 0; i < map_.size(); ++i)
        map_.parameter(i)->removeListener(this);
    pluginParameters_.clear();
    map_ = ParameterMap();
    const auto inside = gate_.enter();
    plugin_.reset();
}

tresult PLUGIN_API Vardo_VST3::initialize(FUnknown* context) {
    return guarded([&]() -> tresult {
        if (initialized_) return kResultFalse;
        const tresult result = SingleComponentEffect::initialize(context);
        if (result != kResultOk) return result;
        initialized_ = true;
        changes_.claimThread();
        try {
            if (plugin_ == nullptr && !makePlugin()) {
                terminate();
                return kInternalError;
            }
            addBuses();
            addParameters();
            HostContext::add(this);
            lookForHostLoop();
        } catch (...) {
            terminate();
            throw;
        }
        return kResultOk;
    });
}

tresult PLUGIN_API Vardo_VST3::terminate() {
    return guarded([&] {
        initialized_ = false;
        idleLoop_.stop();
        HostContext::remove(this);
        // Hosts may keep a view longer than the effect it shows.
        const std::vector<Vardo_VST3_EditorView*> views = views_;
        for (Vardo_VST3_EditorView* view : views)
            view->letGo();
        parameters.removeAll();
        destroyPlugin();
        return SingleComponentEffect::terminate();
    });
}

bool Vardo_VST3::isInstrument() const noexcept {
    return record_.category == kCategoryInstrument || record_.category == kCategorySynth;
}

BusShape Vardo_VST3::shape() const noexcept {
    return {(record_.inputPairs > 0 ? 1 : 0) + (record_.hasSidechain ? 1 : 0),
            std::clamp(record_.outputPairs, 0, BusBlock::kMostPairs)};
}

void Vardo_VST3::addBuses() {
    if (record_.inputPairs > 0) addAudioBus(kInput, "Stereo In", kMain);
    if (record_.hasSidechain) addAudioBus(kInput, "Sidechain", kAux);
    for (int i = 1; i <= shape().outputs; ++i) {
        const std::string name = record_.effectName + " Stereo Out " + std::to_string(i);
        addAudioBus(kOutput, name.c_str(), kMain);
    }
    if (isInstrument()) addEventInput("Midi In", kMidiChannels);
}

tresult PLUGIN_API Vardo_VST3::setActive(TBool state) {
    guarded([&]() -> tresult {
        if (state != 0 && plugin_ != nullptr) plugin_->reset();
        deliverChanges();
        return kResultOk;
    });
    return kResultOk;
}

tresult PLUGIN_API Vardo_VST3::setupProcessing(ProcessSetup& setup) {
    return guarded([&]() -> tresult {
        const bool good = canProcessSampleSize(setup.symbolicSampleSize) == kResultTrue &&
                          std::isfinite(setup.sampleRate) && setup.sampleRate > 0 &&
                          setup.maxSamplesPerBlock > 0 && setup.maxSamplesPerBlock <= kLargestBlock;
        if (!good) return kResultFalse;
        if (setup.sampleRate != sampleRate_) {
            sampleRate_ = setup.sampleRate;
            if (plugin_ != nullptr) plugin_->setSampleRate(sampleRate_);
        }
        const auto inside = gate_.enter();
        if (!inside) return kResultFalse;
        if (setup.maxSamplesPerBlock != blockSize_) announceBlockSize(setup.maxSamplesPerBlock);
        return kResultOk;
    });
}

void Vardo_VST3::announceBlockSize(int frames) {
    blockSize_ = frames;
    if (plugin_ == nullptr) return;
    plugin_->setBlockSize(frames);
    CNChannelBuffer input(frames, std::max(2 * shape().inputs, 2));
    CNChannelBuffer output(frames, std::max(2 * shape().outputs, 2));
    input_.swap(input);
    output_.swap(output);
}

uint32 PLUGIN_API Vardo_VST3::getLatencySamples() { return static_cast<uint32>(latency_.load()); }

// --- the host's loop ----------------------------------------------------------------------------

bool Vardo_VST3::enterHostLoop(HostLoop& loop, FUnknown* frame, int periodMs) {
    return loop.start(frame, periodMs) || loop.start(hostContext, periodMs) ||
           loop.start(componentHandler, periodMs) || loop.start(HostContext::get(), periodMs);
}

void Vardo_VST3::lookForHostLoop() {
    if (!initialized_) return;
    enterHostLoop(idleLoop_, nullptr, kIdlePeriodMs);
    const std::vector<Vardo_VST3_EditorView*> views = views_;
    for (Vardo_VST3_EditorView* view : views)
        view->lookForHostLoop();
}

void Vardo_VST3::onHostTurn() {
    changes_.claimThread();
    deliverChanges();
}

// --- state --------------------------------------------------------------------------------------

tresult Vardo_VST3::getComponentPartState(IBStream* state) {
    return guarded([&]() -> tresult {
        if (state == nullptr) return kInvalidArgument;
        if (plugin_ == nullptr) return kResultFalse;
        // Before, not after: a host told of changes may read the state itself, and so move it.
        deliverChanges();
        void* chunk = nullptr;
        const int size = plugin_->getChunk(&chunk);
        if (size < 0 || (size > 0 && chunk == nullptr)) return kResultFalse;
        return writeState(*state, chunk, static_cast<std::uint32_t>(size)) ? kResultOk
                                                                           : kResultFalse;
    });
}

tresult Vardo_VST3::setComponentPartState(IBStream* state) {
    return guarded([&]() -> tresult {
        if (state == nullptr) return kInvalidArgument;
        const StateRead read = readState(*state);
        if (!read.headerCame) return kResultFalse;
        // A chunk that is not whole changes nothing, and the host need not know.
        if (!read.chunk || plugin_ == nullptr) return kResultOk;
        plugin_->setChunk(read.chunk->data(), static_cast<int>(read.chunk->size()));
        // The host did it, and reads the values by itself.
        markAllKnown();
        deliverChanges();
        return kResultOk;
    });
}

tresult Vardo_VST3::getControllerState(IBStream* state) {
    return guarded([&]() -> tresult {
        if (state == nullptr) return kInvalidArgument;
        return writeBypass(*state, getParamNormalized(kBypassId) > 0) ? kResultOk : kResultFalse;
    });
}

tresult Vardo_VST3::setControllerState(IBStream* state) {
    return guarded([&]() -> tresult {
        if (state == nullptr) return kInvalidArgument;
        const std::optional<bool> bypassed = readBypass(*state);
        if (!bypassed) return kResultFalse;
        // Where the plug-in has a bypass of its own, its chunk has it too.
        if (setParamNormalized(kBypassId, *bypassed ? 1 : 0) == kResultOk) bypassed_ = *bypassed;
        return kResultOk;
    });
}

tresult PLUGIN_API Vardo_VST3::setComponentState(IBStream* state) {
    return setComponentPartState(state);
}

} // namespace Vardo

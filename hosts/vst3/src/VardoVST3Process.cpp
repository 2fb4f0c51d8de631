// The road of one block through the VST3 adapter. Everything here runs on the audio thread.
#include "VardoVST3.h"

#include "hosting/MidiMessage.h"
#include "pluginterfaces/vst/ivstevents.h"
#include "pluginterfaces/vst/ivstparameterchanges.h"
#include "pluginterfaces/vst/ivstprocesscontext.h"

#include <algorithm>
#include <cmath>

namespace Vardo {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {
// What a host brings for one block beyond this is not looked at.
constexpr int32 kMostQueues = 1 << 16;
constexpr int32 kMostEvents = 1 << 16;

/// Nothing to hear in it: the host only has its parameter changes taken.
bool isFlush(const ProcessData& data, BusShape shape) {
    const bool noInputs = data.numInputs <= 0 || data.inputs == nullptr;
    const bool noOutputs = data.numOutputs <= 0 || data.outputs == nullptr;
    return (noInputs && shape.inputs > 0) || noOutputs || data.numSamples <= 0;
}
} // namespace

tresult PLUGIN_API Vardo_VST3::process(ProcessData& data) {
    if (data.symbolicSampleSize != kSample32) return kResultFalse;
    bool done = false;
    BusBlock block(data, shape());
    {
        // Turned away too where the host calls in from inside a block.
        const auto inside = gate_.tryEnter();
        const Changes changes = takeParameterChanges(data.inputParameterChanges, bool{inside});
        const bool flush = isFlush(data, shape()) || !block.hasChannels();
        try {
            if (!flush && inside && plugin_ != nullptr && data.numSamples <= kLargestBlock) {
                takeEvents(data.inputEvents);
                render(block, data.processContext);
                done = true;
            }
            // After the block: by then the plug-in knows this thread for the audio thread.
            if (changes.bypassWentOff && plugin_ != nullptr) plugin_->reset();
        } catch (...) { // no memory, or a plug-in that failed: the audio goes on
        }
        if (flush) return kResultOk;
    }
    if (!done) block.pairs().passThrough();
    block.passTheRest();
    block.clearSilenceFlags();
    return kResultOk;
}

// --- parameters and MIDI ------------------------------------------------------------------------

Vardo_VST3::Changes Vardo_VST3::takeParameterChanges(IParameterChanges* changes,
                                                     bool inside) noexcept {
    Changes taken;
    if (changes == nullptr) return taken;
    const int32 queues = std::min(changes->getParameterCount(), kMostQueues);
    for (int32 i = 0; i < queues; ++i) {
        IParamValueQueue* queue = changes->getParameterData(i);
        if (queue == nullptr) continue;
        const ParamID id = queue->getParameterId();
        // Of all points in the block the last is what stays.
        int32 offset = 0;
        ParamValue value = 0;
        const int32 points = queue->getPointCount();
        if (points <= 0 || queue->getPoint(points - 1, offset, value) != kResultOk) continue;
        if (!std::isfinite(value)) continue;

        if (id == kBypassId) {
            const bool bypassed = value > 0;
            if (bypassed_.exchange(bypassed) && !bypassed) taken.bypassWentOff = true;
        } else if (id >= kFirstMidiId && id - kFirstMidiId < ParamID{kMidiIds}) {
            if (inside) takeMidiController(id, offset, normalizedOf(value));
        } else if (VardoVST3Parameter* parameter = pluginParameter(id)) {
            parameter->setFromHost(value);
        }
    }
    return taken;
}

void Vardo_VST3::takeMidiController(ParamID id, int32 offset, ParamValue value) noexcept {
    const int index = static_cast<int>(id - kFirstMidiId);
    const int channel = index / kMidiControllers;
    const int controller = index % kMidiControllers;
    const auto status = [channel](int message) {
        return static_cast<std::uint8_t>(message | channel);
    };
    if (controller == kPitchBend) {
        const int bend = static_cast<int>(value * 16383);
        queueMidi(midiRecord(offset, status(0xE0), static_cast<std::uint8_t>(bend & 0x7F),
                             static_cast<std::uint8_t>(bend >> 7)));
    } else if (controller == kAfterTouch) {
        queueMidi(MidiRecord{});
    } else {
        queueMidi(midiRecord(offset, status(0xB0), static_cast<std::uint8_t>(controller),
                             static_cast<std::uint8_t>(value * 127)));
    }
}

void Vardo_VST3::takeEvents(IEventList* events) noexcept {
    if (events == nullptr) return;
    const int32 count = std::min(events->getEventCount(), kMostEvents);
    for (int32 i = 0; i < count; ++i) {
        Event event{};
        if (events->getEvent(i, event) != kResultOk || event.type != Event::kDataEvent) continue;
        const DataEvent& data = event.data;
        if (data.bytes == nullptr) continue;
        std::uint8_t bytes[4] = {};
        std::copy_n(data.bytes, std::min<uint32>(data.size, 4), bytes);
        MidiRecord record = midiRecord(event.sampleOffset, bytes[0], bytes[1], bytes[2]);
        record.reserved = bytes[3];
        queueMidi(record);
    }
}

void Vardo_VST3::queueMidi(const MidiRecord& record) noexcept {
    // What finds no room is dropped: more of it would be a call to the heap.
    if (midi_.size() < midi_.capacity()) midi_.push_back(record);
}

// --- the block ----------------------------------------------------------------------------------

void Vardo_VST3::render(const BusBlock& block, const ProcessContext* transport) {
    const HostBlock& pairs = block.pairs();
    // The one case that takes memory here: a host that breaks its own announcement.
    if (pairs.frames > input_.numSamples()) announceBlockSize(pairs.frames);
    if (!midi_.empty()) {
        plugin_->processEvents(midi_);
        midi_.clear();
    }

    pairs.copyInputsTo(input_);
    const int sidechainPair = shape().inputs - 1;
    const bool hasSidechain = record_.hasSidechain && block.hasInput(sidechainPair);
    const int mainChannels = record_.inputPairs > 0 ? 2 : 0;
    CProcessContext context(
        input_.channels(), mainChannels, output_.channels(), output_.numChannels(),
        hasSidechain ? input_.channels() + 2 * sidechainPair : nullptr, pairs.frames);
    describeTransport(transport, context);
    plugin_->process(context);
    pairs.copyOutputsFrom(output_);
}

void Vardo_VST3::describeTransport(const ProcessContext* transport,
                                   CProcessContext& context) noexcept {
    if (transport == nullptr) {
        tempo_ = 1.0F; // no tempo known, for those who ask the host
        return;
    }
    if (isTempo(transport->tempo)) {
        tempo_ = static_cast<float>(transport->tempo);
        context.setTempo(tempo_);
    }
    context.setPlaying((transport->state & ProcessContext::kPlaying) != 0);
    const auto position = static_cast<double>(transport->projectTimeSamples);
    context.setSamplePosition(position);
    const bool hasBeats = (transport->state & ProcessContext::kProjectTimeMusicValid) != 0 &&
                          std::isfinite(transport->projectTimeMusic);
    // Else as if the tempo had always been this one.
    context.setPpqPosition(hasBeats ? transport->projectTimeMusic
                                    : position / sampleRate_ * double{context.getTempo()} / 60.0);
}

} // namespace Vardo

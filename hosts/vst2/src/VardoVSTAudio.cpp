// The road of one block through the VST2 adapter. Everything here runs on the audio thread.
#include "VardoVST.h"

#include "frame/ProcessContext.h"

#include <algorithm>

namespace Vardo {

namespace {
constexpr std::int32_t kTimeInfoFilter =
    vst2::kVstPpqPosValid | vst2::kVstTempoValid | vst2::kVstBarsValid | vst2::kVstTimeSigValid;
static_assert(kTimeInfoFilter == 0x2E00);
} // namespace

void VardoVST::processReplacing(float** inputs, float** outputs, std::int32_t frames) {
    render(hostBlock(inputs, outputs, frames, OutputMode::replace));
}

void VardoVST::processAccumulating(float** inputs, float** outputs, std::int32_t frames) {
    render(hostBlock(inputs, outputs, frames, OutputMode::add));
}

bool VardoVST::processEvents(const vst2::VstEvents& events) {
    midi_.append(events);
    return true;
}

HostBlock VardoVST::hostBlock(float** inputs, float** outputs, int frames, OutputMode mode) const {
    // Never more pointers than the host was told to bring.
    return {inputs,  std::min(inputChannels_.load(), 2 * inputPairs_),
            outputs, std::min(outputChannels_.load(), 2 * outputPairs_),
            frames,  mode};
}

void VardoVST::render(const HostBlock& block) noexcept {
    if (block.frames <= 0) return;
    bool done = false;
    try {
        done = plugin_ != nullptr && renderIfOpen(block);
    } catch (...) { // no memory, or a plug-in that failed: the audio goes on
    }
    if (!done) block.passThrough();
}

bool VardoVST::renderIfOpen(const HostBlock& block) {
    if (block.frames > kLargestBlock) return false;
    const HostTransport::State transport = transport_.update(getTimeInfo(kTimeInfoFilter));
    const auto inside = gate_.tryEnter();
    if (!inside) return false; // also where the host calls in from inside a block
    // The one case that takes memory here: a host that breaks its own announcement.
    if (block.frames > input_.numSamples()) announceBlockSize(block.frames);
    renderInside(block, transport);
    return true;
}

void VardoVST::renderInside(const HostBlock& block, const HostTransport::State& transport) {
    if (const EventList& events = midi_.take(); !events.empty()) plugin_->processEvents(events);

    block.copyInputsTo(input_);
    // The side chain is the second pair, in the host's own memory.
    const bool hasSidechain = block.input(2) != nullptr && block.input(3) != nullptr;
    CProcessContext context(
        input_.channels(), std::min(std::max(block.inputChannels, 2), input_.numChannels()),
        output_.channels(), std::min(std::max(block.outputChannels, 2), output_.numChannels()),
        hasSidechain ? block.inputs + 2 : nullptr, block.frames);
    context.setSamplePosition(transport.samplePosition);
    context.setPpqPosition(transport.ppqPosition);
    context.setTempo(static_cast<float>(transport.tempo));
    context.setPlaying(transport.playing);
    plugin_->process(context);

    block.copyOutputsFrom(output_);
}

} // namespace Vardo

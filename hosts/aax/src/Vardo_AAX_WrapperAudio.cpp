// The road of one block through the AAX adapter. Everything here runs on the audio thread.
#include "Vardo_AAX_Wrapper.h"

#include "ChannelPointers.h"
#include "SongPosition.h"

#include "AAX_IMIDINode.h"
#include "frame/ProcessContext.h"
#include "hosting/HostBlock.h"
#include "hosting/MidiMessage.h"

#include <algorithm>
#include <climits>
#include <cmath>

using namespace Vardo;
using namespace Vardo::Aax;

namespace {
/// Null where none is connected.
float* sidechainOf(const AlgorithmContext& context) {
    if (context.sidechain == nullptr || *context.sidechain <= 0 || context.inputs == nullptr)
        return nullptr;
    return context.inputs[*context.sidechain];
}

SongPosition songPosition(const AlgorithmContext& context) {
    return SongPosition::read(context.transport == nullptr ? nullptr
                                                           : context.transport->GetTransport());
}
} // namespace

void Vardo_AAX_Wrapper::render(const AlgorithmContext& context, StemPair stems) noexcept {
    if (context.frames == nullptr || *context.frames <= 0) return;
    ChannelPointers inputs(context.inputs, stems.inputChannels, 2);
    ChannelPointers outputs(context.outputs, stems.outputChannels, 2 * outputPairs_);
    try {
        if (plugin_ != nullptr) {
            renderPieces(context, inputs, outputs);
            return;
        }
    } catch (...) { // the plug-in failed: the audio goes on
    }
    HostBlock{inputs.data(),  inputs.size(),   outputs.data(),
              outputs.size(), *context.frames, OutputMode::replace}
        .passThrough();
}

void Vardo_AAX_Wrapper::renderPieces(const AlgorithmContext& context,
                                     const ChannelPointers& inputs,
                                     const ChannelPointers& outputs) {
    if (takesMidi_) handOverMidi(context);

    const double rate = sampleRateOf(context);
    SongPosition position = songPosition(context);
    float* sidechain = hasSidechain_ ? sidechainOf(context) : nullptr;
    // One piece, unless the host sends more than it ever said.
    for (int offset = 0, frames = 0; offset < *context.frames; offset += frames) {
        frames = std::min(*context.frames - offset, kAnnouncedBlock);
        ChannelPointers in = inputs.from(offset, silence_.data());
        ChannelPointers out = outputs.from(offset, scrap_.data());
        float* sides[2] = {};
        if (sidechain != nullptr) std::fill_n(sides, 2, sidechain + offset);

        CProcessContext block(in.data(), in.size(), out.data(), out.size(),
                              sidechain == nullptr ? nullptr : sides, frames);
        block.setTempo(static_cast<float>(position.tempo));
        block.setPlaying(position.playing);
        block.setSamplePosition(position.samples);
        block.setPpqPosition(position.quarters(rate));
        plugin_->process(block);
        if (position.playing) position.samples += frames;
    }
}

void Vardo_AAX_Wrapper::handOverMidi(const AlgorithmContext& context) {
    const AAX_CMidiStream* stream =
        context.midiIn == nullptr ? nullptr : context.midiIn->GetNodeBuffer();
    if (stream == nullptr || stream->mBuffer == nullptr) return;
    events_.clear();
    // What finds no room without a call to the heap is dropped.
    const auto count = std::min<std::size_t>(stream->mBufferSize, events_.capacity());
    for (std::size_t i = 0; i < count; ++i) {
        const AAX_CMidiPacket& packet = stream->mBuffer[i];
        const auto delta = static_cast<int>(std::min<std::uint32_t>(packet.mTimestamp, INT_MAX));
        events_.push_back(midiRecord(delta, packet.mData[0], packet.mData[1], packet.mData[2]));
    }
    if (!events_.empty()) plugin_->processEvents(events_);
}

double Vardo_AAX_Wrapper::sampleRateOf(const AlgorithmContext& context) const noexcept {
    const float rate = context.sampleRate == nullptr ? 0.0F : *context.sampleRate;
    return std::isfinite(rate) && rate > 0 ? static_cast<double>(rate) : sampleRate_;
}

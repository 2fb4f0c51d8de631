// Buses and their arrangements.
#include "SingleComponentEffect.h"

#include "Guarded.h"
#include "Text16.h"
#include "pluginterfaces/vst/vstspeaker.h"

namespace Vardo {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {
bool isKnown(SpeakerArrangement arrangement) {
    return arrangement == SpeakerArr::kMono || arrangement == SpeakerArr::kStereo;
}

/// The host names one arrangement for each of the first buses, and each is one we take.
bool fits(const SpeakerArrangement* wanted, int32 count, const BusList& buses) {
    if (count < 0 || static_cast<std::size_t>(count) > buses.size()) return false;
    if (count > 0 && wanted == nullptr) return false;
    for (int32 i = 0; i < count; ++i)
        if (!isKnown(wanted[i])) return false;
    return true;
}

void arrange(const SpeakerArrangement* wanted, int32 count, const BusList& buses) {
    for (int32 i = 0; i < count; ++i)
        if (auto* audio = FCast<AudioBus>(buses[static_cast<std::size_t>(i)].get()))
            audio->setArrangement(wanted[i]);
}
} // namespace

tresult PLUGIN_API SingleComponentEffect::initialize(FUnknown* context) {
    return EditControllerEx1::initialize(context);
}

tresult PLUGIN_API SingleComponentEffect::terminate() {
    for (Buses* each : {&audioInputs_, &audioOutputs_, &eventInputs_, &eventOutputs_})
        each->clear();
    return EditControllerEx1::terminate();
}

SingleComponentEffect::Buses* SingleComponentEffect::buses(MediaType type, BusDirection direction) {
    if (direction != kInput && direction != kOutput) return nullptr;
    if (type == kAudio) return direction == kInput ? &audioInputs_ : &audioOutputs_;
    if (type == kEvent) return direction == kInput ? &eventInputs_ : &eventOutputs_;
    return nullptr;
}

Bus* SingleComponentEffect::bus(MediaType type, BusDirection direction, int32 index) {
    const Buses* list = buses(type, direction);
    if (list == nullptr || index < 0 || static_cast<std::size_t>(index) >= list->size())
        return nullptr;
    return (*list)[static_cast<std::size_t>(index)];
}

int32 PLUGIN_API SingleComponentEffect::getBusCount(MediaType type, BusDirection direction) {
    const Buses* list = buses(type, direction);
    return list == nullptr ? 0 : static_cast<int32>(list->size());
}

tresult PLUGIN_API SingleComponentEffect::getBusInfo(MediaType type,
                                                     BusDirection direction,
                                                     int32 index,
                                                     BusInfo& info) {
    Bus* found = bus(type, direction, index);
    if (found == nullptr) return kInvalidArgument;
    info = {};
    info.mediaType = type;
    info.direction = direction;
    return found->getInfo(info) ? kResultOk : kResultFalse;
}

tresult PLUGIN_API SingleComponentEffect::activateBus(MediaType type,
                                                      BusDirection direction,
                                                      int32 index,
                                                      TBool state) {
    Bus* found = bus(type, direction, index);
    if (found == nullptr) return kInvalidArgument;
    found->setActive(state);
    return kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::setBusArrangements(SpeakerArrangement* inputs,
                                                             int32 inputCount,
                                                             SpeakerArrangement* outputs,
                                                             int32 outputCount) {
    if (inputCount < 0 || outputCount < 0) return kInvalidArgument;
    if (!fits(inputs, inputCount, audioInputs_) || !fits(outputs, outputCount, audioOutputs_))
        return kResultFalse;
    arrange(inputs, inputCount, audioInputs_);
    arrange(outputs, outputCount, audioOutputs_);
    return kResultTrue;
}

tresult PLUGIN_API SingleComponentEffect::getBusArrangement(BusDirection direction,
                                                            int32 index,
                                                            SpeakerArrangement& arrangement) {
    const auto* audio = FCast<AudioBus>(bus(kAudio, direction, index));
    if (audio == nullptr) return kInvalidArgument;
    arrangement = audio->getArrangement();
    return kResultTrue;
}

tresult PLUGIN_API SingleComponentEffect::canProcessSampleSize(int32 size) {
    return size == kSample32 ? kResultTrue : kResultFalse;
}

tresult PLUGIN_API SingleComponentEffect::connect(IConnectionPoint* other) {
    return other == nullptr ? kInvalidArgument : kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::disconnect(IConnectionPoint* other) {
    return other == nullptr ? kInvalidArgument : kResultOk;
}

tresult PLUGIN_API SingleComponentEffect::queryInterface(const TUID iid, void** obj) {
    if (iid == nullptr || obj == nullptr) return kInvalidArgument;
    QUERY_INTERFACE(iid, obj, IComponent::iid, IComponent)
    QUERY_INTERFACE(iid, obj, IAudioProcessor::iid, IAudioProcessor)
    QUERY_INTERFACE(iid, obj, IProcessContextRequirements::iid, IProcessContextRequirements)
    return EditControllerEx1::queryInterface(iid, obj);
}

void SingleComponentEffect::addAudioBus(BusDirection direction, const char* name, BusType type) {
    String128 title;
    copyText16(title, name);
    buses(kAudio, direction)
        ->emplace_back(new AudioBus(title, type, BusInfo::kDefaultActive, SpeakerArr::kStereo),
                       false);
}

void SingleComponentEffect::addEventInput(const char* name, int channels) {
    String128 title;
    copyText16(title, name);
    eventInputs_.emplace_back(new EventBus(title, kMain, BusInfo::kDefaultActive, channels), false);
}

} // namespace Vardo

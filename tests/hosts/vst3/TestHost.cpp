#include "TestHost.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <utility>

#include <poll.h>

namespace vst3_test {

namespace {
double nowMs() {
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}
} // namespace

// --- run loop -----------------------------------------------------------------------------------

tresult PLUGIN_API RunLoop::registerEventHandler(Linux::IEventHandler* handler, int fd) {
    if (!events.emplace(handler, fd).second) ++mistakes;
    handler->addRef();
    return kResultOk;
}

tresult PLUGIN_API RunLoop::unregisterEventHandler(Linux::IEventHandler* handler) {
    if (events.erase(handler) != 1) {
        ++mistakes;
        return kResultFalse;
    }
    handler->release();
    return kResultOk;
}

tresult PLUGIN_API RunLoop::registerTimer(Linux::ITimerHandler* handler, uint64 milliseconds) {
    if (!timers.emplace(handler, Timer{milliseconds, nowMs() + double(milliseconds)}).second)
        ++mistakes;
    handler->addRef();
    return kResultOk;
}

tresult PLUGIN_API RunLoop::unregisterTimer(Linux::ITimerHandler* handler) {
    if (timers.erase(handler) != 1) {
        ++mistakes;
        return kResultFalse;
    }
    handler->release();
    return kResultOk;
}

void RunLoop::turn() {
    std::vector<pollfd> waiting;
    std::vector<IPtr<Linux::IEventHandler>> handlers;
    for (const auto& [handler, fd] : events) {
        waiting.push_back({fd, POLLIN, 0});
        handlers.emplace_back(handler);
    }
    poll(waiting.data(), waiting.size(), 1);
    for (std::size_t i = 0; i < waiting.size(); ++i)
        if (waiting[i].revents != 0 && events.count(handlers[i]) == 1)
            handlers[i]->onFDIsSet(waiting[i].fd);

    const auto round = timers;
    for (const auto& [handler, timer] : round) {
        const auto found = timers.find(handler);
        if (found == timers.end() || found->second.due > nowMs()) continue;
        found->second.due = nowMs() + double(timer.period);
        handler->onTimer();
    }
}

void RunLoop::fireTimers() {
    const auto round = timers;
    for (const auto& entry : round)
        if (timers.count(entry.first) == 1) entry.first->onTimer();
}

// --- streams and queues -------------------------------------------------------------------------

tresult PLUGIN_API Stream::read(void* buffer, int32 count, int32* done) {
    const auto wish = static_cast<std::size_t>(count);
    largestWish = std::max(largestWish, wish);
    const std::size_t given = std::min({wish, mostAtOnce, bytes.size() - at});
    if (given > 0) std::memcpy(buffer, bytes.data() + at, given);
    at += given;
    if (done != nullptr) *done = static_cast<int32>(given);
    return kResultOk;
}

tresult PLUGIN_API Stream::write(void* buffer, int32 count, int32* done) {
    const std::size_t taken = std::min(static_cast<std::size_t>(count), room - bytes.size());
    bytes.insert(bytes.end(), static_cast<char*>(buffer), static_cast<char*>(buffer) + taken);
    if (done != nullptr) *done = static_cast<int32>(taken);
    return kResultOk;
}

tresult PLUGIN_API Queue::getPoint(int32 index, int32& offset, ParamValue& value) {
    if (index < 0 || index >= getPointCount()) return kResultFalse;
    std::tie(offset, value) = points[static_cast<std::size_t>(index)];
    return kResultOk;
}

// --- blocks and effects -------------------------------------------------------------------------

Block::Block(Channels input, std::size_t outputChannels)
    : in(std::move(input))
    , out(outputChannels, std::vector<float>(in.empty() ? 0 : in.front().size(), -9.0F)) {
    for (auto& channel : in)
        inPointers_.push_back(channel.data());
    for (auto& channel : out)
        outPointers_.push_back(channel.data());
    inBus_.numChannels = static_cast<int32>(in.size());
    inBus_.channelBuffers32 = inPointers_.data();
    outBus_.numChannels = static_cast<int32>(out.size());
    outBus_.channelBuffers32 = outPointers_.data();
    outBus_.silenceFlags = 3;
    data.symbolicSampleSize = kSample32;
    data.numSamples = in.empty() ? 0 : static_cast<int32>(in.front().size());
    data.numInputs = 1;
    data.inputs = &inBus_;
    data.numOutputs = 1;
    data.outputs = &outBus_;
}

Effect3::Effect3(IPluginFactory& factory, FUnknown* context, int32 index) {
    PClassInfo info;
    IComponent* made = nullptr;
    if (factory.getClassInfo(index, &info) != kResultOk) return;
    factory.createInstance(info.cid, IComponent::iid, reinterpret_cast<void**>(&made));
    component = owned(made);
    if (!component || component->initialize(context) != kResultOk) return;
    processor = FUnknownPtr<IAudioProcessor>(component);
    controller = FUnknownPtr<IEditController>(component);
}

void Effect3::prepare(double rate, int32 block) const {
    ProcessSetup setup{kRealtime, kSample32, block, rate};
    processor->setupProcessing(setup);
    component->setActive(1);
    processor->setProcessing(1);
}

std::vector<char> Effect3::state() const {
    Stream stream;
    return component->getState(&stream) == kResultOk ? stream.bytes : std::vector<char>();
}

tresult Effect3::setState(std::vector<char> state, std::size_t mostAtOnce) const {
    Stream stream(std::move(state));
    stream.mostAtOnce = mostAtOnce;
    return component->setState(&stream);
}

void Effect3::release() {
    if (component && controller) component->terminate();
    processor = nullptr;
    controller = nullptr;
    component = nullptr;
}

std::string text(const TChar* wide) {
    std::string out;
    for (; *wide != 0; ++wide)
        out += *wide < 0x80 ? static_cast<char>(*wide) : '?';
    return out;
}

} // namespace vst3_test

// What the fake host answers.
#include "FakeHost.h"

#include <algorithm>
#include <cstring>

namespace {
FakeHost* current = nullptr;
}

FakeHost::FakeHost() { current = this; }
FakeHost::~FakeHost() { current = nullptr; }

std::intptr_t FakeHost::callback(vst2::AEffect* effect,
                                 std::int32_t opcode,
                                 std::int32_t index,
                                 std::intptr_t value,
                                 void* ptr,
                                 float opt) {
    FakeHost* host = current;
    if (host == nullptr) return 0;
    if (host->recording) {
        const std::lock_guard<std::mutex> hold(host->lock_);
        host->calls_.push_back({opcode, index, value, opt});
    }
    if (host->onCall) host->onCall(effect, opcode);
    switch (opcode) {
    case vst2::audioMasterVersion:
        return host->version;
    case vst2::audioMasterCurrentId:
        return host->currentId;
    case vst2::audioMasterGetVendorVersion:
        return host->vendorVersion;
    case vst2::audioMasterGetProductString:
        std::strcpy(static_cast<char*>(ptr), host->product.c_str());
        return 1;
    case vst2::audioMasterCanDo:
        return host->knowsShells && std::strcmp(static_cast<char*>(ptr), "shellCategory") == 0;
    case vst2::audioMasterGetTime: {
        // A copy per thread, as the record belongs to the thread that asked.
        thread_local vst2::VstTimeInfo answer;
        if (host->time == nullptr) return 0;
        answer = *host->time;
        return reinterpret_cast<std::intptr_t>(&answer);
    }
    default:
        return 0;
    }
}

int FakeHost::count(std::int32_t opcode) const { return static_cast<int>(calls(opcode).size()); }

std::vector<FakeHost::Call> FakeHost::calls(std::int32_t opcode) const {
    const std::lock_guard<std::mutex> hold(lock_);
    std::vector<Call> found;
    std::copy_if(calls_.begin(), calls_.end(), std::back_inserter(found),
                 [opcode](const Call& c) { return c.opcode == opcode; });
    return found;
}

void FakeHost::forget() {
    const std::lock_guard<std::mutex> hold(lock_);
    calls_.clear();
}

std::string Effect::text(std::int32_t opcode, std::int32_t index) const {
    char text[256];
    std::memset(text, '#', sizeof text); // what is not written stays visible
    ask(opcode, index, 0, text);
    return std::string(text, strnlen(text, sizeof text));
}

void Effect::close() {
    if (effect_ != nullptr) ask(vst2::effClose);
    effect_ = nullptr;
}

std::vector<std::vector<float>> Effect::run(std::vector<std::vector<float>> inputs,
                                            std::size_t outputs) const {
    const std::size_t frames = inputs.empty() ? 0 : inputs.front().size();
    std::vector<std::vector<float>> result(outputs, std::vector<float>(frames, -99.0F));
    std::vector<float*> in;
    std::vector<float*> out;
    for (auto& channel : inputs)
        in.push_back(channel.data());
    for (auto& channel : result)
        out.push_back(channel.data());
    effect_->processReplacing(effect_, in.data(), out.data(), static_cast<std::int32_t>(frames));
    return result;
}

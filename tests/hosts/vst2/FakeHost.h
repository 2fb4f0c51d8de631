// A VST2 host that writes down what it is asked and answers what a test wants.
#pragma once

#include "Vst2Abi.h"

#include <functional>
#include <mutex>
#include <string>
#include <vector>

/// One lives at a time: the host callback knows no other way to find it.
class FakeHost {
  public:
    struct Call {
        std::int32_t opcode;
        std::int32_t index;
        std::intptr_t value;
        float opt;
    };

    FakeHost();
    ~FakeHost();
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    static std::intptr_t callback(vst2::AEffect* effect,
                                  std::int32_t opcode,
                                  std::int32_t index,
                                  std::intptr_t value,
                                  void* ptr,
                                  float opt);

    int count(std::int32_t opcode) const;
    std::vector<Call> calls(std::int32_t opcode) const;
    void forget();

    std::int32_t version = 2400;
    std::int32_t currentId = 0; ///< of the plug-in that it wants of a shell
    std::int32_t vendorVersion = 1;
    bool knowsShells = false;
    bool recording = true; ///< off where the heap is watched or threads run
    std::string product = "Fake Host";
    const vst2::VstTimeInfo* time = nullptr;
    /// Called for each opcode, with the effect: a host that calls back in.
    std::function<void(vst2::AEffect*, std::int32_t)> onCall;

  private:
    mutable std::mutex lock_;
    std::vector<Call> calls_;
};

/// An effect as hosts hold it: closed at the end of its scope.
class Effect {
  public:
    explicit Effect(vst2::AEffect* effect)
        : effect_(effect) {}
    ~Effect() { close(); }
    Effect(const Effect&) = delete;
    Effect& operator=(const Effect&) = delete;

    vst2::AEffect* operator->() const { return effect_; }
    vst2::AEffect* get() const { return effect_; }
    std::intptr_t ask(std::int32_t opcode,
                      std::int32_t index = 0,
                      std::intptr_t value = 0,
                      void* ptr = nullptr,
                      float opt = 0) const {
        return effect_->dispatcher(effect_, opcode, index, value, ptr, opt);
    }
    std::string text(std::int32_t opcode, std::int32_t index = 0) const;
    void close();

    /// Runs one block of `inputs` channels through the effect and gives its outputs.
    std::vector<std::vector<float>> run(std::vector<std::vector<float>> inputs,
                                        std::size_t outputs) const;

  private:
    vst2::AEffect* effect_;
};

// What one more instance costs a host, in time and memory, and how soon its editor is seen, for the
// built VST2 and VST3 modules. Editors open on an Xvfb of the program's own. Only the first picture
// of a process pays for fonts and artwork, so ask for one editor per run, with --benchmark_filter.
#include "FakeHost.h"
#include "TestHost.h"
#include "XServer.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <dlfcn.h>

namespace {

using vst3_test::Effect3;

template <class Function>
Function entry(const char* module, const char* name) {
    void* handle = dlopen(module, RTLD_NOW | RTLD_LOCAL);
    return handle == nullptr ? nullptr : reinterpret_cast<Function>(dlsym(handle, name));
}

Steinberg::IPluginFactory& factory() {
    static const auto get = entry<GetFactoryProc>(ORVEL_VST3_BINARY, "GetPluginFactory");
    static Steinberg::IPluginFactory* const made = get();
    return *made;
}

vst2::AEffect* createVst2() {
    using Entry = vst2::AEffect* (*)(vst2::HostCallback);
    static const auto make = entry<Entry>(ORVEL_VST2_BINARY, "VSTPluginMain");
    return make(&FakeHost::callback);
}

/// Set up as a host does it before the first block.
struct Vst3 {
    Effect3 effect{factory(), nullptr};
    Vst3() { effect.prepare(48000, 512); }
};
struct Vst2 {
    Effect effect{createVst2()};
    Vst2() {
        effect.ask(vst2::effOpen);
        effect.ask(vst2::effSetSampleRate, 0, 0, nullptr, 48000.0F);
        effect.ask(vst2::effSetBlockSize, 0, 512);
        effect.ask(vst2::effMainsChanged, 0, 1);
    }
};

/// MB of memory that this process holds.
double residentMb() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0) return std::stod(line.substr(6)) / 1024.0;
    return 0;
}

/// Time to make one, without the time to take it down.
template <class Format>
void instantiate(benchmark::State& state) {
    FakeHost host;
    for (auto _ : state) {
        auto instance = std::make_unique<Format>();
        state.PauseTiming();
        instance.reset();
        state.ResumeTiming();
    }
}

template <class Format>
void hundredInstances(benchmark::State& state) {
    FakeHost host;
    const Format first; // the module's own memory is no instance's
    for (auto _ : state) {
        const double before = residentMb();
        std::vector<std::unique_ptr<Format>> instances;
        for (int i = 0; i < 100; ++i)
            instances.push_back(std::make_unique<Format>());
        state.counters["MB_each"] = (residentMb() - before) / 100.0;
    }
}

void openEditor(Vst3& instance, void* parent, Steinberg::IPtr<Steinberg::IPlugView>& view) {
    view = Steinberg::owned(instance.effect.controller->createView("editor"));
    view->attached(parent, Steinberg::kPlatformTypeX11EmbedWindowID);
}
void openEditor(Vst2& instance, void* parent, Steinberg::IPtr<Steinberg::IPlugView>&) {
    instance.effect.ask(vst2::effEditOpen, 0, 0, parent);
    instance.effect.ask(vst2::effEditIdle);
}

/// From the host's call until the header's grey is on the screen.
template <class Format>
void firstEditor(benchmark::State& state) {
    FakeHost host;
    const XServer server;
    const XUser user;
    Format instance;
    const xcb_window_t window = user.hostWindow(0, 0, 1000, 545);
    user.sync();
    const std::uint32_t empty = user.pixel(820, 40);
    for (auto _ : state) {
        Steinberg::IPtr<Steinberg::IPlugView> view;
        const auto begin = std::chrono::steady_clock::now();
        openEditor(instance, reinterpret_cast<void*>(static_cast<std::uintptr_t>(window)), view);
        bool seen = false;
        for (int i = 0; i < 1000 && !seen; ++i)
            seen = user.pixel(820, 40) != empty;
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
        if (!seen) state.SkipWithError("no picture");
    }
}

BENCHMARK(instantiate<Vst2>)->Name("Instance/VST2")->Unit(benchmark::kMillisecond);
BENCHMARK(instantiate<Vst3>)->Name("Instance/VST3")->Unit(benchmark::kMillisecond);
BENCHMARK(hundredInstances<Vst2>)
    ->Name("Hundred/VST2")
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(hundredInstances<Vst3>)
    ->Name("Hundred/VST3")
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(firstEditor<Vst2>)
    ->Name("FirstEditor/VST2")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(firstEditor<Vst3>)
    ->Name("FirstEditor/VST3")
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

// A module of made-up plug-ins behind the two module functions, to test an adapter alone.
#pragma once

#include "frame/ParameterProperty.h"
#include "frame/PluginBase.h"
#include "frame/PluginDescription.h"
#include "frame/PluginEditor.h"
#include "frame/VardoCallback.h"

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <vector>

class StubPlugin;

/// What the module offers and how its plug-ins behave; each test starts with a fresh one.
struct StubModule {
    static StubModule& instance();
    static void restart() { instance() = StubModule(); }

    Vardo::PluginDescriptionList records{firstRecord()};
    bool createsNothing = false;
    bool createThrows = false;
    int latency = 0;
    bool hasEditor = false;
    std::vector<const char*> furtherSwitches; ///< names of parameters behind the four
    std::vector<int> createdIds;
    StubPlugin* last = nullptr; ///< the newest plug-in, while it lives

    static Vardo::PluginDescription firstRecord();
};

/// An editor without a window, which counts what it is asked.
class StubEditor final : public Vardo::IPluginEditor {
  public:
    void open(void* parentWindow) override {
        openedTwice = openedTwice || isOpen();
        parent = opens ? parentWindow : nullptr;
        ++timesOpened;
    }
    int close() override {
        parent = nullptr;
        return 1;
    }
    int setKnobMode(int) override { return 1; }
    bool getSize(int* w, int* h) override {
        *w = width;
        *h = height;
        return true;
    }
    void setSize(int, int) override {}
    bool isOpen() override { return parent != nullptr; }
    void update(int) override { ++updates; }
    void parameterChanged() override {}
    bool onWheel(float distance) override {
        wheel = distance;
        return true;
    }
    bool onKeyDown(const Vardo::KeyEvent& event) override {
        key = event;
        return true;
    }
    bool onKeyUp(const Vardo::KeyEvent&) override { return false; }
    void idle() override { ++idles; }
    int eventDescriptor() override { return descriptor; }

    bool opens = true;
    bool openedTwice = false; ///< without a `close` between
    void* parent = nullptr;
    int width = 640;
    int height = 360;
    int descriptor = -1;
    int timesOpened = 0;
    int idles = 0;
    int updates = 0;
    float wheel = 0;
    Vardo::KeyEvent key;
};

/// Passes input to output, halved, and adds the side chain; notes what it is told.
/// Parameter 1 of its four is not automatable.
class StubPlugin final : public Vardo::IPluginBase, public Vardo::ParameterChangeListener {
  public:
    explicit StubPlugin(Vardo::VardoCallback* callback);
    ~StubPlugin() override;

    void process(Vardo::IProcessContext& context) override;
    void setParameter(Vardo::IPluginParameter*, double, int) override {}
    int getNumParameters() override { return static_cast<int>(parameters.size()); }
    Vardo::IPluginParameter* getParameter(int index) override;
    void setSampleRate(double rate) override { sampleRate = rate; }
    void setBlockSize(int samples) override;
    int getChunk(void** data) override;
    void setChunk(const void* data, int size) override;
    void setBypass(bool on) override {
        bypassed = on;
        ++bypasses;
    }
    void reset() override { ++resets; }
    Vardo::IPluginEditor* getEditor() override { return editor.get(); }
    int getLatency() override { return StubModule::instance().latency; }
    void processEvents(const Vardo::EventList& list) override { events = list; }
    /// Of the last list: place in the block and the three bytes, event by event.
    std::vector<std::array<int, 4>> midi() const {
        std::vector<std::array<int, 4>> bytes;
        for (const Vardo::MidiRecord& event : events)
            bytes.push_back({event.deltaFrames, event.status, event.data1, event.data2});
        return bytes;
    }
    bool getOutputPinName(int index, char* text) override;
    void onIdle() override;
    /// From now on the host hears at once of each change of this parameter, as from a dial.
    void tellHostOf(std::size_t index) { parameters[index]->setImmediateListener(this); }
    void parameterChanged(Vardo::IPluginParameter* parameter) override {
        host->automate(parameter->getHostIndex(), parameter->getNormalizedValue());
    }

    struct Block {
        bool hasSidechain = false;
        int inputPairs = 0;
        int outputPairs = 0;
        int frames = 0;
        float tempo = 0;
        bool playing = false;
        double samplePosition = 0;
        double ppqPosition = 0;
    };

    Vardo::VardoCallback* host;
    std::unique_ptr<StubEditor> editor;
    std::vector<std::unique_ptr<Vardo::ParameterProperty>> parameters;
    std::atomic<double> sampleRate{0};
    // The adapter keeps `process` and `setBlockSize` apart: no locks here.
    std::vector<float> scratch;
    std::vector<int> blockSizes; // as announced
    Block block;                 // the last one
    std::atomic<int> blocks{0};
    std::atomic<int> resets{0};
    std::atomic<int> idles{0};
    int bypasses = 0;
    bool bypassed = false;
    Vardo::EventList events;
    std::vector<char> chunk{'s', 't', 'u', 'b'};
    std::function<void()> duringProcess;
    std::function<void()> duringIdle;
    std::function<void()> duringDestruction;
};

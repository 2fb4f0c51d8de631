// The made-up plug-ins.
#include "StubModule.h"

#include "frame/PluginModule.h"
#include "frame/ProcessContext.h"

#include <cstring>
#include <new>

StubModule& StubModule::instance() {
    static StubModule module;
    return module;
}

Vardo::PluginDescription StubModule::firstRecord() {
    Vardo::PluginDescription record;
    record.uniqueId = Vardo::fourCharacterCode("Stb1");
    record.effectName = "Stub One";
    record.productName = "Stub Line";
    record.vendorName = "Stub Works";
    record.versionNumber = 0x10203;
    record.programs = 1;
    return record;
}

void getPluginDescriptions(Vardo::PluginDescriptionList& list) {
    for (const auto& record : StubModule::instance().records)
        list.push_back(record);
}

Vardo::IPluginBase* createPlugin(Vardo::VardoCallback* callback, int id) {
    StubModule& module = StubModule::instance();
    module.createdIds.push_back(id);
    if (module.createThrows) throw std::bad_alloc();
    if (module.createsNothing) return nullptr;
    for (const auto& record : module.records)
        if (static_cast<int>(record.uniqueId) == id) return new StubPlugin(callback);
    return nullptr;
}

StubPlugin::StubPlugin(Vardo::VardoCallback* callback)
    : host(callback) {
    using namespace Vardo;
    const ParameterDescription rows[] = {
        {"gain", "Gain", "Gain", 0, 100, 50, 50, true, 0, kPercent, 0},
        {"hidden", "Hidden", "Hidden", 0, 1, 0, 0, false, 0, kSwitch, 1},
        {"long", "A name that is much longer than any host of old expected", "Long", 0, 1000, 0, 0,
         true, 0, kMilliseconds, 2},
        {"last", "Last", "Last", 0, 1, 0, 0, true, 0, kSwitch, 3},
    };
    for (const auto& row : rows) {
        parameters.push_back(std::make_unique<ParameterProperty>());
        parameters.back()->setFromDescription(row);
    }
    for (const char* name : StubModule::instance().furtherSwitches) {
        parameters.push_back(std::make_unique<ParameterProperty>());
        parameters.back()->setFromDescription(
            {name, name, name, 0, 1, 0, 0, true, 0, kSwitch, static_cast<int>(parameters.size())});
    }
    if (StubModule::instance().hasEditor) editor = std::make_unique<StubEditor>();
    StubModule::instance().last = this;
}

StubPlugin::~StubPlugin() {
    if (duringDestruction) duringDestruction();
    if (StubModule::instance().last == this) StubModule::instance().last = nullptr;
}

Vardo::IPluginParameter* StubPlugin::getParameter(int index) {
    return index < 0 || index >= getNumParameters() ? nullptr
                                                    : parameters[static_cast<size_t>(index)].get();
}

void StubPlugin::setBlockSize(int samples) {
    scratch.assign(static_cast<std::size_t>(samples), 0.0F);
    blockSizes.push_back(samples);
}

void StubPlugin::process(Vardo::IProcessContext& context) {
    block = {context.hasSidechain(),      context.getNumInputPairs(), context.getNumOutputPairs(),
             context.getNumSamples(),     context.getTempo(),         context.isPlaying(),
             context.getSamplePosition(), context.getPpqPosition()};
    ++blocks;
    const auto frames = static_cast<std::size_t>(context.getNumSamples());
    for (std::size_t channel = 0; channel < 2; ++channel) {
        for (std::size_t i = 0; i < frames; ++i)
            scratch.at(i) = 0.5F * context.getInputs()[channel][i];
        if (context.hasSidechain())
            for (std::size_t i = 0; i < frames; ++i)
                scratch[i] += context.getSidechain()[channel][i];
        for (std::size_t i = 0; i < frames; ++i)
            context.getOutputs()[channel][i] = scratch[i];
    }
    if (duringProcess) duringProcess();
}

int StubPlugin::getChunk(void** data) {
    *data = chunk.data();
    return static_cast<int>(chunk.size());
}

void StubPlugin::setChunk(const void* data, int size) {
    const char* bytes = static_cast<const char*>(data);
    chunk = std::vector<char>(bytes, bytes + size);
}

bool StubPlugin::getOutputPinName(int index, char* text) {
    if (index != 0) return false;
    std::memset(text, 'x', 64);
    text[64] = 0;
    return true;
}

void StubPlugin::onIdle() {
    ++idles;
    if (duringIdle) duringIdle();
}

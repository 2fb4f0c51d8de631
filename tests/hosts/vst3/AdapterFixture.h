// An adapter around a stub plug-in in our small host, set up as hosts do.
#pragma once

#include "PluginFactory.h"
#include "StubModule.h"
#include "TestHost.h"
#include "VardoVST3.h"

#include <gtest/gtest.h>

#include <optional>

namespace vst3_test {

class AdapterFixture : public testing::Test {
  protected:
    AdapterFixture() { StubModule::restart(); }
    ~AdapterFixture() override {
        effect.reset();
        factory = nullptr;
        StubModule::restart();
    }

    static StubModule& module() { return StubModule::instance(); }
    static StubPlugin& plugin() { return *StubModule::instance().last; }
    void create(FUnknown* context = nullptr) {
        effect.reset();
        factory = nullptr;
        factory = owned(Vardo::PluginFactory::get());
        effect.emplace(*factory, context);
        ASSERT_TRUE(effect->controller);
        effect->controller->setComponentHandler(&handler);
    }
    tresult run(Block& block) const { return effect->processor->process(block.data); }
    tresult change(std::vector<Queue> queues) const {
        Changes changes(std::move(queues));
        ProcessData flush;
        flush.inputParameterChanges = &changes;
        return effect->processor->process(flush);
    }

    Handler handler;
    IPtr<Vardo::PluginFactory> factory;
    std::optional<Effect3> effect;
};

} // namespace vst3_test

// An effect of the stub module in a host that a test can be.
#pragma once

#include "StubModule.h"
#include "Vardo_AAX_Wrapper.h"
#include "sdk/Effect.h"

#include <gtest/gtest.h>

class EffectFixture : public testing::Test {
  protected:
    EffectFixture() { StubModule::restart(); }
    ~EffectFixture() override {
        effect.reset();
        StubModule::restart();
    }

    static StubModule& module() { return StubModule::instance(); }
    static StubPlugin& plugin() { return *module().last; }
    static Vardo::PluginDescription& record() { return module().records.front(); }

    /// As a host does; gives what the effect says.
    AAX_Result start(int recordIndex = 0) {
        effect = std::make_unique<Vardo_AAX_Wrapper>(recordIndex);
        effect->controller = &controller;
        effect->transport = &transport;
        return effect->Initialize();
    }

    AAX_IController controller;
    AAX_ITransport transport;
    std::unique_ptr<Vardo_AAX_Wrapper> effect;
};

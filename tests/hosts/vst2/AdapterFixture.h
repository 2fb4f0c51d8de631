// An adapter around a stub plug-in in a fake host, set up as hosts do.
#pragma once

#include "FakeHost.h"
#include "StubModule.h"
#include "VardoVST.h"

#include <gtest/gtest.h>

class AdapterFixture : public testing::Test {
  protected:
    AdapterFixture() { StubModule::restart(); }
    ~AdapterFixture() override { StubModule::restart(); }

    static vst2::AEffect* create() { return Vardo::createEffect(&FakeHost::callback); }
    static StubPlugin& plugin() { return *StubModule::instance().last; }
    static StubModule& module() { return StubModule::instance(); }

    FakeHost host;
};

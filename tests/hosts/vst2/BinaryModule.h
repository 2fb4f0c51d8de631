// The plug-in binary, loaded by name as a host loads it.
#pragma once

#include "FakeHost.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

/// A loaded module; unloaded at the end of its scope.
class BinaryModule {
  public:
    BinaryModule()
        : handle_(dlopen(ORVEL_VST2_BINARY, RTLD_NOW | RTLD_LOCAL)) {
        if (handle_ == nullptr) ADD_FAILURE() << dlerror();
    }
    ~BinaryModule() { unload(); }
    BinaryModule(const BinaryModule&) = delete;
    BinaryModule& operator=(const BinaryModule&) = delete;

    vst2::AEffect* create(const char* name = "VSTPluginMain") const {
        using Entry = vst2::AEffect* (*)(vst2::HostCallback);
        const Entry entry = reinterpret_cast<Entry>(dlsym(handle_, name));
        return entry == nullptr ? nullptr : entry(&FakeHost::callback);
    }
    void unload() {
        if (handle_ != nullptr) {
            EXPECT_EQ(dlclose(handle_), 0);
        }
        handle_ = nullptr;
    }

  private:
    void* handle_;
};

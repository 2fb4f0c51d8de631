// The VST3 binary, loaded by name as a host loads it.
#pragma once

#include "TestHost.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

namespace vst3_test {

/// A loaded module with its factory; unloaded at the end of its scope, in the order of a host.
class BinaryModule3 {
  public:
    BinaryModule3()
        : handle_(dlopen(ORVEL_VST3_BINARY, RTLD_NOW | RTLD_LOCAL)) {
        if (handle_ == nullptr) {
            ADD_FAILURE() << dlerror();
            return;
        }
        const auto enter = reinterpret_cast<bool (*)(void*)>(dlsym(handle_, "ModuleEntry"));
        EXPECT_TRUE(enter != nullptr && enter(handle_));
        const auto get = reinterpret_cast<GetFactoryProc>(dlsym(handle_, "GetPluginFactory"));
        if (get != nullptr) factory_ = owned(get());
    }
    ~BinaryModule3() {
        factory_ = nullptr;
        if (handle_ == nullptr) return;
        const auto leave = reinterpret_cast<bool (*)()>(dlsym(handle_, "ModuleExit"));
        EXPECT_TRUE(leave != nullptr && leave());
        EXPECT_EQ(dlclose(handle_), 0);
    }
    BinaryModule3(const BinaryModule3&) = delete;
    BinaryModule3& operator=(const BinaryModule3&) = delete;

    IPluginFactory& factory() const { return *factory_; }

  private:
    void* handle_;
    IPtr<IPluginFactory> factory_;
};

} // namespace vst3_test

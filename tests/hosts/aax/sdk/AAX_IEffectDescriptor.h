// Test double: an effect being described, which a test reads back.
#pragma once

#include "AAX_IComponentDescriptor.h"

#include <vector>

class AAX_IEffectDescriptor {
  public:
    AAX_IComponentDescriptor* NewComponentDescriptor() {
        return hasNoComponent ? nullptr : &component;
    }
    AAX_Result AddComponent(AAX_IComponentDescriptor* added) {
        algorithms.push_back(*added);
        return 0;
    }
    AAX_Result AddName(const char* name) {
        names.emplace_back(name);
        return 0;
    }
    AAX_Result AddCategory(std::uint32_t added) {
        category = added;
        return 0;
    }
    AAX_Result AddProcPtr(void* function, AAX_CProcPtrID id) {
        functions[id] = function;
        return 0;
    }

    std::vector<AAX_IComponentDescriptor> algorithms;
    std::vector<std::string> names;
    std::uint32_t category = 12345;
    std::map<int, void*> functions;
    AAX_IComponentDescriptor component;
    bool hasNoComponent = false;
};

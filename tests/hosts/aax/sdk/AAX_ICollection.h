// Test double: the whole description of a module, which a test reads back.
#pragma once

#include "AAX_IEffectDescriptor.h"

#include <memory>

class AAX_ICollection {
  public:
    AAX_IEffectDescriptor* NewDescriptor() {
        if (refuseFrom == static_cast<int>(made.size())) return nullptr;
        return made.emplace_back(std::make_unique<AAX_IEffectDescriptor>()).get();
    }
    AAX_Result AddEffect(const char* id, AAX_IEffectDescriptor* effect) {
        effects[id] = effect;
        return 0;
    }
    AAX_Result SetManufacturerName(const char* name) {
        manufacturer = name;
        return 0;
    }
    AAX_Result AddPackageName(const char* name) {
        package = name;
        return 0;
    }
    AAX_Result SetPackageVersion(std::uint32_t number) {
        version = number;
        return 0;
    }

    std::vector<std::unique_ptr<AAX_IEffectDescriptor>> made;
    std::map<std::string, AAX_IEffectDescriptor*> effects;
    std::string manufacturer;
    std::string package;
    std::uint32_t version = 0;
    int refuseFrom = -1; ///< the effect that gets no descriptor
};

// Test doubles: the description of a module, written down for a test to read back.
#pragma once

#include "Types.h"

#include <map>
#include <memory>
#include <vector>

class AAX_IPropertyMap {
  public:
    AAX_Result AddProperty(AAX_EProperty property, AAX_CPropertyValue value) {
        properties[property] = value;
        return AAX_SUCCESS;
    }
    std::map<int, AAX_CPropertyValue> properties;
};

/// An algorithm: what each field of its context is, by the field's index.
class AAX_IComponentDescriptor {
  public:
    AAX_Result AddAudioIn(AAX_CFieldIndex field) { return add(field, "audio in"); }
    AAX_Result AddAudioOut(AAX_CFieldIndex field) { return add(field, "audio out"); }
    AAX_Result AddDataInPort(AAX_CFieldIndex field, int size, AAX_EDataInPortType) {
        return add(field, "data " + std::to_string(size));
    }
    AAX_Result AddSideChainIn(AAX_CFieldIndex field) { return add(field, "side chain"); }
    AAX_Result AddPrivateData(AAX_CFieldIndex field, std::int32_t size) {
        return add(field, "private " + std::to_string(size));
    }
    AAX_Result AddAudioBufferLength(AAX_CFieldIndex field) { return add(field, "length"); }
    AAX_Result AddSampleRate(AAX_CFieldIndex field) { return add(field, "rate"); }
    AAX_Result AddMIDINode(AAX_CFieldIndex field, AAX_EMIDINodeType type, const char*, int) {
        return add(field, "midi node " + std::to_string(type));
    }
    AAX_Result AddAuxOutputStem(AAX_CFieldIndex, std::int32_t, const char* name) {
        auxOutputs.emplace_back(name);
        return AAX_SUCCESS;
    }
    AAX_IPropertyMap* NewPropertyMap() { return &map; }
    template <typename Context>
    AAX_Result AddProcessProc_Native(void (*function)(Context* const[], const void*),
                                     AAX_IPropertyMap*) {
        process = reinterpret_cast<void*>(function);
        return AAX_SUCCESS;
    }
    AAX_Result Clear() {
        *this = AAX_IComponentDescriptor();
        return AAX_SUCCESS;
    }

    std::map<int, std::string> fields;
    std::vector<std::string> auxOutputs;
    void* process = nullptr;
    AAX_IPropertyMap map;

  private:
    AAX_Result add(AAX_CFieldIndex field, const std::string& kind) {
        fields[field] += kind;
        return AAX_SUCCESS;
    }
};

class AAX_IEffectDescriptor {
  public:
    AAX_IComponentDescriptor* NewComponentDescriptor() { return &component; }
    AAX_Result AddComponent(AAX_IComponentDescriptor* added) {
        algorithms.push_back(*added);
        return AAX_SUCCESS;
    }
    AAX_Result AddName(const char* name) {
        names.emplace_back(name);
        return AAX_SUCCESS;
    }
    AAX_Result AddCategory(std::uint32_t added) {
        category = added;
        return AAX_SUCCESS;
    }
    AAX_Result AddProcPtr(void* function, AAX_CProcPtrID id) {
        functions[id] = function;
        return AAX_SUCCESS;
    }

    AAX_IComponentDescriptor component;
    std::vector<AAX_IComponentDescriptor> algorithms;
    std::vector<std::string> names;
    std::uint32_t category = 12345;
    std::map<int, void*> functions;
};

class AAX_ICollection {
  public:
    AAX_IEffectDescriptor* NewDescriptor() {
        if (refuseFrom == made.size()) return nullptr;
        return made.emplace_back(std::make_unique<AAX_IEffectDescriptor>()).get();
    }
    AAX_Result AddEffect(const char* id, AAX_IEffectDescriptor* effect) {
        effects[id] = effect;
        return AAX_SUCCESS;
    }
    AAX_Result SetManufacturerName(const char*) { return AAX_SUCCESS; }
    AAX_Result AddPackageName(const char* name) {
        package = name;
        return AAX_SUCCESS;
    }
    AAX_Result SetPackageVersion(std::uint32_t) { return AAX_SUCCESS; }

    std::vector<std::unique_ptr<AAX_IEffectDescriptor>> made;
    std::map<std::string, AAX_IEffectDescriptor*> effects;
    std::string package;
    std::size_t refuseFrom = SIZE_MAX; ///< the effect that gets no descriptor
};

// Test double: an algorithm being described, which a test reads back.
#pragma once

#include "AAX_IPropertyMap.h"

#include <map>

class AAX_IComponentDescriptor {
  public:
    AAX_Result AddAudioIn(AAX_CFieldIndex field) { return add(field, "audio in"); }
    AAX_Result AddAudioOut(AAX_CFieldIndex field) { return add(field, "audio out"); }
    AAX_Result AddDataInPort(AAX_CFieldIndex field, std::uint32_t size, AAX_EDataInPortType type) {
        return add(field, "data " + std::to_string(size) + " type " + std::to_string(type));
    }
    AAX_Result AddSideChainIn(AAX_CFieldIndex field) { return add(field, "side chain"); }
    AAX_Result AddPrivateData(AAX_CFieldIndex field, std::int32_t size) {
        return add(field, "private " + std::to_string(size));
    }
    AAX_Result AddAudioBufferLength(AAX_CFieldIndex field) { return add(field, "length"); }
    AAX_Result AddSampleRate(AAX_CFieldIndex field) { return add(field, "rate"); }
    AAX_Result AddMIDINode(AAX_CFieldIndex field,
                           AAX_EMIDINodeType type,
                           const char* name,
                           std::uint32_t channels) {
        return add(field, std::string(name) + " type " + std::to_string(type) + " mask " +
                              std::to_string(channels));
    }
    AAX_Result AddAuxOutputStem(AAX_CFieldIndex field, std::int32_t format, const char* name) {
        auxOutputs += std::to_string(field) + " " + std::to_string(format) + " " + name + "; ";
        return 0;
    }
    AAX_IPropertyMap* NewPropertyMap() const { return hasNoProperties ? nullptr : &properties; }
    template <typename Context>
    AAX_Result AddProcessProc_Native(void (*function)(Context* const[], const void*),
                                     AAX_IPropertyMap* /*map*/) {
        process = reinterpret_cast<AAX_CProcessProc>(function);
        return 0;
    }
    AAX_Result Clear() {
        *this = AAX_IComponentDescriptor();
        return 0;
    }

    std::map<int, std::string> fields; ///< what each field is, by its index
    std::string auxOutputs;
    AAX_CProcessProc process = nullptr;
    mutable AAX_IPropertyMap properties;
    bool hasNoProperties = false;

  private:
    AAX_Result add(AAX_CFieldIndex field, const std::string& kind) {
        fields[field] += kind;
        return 0;
    }
};

// From the module's records to the host's descriptors.
#include "Describe.h"

#include "Create.h"
#include "EffectTexts.h"
#include "Guard.h"
#include "Render.h"

#include "AAX_ICollection.h"
#include "AAX_IComponentDescriptor.h"
#include "AAX_IEffectDescriptor.h"
#include "AAX_IPropertyMap.h"
#include "frame/PluginModule.h"

namespace Vardo::Aax {

namespace {
constexpr std::uint32_t kAllMidiChannels = 0xFFFF;
constexpr std::int32_t kFillerBytes = 4; // in place of a field that this record has no use for

AAX_CPropertyValue propertyValue(std::uint32_t id) { return static_cast<AAX_CPropertyValue>(id); }

// The order of AlgorithmContext.
AAX_Result addFields(AAX_IComponentDescriptor& component, const PluginDescription& record) {
    FirstError error;
    error << component.AddAudioIn(kInputsField);
    error << component.AddAudioOut(kOutputsField);
    error << component.AddDataInPort(kReservedField, 4, AAX_eDataInPortType_Buffered);
    if (record.hasSidechain)
        error << component.AddSideChainIn(kSidechainField);
    else
        error << component.AddPrivateData(kSidechainField, kFillerBytes);
    error << component.AddAudioBufferLength(kFramesField);
    error << component.AddSampleRate(kSampleRateField);
    if (takesMidi(record))
        error << component.AddMIDINode(kMidiInField, AAX_eMIDINodeType_LocalInput, "Midi In",
                                       kAllMidiChannels);
    else
        error << component.AddPrivateData(kMidiInField, kFillerBytes);
    error << component.AddMIDINode(kTransportField, AAX_eMIDINodeType_Transport, "Transport",
                                   kAllMidiChannels);
    // Room for the whole pointer that ResetFieldData writes, whatever its size on this machine.
    error << component.AddPrivateData(kWrapperField, sizeof(AlgorithmContext::wrapper));
    return error.result();
}

AAX_Result
addProperties(AAX_IPropertyMap& map, const PluginDescription& record, Algorithm algorithm) {
    const bool monoIn = algorithm != Algorithm::stereoToStereo;
    const bool monoOut = algorithm == Algorithm::monoToMono;
    FirstError error;
    error << map.AddProperty(AAX_eProperty_ManufacturerID, propertyValue(kManufacturerId));
    error << map.AddProperty(AAX_eProperty_ProductID, propertyValue(record.uniqueId));
    error << map.AddProperty(AAX_eProperty_CanBypass, 1);
    if (record.hasSidechain) error << map.AddProperty(AAX_eProperty_SupportsSideChainInput, 1);
    error << map.AddProperty(AAX_eProperty_InputStemFormat,
                             monoIn ? AAX_eStemFormat_Mono : AAX_eStemFormat_Stereo);
    error << map.AddProperty(AAX_eProperty_OutputStemFormat,
                             monoOut ? AAX_eStemFormat_Mono : AAX_eStemFormat_Stereo);
    error << map.AddProperty(AAX_eProperty_PlugInID_Native,
                             propertyValue(nativePluginId(record, algorithm)));
    return error.result();
}

AAX_Result addAlgorithm(AAX_IEffectDescriptor& effect,
                        AAX_IComponentDescriptor& component,
                        const PluginDescription& record,
                        Algorithm algorithm) {
    FirstError error;
    error << addFields(component, record);
    AAX_IPropertyMap* map = component.NewPropertyMap(); // stays the component's
    if (map == nullptr) return AAX_ERROR_NULL_OBJECT;
    error << addProperties(*map, record, algorithm);
    error << component.AddProcessProc_Native(renderFunction(algorithm), map);
    error << effect.AddComponent(&component);
    error << component.Clear();
    return error.result();
}

void addAuxOutputs(AAX_IComponentDescriptor& component, const PluginDescription& record) {
    for (int number = 2; number <= record.outputPairs; ++number)
        component.AddAuxOutputStem(0, AAX_eStemFormat_Stereo,
                                   auxOutputName(record, number).c_str());
}

AAX_Result addEffect(AAX_ICollection& collection, const PluginDescription& record, int index) {
    AAX_IEffectDescriptor* effect = collection.NewDescriptor(); // stays the collection's
    AAX_IComponentDescriptor* component =
        effect == nullptr ? nullptr : effect->NewComponentDescriptor();
    if (component == nullptr) return AAX_ERROR_NULL_OBJECT;

    FirstError error;
    for (const std::string& name : effectNames(record))
        error << effect->AddName(name.c_str());
    const bool synth = record.category == kCategorySynth;
    error << effect->AddCategory(synth ? AAX_ePlugInCategory_SWGenerators
                                       : AAX_ePlugInCategory_None);
    // A component forgets everything when it is cleared: each algorithm says its outputs again. A
    // host without such outputs refuses them, which is no error.
    const auto add = [&](Algorithm algorithm) {
        addAuxOutputs(*component, record);
        error << addAlgorithm(*effect, *component, record, algorithm);
    };
    if (!synth) add(Algorithm::monoToMono);
    add(Algorithm::monoToStereo);
    add(Algorithm::stereoToStereo);

    error << effect->AddProcPtr(reinterpret_cast<void*>(createParametersFunction(index)),
                                kAAX_ProcPtrID_Create_EffectParameters);
    error << effect->AddProcPtr(reinterpret_cast<void*>(createEditorFunction()),
                                kAAX_ProcPtrID_Create_EffectGUI);
    error << collection.AddEffect(effectId(record).c_str(), effect);
    return error.result();
}

AAX_Result describeAll(AAX_ICollection& collection) {
    PluginDescriptionList records;
    getPluginDescriptions(records);

    FirstError error;
    for (int i = 0; i < static_cast<int>(records.size()); ++i) {
        const AAX_Result result = addEffect(collection, records[static_cast<std::size_t>(i)], i);
        error << result;
        if (result == AAX_ERROR_NULL_OBJECT) break;
    }
    const std::string package = records.empty() ? kCollectionName : records.front().effectName;
    error << collection.SetManufacturerName(kManufacturerName);
    error << collection.AddPackageName(package.c_str());
    error << collection.SetPackageVersion(1);
    return error.result();
}
} // namespace

} // namespace Vardo::Aax

AAX_Result GetEffectDescriptions(AAX_ICollection* collection) {
    if (collection == nullptr) return AAX_ERROR_NULL_OBJECT;
    return Vardo::Aax::guarded([&] { return Vardo::Aax::describeAll(*collection); });
}

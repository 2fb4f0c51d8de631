// What a host is told of the module before it makes an effect.
#include "Describe.h"
#include "Create.h"
#include "EffectFixture.h"
#include "EffectTexts.h"
#include "Render.h"

#include "AAX_CEffectGUI.h"
#include "AAX_ICollection.h"

namespace {

using namespace Vardo::Aax;

class Describe : public EffectFixture {
  protected:
    void addRecord(const char* name) {
        module().records.push_back(record());
        module().records.back().uniqueId += static_cast<std::uint32_t>(module().records.size()) * 8;
        module().records.back().effectName = name;
    }
    const AAX_IEffectDescriptor& effectOf(const char* id) { return *collection.effects.at(id); }

    AAX_ICollection collection;
};

TEST_F(Describe, TextsAreMadeAndCut) {
    auto& named = record();
    named.vendorName = "Quillmere";
    named.effectName = "Orvel Scope";
    EXPECT_EQ(effectId(named), "com.quillmere.orvel_scope");
    EXPECT_EQ(effectNames(named), (std::vector<std::string>{"Orvel Scope (AAX)", "Orvel Scope (AAX",
                                                            "Orvel Sc", "Orve"}));
    named.effectName = "Gr\xC3\xBC\xC3\x9F"
                       "e \xE2\x82\xAC"; // each cut would fall into a letter
    EXPECT_EQ(effectNames(named)[2], "Gr\xC3\xBC\xC3\x9F"
                                     "e ");
    EXPECT_EQ(effectNames(named)[3], "Gr\xC3\xBC");
    EXPECT_EQ(effectId(named), "com.quillmere.gr\xC3\xBC\xC3\x9F"
                               "e_\xE2\x82\xAC");
}

TEST_F(Describe, AnEffectHasThreeAlgorithms) {
    ASSERT_EQ(GetEffectDescriptions(&collection), AAX_SUCCESS);
    EXPECT_EQ(collection.manufacturer, "hovenstad Audio");
    EXPECT_EQ(collection.package, "Stub One");
    EXPECT_EQ(collection.version, 1U);
    const auto& described = effectOf("com.stub_works.stub_one");
    EXPECT_EQ(described.names, effectNames(record()));
    EXPECT_EQ(described.category, 0U);
    ASSERT_EQ(described.algorithms.size(), 3U);

    constexpr int kMono = 1;
    constexpr int kStereo = 0x10002;
    const int stems[][2] = {{kMono, kMono}, {kMono, kStereo}, {kStereo, kStereo}};
    for (std::size_t i = 0; i < 3; ++i) {
        const auto& algorithm = described.algorithms[i];
        const std::map<int, std::string> fields{{0, "data 4 type 1"},
                                                {1, "audio in"},
                                                {2, "audio out"},
                                                {3, "private 4"},
                                                {4, "length"},
                                                {5, "rate"},
                                                {6, "private 4"},
                                                {7, "Transport type 3 mask 65535"},
                                                {8, "private " + std::to_string(sizeof(void*))}};
        EXPECT_EQ(algorithm.fields, fields);
        const int id = static_cast<int>(record().uniqueId);
        const std::map<int, int> properties{
            {11, 0x5A6D7472},  {12, id},          {13, id + static_cast<int>(i)},
            {51, stems[i][0]}, {52, stems[i][1]}, {60, 1}};
        EXPECT_EQ(algorithm.properties.properties, properties);
        EXPECT_EQ(algorithm.process,
                  reinterpret_cast<AAX_CProcessProc>(renderFunction(static_cast<Algorithm>(i))));
        EXPECT_EQ(algorithm.auxOutputs, "");
    }
    EXPECT_NE(renderFunction(Algorithm::monoToMono), renderFunction(Algorithm::monoToStereo));
    EXPECT_NE(renderFunction(Algorithm::monoToStereo), renderFunction(Algorithm::stereoToStereo));
}

TEST_F(Describe, SideChainMidiAndFurtherOutputsShowInTheFields) {
    record().hasSidechain = true;
    record().category = Vardo::kCategorySynth;
    record().outputPairs = 3;
    addRecord("Stub Two");
    module().records.back().category = Vardo::kCategoryInstrument;
    ASSERT_EQ(GetEffectDescriptions(&collection), AAX_SUCCESS);
    const auto& synth = effectOf("com.stub_works.stub_one");
    EXPECT_EQ(synth.category, 0x800U);
    ASSERT_EQ(synth.algorithms.size(), 2U) << "a synth has no mono output";
    for (const auto& algorithm : synth.algorithms) {
        EXPECT_EQ(algorithm.fields.at(3), "side chain");
        EXPECT_EQ(algorithm.fields.at(6), "Midi In type 0 mask 65535");
        EXPECT_EQ(algorithm.properties.properties.at(116), 1);
        EXPECT_EQ(algorithm.auxOutputs, "0 65538 Stub One Out2; 0 65538 Stub One Out3; ");
    }
    EXPECT_EQ(synth.algorithms[0].properties.properties.at(13),
              static_cast<int>(record().uniqueId) + 1);
    const auto& instrument = effectOf("com.stub_works.stub_two");
    EXPECT_EQ(instrument.category, 0U);
    EXPECT_EQ(instrument.algorithms.size(), 3U);
    EXPECT_EQ(instrument.algorithms[0].fields.at(6), "Midi In type 0 mask 65535");
    EXPECT_EQ(collection.package, "Stub One");
}

TEST_F(Describe, MissingDescriptorsEndTheList) {
    EXPECT_EQ(GetEffectDescriptions(nullptr), -20004);
    addRecord("Stub Two");
    addRecord("Stub Three");
    collection.refuseFrom = 1;
    EXPECT_EQ(GetEffectDescriptions(&collection), -20004);
    EXPECT_EQ(collection.effects.size(), 1U);
    EXPECT_EQ(collection.package, "Stub One");
    AAX_ICollection empty;
    module().records.clear();
    EXPECT_EQ(GetEffectDescriptions(&empty), AAX_SUCCESS);
    EXPECT_EQ(empty.package, "Vardo_AAX");
}

TEST_F(Describe, EachRecordHasItsOwnCreationFunction) {
    for (int i = 1; i < 12; ++i)
        addRecord("Another");
    ASSERT_EQ(GetEffectDescriptions(&collection), AAX_SUCCESS);
    for (int i = 0; i < 12; ++i) {
        const auto& functions = collection.made[static_cast<std::size_t>(i)]->functions;
        const auto create = reinterpret_cast<CreateParameters>(
            functions.at(kAAX_ProcPtrID_Create_EffectParameters));
        const std::unique_ptr<AAX_CEffectParameters> made(create());
        made->Initialize();
        const auto& expected = module().records[static_cast<std::size_t>(std::min(i, 9))];
        EXPECT_EQ(module().createdIds.back(), static_cast<int>(expected.uniqueId)) << i;
        const auto createEditor =
            reinterpret_cast<CreateEditor>(functions.at(kAAX_ProcPtrID_Create_EffectGUI));
        EXPECT_NE(std::unique_ptr<AAX_CEffectGUI>(createEditor()), nullptr);
    }
}

} // namespace

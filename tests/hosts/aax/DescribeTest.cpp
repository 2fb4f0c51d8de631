// What a host is told of the module before it makes an effect.
#include "Describe.h"
#include "Create.h"
#include "EffectFixture.h"
#include "EffectTexts.h"
#include "Render.h"
#include "sdk/Description.h"

namespace {

using namespace Vardo::Aax;
using Texts = std::vector<std::string>;

class Describe : public EffectFixture {
  protected:
    AAX_ICollection collection;
};

TEST_F(Describe, TextsAreMadeAndCut) {
    record().vendorName = "Quill Mere";
    record().effectName = "Sch\u00e4\u00df\u20acX"; // the short cuts would fall into a letter
    EXPECT_EQ(effectId(record()), "com.quill_mere.sch\u00e4\u00df\u20acx");
    EXPECT_EQ(effectNames(record()),
              (Texts{"Sch\u00e4\u00df\u20acX (AAX)", "Sch\u00e4\u00df\u20acX (AAX",
                     "Sch\u00e4\u00df", "Sch"}));
}

TEST_F(Describe, AnEffectHasThreeAlgorithms) {
    ASSERT_EQ(GetEffectDescriptions(&collection), AAX_SUCCESS);
    EXPECT_EQ(collection.package, "Stub One");
    const auto& described = *collection.effects.at("com.stub_works.stub_one");
    EXPECT_EQ(described.names, effectNames(record()));
    EXPECT_EQ(described.category, 0U);
    ASSERT_EQ(described.algorithms.size(), 3U);

    constexpr int kMono = 1;
    constexpr int kStereo = 0x10002;
    const int stems[][2] = {{kMono, kMono}, {kMono, kStereo}, {kStereo, kStereo}};
    const int id = static_cast<int>(record().uniqueId);
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        const auto& algorithm = described.algorithms[static_cast<std::size_t>(i)];
        const std::map<int, std::string> fields{
            {0, "data 4"},    {1, "audio in"},    {2, "audio out"},
            {3, "private 4"}, {4, "length"},      {5, "rate"},
            {6, "private 4"}, {7, "midi node 3"}, {8, "private " + std::to_string(sizeof(void*))}};
        EXPECT_EQ(algorithm.fields, fields);
        const std::map<int, int> properties{{11, 0x5A6D7472},  {12, id},          {13, id + i},
                                            {51, stems[i][0]}, {52, stems[i][1]}, {60, 1}};
        EXPECT_EQ(algorithm.map.properties, properties);
        EXPECT_EQ(algorithm.process,
                  reinterpret_cast<void*>(renderFunction(static_cast<Algorithm>(i))));
    }
}

TEST_F(Describe, SideChainMidiAndFurtherOutputsShowInTheFields) {
    record().hasSidechain = true;
    record().category = Vardo::kCategorySynth;
    record().outputPairs = 3;
    ASSERT_EQ(GetEffectDescriptions(&collection), AAX_SUCCESS);
    const auto& synth = *collection.effects.at("com.stub_works.stub_one");
    EXPECT_EQ(synth.category, 0x800U);
    ASSERT_EQ(synth.algorithms.size(), 2U) << "a synth has no mono output";
    for (const auto& algorithm : synth.algorithms) {
        EXPECT_EQ(algorithm.fields.at(3), "side chain");
        EXPECT_EQ(algorithm.fields.at(6), "midi node 0");
        EXPECT_EQ(algorithm.map.properties.at(116), 1);
        EXPECT_EQ(algorithm.auxOutputs, (Texts{"Stub One Out2", "Stub One Out3"}));
    }
}

TEST_F(Describe, MissingDescriptorsEndTheList) {
    EXPECT_EQ(GetEffectDescriptions(nullptr), AAX_ERROR_NULL_OBJECT);
    module().records.resize(3, record());
    collection.refuseFrom = 1;
    EXPECT_EQ(GetEffectDescriptions(&collection), AAX_ERROR_NULL_OBJECT);
    EXPECT_EQ(collection.made.size(), 1U);
    module().records.clear();
    EXPECT_EQ(GetEffectDescriptions(&collection), AAX_SUCCESS);
    EXPECT_EQ(collection.package, "Vardo_AAX");
}

TEST_F(Describe, EachRecordHasItsOwnCreationFunction) {
    module().records.resize(12, record());
    for (std::uint32_t i = 0; i < 12; ++i)
        module().records[i].uniqueId += 8 * i;
    ASSERT_EQ(GetEffectDescriptions(&collection), AAX_SUCCESS);
    for (std::size_t i = 0; i < 12; ++i) {
        const auto create = reinterpret_cast<CreateParameters>(
            collection.made[i]->functions.at(kAAX_ProcPtrID_Create_EffectParameters));
        const std::unique_ptr<AAX_CEffectParameters> made(create());
        made->Initialize();
        EXPECT_EQ(module().createdIds.back(),
                  static_cast<int>(module().records[std::min<std::size_t>(i, 9)].uniqueId))
            << i;
    }
}

} // namespace

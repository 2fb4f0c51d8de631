// What the module says of its classes, and how their effects begin and end.
#include "AdapterFixture.h"

#include <cstring>

namespace vst3_test {
namespace {

class Factory : public AdapterFixture {};

TEST_F(Factory, DescribesEachRecord) {
    Vardo::PluginDescription synth = StubModule::firstRecord();
    synth.uniqueId = Vardo::fourCharacterCode("Stb2");
    synth.category = Vardo::kCategorySynth;
    synth.effectName = std::string(62, 'n') + "\xC3\xA9"; // its last character finds no room
    module().records.push_back(synth);
    const auto made = owned(Vardo::PluginFactory::get());
    EXPECT_EQ(owned(Vardo::PluginFactory::get()).get(), made.get()) << "there is one";
    ASSERT_EQ(made->countClasses(), 2);
    PClassInfo2 first;
    PClassInfoW second;
    ASSERT_EQ(made->getClassInfo2(0, &first), kResultOk);
    ASSERT_EQ(made->getClassInfoUnicode(1, &second), kResultOk);
    EXPECT_EQ(std::memcmp(first.cid + 12, "Stb1", 4), 0) << "in reading order";
    EXPECT_EQ(std::memcmp(second.cid + 12, "Stb2", 4), 0);
    EXPECT_STREQ(first.category, "Audio Module Class");
    EXPECT_STREQ(first.subCategories, "Fx|Quillmere");
    EXPECT_STREQ(first.vendor, "Stub Works");
    EXPECT_STREQ(second.subCategories, "Instrument");
    EXPECT_EQ(text(second.name), std::string(62, 'n'));
}

TEST_F(Factory, RefusesWhatItDoesNotHave) {
    const auto made = owned(Vardo::PluginFactory::get());
    PClassInfo info;
    EXPECT_NE(made->getClassInfo(-1, &info), kResultOk);
    EXPECT_NE(made->getClassInfo(1, &info), kResultOk);
    EXPECT_NE(made->getClassInfo(0, nullptr), kResultOk);
    EXPECT_NE(made->getFactoryInfo(nullptr), kResultOk);
    ASSERT_EQ(made->getClassInfo(0, &info), kResultOk);
    void* object = this;
    for (const auto& [id, interface] :
         {std::pair<FIDString, FIDString>{"0123456789abcdef", IComponent::iid},
          {info.cid, IBStream::iid},
          {nullptr, IComponent::iid},
          {info.cid, nullptr}}) {
        EXPECT_NE(made->createInstance(id, interface, &object), kResultOk);
        EXPECT_EQ(object, nullptr);
    }
    EXPECT_NE(made->createInstance(info.cid, IComponent::iid, nullptr), kResultOk);
    EXPECT_EQ(module().last, nullptr) << "nothing is left of the refused ones";

    module().createThrows = true;
    EXPECT_NE(made->createInstance(info.cid, IComponent::iid, &object), kResultOk);
}

TEST_F(Factory, HasAtMostTenClasses) {
    module().records.resize(10);
    EXPECT_NE(owned(Vardo::PluginFactory::get()), nullptr);
    module().records.resize(11);
    EXPECT_EQ(Vardo::PluginFactory::get(), nullptr);
}

TEST_F(Factory, EffectsBeginEndAndBeginAgain) {
    create();
    EXPECT_EQ(effect->component->initialize(nullptr), kResultFalse) << "it is already";
    EXPECT_EQ(effect->controller->getParameterCount(), 4) << "three of the plug-in's and bypass";
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(effect->component->terminate(), kResultOk);
        EXPECT_EQ(module().last, nullptr);
        EXPECT_EQ(effect->controller->getParameterCount(), 0);
        Block block({{1, 2}, {3, 4}}, 2);
        EXPECT_EQ(run(block), kResultOk);
        EXPECT_EQ(block.out, block.in) << "without a plug-in the audio goes on";
        EXPECT_EQ(effect->controller->setParamNormalized(0, 0.5), kResultFalse);
        EXPECT_TRUE(effect->state().empty());
        EXPECT_EQ(effect->controller->createView("editor"), nullptr);

        EXPECT_EQ(effect->component->initialize(nullptr), kResultOk);
        EXPECT_EQ(effect->controller->getParameterCount(), 4);
    }
    effect->component->terminate();
    module().createsNothing = true;
    EXPECT_EQ(effect->component->initialize(nullptr), kInternalError);
    module().createsNothing = false;
    EXPECT_EQ(effect->component->initialize(nullptr), kResultOk) << "nothing was half done";
}

} // namespace
} // namespace vst3_test

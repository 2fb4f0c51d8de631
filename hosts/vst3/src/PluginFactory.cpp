// Class data, and how an effect is made.
#include "PluginFactory.h"

#include "Guarded.h"
#include "HostContext.h"
#include "Text16.h"
#include "VardoVST3.h"
#include "frame/PluginModule.h"
#include "hosting/Text.h"

#include <cstring>
#include <mutex>

namespace Vardo {

using namespace Steinberg;

namespace {
constexpr char kClassIdPrefix[] = "HovenstadVS3";
static_assert(sizeof kClassIdPrefix - 1 == 12);
constexpr const char* kVendor = "Hovenstad Audio / Quillmere";
constexpr const char* kSite = "https://www.hovenstad.example";
constexpr const char* kMail = "mailto:support@hovenstad.example";
constexpr const char* kSdkVersion = "VST 3.1.0";

const char* subCategoriesOf(const PluginDescription& record) {
    return record.category == kCategorySynth ? Vst::PlugType::kInstrument : "Fx|Quillmere";
}

std::mutex& factoryLock() {
    static std::mutex lock;
    return lock;
}
PluginFactory* theFactory = nullptr; // under the lock
} // namespace

void classIdOf(const PluginDescription& record, TUID id) noexcept {
    std::memcpy(id, kClassIdPrefix, 12);
    for (int i = 0; i < 4; ++i)
        id[12 + i] = static_cast<char>(record.uniqueId >> (24 - 8 * i) & 0xFF);
}

// --- the one factory ----------------------------------------------------------------------------

PluginFactory* PluginFactory::get() noexcept {
    try {
        const std::lock_guard guard(factoryLock());
        if (theFactory != nullptr) {
            theFactory->addRef();
            return theFactory;
        }
        PluginDescriptionList records;
        getPluginDescriptions(records);
        if (records.size() > kMostClasses) return nullptr;
        theFactory = new PluginFactory(std::move(records));
        return theFactory;
    } catch (...) {
        return nullptr;
    }
}

PluginFactory::~PluginFactory() { theFactory = nullptr; }

uint32 PLUGIN_API PluginFactory::release() {
    uint32 left = 0;
    {
        // Locked, so that nobody gets a factory that is on its way out.
        const std::lock_guard guard(factoryLock());
        left = FObject::release();
    }
    if (left == 0) HostContext::set(nullptr);
    return left;
}

tresult PLUGIN_API PluginFactory::queryInterface(const TUID iid, void** obj) {
    if (iid == nullptr || obj == nullptr) return kInvalidArgument;
    QUERY_INTERFACE(iid, obj, IPluginFactory::iid, IPluginFactory)
    QUERY_INTERFACE(iid, obj, IPluginFactory2::iid, IPluginFactory2)
    QUERY_INTERFACE(iid, obj, IPluginFactory3::iid, IPluginFactory3)
    return FObject::queryInterface(iid, obj);
}

// --- class data ---------------------------------------------------------------------------------

const PluginDescription* PluginFactory::record(int32 index) const noexcept {
    return index < 0 || index >= static_cast<int32>(records_.size())
               ? nullptr
               : &records_[static_cast<std::size_t>(index)];
}

tresult PLUGIN_API PluginFactory::getFactoryInfo(PFactoryInfo* info) {
    if (info == nullptr) return kInvalidArgument;
    *info = PFactoryInfo(kVendor, kSite, kMail, PFactoryInfo::kUnicode);
    return kResultOk;
}

int32 PLUGIN_API PluginFactory::countClasses() { return static_cast<int32>(records_.size()); }

tresult PLUGIN_API PluginFactory::getClassInfo(int32 index, PClassInfo* info) {
    PClassInfo2 full;
    if (info == nullptr || getClassInfo2(index, &full) != kResultOk) return kInvalidArgument;
    *info = PClassInfo(full.cid, full.cardinality, full.category, full.name);
    return kResultOk;
}

tresult PLUGIN_API PluginFactory::getClassInfo2(int32 index, PClassInfo2* info) {
    const PluginDescription* found = record(index);
    if (info == nullptr || found == nullptr) return kInvalidArgument;
    *info = PClassInfo2();
    classIdOf(*found, info->cid);
    info->cardinality = PClassInfo::kManyInstances;
    copyText(info->category, kVstAudioEffectClass, sizeof info->category);
    copyText(info->name, found->effectName.c_str(), sizeof info->name);
    copyText(info->subCategories, subCategoriesOf(*found), sizeof info->subCategories);
    copyText(info->vendor, found->vendorName.c_str(), sizeof info->vendor);
    copyText(info->version, found->versionText.c_str(), sizeof info->version);
    copyText(info->sdkVersion, kSdkVersion, sizeof info->sdkVersion);
    return kResultOk;
}

tresult PLUGIN_API PluginFactory::getClassInfoUnicode(int32 index, PClassInfoW* info) {
    PClassInfo2 full;
    if (info == nullptr || getClassInfo2(index, &full) != kResultOk) return kInvalidArgument;
    *info = PClassInfoW();
    const auto copy = [](char16(&target)[64], const char8* text) {
        Vst::String128 wide;
        copyText16(wide, text);
        std::memcpy(target, wide, sizeof target); // at most 63 bytes make at most 63 units
    };
    std::memcpy(info->cid, full.cid, sizeof info->cid);
    info->cardinality = full.cardinality;
    info->classFlags = full.classFlags;
    std::memcpy(info->category, full.category, sizeof info->category);
    std::memcpy(info->subCategories, full.subCategories, sizeof info->subCategories);
    copy(info->name, full.name);
    copy(info->vendor, full.vendor);
    copy(info->version, full.version);
    copy(info->sdkVersion, full.sdkVersion);
    return kResultOk;
}

// --- instances ----------------------------------------------------------------------------------

tresult PLUGIN_API PluginFactory::createInstance(FIDString cid, FIDString iid, void** obj) {
    if (obj == nullptr) return kInvalidArgument;
    *obj = nullptr;
    if (cid == nullptr || iid == nullptr) return kInvalidArgument;
    for (std::size_t i = 0; i < records_.size(); ++i) {
        TUID id;
        classIdOf(records_[i], id);
        if (!FUnknownPrivate::iidEqual(cid, id)) continue;
        return guarded([&] {
            const IPtr<Vardo_VST3> effect = owned(new Vardo_VST3(i));
            return effect->queryInterface(iid, obj);
        });
    }
    return kNoInterface;
}

tresult PLUGIN_API PluginFactory::setHostContext(FUnknown* context) {
    return guarded([&]() -> tresult {
        HostContext::set(context);
        return kResultOk;
    });
}

} // namespace Vardo

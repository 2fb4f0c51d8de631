// What the module offers to a VST3 host.
#pragma once

#include "base/source/fobject.h"
#include "frame/PluginDescription.h"
#include "pluginterfaces/base/ipluginbase.h"

namespace Vardo {

/// A module of more than this many plug-ins has no factory.
inline constexpr std::size_t kMostClasses = 10;

/// Twelve letters that all classes of this module share, then the four of the plug-in's id.
void classIdOf(const PluginDescription& record, Steinberg::TUID id) noexcept;

/// One class for each record of the module.
/// Threads: any. Pointers may be null and indices wrong: the call then fails.
class PluginFactory final : public Steinberg::FObject, public Steinberg::IPluginFactory3 {
  public:
    /// The module's one factory, with a reference for the caller: made by the first call, and again
    /// after the last reference was given back. Null when memory is short or there are too many
    /// records.
    static PluginFactory* get() noexcept;

    Steinberg::tresult PLUGIN_API getFactoryInfo(Steinberg::PFactoryInfo* info) override;
    Steinberg::int32 PLUGIN_API countClasses() override;
    Steinberg::tresult PLUGIN_API getClassInfo(Steinberg::int32 index,
                                               Steinberg::PClassInfo* info) override;
    Steinberg::tresult PLUGIN_API getClassInfo2(Steinberg::int32 index,
                                                Steinberg::PClassInfo2* info) override;
    Steinberg::tresult PLUGIN_API getClassInfoUnicode(Steinberg::int32 index,
                                                      Steinberg::PClassInfoW* info) override;
    Steinberg::tresult PLUGIN_API createInstance(Steinberg::FIDString cid,
                                                 Steinberg::FIDString iid,
                                                 void** obj) override;
    Steinberg::tresult PLUGIN_API setHostContext(Steinberg::FUnknown* context) override;

    Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID iid, void** obj) override;
    Steinberg::uint32 PLUGIN_API addRef() override { return FObject::addRef(); }
    Steinberg::uint32 PLUGIN_API release() override;

  private:
    explicit PluginFactory(PluginDescriptionList records)
        : records_(std::move(records)) {}
    ~PluginFactory() override;
    const PluginDescription* record(Steinberg::int32 index) const noexcept;

    PluginDescriptionList records_;
};

} // namespace Vardo

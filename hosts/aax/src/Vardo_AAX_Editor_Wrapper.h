// Puts the plug-in's editor into the host's view.
#pragma once

#include "AAX_CEffectGUI.h"
#include "core/Relaxed.h"

class Vardo_AAX_Wrapper;

namespace Vardo {
class IPluginEditor;
}

/// Threads: the host's main thread; `NotificationReceived` on any. The effect's wrapper, whose
/// plug-in owns the editor, lives until `Uninitialize`.
class Vardo_AAX_Editor_Wrapper final : public AAX_CEffectGUI {
  public:
    Vardo_AAX_Editor_Wrapper() = default;
    /// Closes what a host forgot to.
    ~Vardo_AAX_Editor_Wrapper() override;
    Vardo_AAX_Editor_Wrapper(const Vardo_AAX_Editor_Wrapper&) = delete;
    Vardo_AAX_Editor_Wrapper& operator=(const Vardo_AAX_Editor_Wrapper&) = delete;

    AAX_Result Uninitialize() override;
    AAX_Result NotificationReceived(AAX_CTypeID type, const void* data, uint32_t size) override;
    AAX_Result SetViewContainer(IACFUnknown* container) override;
    AAX_Result GetViewSize(AAX_Point* size) const override;
    /// The editor paints all of itself in its next idle.
    AAX_Result Draw(AAX_Rect* area) override;
    /// All open editors of this module get their idle time from whichever is called.
    AAX_Result TimerWakeup() override;

  protected:
    void CreateViewContents() override;
    void CreateViewContainer() override;
    void DeleteViewContainer() override;

  private:
    void followSize();

    Vardo_AAX_Wrapper* wrapper_ = nullptr;
    Vardo::IPluginEditor* editor_ = nullptr;
    Core::Relaxed<bool> sizeChanged_{false}; // the container has to be told
    AAX_Point told_;                         // what it was last told
};

// Test double: the SDK's half of an editor.
#pragma once

#include "AAX_CEffectParameters.h"
#include "AAX_IViewContainer.h"

#include <cstdlib>

class AAX_CEffectGUI {
  public:
    // The SDK's own calls DeleteViewContainer here, which is gone by now with the derived class.
    virtual ~AAX_CEffectGUI() {
        if (container_ != nullptr) std::abort();
    }

    AAX_Result Initialize(AAX_IEffectParameters* parameters) {
        parameters_ = parameters;
        CreateViewContents();
        return AAX_SUCCESS;
    }
    virtual AAX_Result Uninitialize() {
        if (container_ != nullptr) SetViewContainer(nullptr);
        parameters_ = nullptr;
        return AAX_SUCCESS;
    }
    virtual AAX_Result NotificationReceived(AAX_CTypeID, const void*, std::uint32_t) {
        return AAX_SUCCESS;
    }
    virtual AAX_Result SetViewContainer(IACFUnknown* container) {
        if (container == nullptr) DeleteViewContainer();
        container_ = static_cast<AAX_IViewContainer*>(container);
        if (container != nullptr) CreateViewContainer();
        return AAX_SUCCESS;
    }
    virtual AAX_Result GetViewSize(AAX_Point*) const { return AAX_SUCCESS; }
    virtual AAX_Result Draw(AAX_Rect*) { return AAX_SUCCESS; }
    virtual AAX_Result TimerWakeup() { return AAX_SUCCESS; }

    AAX_IEffectParameters* GetEffectParameters() { return parameters_; }
    AAX_IViewContainer* GetViewContainer() { return container_; }
    void* GetViewContainerPtr() { return container_ == nullptr ? nullptr : container_->window; }

  protected:
    virtual void CreateViewContents() = 0;
    virtual void CreateViewContainer() = 0;
    virtual void DeleteViewContainer() = 0;

  private:
    AAX_IEffectParameters* parameters_ = nullptr;
    AAX_IViewContainer* container_ = nullptr;
};

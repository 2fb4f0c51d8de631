// Opening and closing, size, and the idle time of the editor.
#include "Vardo_AAX_Editor_Wrapper.h"

#include "Guard.h"
#include "Vardo_AAX_Wrapper.h"

#include "AAX_IViewContainer.h"
#include "frame/IdleList.h"
#include "frame/PluginEditor.h"

using namespace Vardo;
using namespace Vardo::Aax;

Vardo_AAX_Editor_Wrapper::~Vardo_AAX_Editor_Wrapper() {
    // Here and not in the base class, which could not call our DeleteViewContainer any more.
    Vardo_AAX_Editor_Wrapper::Uninitialize();
}

AAX_Result Vardo_AAX_Editor_Wrapper::Uninitialize() {
    return guarded([this] {
        DeleteViewContainer();
        wrapper_ = nullptr; // may be gone with what the base class lets go
        editor_ = nullptr;
        return AAX_CEffectGUI::Uninitialize();
    });
}

// --- the view -----------------------------------------------------------------------------------

void Vardo_AAX_Editor_Wrapper::CreateViewContents() {
    guarded([this]() -> AAX_Result {
        wrapper_ = dynamic_cast<Vardo_AAX_Wrapper*>(GetEffectParameters());
        editor_ = wrapper_ == nullptr ? nullptr : wrapper_->editor();
        return AAX_SUCCESS;
    });
}

void Vardo_AAX_Editor_Wrapper::CreateViewContainer() {
    void* parent = GetViewContainerPtr();
    // Without a parent the editor would open a window of its own.
    if (editor_ == nullptr || parent == nullptr) return;
    guarded([&]() -> AAX_Result {
        DeleteViewContainer(); // some hosts forget to
        editor_->idle();
        editor_->open(parent);
        return AAX_SUCCESS;
    });
}

void Vardo_AAX_Editor_Wrapper::DeleteViewContainer() {
    if (editor_ == nullptr) return;
    guarded([this]() -> AAX_Result {
        if (editor_->isOpen()) editor_->close();
        return AAX_SUCCESS;
    });
}

AAX_Result Vardo_AAX_Editor_Wrapper::Draw(AAX_Rect* area) {
    return guarded([&] {
        if (editor_ != nullptr && editor_->isOpen()) editor_->update(0);
        return AAX_CEffectGUI::Draw(area);
    });
}

// --- size and idle ------------------------------------------------------------------------------

AAX_Result Vardo_AAX_Editor_Wrapper::GetViewSize(AAX_Point* size) const {
    if (size == nullptr) return AAX_ERROR_NULL_OBJECT;
    return guarded([&]() -> AAX_Result {
        int width = 0;
        int height = 0;
        if (editor_ != nullptr) editor_->getSize(&width, &height);
        size->horz = static_cast<float>(width);
        size->vert = static_cast<float>(height);
        return AAX_SUCCESS;
    });
}

AAX_Result Vardo_AAX_Editor_Wrapper::SetViewContainer(IACFUnknown* container) {
    sizeChanged_ = true;
    return guarded([&] { return AAX_CEffectGUI::SetViewContainer(container); });
}

AAX_Result
Vardo_AAX_Editor_Wrapper::NotificationReceived(AAX_CTypeID type, const void* data, uint32_t size) {
    sizeChanged_ = true;
    return guarded([&] { return AAX_CEffectGUI::NotificationReceived(type, data, size); });
}

AAX_Result Vardo_AAX_Editor_Wrapper::TimerWakeup() {
    return guarded([this] {
        followSize();
        if (wrapper_ != nullptr) wrapper_->idle();
        IdleList::instance().tick();
        return AAX_CEffectGUI::TimerWakeup();
    });
}

void Vardo_AAX_Editor_Wrapper::followSize() {
    AAX_Point size;
    GetViewSize(&size);
    const bool grown = size.horz != told_.horz || size.vert != told_.vert;
    if (!sizeChanged_.exchange(false) && !grown) return;
    AAX_IViewContainer* container = GetViewContainer();
    if (container == nullptr || editor_ == nullptr) return;
    told_ = size;
    container->SetViewSize(size);
}

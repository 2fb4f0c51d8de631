// Building the map, gestures and host calls.
#include "hosting/ParameterMap.h"

#include "frame/PluginBase.h"
#include "frame/PluginParameter.h"

namespace Vardo {

void ParameterMap::build(IPluginBase& plugin) {
    const int all = plugin.getNumParameters();
    entries_ = std::make_unique<Entry[]>(static_cast<std::size_t>(all > 0 ? all : 0));
    size_ = 0;
    for (int i = 0; i < all; ++i) {
        IPluginParameter* parameter = plugin.getParameter(i);
        if (parameter == nullptr) continue;
        const bool visible = parameter->isAutomatable();
        parameter->setHostIndex(visible ? size_ : -1);
        if (visible) entries_[static_cast<std::size_t>(size_++)].parameter = parameter;
    }
}

IPluginParameter* ParameterMap::parameter(int index) const noexcept {
    return contains(index) ? entries_[static_cast<std::size_t>(index)].parameter : nullptr;
}

void ParameterMap::setGesture(int index, bool open) noexcept {
    if (contains(index)) entries_[static_cast<std::size_t>(index)].gesture = open;
}

bool ParameterMap::hasGesture(int index) const noexcept {
    return contains(index) && entries_[static_cast<std::size_t>(index)].gesture;
}

ParameterMap::HostCall::HostCall(ParameterMap& map, int index) noexcept
    : mark_(map.contains(index) ? &map.entries_[static_cast<std::size_t>(index)].hostCall
                                : nullptr) {
    if (mark_ == nullptr) return;
    const std::thread::id self = std::this_thread::get_id();
    outer_ = mark_->exchange(self, std::memory_order_relaxed) != self;
}

ParameterMap::HostCall::~HostCall() {
    if (mark_ == nullptr || !outer_) return;
    // Two threads that set one parameter at once: the later mark stands until its own end.
    std::thread::id self = std::this_thread::get_id();
    mark_->compare_exchange_strong(self, std::thread::id{}, std::memory_order_relaxed);
}

bool ParameterMap::isHostCall(int index) const noexcept {
    return contains(index) && entries_[static_cast<std::size_t>(index)].hostCall.load(
                                  std::memory_order_relaxed) == std::this_thread::get_id();
}

} // namespace Vardo

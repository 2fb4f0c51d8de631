// The run loop that a host lends under Linux.
#include "HostLoop.h"

#include "base/source/fobject.h"
#include "pluginterfaces/gui/iplugview.h"

#include <utility>

namespace Vardo {

using namespace Steinberg;
using Linux::IRunLoop;

/// What the host's loop calls. The host may hold it longer than we do, and call it late.
class HostLoop::Handler final : public FObject,
                                public Linux::IEventHandler,
                                public Linux::ITimerHandler {
  public:
    Handler(HostLoopListener& listener, const IPtr<IRunLoop>& loop)
        : listener_(&listener)
        , loop_(loop) {}

    bool start(int periodMs) {
        timing_ =
            loop_->registerTimer(this, static_cast<Linux::TimerInterval>(periodMs)) == kResultOk;
        return timing_;
    }
    void stop() noexcept {
        listener_ = nullptr;
        watch(kNoDescriptor);
        if (std::exchange(timing_, false)) loop_->unregisterTimer(this);
        loop_ = nullptr;
    }
    void watch(int descriptor) noexcept {
        if (descriptor == descriptor_) return;
        if (descriptor_ != kNoDescriptor) loop_->unregisterEventHandler(this);
        descriptor_ = kNoDescriptor;
        if (descriptor != kNoDescriptor &&
            loop_->registerEventHandler(this, descriptor) == kResultOk)
            descriptor_ = descriptor;
    }

    void PLUGIN_API onTimer() override { tell(&HostLoopListener::onHostTimer); }
    void PLUGIN_API onFDIsSet(Linux::FileDescriptor) override {
        tell(&HostLoopListener::onHostEvents);
    }

    tresult PLUGIN_API queryInterface(const TUID iid, void** obj) override {
        QUERY_INTERFACE(iid, obj, Linux::IEventHandler::iid, Linux::IEventHandler)
        QUERY_INTERFACE(iid, obj, Linux::ITimerHandler::iid, Linux::ITimerHandler)
        return FObject::queryInterface(iid, obj);
    }
    REFCOUNT_METHODS(FObject)

  private:
    void tell(void (HostLoopListener::*turn)()) noexcept {
        const IPtr<Handler> alive(this); // the listener may give the place back in the middle of it
        try {
            if (listener_ != nullptr) (listener_->*turn)();
        } catch (...) { // a turn that failed; the next one comes
        }
    }

    HostLoopListener* listener_; // null once the place was given back
    IPtr<IRunLoop> loop_;
    int descriptor_ = kNoDescriptor;
    bool timing_ = false;
};

HostLoop::HostLoop(HostLoopListener& listener)
    : listener_(listener) {}

HostLoop::~HostLoop() { stop(); }

bool HostLoop::start(FUnknown* giver, int periodMs) {
    if (isRunning()) return true;
    const FUnknownPtr<IRunLoop> loop(giver);
    if (!loop) return false;
    const IPtr<Handler> handler = owned(new Handler(listener_, loop));
    if (!handler->start(periodMs)) return false;
    handler_ = handler;
    return true;
}

void HostLoop::stop() noexcept {
    // First forgotten, then stopped: the host may call back in while we unregister.
    const IPtr<Handler> handler = std::exchange(handler_, nullptr);
    if (handler) handler->stop();
}

void HostLoop::watch(int descriptor) {
    if (handler_) handler_->watch(descriptor);
}

const char* platformWindowType() noexcept { return kPlatformTypeX11EmbedWindowID; }

} // namespace Vardo

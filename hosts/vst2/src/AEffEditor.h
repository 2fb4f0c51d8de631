// What an effect's editor window answers to a VST 2.4 host.
#pragma once

#include "Vst2Abi.h"

namespace vst2 {

/// Hand one to `AudioEffectX::setEditor` and the effect says that it has an editor.
/// Threads: the host's main thread.
class AEffEditor {
  public:
    virtual ~AEffEditor() = default;

    /// Points at a rectangle that stays the editor's; false when there is no size to tell.
    virtual bool getRect(ERect** rect) = 0;
    /// `parent` is the host's window.
    virtual bool open(void* parent) = 0;
    virtual void close() = 0;
    virtual bool onKeyDown(const VstKeyCode& /*key*/) { return false; }
    virtual bool onKeyUp(const VstKeyCode& /*key*/) { return false; }
    virtual bool onWheel(float /*distance*/) { return false; }
    virtual bool setKnobMode(std::int32_t /*mode*/) { return false; }
    virtual void idle() {}
};

} // namespace vst2

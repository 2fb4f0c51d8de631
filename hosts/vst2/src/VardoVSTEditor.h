// Puts the plug-in's editor into the host's window.
#pragma once

#include "AEffEditor.h"

namespace Vardo {

class IPluginEditor;

/// Threads: the host's main thread. The plug-in owns the editor and outlives this.
class CVardoVST2_Editor final : public vst2::AEffEditor {
  public:
    /// `editor` may be null: the window then has no size and does not open.
    explicit CVardoVST2_Editor(IPluginEditor* editor)
        : editor_(editor) {}
    ~CVardoVST2_Editor() override;

    bool getRect(vst2::ERect** rect) override;
    bool open(void* parent) override;
    void close() override;
    bool onKeyDown(const vst2::VstKeyCode& key) override;
    bool onKeyUp(const vst2::VstKeyCode& key) override;
    bool onWheel(float distance) override;
    bool setKnobMode(std::int32_t mode) override;
    /// All open editors of this module get their idle time from whichever is called.
    void idle() override;

  private:
    IPluginEditor* editor_;
    vst2::ERect rect_{};
};

} // namespace Vardo

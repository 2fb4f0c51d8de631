// The plug-in's editor in a window that a VST3 host lends.
#pragma once

#include "HostLoop.h"
#include "pluginterfaces/base/smartpointer.h"
#include "public.sdk/source/common/pluginview.h"

namespace Vardo {

class IPluginEditor;
struct KeyEvent;
class Vardo_VST3;

/// Holds its effect, and may outlive the plug-in in it. Of several views the one attached last has
/// the plug-in's window; the others lose it. Under Linux it lives on the host's run loop: in a host
/// that lends none, neither now nor later, the window shows its first picture and stands still.
/// Threads: the host's main thread.
class Vardo_VST3_EditorView final : public Steinberg::CPluginView, private HostLoopListener {
  public:
    explicit Vardo_VST3_EditorView(Vardo_VST3& effect);
    ~Vardo_VST3_EditorView() override;

    Steinberg::tresult PLUGIN_API isPlatformTypeSupported(Steinberg::FIDString type) override;
    /// Fails where the plug-in has no editor or cannot open it, as without a display.
    Steinberg::tresult PLUGIN_API attached(void* parent, Steinberg::FIDString type) override;
    Steinberg::tresult PLUGIN_API removed() override;
    Steinberg::tresult PLUGIN_API onWheel(float distance) override;
    Steinberg::tresult PLUGIN_API onKeyDown(Steinberg::char16 key,
                                            Steinberg::int16 keyCode,
                                            Steinberg::int16 modifiers) override;
    Steinberg::tresult PLUGIN_API onKeyUp(Steinberg::char16 key,
                                          Steinberg::int16 keyCode,
                                          Steinberg::int16 modifiers) override;
    /// In any order with `attached`; null takes the frame away, and its loop.
    Steinberg::tresult PLUGIN_API setFrame(Steinberg::IPlugFrame* frame) override;
    /// The editor's own size, which the host is told of when it changes.
    Steinberg::tresult PLUGIN_API getSize(Steinberg::ViewRect* size) override;

    // --- for the effect ---
    /// Takes a place in the host's loop if the window is open and has none.
    void lookForHostLoop();
    /// Closes the plug-in's window; the host's view stays.
    void letGo();

  private:
    IPluginEditor* openEditor();
    Steinberg::ViewRect editorRect();
    void tellNewSize();

    // --- HostLoopListener ---
    void onHostTimer() override;
    void onHostEvents() override;

    Steinberg::IPtr<Vardo_VST3> effect_;
    HostLoop loop_;
    Steinberg::ViewRect told_; // the size that the host knows
};

/// A key as VST 3 tells of it, in the numbers of the editor.
KeyEvent keyEventOf(Steinberg::char16 key, Steinberg::int16 keyCode, Steinberg::int16 modifiers);

} // namespace Vardo

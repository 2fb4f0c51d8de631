// The window side of a plug-in, as a host adapter sees it.
#pragma once

#include <cstdint>

namespace Vardo {

struct KeyEvent {
    std::int32_t character = 0;
    std::uint8_t virtualKey = 0;
    std::uint8_t modifiers = 0;
};

class IEditorHost;
class IEditorPicture;

/// Threads: the host's GUI thread. The object lives as long as its plug-in; only the window
/// opens and closes.
class IPluginEditor {
  public:
    virtual ~IPluginEditor() = default;

    /// Builds the frame inside the host's window (an X11 window id or a HWND, as a pointer).
    virtual void open(void* parentWindow) = 0;
    virtual int close() = 0;
    virtual int setKnobMode(int mode) = 0;
    /// Pixels, after the editor's scale factor. Gives true.
    virtual bool getSize(int* width, int* height) = 0;
    virtual void setSize(int width, int height) = 0;
    virtual bool isOpen() = 0;
    /// Marks the frame dirty when open.
    virtual void update(int part) = 0;
    /// The plug-in changed parameters: show them again.
    virtual void parameterChanged() = 0;
    /// Wheel at the mouse's position of the moment.
    virtual bool onWheel(float distance) = 0;
    virtual bool onKeyDown(const KeyEvent& key) = 0;
    virtual bool onKeyUp(const KeyEvent& key) = 0;
    /// One step of animation and repainting; the idle list calls it while the editor is open.
    virtual void idle() = 0;

    // ---- For programs of our own; see EditorHost.h ---------------------------------------------
    /// Null parents make a window of its own, whose events `host` hears. Not owned; null for none.
    virtual void setHost(IEditorHost* /*host*/) {}
    /// Null where the editor can only paint into windows.
    virtual IEditorPicture* picture() { return nullptr; }
    /// Readable when events wait, for hosts that can watch a file descriptor; -1 for none.
    virtual int eventDescriptor() { return -1; }
    /// Nothing in the window has moved for a second: until an event comes, idle may come less
    /// often.
    virtual bool isStill() { return false; }
};

} // namespace Vardo

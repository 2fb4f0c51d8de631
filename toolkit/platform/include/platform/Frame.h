// The platform's side of a window, and what a window tells its frame.
#pragma once

#include "draw/BaseObject.h"
#include "draw/OSBitmap.h"
#include "platform/DragContainer.h"
#include "platform/FileDialog.h"
#include "platform/Input.h"
#include "platform/Menu.h"
#include "platform/TextEdit.h"

#include <functional>
#include <memory>
#include <string>

namespace Sorel {

/// The events of one window; positions are pixels of the window. All calls come from inside
/// IFrame::doIdle or, where a platform has a message loop, from that loop on the GUI thread.
/// The window may be destroyed by the callee during any of them except paint.
class IFrameEvents {
  public:
    /// Answers as of views: 1 handled, 2 not handled, 3 handled and no more wanted.
    virtual int platformMouseDown(CPoint where, std::int32_t buttons) = 0;
    virtual int platformMouseUp(CPoint where, std::int32_t buttons) = 0;
    virtual int platformMouseMoved(CPoint where, std::int32_t buttons) = 0;
    virtual void platformMouseEntered(CPoint where, std::int32_t buttons) = 0;
    virtual void platformMouseExited(CPoint where, std::int32_t buttons) = 0;
    /// Distance in notches, away from the user is positive. Axis 0 horizontal, 1 vertical.
    virtual bool platformWheel(CPoint where, int axis, float distance, std::int32_t buttons) = 0;
    /// Positive when taken; anything else is passed on to the host.
    virtual int platformKeyDown(const KeyEvent& key) = 0;
    virtual int platformKeyUp(const KeyEvent& key) = 0;

    virtual void platformDragEnter(CDragContainer& drag, CPoint where) = 0;
    virtual void platformDragMove(CDragContainer& drag, CPoint where) = 0;
    virtual void platformDragLeave(CDragContainer& drag, CPoint where) = 0;
    virtual bool platformDrop(CDragContainer& drag, CPoint where) = 0;

    /// The pixels to show; null before there are any.
    virtual IOSBitmap* platformSurface() = 0;
    /// Once per idle, after the events: turn flags into dirty rectangles and draw.
    virtual void platformIdle() = 0;
    /// The window lost the keyboard to another one.
    virtual void platformFocusLost() = 0;
    /// The user asked to close a window that has no host.
    virtual void platformCloseRequested() = 0;
    /// A window without a host was resized by its user or its window manager.
    virtual void platformResized(double width, double height) = 0;

  protected:
    ~IFrameEvents() = default;
};

/// The window of one frame.
/// Threads: GUI thread.
/// Fails:   without a window (creation failed) every operation does nothing and answers false.
class IFrame : public CBaseObject {
  public:
    /// On the screen, pixels.
    virtual bool getPosition(double* x, double* y) = 0;
    virtual bool setSize(double width, double height) = 0;
    virtual bool getSize(CRect* rect) = 0;
    /// In the window.
    virtual bool getCurrentMouseLocation(CPoint* where) = 0;
    virtual std::int32_t getCurrentMouseButtons() = 0;
    virtual void setMouseCursor(CursorKind kind) = 0;
    /// This part of the surface has new pixels: show them with the next idle or paint message.
    virtual void invalidRect(const CRect& rect) = 0;
    /// The answer that the source of a running drag gets to see.
    virtual void setDropAccepted(bool accepted) = 0;
    /// The running drag, or null.
    virtual CDragContainer* getDragContainer() = 0;
    /// The window as the platform names it, null when there is none.
    virtual void* getPlatformHandle() = 0;
    /// Handles waiting events and shows new pixels.
    virtual void doIdle() = 0;

    /// The window goes; no event comes after this.
    virtual void destroyWindow() = 0;
    /// A surface that this window shows fast.
    virtual std::unique_ptr<IOSBitmap> createSurface() = 0;
    virtual std::unique_ptr<IOSTextEdit> createTextEdit(ITextEditCallback& callback,
                                                        const CRect& inFrame) = 0;
    virtual std::unique_ptr<IOSOptionMenu> createOptionMenu() = 0;
    virtual std::unique_ptr<IOSFileDialog> createFileDialog() = 0;
    /// Takes the keyboard from the host, or gives it back.
    virtual void setKeyboardFocus(bool wanted) = 0;
    virtual bool hasKeyboardFocus() = 0;
    virtual void setClipboardText(const std::string& utf8) = 0;
    /// `answer` comes in this call or in a later idle, or never when the frame closes.
    virtual void requestClipboardText(std::function<void(const std::string& utf8)> answer) = 0;
    /// A file descriptor that becomes readable when events wait, for hosts that can watch one; -1
    /// where there is none.
    virtual int eventDescriptor() = 0;
};

/// What a program runs on: a real desktop, or memory.
class IPlatform {
  public:
    virtual ~IPlatform() = default;
    /// A child of `parentWindow`, or a window of its own with `title` when that is null. `events`
    /// outlives the frame's window. Never null; a frame whose window could not be made has a null
    /// handle.
    virtual IFrame* createFrame(IFrameEvents& events,
                                const CRect& size,
                                void* parentWindow,
                                const std::string& title) = 0;
    /// Milliseconds of a clock that never goes back.
    virtual std::uint64_t ticks() = 0;
};

/// The platform in use. Set once by whoever composes the program, before any frame; not owned.
/// There is no default: asking for one that was not set ends the program with a message.
IPlatform& platform();
void setPlatform(IPlatform* newPlatform);
bool hasPlatform();

} // namespace Sorel

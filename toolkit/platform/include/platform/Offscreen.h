// A platform without a display: frames render into memory and take events that a program makes.
#pragma once

#include "platform/Frame.h"

#include <memory>
#include <vector>

namespace Sorel {

class COffscreenFrame;

/// Tests, pictures and machines without a screen run on this. Its clock stands still until moved.
/// Threads: one.
class COffscreenPlatform : public IPlatform {
  public:
    COffscreenPlatform();
    ~COffscreenPlatform() override;

    IFrame* createFrame(IFrameEvents& events,
                        const CRect& size,
                        void* parentWindow,
                        const std::string& title) override;
    std::uint64_t ticks() override { return now_; }
    void advance(std::uint64_t milliseconds) { now_ += milliseconds; }

    /// The frame opened last and still open; null when there is none.
    COffscreenFrame* frame() const;
    /// What the next file dialog answers.
    void setFileDialogAnswer(FileDialogAnswer answer) { fileAnswer_ = std::move(answer); }
    /// What the last file dialog asked for.
    const FileDialogRequest& lastFileDialog() const { return lastFileDialog_; }
    const std::string& clipboard() const { return clipboard_; }
    void setClipboard(std::string text) { clipboard_ = std::move(text); }

  private:
    friend class COffscreenFrame;
    friend struct OffscreenAccess;

    std::uint64_t now_ = 1000;
    std::vector<COffscreenFrame*> frames_;
    FileDialogAnswer fileAnswer_;
    FileDialogRequest lastFileDialog_;
    std::string clipboard_;
};

/// A window in memory. Events take the road of a real window's: they are handled at once, the
/// answers of menus and dialogs come with the next idle.
class COffscreenFrame : public IFrame {
  public:
    COffscreenFrame(COffscreenPlatform& owner, IFrameEvents& events, const CRect& size);
    ~COffscreenFrame() override;

    // ---- What a user would do. `modifiers` are shift, control, alt bits of Buttons. ------------
    void moveMouse(CPoint where, std::int32_t modifiers = 0);
    int press(CPoint where, std::int32_t buttons = Buttons::kLeft);
    int releaseButtons(CPoint where);
    void click(CPoint where, std::int32_t buttons = Buttons::kLeft);
    void doubleClick(CPoint where);
    /// Presses at `from`, moves in steps, releases at `to`.
    void drag(CPoint from, CPoint to, std::int32_t buttons = Buttons::kLeft);
    bool wheel(CPoint where, float distance, std::int32_t modifiers = 0, int axis = 1);
    void leave();
    int key(std::uint8_t virtualKey, std::uint8_t modifiers = 0);
    int key(const KeyEvent& event);
    /// One key event per character.
    void type(const std::string& utf8);
    bool dropFiles(const std::vector<std::string>& paths, CPoint where);
    /// Another window takes the keyboard.
    void loseFocus();
    void closeRequest();

    // ---- What a user would see -----------------------------------------------------------------
    /// The frame's pixels with open menus above them, premultiplied BGRA.
    std::unique_ptr<IOSBitmap> picture();
    /// False with the reason in `problem` (if given) when the file cannot be written.
    bool writePng(const std::string& path, std::string* problem = nullptr);
    CursorKind cursor() const { return cursor_; }
    /// Pixels shown since the last call.
    std::uint64_t takeShownPixels();
    bool isMenuOpen() const;
    /// The titles of the innermost open menu.
    std::vector<std::string> menuTitles() const;
    /// Middle of the item with this title in an open menu, frame coordinates; -1, -1 for none.
    CPoint menuItemPosition(const std::string& title) const;
    /// Opens the sub-menus on the way and chooses the item as a mouse would: "A/B/C". False when
    /// there is none or it is disabled.
    bool chooseMenuItem(const std::string& path);

    // ---- IFrame --------------------------------------------------------------------------------
    bool getPosition(double* x, double* y) override;
    bool setSize(double width, double height) override;
    bool getSize(CRect* rect) override;
    bool getCurrentMouseLocation(CPoint* where) override;
    std::int32_t getCurrentMouseButtons() override { return buttons_; }
    void setMouseCursor(CursorKind kind) override { cursor_ = kind; }
    void invalidRect(const CRect& rect) override;
    void setDropAccepted(bool accepted) override { dropAccepted_ = accepted; }
    CDragContainer* getDragContainer() override { return drag_.get(); }
    void* getPlatformHandle() override;
    void doIdle() override;
    void destroyWindow() override;
    std::unique_ptr<IOSBitmap> createSurface() override;
    std::unique_ptr<IOSTextEdit> createTextEdit(ITextEditCallback& callback,
                                                const CRect& inFrame) override;
    std::unique_ptr<IOSOptionMenu> createOptionMenu() override;
    std::unique_ptr<IOSFileDialog> createFileDialog() override;
    void setKeyboardFocus(bool wanted) override { focused_ = wanted; }
    bool hasKeyboardFocus() override { return focused_; }
    void setClipboardText(const std::string& utf8) override;
    void requestClipboardText(std::function<void(const std::string&)> answer) override;
    int eventDescriptor() override { return -1; }

  private:
    friend struct OffscreenAccess;
    struct Popups;

    COffscreenPlatform& owner_;
    IFrameEvents* events_;
    CRect size_;
    CPoint mouse_{-1.0, -1.0};
    std::int32_t buttons_ = 0;
    bool inside_ = false;
    bool focused_ = false;
    bool dropAccepted_ = false;
    CursorKind cursor_ = CursorKind::kArrow;
    Counted<CDragContainer> drag_;
    std::uint64_t shownPixels_ = 0;
    std::unique_ptr<Popups> popups_;
};

} // namespace Sorel

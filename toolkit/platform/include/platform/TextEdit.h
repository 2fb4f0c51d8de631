// The platform's one-line text box.
#pragma once

#include "draw/Geometry.h"
#include "platform/Input.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace Sorel {

/// Hears of the end of editing and of keys.
class ITextEditCallback {
  public:
    /// Editing is over: `commit` says whether to take the text or to restore the old one. The
    /// callee deletes the text box, if it likes at once.
    virtual void platformLooseFocus(bool commit) = 0;
    /// A tab or another key that the box does not use; true when taken.
    virtual bool platformKey(const KeyEvent& key) = 0;
    /// The text, the selection or the caret's blinking changed: paint again.
    virtual void platformTextChanged() = 0;

  protected:
    ~ITextEditCallback() = default;
};

/// An editable line. Return commits, Escape restores, loss of focus commits, and each once.
/// Threads: GUI thread.
class IOSTextEdit {
  public:
    /// UTF-8 bytes, cut between characters.
    static constexpr std::size_t kMaxBytes = 255;

    virtual ~IOSTextEdit() = default;
    virtual std::string getText() const = 0;
    /// Cut to kMaxBytes; control characters become spaces. The caret goes to the end.
    virtual void setText(std::string_view utf8) = 0;
    /// Byte offsets; -1 as end means the end of the text. Moved to character boundaries.
    virtual void setSelection(int start, int end) = 0;
    /// Takes the keyboard.
    virtual void setFocus() = 0;
    /// The box's place in the frame changed.
    virtual void updateSize(const CRect& inFrame) = 0;

    /// What the control must draw itself; null where the platform shows a box of its own.
    struct InFrame {
        std::string text;
        std::size_t caret = 0;
        std::size_t selectionStart = 0;
        std::size_t selectionEnd = 0;
        bool caretShown = true;
    };
    virtual const InFrame* inFrame() const = 0;
    /// Keys of the frame while the box has the focus; true when used.
    virtual bool onKeyDown(const KeyEvent& key) = 0;
    /// The control tells which byte offset the mouse is on: a press sets the caret (`extend` keeps
    /// the anchor), a double click selects the word.
    virtual void onMouse(std::size_t byteOffset, bool extend, bool doubleClick) = 0;
    /// Milliseconds; blinks the caret.
    virtual void onIdle(std::uint64_t now) = 0;
};

} // namespace Sorel

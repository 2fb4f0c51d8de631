// A text box that its control draws: the line's model, the keys, the clipboard, the caret's
// blinking.
#pragma once

#include "common/TextEditModel.h"
#include "platform/Frame.h"

#include <memory>

namespace Sorel {

class CInFrameTextEdit;

/// Between a window and the boxes in it; either may go first.
struct TextEditLink {
    /// Null when the window is gone.
    IFrame* frame = nullptr;
    /// The box that has the keyboard.
    CInFrameTextEdit* active = nullptr;

    /// The window lost the keyboard: editing ends.
    void focusLost();
};

class CInFrameTextEdit : public IOSTextEdit {
  public:
    static constexpr std::uint64_t kBlinkMilliseconds = 500;

    CInFrameTextEdit(ITextEditCallback& callback, std::shared_ptr<TextEditLink> link);
    ~CInFrameTextEdit() override;

    std::string getText() const override { return model_.text(); }
    void setText(std::string_view utf8) override;
    void setSelection(int start, int end) override;
    void setFocus() override;
    /// The control draws the box where it stands itself.
    void updateSize(const CRect&) override {}
    const InFrame* inFrame() const override { return &shown_; }
    bool onKeyDown(const KeyEvent& key) override;
    void onMouse(std::size_t byteOffset, bool extend, bool doubleClick) override;
    void onIdle(std::uint64_t now) override;

    /// Ends editing once; the callee may delete this object.
    void finish(bool commit);

  private:
    bool editingKey(const KeyEvent& key);
    bool shortcut(const KeyEvent& key);
    void copy();
    void paste();
    void changed();
    void giveKeyboardBack();

    ITextEditCallback& callback_;
    std::shared_ptr<TextEditLink> link_;
    TextEditModel model_{kMaxBytes};
    InFrame shown_;
    bool finished_ = false;
    std::uint64_t now_ = 0;
    std::uint64_t blinkStart_ = 0;
    /// Answers of the clipboard that come after the box has gone see this expired.
    std::shared_ptr<int> alive_ = std::make_shared<int>(0);
};

} // namespace Sorel

// A text box that its control draws.
#include "common/InFrameTextEdit.h"

#include "core/Utf8.h"

namespace Sorel {

namespace Utf8 = Core::Utf8;

using Motion = TextEditModel::Motion;

void TextEditLink::focusLost() {
    if (active != nullptr) active->finish(true);
}

CInFrameTextEdit::CInFrameTextEdit(ITextEditCallback& callback, std::shared_ptr<TextEditLink> link)
    : callback_(callback)
    , link_(std::move(link)) {}

CInFrameTextEdit::~CInFrameTextEdit() { giveKeyboardBack(); }

void CInFrameTextEdit::giveKeyboardBack() {
    if (link_->active != this) return;
    link_->active = nullptr;
    if (link_->frame != nullptr) link_->frame->setKeyboardFocus(false);
}

void CInFrameTextEdit::changed() {
    shown_ = {model_.text(), model_.caret(), model_.selectionStart(), model_.selectionEnd(), true};
    blinkStart_ = now_;
    callback_.platformTextChanged();
}

void CInFrameTextEdit::setText(std::string_view utf8) {
    model_.setText(utf8);
    changed();
}

void CInFrameTextEdit::setSelection(int start, int end) {
    const std::size_t all = model_.text().size();
    const auto offset = [all](int value) {
        return value < 0 ? all : static_cast<std::size_t>(value);
    };
    model_.select(start < 0 ? 0 : offset(start), offset(end));
    changed();
}

void CInFrameTextEdit::setFocus() {
    if (finished_ || link_->frame == nullptr || link_->active == this) return;
    if (link_->active != nullptr) link_->active->finish(true);
    link_->active = this;
    link_->frame->setKeyboardFocus(true);
}

void CInFrameTextEdit::finish(bool commit) {
    if (finished_) return;
    finished_ = true;
    giveKeyboardBack();
    callback_.platformLooseFocus(commit); // may delete this
}

bool CInFrameTextEdit::onKeyDown(const KeyEvent& key) {
    if (finished_) return false;
    if (key.virtualKey == Key::kReturn || key.virtualKey == Key::kEscape) {
        finish(key.virtualKey == Key::kReturn);
        return true;
    }
    if (editingKey(key)) return true;
    return callback_.platformKey(key); // may delete this
}

bool CInFrameTextEdit::editingKey(const KeyEvent& key) {
    const bool shift = (key.modifiers & Modifier::kShift) != 0;
    const bool control = (key.modifiers & (Modifier::kControl | Modifier::kCommand)) != 0;
    const bool alt = (key.modifiers & Modifier::kAlt) != 0;

    switch (key.virtualKey) {
    case Key::kLeft:
        model_.move(control ? Motion::kWordLeft : Motion::kCharacterLeft, shift);
        break;
    case Key::kRight:
        model_.move(control ? Motion::kWordRight : Motion::kCharacterRight, shift);
        break;
    case Key::kHome:
        model_.move(Motion::kStart, shift);
        break;
    case Key::kEnd:
        model_.move(Motion::kEnd, shift);
        break;
    case Key::kBack:
        model_.erase(control ? Motion::kWordLeft : Motion::kCharacterLeft);
        break;
    case Key::kDelete:
        if (shift) copy();
        if (!shift || model_.hasSelection())
            model_.erase(control ? Motion::kWordRight : Motion::kCharacterRight);
        break;
    case Key::kInsert:
        if (control) copy();
        if (shift) paste();
        return control || shift;
    default:
        // Control and alt together are how some keyboards write their third level.
        if (control != alt) return control && shortcut(key);
        if (key.character < 0x20 || key.character == 0x7F) return false;
        std::string typed;
        Utf8::append(typed, static_cast<char32_t>(key.character));
        model_.insert(typed);
    }
    changed();
    return true;
}

bool CInFrameTextEdit::shortcut(const KeyEvent& key) {
    switch (key.character) {
    case 'a':
    case 'A':
        model_.selectAll();
        break;
    case 'c':
    case 'C':
        copy();
        return true;
    case 'x':
    case 'X':
        copy();
        if (!model_.hasSelection()) return true;
        model_.erase(Motion::kCharacterLeft);
        break;
    case 'v':
    case 'V':
        paste();
        return true;
    case 'z':
    case 'Z':
    case 'y':
    case 'Y':
        if (!model_.undo()) return true;
        break;
    default:
        return false;
    }
    changed();
    return true;
}

void CInFrameTextEdit::copy() {
    if (model_.hasSelection() && link_->frame != nullptr)
        link_->frame->setClipboardText(model_.selectedText());
}

void CInFrameTextEdit::paste() {
    if (link_->frame == nullptr) return;
    link_->frame->requestClipboardText(
        [this, alive = std::weak_ptr<int>(alive_)](std::string text) {
            if (alive.expired() || finished_) return;
            while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
                text.pop_back();
            model_.insert(text);
            changed();
        });
}

void CInFrameTextEdit::onMouse(std::size_t byteOffset, bool extend, bool doubleClick) {
    if (doubleClick)
        model_.selectWordAt(byteOffset);
    else if (extend)
        model_.extendTo(byteOffset);
    else
        model_.select(byteOffset, byteOffset);
    changed();
}

void CInFrameTextEdit::onIdle(std::uint64_t now) {
    if (now_ == 0) blinkStart_ = now;
    now_ = now;
    const bool shown = (now - blinkStart_) / kBlinkMilliseconds % 2 == 0;
    if (shown == shown_.caretShown) return;
    shown_.caretShown = shown;
    callback_.platformTextChanged();
}

} // namespace Sorel

#include "controls/TextEdit.h"

#include "controls/Surfaces.h"
#include "core/Utf8.h"
#include "tree/Frame.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace Sorel {

namespace {
/// The longest start of `text` within `bytes` that ends between characters.
std::string startOf(std::string_view text, std::size_t bytes) {
    return std::string(text.substr(0, Core::Utf8::boundaryAtOrBefore(text, bytes)));
}
} // namespace

CTextEdit::CTextEdit(const CRect& size,
                     CControlListener* listener,
                     std::int32_t tag,
                     const char* text)
    : CParamDisplay(size, listener, tag) {
    storeText(text != nullptr ? text : "");
}

CTextEdit::~CTextEdit() = default;

void CTextEdit::storeText(const std::string& text) {
    text_.assign(startOf(text, kTextBytes - 1).c_str());
}

void CTextEdit::setText(const char* text) {
    storeText(text != nullptr ? text : "");
    if (platformEdit_) platformEdit_->setText(getText());
    setDirty(true);
}

void CTextEdit::draw(CDrawContext& context) {
    drawBack(context);
    drawText(context, getText());
    setDirty(false);
}

bool CTextEdit::isTypeOf(const char* name) const {
    return std::strcmp(name, "CTextEdit") == 0 || CParamDisplay::isTypeOf(name);
}

Sorel_TextEdit::Sorel_TextEdit(const CInfo& info, CControlListener* listener, std::int32_t tag)
    : CTextEdit(info.size, listener, tag, info.text)
    , info_(info) {
    setFont(info.font, info.fontSize, info.fontStyle);
    setFontColor(info.fontColor);
    setHorizontalAlign(info.align);
    setStyle(kNoFrame | kNoBackground);
    setWantsFocus(true);
}

Sorel_TextEdit::~Sorel_TextEdit() = default;

void Sorel_TextEdit::setText(const char* text) {
    const std::string whole = text != nullptr ? text : "";
    CTextEdit::setText(startOf(whole, static_cast<std::size_t>(info_.maxLength)).c_str());
}

CRect Sorel_TextEdit::textRect() const { return getViewSize().inset(info_.margin, 0.0); }

void Sorel_TextEdit::takeFocus() {
    if (platformEdit_ || getFrame() == nullptr || getFrame()->platformFrame() == nullptr) return;
    CRect inFrame = getViewSize();
    if (getParentView() != nullptr) inFrame = getParentView()->insideToFrame(inFrame);
    committed_ = false;
    scroll_ = 0.0;
    platformEdit_ = getFrame()->platformFrame()->createTextEdit(*this, inFrame);
    if (!platformEdit_) return;
    platformEdit_->setText(getText());
    platformEdit_->setSelection(0, -1);
    platformEdit_->setFocus();
    setDirty(true);
}

void Sorel_TextEdit::looseFocus() { finishEditing(!info_.cancelOnLoseFocus); }

void Sorel_TextEdit::finishEditing(bool commit) {
    if (platformEdit_) platformLooseFocus(commit);
}

void Sorel_TextEdit::platformLooseFocus(bool commit) {
    if (!platformEdit_ || ending_) return;
    const Counted<CView> self(this);
    ending_ = true;
    const std::unique_ptr<IOSTextEdit> edit = std::move(platformEdit_);
    committed_ = commit;
    if (commit) Sorel_TextEdit::setText(edit->getText().c_str());
    if (getFrame() != nullptr) {
        if (getFrame()->getFocusView() == this) getFrame()->setFocusView(nullptr);
        if (IFrame* window = getFrame()->platformFrame()) window->setKeyboardFocus(false);
    }
    setDirty(true);
    ending_ = false;
    reportValue();
}

bool Sorel_TextEdit::platformKey(const KeyEvent& key) {
    if (key.virtualKey != Key::kTab || getFrame() == nullptr) return false;
    return getFrame()->advanceNextFocusView(this, (key.modifiers & Modifier::kShift) != 0);
}

void Sorel_TextEdit::platformTextChanged() { setDirty(true); }

int Sorel_TextEdit::removed(CViewContainer* parent) {
    // The window goes: what was typed so far is given up without a report.
    platformEdit_.reset();
    return CTextEdit::removed(parent);
}

void Sorel_TextEdit::setViewSize(const CRect& rect, bool invalidate) {
    CTextEdit::setViewSize(rect, invalidate);
    if (platformEdit_)
        platformEdit_->updateSize(getParentView() != nullptr ? getParentView()->insideToFrame(rect)
                                                             : rect);
}

void Sorel_TextEdit::onIdle() {
    if (platformEdit_ && getFrame() != nullptr) platformEdit_->onIdle(getFrame()->getTicks());
}

int Sorel_TextEdit::onKeyDown(const KeyEvent& key) {
    if (!platformEdit_) return kKeyNotHandled;
    const Counted<CView> self(this);
    return platformEdit_->onKeyDown(key) ? 1 : kKeyNotHandled;
}

int Sorel_TextEdit::onMouseDown(CPoint where, std::int32_t* buttons) {
    if (!getActive() || (*buttons & (Buttons::kLeft | Buttons::kMiddle)) == 0)
        return kMouseNotHandled;
    if (!platformEdit_) {
        if (!opensOnPress_ || getFrame() == nullptr) return kMouseNotHandled;
        getFrame()->setFocusView(this);
        return kMouseHandledDone;
    }
    platformEdit_->onMouse(byteOffsetAt(where.x), (*buttons & Buttons::kShift) != 0,
                           (*buttons & Buttons::kDoubleClick) != 0);
    selecting_ = (*buttons & Buttons::kDoubleClick) == 0;
    return kMouseHandled;
}

int Sorel_TextEdit::onMouseMoved(CPoint where, std::int32_t* buttons) {
    if (!selecting_ || !platformEdit_ || (*buttons & Buttons::kLeft) == 0)
        return hitTest(where) ? kMouseHandled : kMouseNotHandled;
    platformEdit_->onMouse(byteOffsetAt(where.x), true, false);
    return kMouseHandled;
}

int Sorel_TextEdit::onMouseUp(CPoint /*where*/, std::int32_t* /*buttons*/) {
    selecting_ = false;
    return kMouseHandled;
}

int Sorel_TextEdit::onMouseEntered(CPoint /*where*/, std::int32_t* /*buttons*/) {
    if (getFrame() != nullptr && getActive() && (opensOnPress_ || isEditing()))
        getFrame()->setCursor(CursorKind::kText);
    return kMouseHandled;
}

int Sorel_TextEdit::onMouseExited(CPoint /*where*/, std::int32_t* /*buttons*/) {
    if (getFrame() != nullptr) getFrame()->setCursor(CursorKind::kArrow);
    return kMouseHandled;
}

bool Sorel_TextEdit::isTypeOf(const char* name) const {
    return std::strcmp(name, "Sorel_TextEdit") == 0 || CTextEdit::isTypeOf(name);
}

} // namespace Sorel

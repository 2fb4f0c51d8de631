#include "presets/PresetBrowser.h"

#include "PresetMenu.h"
#include "controls/FileSelector.h"
#include "controls/Palette.h"
#include "draw/Bitmap.h"
#include "tree/Frame.h"

#include <algorithm>
#include <cstring>

namespace Sorel {

namespace {
constexpr double kArrowWidth = 18.0;
constexpr double kTextMargin = 8.0;
constexpr CColor kTypedText{250, 236, 200, 255};
} // namespace

Sorel_TextEdit::CInfo CPresetBrowser::CInfo::nameBox() {
    Sorel_TextEdit::CInfo box;
    box.fontColor = kTypedText;
    box.margin = kTextMargin;
    box.drawsField = false; // the browser's own stands below it
    box.text = "Default";
    return box;
}

CPresetBrowser::CPresetBrowser(const CInfo& info,
                               IPresetBrowserInterface& presets,
                               std::int32_t tag)
    : CControl(info.size, &presets, tag)
    , info_(info)
    , arrowDown_(info.arrowDown)
    , arrowLeft_(info.arrowLeft)
    , arrowRight_(info.arrowRight)
    , presets_(presets) {
    Sorel_TextEdit::CInfo box = info.name;
    box.size = nameRect();
    name_ = Counted<Sorel_TextEdit>::make(box, this, 0);
}

CPresetBrowser::~CPresetBrowser() { name_->setListener(nullptr); }

CView* CPresetBrowser::newCopy() const {
    CInfo info = info_;
    info.size = getViewSize();
    auto* copy = new CPresetBrowser(info, presets_, getTag());
    copy->setText(getText());
    return copy;
}

bool CPresetBrowser::isTypeOf(const char* name) const {
    return std::strcmp(name, "CPresetBrowser") == 0 || CControl::isTypeOf(name);
}

// ---- Places ------------------------------------------------------------------------------------

CRect CPresetBrowser::fieldRect() const {
    CRect rect = getViewSize();
    rect.right -= info_.arrowsWidth + info_.gap;
    return rect;
}

CRect CPresetBrowser::nameRect() const {
    CRect rect = fieldRect();
    rect.right -= kArrowWidth;
    return rect;
}

CRect CPresetBrowser::downArrowRect() const {
    CRect rect = fieldRect();
    rect.left = rect.right - kArrowWidth;
    return rect;
}

CRect CPresetBrowser::previousRect() const {
    CRect rect = getViewSize();
    rect.left = rect.right - info_.arrowsWidth;
    rect.right -= info_.arrowsWidth / 2.0;
    return rect;
}

CRect CPresetBrowser::nextRect() const {
    CRect rect = getViewSize();
    rect.left = rect.right - info_.arrowsWidth / 2.0;
    return rect;
}

void CPresetBrowser::setViewSize(const CRect& rect, bool invalidate) {
    CControl::setViewSize(rect, invalidate);
    name_->setViewSize(nameRect(), invalidate);
    name_->setMouseableArea(nameRect());
}

CPresetBrowser::Part CPresetBrowser::partAt(CPoint where) const {
    if (previousRect().contains(where)) return Part::kPrevious;
    if (nextRect().contains(where)) return Part::kNext;
    return getViewSize().contains(where) ? Part::kField : Part::kNone;
}

// ---- Life in a window --------------------------------------------------------------------------

int CPresetBrowser::attached(CViewContainer* parent) {
    const int answer = CControl::attached(parent);
    if (answer != 0) presets_.setBrowser(this);
    return answer;
}

int CPresetBrowser::removed(CViewContainer* parent) {
    if (presets_.browser() == this) presets_.setBrowser(nullptr);
    // What is open goes without an answer.
    fileSelector_.reset();
    menu_ = nullptr;
    if (name_->isAttached() && parent != nullptr && parent->isChild(name_.get())) {
        parent->removeView(name_.get(), true);
        name_->setText(nameBeforeTyping_.c_str());
    }
    pressed_ = hovered_ = Part::kNone;
    return CControl::removed(parent);
}

void CPresetBrowser::setText(const char* text) {
    if (isTyping()) name_->finishEditing(false);
    name_->setText(text);
    setDirty(true);
}

void CPresetBrowser::onIdle() {
    if (isMenuOpen() == menuShown_) return;
    menuShown_ = isMenuOpen(); // nobody is told of a menu that was dismissed
    setDirty(true);
}

// ---- Mouse -------------------------------------------------------------------------------------

int CPresetBrowser::onMouseDown(CPoint where, std::int32_t* buttons) {
    if (!getActive() || (*buttons & (Buttons::kLeft | Buttons::kRight)) == 0)
        return kMouseNotHandled;
    const Part part = partAt(where);
    if (part == Part::kField) {
        openMenu();
        return kMouseHandledDone;
    }
    if (part == Part::kNone || (*buttons & Buttons::kLeft) == 0) return kMouseNotHandled;
    pressed_ = part;
    setDirty(true);
    step(part == Part::kNext ? 1 : -1);
    return kMouseHandled;
}

int CPresetBrowser::onMouseUp(CPoint /*where*/, std::int32_t* /*buttons*/) {
    pressed_ = Part::kNone;
    setDirty(true);
    return kMouseHandled;
}

int CPresetBrowser::onMouseMoved(CPoint where, std::int32_t* /*buttons*/) {
    setHovered(partAt(where));
    return hovered_ == Part::kNone ? kMouseNotHandled : kMouseHandled;
}

int CPresetBrowser::onMouseExited(CPoint /*where*/, std::int32_t* /*buttons*/) {
    setHovered(Part::kNone);
    return kMouseHandled;
}

void CPresetBrowser::setHovered(Part part) {
    if (part != hovered_) setDirty(true);
    hovered_ = part;
}

// ---- Stepping, menu ----------------------------------------------------------------------------

/// The current preset, or one that an arrow reached and could not read: the next step goes past it.
int CPresetBrowser::stepsFrom() const {
    for (int i = 0; i < presets_.GetPresetCount(); ++i)
        if (presets_.GetPresetEntry(i)->path == unreadable_) return i;
    return presets_.GetCurrentPresetIndex();
}

void CPresetBrowser::step(int direction) {
    presets_.RescanPresets();
    const std::vector<int> order = presetsInMenuOrder(presets_);
    if (order.empty()) return;
    const int count = static_cast<int>(order.size());
    const auto from = std::find(order.begin(), order.end(), stepsFrom());
    int place = static_cast<int>(from - order.begin());
    if (place == count)
        place = direction > 0 ? count - 1 : 0; // none: begin at the end one comes to
    const int reached = order[static_cast<std::size_t>((place + direction + count) % count)];
    const std::string path = presets_.GetPresetEntry(reached)->path;
    unreadable_ = select(reached) ? "" : path;
}

void CPresetBrowser::openMenu() {
    if (isMenuOpen() || getFrame() == nullptr) return;
    presets_.RescanPresets();
    menu_ = Counted<COptionMenu>::make(fieldRect(), this, 0);
    menu_->setFrame(getFrame());
    fillPresetMenu(*menu_, presets_);
    CRect anchor = fieldRect();
    if (getParentView() != nullptr) anchor = getParentView()->insideToFrame(anchor);
    menu_->popup(anchor);
    menuShown_ = isMenuOpen();
    hovered_ = Part::kNone; // the menu has the mouse now
    setDirty(true);
}

void CPresetBrowser::valueChanged(CControl* control) {
    const Counted<CPresetBrowser> self(this);
    if (control == name_.get()) {
        finishTyping();
    } else if (menu_ && control == menu_.get()) {
        const COptionMenu* menu = menu_->getLastMenu();
        const CMenuItem* item = menu != nullptr ? menu->getEntry(menu_->getLastResult()) : nullptr;
        if (item != nullptr) chosen(item->getTag());
    }
}

} // namespace Sorel

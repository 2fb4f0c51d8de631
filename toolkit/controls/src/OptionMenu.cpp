#include "controls/OptionMenu.h"

#include "controls/Palette.h"
#include "controls/Surfaces.h"
#include "tree/Frame.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Sorel {

namespace {
constexpr double kFieldRadius = 3.0;
constexpr double kFieldSize = 9.0;
constexpr double kTextMargin = 8.0;
} // namespace

CMenuItem::~CMenuItem() {
    if (submenu_ != nullptr) submenu_->release();
}

void CMenuItem::setSubmenu(COptionMenu* menu) {
    if (menu != nullptr) menu->retain();
    if (submenu_ != nullptr) submenu_->release();
    submenu_ = menu;
}

COptionMenu::COptionMenu(const CRect& size, CControlListener* listener, std::int32_t tag)
    : CParamDisplay(size, listener, tag) {
    setFont(kDefaultFont, kFieldSize, kRegularFont);
    setFontColor(Palette::kLabel);
}

COptionMenu::~COptionMenu() { cancel(); }

CMenuItem* COptionMenu::addEntry(const char* title) {
    items_.push_back(Counted<CMenuItem>::make(title));
    return items_.back().get();
}

CMenuItem* COptionMenu::addSubmenu(const char* title, COptionMenu* menu) {
    CMenuItem* item = addEntry(title);
    item->setSubmenu(menu);
    return item;
}

CMenuItem* COptionMenu::addSeparator() {
    items_.push_back(Counted<CMenuItem>::make("", CMenuItem::kSeparator));
    return items_.back().get();
}

CMenuItem* COptionMenu::getEntry(int index) const {
    return index >= 0 && index < getNbEntries() ? items_[static_cast<std::size_t>(index)].get()
                                                : nullptr;
}

bool COptionMenu::removeEntry(int index) {
    if (getEntry(index) == nullptr) return false;
    items_.erase(items_.begin() + index);
    if (currentIndex_ == index) currentIndex_ = -1;
    if (currentIndex_ > index) --currentIndex_;
    setDirty(true);
    return true;
}

void COptionMenu::removeAllEntries() {
    items_.clear();
    currentIndex_ = -1;
    lastMenu_ = nullptr; // it may have been one of their sub-menus
    lastResult_ = -1;
    setDirty(true);
}

void COptionMenu::setCurrent(int index) {
    currentIndex_ = getEntry(index) != nullptr ? index : -1;
    setDirty(true);
}

void COptionMenu::setFieldText(const char* text) {
    fieldText_ = text != nullptr ? text : "";
    setDirty(true);
}

std::vector<MenuItem> COptionMenu::describe(std::vector<Target>& targets) const {
    std::vector<MenuItem> described;
    described.reserve(items_.size());
    for (int i = 0; i < getNbEntries(); ++i) {
        const CMenuItem& item = *items_[static_cast<std::size_t>(i)];
        MenuItem line;
        line.title = item.getTitle();
        line.id = static_cast<int>(targets.size());
        line.disabled = (item.getFlags() & CMenuItem::kDisabled) != 0;
        line.isTitle = (item.getFlags() & CMenuItem::kTitle) != 0;
        line.checked = item.isChecked() || (checksCurrent_ && i == currentIndex_);
        line.separator = item.isSeparator();
        targets.push_back({const_cast<COptionMenu*>(this), i});
        if (item.getSubmenu() != nullptr) line.submenu = item.getSubmenu()->describe(targets);
        described.push_back(std::move(line));
    }
    return described;
}

bool COptionMenu::popup() {
    CRect anchor = getViewSize();
    if (getParentView() != nullptr) anchor = getParentView()->insideToFrame(anchor);
    if ((getStyle() & kPopupAtPointer) != 0 && getFrame() != nullptr) {
        CPoint mouse;
        getFrame()->getCurrentMouseLocation(&mouse);
        anchor.top = anchor.bottom = mouse.y;
    }
    return popup(anchor);
}

bool COptionMenu::popup(const CRect& anchorInFrame) {
    if (getFrame() == nullptr || getFrame()->platformFrame() == nullptr || items_.empty())
        return false;
    if (!platformMenu_) platformMenu_ = getFrame()->platformFrame()->createOptionMenu();
    if (!platformMenu_ || platformMenu_->isOpen()) return false;
    std::vector<Target> targets;
    MenuRequest request;
    request.items = describe(targets);
    request.anchor = anchorInFrame;
    request.minWidth = anchorInFrame.width();
    lastResult_ = -1;
    lastMenu_ = nullptr;
    const bool shown = platformMenu_->popup(request, [this, targets](int id) {
        const Counted<COptionMenu> self(this);
        choose(targets, id);
    });
    setDirty(true);
    return shown;
}

bool COptionMenu::isOpen() const { return platformMenu_ && platformMenu_->isOpen(); }

void COptionMenu::cancel() {
    if (platformMenu_) platformMenu_->cancel();
}

void COptionMenu::choose(const std::vector<Target>& targets, int id) {
    setDirty(true);
    if (id < 0 || id >= static_cast<int>(targets.size())) return;
    const Target& target = targets[static_cast<std::size_t>(id)];
    lastMenu_ = target.menu;
    lastResult_ = target.index;
    target.menu->currentIndex_ = target.index;
    if (target.menu == this) currentToParameter();
    reportValue();
}

void COptionMenu::currentFromParameter() {
    if (getParameter() == nullptr) return;
    currentIndex_ =
        getParameter()->getIntValue() - static_cast<int>(std::lround(getParameter()->getMin()));
    if (getEntry(currentIndex_) == nullptr) currentIndex_ = -1;
}

void COptionMenu::currentToParameter() {
    if (getParameter() == nullptr) return;
    const double plain = double{getParameter()->getMin()} + currentIndex_;
    setValue(double{getParameter()->plainToNormalized(plain)});
    beginEdit();
    notifyParameter();
    endEdit();
}

void COptionMenu::setParameter(Vardo::IPluginParameter* parameter) {
    CParamDisplay::setParameter(parameter);
    currentFromParameter();
}

void COptionMenu::onParameterChanged(int parameterIndex) {
    CParamDisplay::onParameterChanged(parameterIndex);
    currentFromParameter();
}

std::string COptionMenu::fieldText() const {
    if (!fieldText_.empty()) return fieldText_;
    const CMenuItem* current = getEntry(currentIndex_);
    return current != nullptr ? current->getTitle() : std::string();
}

void COptionMenu::draw(CDrawContext& context) {
    drawField(context, getViewSize(), kFieldRadius);
    if (isOpen())
        drawFieldFocus(context, getViewSize(), Palette::kGold.withAlpha(170), kFieldRadius);
    const CColor color = getFontColor();
    applyFont(context);
    context.setFontColor(isOpen() ? Palette::kValue : getActive() ? color : color.faded(0.5));
    const double margin = getHorizontalAlign() == HorizontalAlign::kCentre ? 2.0 : kTextMargin;
    context.drawString(fieldText(), getViewSize().inset(margin, 0.0), true, getHorizontalAlign());
    setDirty(false);
}

int COptionMenu::onMouseDown(CPoint /*where*/, std::int32_t* buttons) {
    if ((*buttons & (Buttons::kLeft | Buttons::kRight)) == 0) return kMouseNotHandled;
    popup();
    return kMouseHandledDone;
}

bool COptionMenu::onWheel(CPoint /*where*/, float distance, std::int32_t* /*buttons*/) {
    const int step = distance > 0.0F ? -1 : 1;
    int index = currentIndex_ + step;
    const auto chooses = [this](int i) {
        const CMenuItem* item = getEntry(i);
        return item != nullptr && item->getSubmenu() == nullptr &&
               (item->getFlags() &
                (CMenuItem::kDisabled | CMenuItem::kTitle | CMenuItem::kSeparator)) == 0;
    };
    while (getEntry(index) != nullptr && !chooses(index))
        index += step;
    if (getEntry(index) == nullptr) return true;
    currentIndex_ = index;
    lastMenu_ = this;
    lastResult_ = index;
    currentToParameter();
    reportValue();
    setDirty(true);
    return true;
}

int COptionMenu::removed(CViewContainer* parent) {
    platformMenu_.reset();
    return CParamDisplay::removed(parent);
}

bool COptionMenu::isTypeOf(const char* name) const {
    return std::strcmp(name, "COptionMenu") == 0 || CParamDisplay::isTypeOf(name);
}

} // namespace Sorel

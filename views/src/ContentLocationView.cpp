#include "TextThatFits.h"
#include "controls/Surfaces.h"
#include "core/Paths.h"
#include "presets/PresetMessages.h"
#include "tree/Frame.h"
#include "views/SystemPage.h"

namespace Sorel {

namespace {
// From the row's top left corner: the title's, the field's and the buttons' places.
constexpr double kTitleBaseline = 16.0;
constexpr double kTitleSize = 12.0;
constexpr double kPathSize = 11.0;
constexpr double kPathMargin = 10.0;
constexpr CRect kPath{200.0, 0.0, 520.0, 25.0};
constexpr CRect kSelect{532.0, 0.0, 622.0, 25.0};
constexpr CRect kOpen{630.0, 0.0, 720.0, 25.0};
} // namespace

CContentLocationView::CContentLocationView(const CRect& size)
    : CView(size)
    , pathRect_(kPath.moved(size.topLeft()))
    , selectRect_(kSelect.moved(size.topLeft()))
    , openRect_(kOpen.moved(size.topLeft())) {
    refresh();
}

CContentLocationView::~CContentLocationView() = default;

void CContentLocationView::refresh() {
    path_ = Core::getContentLocation();
    setDirty(true);
}

void CContentLocationView::draw(CDrawContext& context) {
    const DisplayColors& colors = displayColors();
    const CRect& r = getViewSize();
    context.setFont(kDefaultFont, kTitleSize, kRegularFont);
    context.setFontColor(colors.bright);
    context.drawStringAt("Preset Path", {r.left, r.top + kTitleBaseline});

    drawField(context, pathRect_);
    context.setFont(kDefaultFont, kPathSize, kRegularFont);
    context.setFontColor(colors.bright);
    const CRect text = pathRect_.inset(kPathMargin, 0.0);
    context.drawString(endThatFits(context, path_, text.width()), text, true,
                       HorizontalAlign::kLeft);
    const auto lit = [this](Button button) { return pressed_ == button ? 255 : 0; };
    drawCommandButton(context, selectRect_, "Select...", lit(Button::kSelect));
    drawCommandButton(context, openRect_, "Open...", lit(Button::kOpen));
    setDirty(false);
}

CContentLocationView::Button CContentLocationView::buttonAt(CPoint where) const {
    if (selectRect_.contains(where)) return Button::kSelect;
    return openRect_.contains(where) ? Button::kOpen : Button::kNone;
}

int CContentLocationView::onMouseDown(CPoint where, std::int32_t* buttons) {
    if ((*buttons & Buttons::kLeft) == 0) return kMouseNotHandled;
    pressed_ = buttonAt(where);
    setDirty(true);
    return pressed_ == Button::kNone ? kMouseNotHandled : kMouseHandled;
}

int CContentLocationView::onMouseUp(CPoint where, std::int32_t* /*buttons*/) {
    const Button pressed = pressed_;
    pressed_ = Button::kNone;
    setDirty(true);
    if (pressed != buttonAt(where)) return kMouseHandled;
    if (pressed == Button::kSelect) selectFolder();
    if (pressed == Button::kOpen) openFolder();
    return kMouseHandled;
}

// Another instance may have chosen another folder.
void CContentLocationView::onIdle() {
    const bool visible = isVisible();
    if (visible && !wasVisible_) refresh();
    wasVisible_ = visible;
}

void CContentLocationView::complain(const std::string& text) {
    PresetMessages::tell(this, text, "Preset Path");
}

void CContentLocationView::openFolder() {
    refresh();
    if (Core::makeContentLocation())
        Core::openWithShell(path_.c_str());
    else
        complain("This folder is missing and cannot be made.\n" + path_);
}

void CContentLocationView::selectFolder() {
    if (getFrame() == nullptr || (selector_ && selector_->isOpen())) return;
    FileDialogRequest request;
    request.style = FileDialogRequest::Style::kFolder;
    request.initialPath = path_;
    selector_ = std::make_unique<CFileSelector>(*getFrame(), request);
    selector_->run([this](const FileDialogAnswer& answer) {
        const Counted<CView> self(this);
        if (!answer.problem.empty()) complain(answer.problem);
        if (answer.paths.empty()) return;
        if (!Core::setContentLocation(answer.paths.front().c_str()))
            return complain("The preset path could not be stored.");
        refresh();
        if (folderChanged_) folderChanged_();
    });
}

int CContentLocationView::removed(CViewContainer* parent) {
    selector_.reset();
    return CView::removed(parent);
}

} // namespace Sorel

#include "views/SystemPage.h"

#include "TextThatFits.h"
#include "analysis/OrvelScope.h"
#include "controls/Surfaces.h"
#include "tree/Frame.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

namespace {
// From the page's top left corner.
constexpr double kLeft = 130.0;
constexpr double kRight = 850.0;
constexpr double kControls = 330.0;
constexpr double kFirstRule = 74.5;
constexpr double kRowHeight = 76.0;
constexpr int kNumRows = 3;
constexpr int kRuleAlpha = 36;
constexpr CRect kThreadBox{330.0, 98.0, 346.0, 114.0};
constexpr CRect kUpdate{662.0, 246.0, 752.0, 271.0};
constexpr CRect kSupport{760.0, 246.0, 850.0, 271.0};
constexpr double kStatusWidth = 320.0; // up to the buttons
constexpr double kTitleSize = 12.0;
constexpr double kNoteSize = 10.0;
constexpr double kBoxNotesLeft = 358.0;
constexpr int kSecondLineAlpha = 140;
constexpr CColor kGround{48, 47, 56, 255};
constexpr CColor kLip{255, 255, 255, 16};
constexpr double kFadeFull = 255.0;
constexpr double kFadeMs = 400.0;
} // namespace

CSystemPage::CSystemPage(const CRect& size, Orvel::COrvelScope* analyser, std::string versionText)
    : IDisplayControl(size, analyser)
    , versionText_(std::move(versionText)) {}

CRect CSystemPage::threadBoxRect() const { return kThreadBox.moved(origin()); }
CRect CSystemPage::updateRect() const { return kUpdate.moved(origin()); }
CRect CSystemPage::supportRect() const { return kSupport.moved(origin()); }

void CSystemPage::setStatus(const std::string& text) {
    status_ = text;
    setDirty(true);
}

void CSystemPage::draw(CDrawContext& context) {
    drawWell(context);
    const CPoint at = origin();
    context.setLineWidth(1.0);
    context.setFrameColor(colors().frame.withAlpha(kRuleAlpha));
    for (int i = 0; i <= kNumRows; ++i) {
        const double y = at.y + kFirstRule + kRowHeight * i;
        context.drawLine(at.x + kLeft, y, at.x + kRight, y);
    }
    drawThreading(context);
    drawProduct(context);
    const auto lit = [](const Command& command) { return static_cast<int>(command.fade); };
    drawCommandButton(context, updateRect(), "Update", lit(update_),
                      static_cast<bool>(update_.action));
    drawCommandButton(context, supportRect(), "Support", lit(support_),
                      static_cast<bool>(support_.action));
    IDisplayControl::draw(context);
}

// One well over both of the other pages' wells; the same shading as theirs.
void CSystemPage::drawWell(CDrawContext& context) const {
    // The last row is the lit lip below; it hides the corners of the wells that are covered.
    CRect r = getViewSize();
    r.bottom -= 1.0;
    context.setFillColor(kGround);
    context.drawRect({r.left, r.bottom - 4.0, r.right, r.bottom + 1.0}, kFilled);
    context.setFillColor(kLip);
    context.drawRect({r.left + 4.0, r.bottom, r.right - 4.0, r.bottom + 1.0}, kFilled);
    context.fillRoundRect(r, 4.0,
                          CLinearGradient::vertical(r.top, r.bottom)
                              .stop(0.0, {21, 23, 39, 255})
                              .stop(0.1, {25, 27, 45, 255})
                              .stop(1.0, colors().panel));
    context.fillRect({r.left + 1.0, r.top + 1.0, r.right - 1.0, r.top + 6.0},
                     CLinearGradient::vertical(r.top + 1.0, r.top + 6.0)
                         .stop(0.0, {0, 0, 0, 70})
                         .stop(1.0, {0, 0, 0, 0}));
    context.setLineWidth(1.0);
    context.setFrameColor(colors().darkLine);
    context.drawRoundRect(r.inset(0.5, 0.5), 3.5F, kStroked);
}

void CSystemPage::drawThreading(CDrawContext& context) const {
    const CPoint at = origin();
    context.setFont(kDefaultFont, kTitleSize, kRegularFont);
    context.setFontColor(colors().bright);
    context.drawStringAt("Threaded processing", at + CPoint{kLeft, 110.0});

    // A stroke of two pixels that lies on the grid.
    const CRect box = threadBoxRect();
    context.setLineWidth(2.0);
    context.setFrameColor(colors().frame);
    context.drawRoundRect(box.inset(1.0, 1.0), 2.0F, kStroked);
    context.setLineWidth(1.0);
    if (shownThreaded_) {
        context.setFillColor(colors().main.withAlpha(255));
        context.drawRoundRect(box.inset(4.0, 4.0), 1.0F, kFilled);
    }
    context.setFont(kDefaultFont, kNoteSize, kRegularFont);
    context.setFontColor(colors().text1);
    context.drawStringAt("Measures on a thread of its own, so the host's audio thread stays free.",
                         at + CPoint{kBoxNotesLeft, 106.0});
    context.setFontColor(colors().text1.withAlpha(kSecondLineAlpha));
    context.drawStringAt("Remembered on this machine.", at + CPoint{kBoxNotesLeft, 120.0});
}

void CSystemPage::drawProduct(CDrawContext& context) const {
    const CPoint at = origin();
    context.setFont(kDefaultFont, kTitleSize, kRegularFont);
    context.setFontColor(colors().bright);
    context.drawStringAt("Orvel Scope", at + CPoint{kLeft, 262.0});
    context.setFont(kDefaultFont, kNoteSize, kRegularFont);
    context.setFontColor(colors().text1);
    context.drawStringAt(versionText_, at + CPoint{kControls, 258.0});
    // What happened is to be read; what always stands there may stand back.
    if (status_.empty()) context.setFontColor(colors().text1.withAlpha(kSecondLineAlpha));
    context.drawStringAt(endThatFits(context, statusLine(), kStatusWidth),
                         at + CPoint{kControls, 272.0});
}

std::string CSystemPage::statusLine() const {
    if (!status_.empty()) return status_;
    return noUpdatesReason_.empty() ? "Quillmere" : noUpdatesReason_;
}

bool CSystemPage::press(Command& command) {
    if (!command.action) return false;
    command.pressed = true;
    command.fade = kFadeFull;
    lastFade_ = getFrame() != nullptr ? getFrame()->getTicks() : 0;
    setDirty(true);
    return true;
}

int CSystemPage::onMouseDown(CPoint where, std::int32_t* buttons) {
    if ((*buttons & Buttons::kLeft) != 0) {
        if (threadBoxRect().contains(where) && analyser() != nullptr) {
            analyser()->switchThreading(!analyser()->isThreaded());
            setDirty(true);
            return kMouseHandled;
        }
        if (updateRect().contains(where)) {
            if (!press(update_)) setStatus(noUpdatesReason_);
            return kMouseHandled;
        }
        if (supportRect().contains(where) && press(support_)) return kMouseHandled;
    }
    return IDisplayControl::onMouseDown(where, buttons);
}

void CSystemPage::letGo(Command& command) {
    if (!command.pressed) return;
    command.pressed = false;
    command.action();
}

int CSystemPage::onMouseUp(CPoint where, std::int32_t* /*buttons*/) {
    if (!updateRect().contains(where)) update_.pressed = false;
    if (!supportRect().contains(where)) support_.pressed = false;
    letGo(update_);
    letGo(support_);
    return kMouseHandled;
}

void CSystemPage::onIdle() {
    if (analyser() != nullptr && analyser()->isThreaded() != shownThreaded_) {
        shownThreaded_ = analyser()->isThreaded();
        setDirty(true);
    }
    if (update_.fade <= 0.0 && support_.fade <= 0.0) return;
    const std::uint64_t now = getFrame() != nullptr ? getFrame()->getTicks() : lastFade_;
    const double step = kFadeFull * static_cast<double>(now - lastFade_) / kFadeMs;
    lastFade_ = now;
    update_.fade = std::max(0.0, update_.fade - step);
    support_.fade = std::max(0.0, support_.fade - step);
    setDirty(true);
}

} // namespace Sorel

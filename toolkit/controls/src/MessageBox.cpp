#include "controls/MessageBox.h"

#include "controls/Palette.h"
#include "controls/Surfaces.h"
#include "core/Utf8.h"
#include "tree/Frame.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Sorel {

namespace {
constexpr double kMargin = 20.0;
constexpr double kTitleHeight = 18.0;
constexpr double kLineHeight = 15.0;
constexpr double kButtonWidth = 90.0;
constexpr double kButtonHeight = 25.0;
constexpr double kButtonGap = 8.0;
constexpr double kMinWidth = 280.0;
constexpr double kMaxTextWidth = 420.0;
constexpr double kTitleSize = 12.0;
constexpr double kTextSize = 11.0;
constexpr int kHoverLight = 40;
constexpr CColor kDim{0, 0, 0, 110};
constexpr CColor kOutline{161, 163, 193, 70};

/// Breaks at spaces, and inside words that are longer than a line (paths).
std::vector<std::string> wrapped(CDrawContext& context, const std::string& text) {
    std::vector<std::string> lines(1);
    std::string word;
    const auto flush = [&] {
        std::string& line = lines.back();
        if (!line.empty() && context.getStringWidth(line + word) > kMaxTextWidth) {
            while (!line.empty() && line.back() == ' ')
                line.pop_back();
            lines.emplace_back();
        }
        for (std::size_t at = 0; at < word.size();) {
            const std::size_t next = Core::Utf8::next(word, at);
            const std::string character = word.substr(at, next - at);
            if (context.getStringWidth(lines.back() + character) > kMaxTextWidth)
                lines.emplace_back();
            lines.back() += character;
            at = next;
        }
        word.clear();
    };
    for (const char c : text) {
        if (c == '\n') {
            flush();
            lines.emplace_back();
            continue;
        }
        word += c;
        if (c == ' ') flush();
    }
    flush();
    return lines;
}
} // namespace

bool CMessageBox::show(CFrame& frame,
                       const std::string& title,
                       const std::string& text,
                       std::vector<std::string> buttons,
                       Answer answer) {
    if (buttons.empty()) buttons.emplace_back("OK");
    const CRect all =
        CRect::ofSize(0.0, 0.0, frame.getViewSize().width(), frame.getViewSize().height());
    auto* box = new CMessageBox(all, title, text, std::move(buttons), std::move(answer));
    box->layOut(frame, text);
    frame.setFocusView(nullptr);
    const bool shown = frame.setModalView(box);
    if (!shown) box->release();
    return shown;
}

CMessageBox::CMessageBox(const CRect& frame,
                         const std::string& title,
                         const std::string& /*text*/,
                         std::vector<std::string> buttons,
                         Answer answer)
    : CView(frame)
    , title_(title)
    , buttons_(std::move(buttons))
    , answer_(std::move(answer)) {}

void CMessageBox::layOut(CFrame& frame, const std::string& text) {
    CDrawContext context(&frame);
    context.setFont(kDefaultFont, kTitleSize, kBoldFont);
    double width = context.getStringWidth(title_);
    context.setFont(kDefaultFont, kTextSize, kRegularFont);
    lines_ = wrapped(context, text);
    for (const std::string& line : lines_)
        width = std::max(width, context.getStringWidth(line));
    const auto count = static_cast<double>(buttons_.size());
    width = std::max(width, count * kButtonWidth + (count - 1.0) * kButtonGap);
    width = std::ceil(std::max(width + 2.0 * kMargin, kMinWidth));
    const double height = kMargin + kTitleHeight + 8.0 +
                          kLineHeight * static_cast<double>(lines_.size()) + 16.0 + kButtonHeight +
                          kMargin;
    const CRect& all = getViewSize();
    panel_ = CRect::ofSize(std::floor((all.width() - width) / 2.0),
                           std::floor((all.height() - height) / 2.0), width, height);
}

CRect CMessageBox::buttonRect(int index) const {
    // From the right; the first button is the leftmost.
    const auto fromRight = static_cast<double>(static_cast<int>(buttons_.size()) - 1 - index);
    const double right = panel_.right - kMargin - fromRight * (kButtonWidth + kButtonGap);
    return {right - kButtonWidth, panel_.bottom - kMargin - kButtonHeight, right,
            panel_.bottom - kMargin};
}

int CMessageBox::buttonAt(CPoint where) const {
    for (int i = 0; i < static_cast<int>(buttons_.size()); ++i)
        if (buttonRect(i).contains(where)) return i;
    return -1;
}

void CMessageBox::draw(CDrawContext& context) {
    context.setDrawMode(0);
    context.setFillColor(kDim);
    context.drawRect(getViewSize(), kFilled);
    context.setFillColor(Palette::kPanel);
    context.drawRoundRect(panel_, 4.0F, kFilled);
    drawFieldFocus(context, panel_, kOutline, 4.0);

    double y = panel_.top + kMargin;
    const double left = panel_.left + kMargin;
    const double right = panel_.right - kMargin;
    context.setFont(kDefaultFont, kTitleSize, kBoldFont);
    context.setFontColor(Palette::kBright);
    context.drawString(title_, {left, y, right, y + kTitleHeight}, true, HorizontalAlign::kLeft);
    y += kTitleHeight + 8.0;
    context.setFont(kDefaultFont, kTextSize, kRegularFont);
    context.setFontColor(Palette::kLine.withAlpha(235));
    for (const std::string& line : lines_) {
        context.drawString(line, {left, y, right + 1.0, y + kLineHeight}, true,
                           HorizontalAlign::kLeft);
        y += kLineHeight;
    }
    for (int i = 0; i < static_cast<int>(buttons_.size()); ++i) {
        const int lit = pressed_ == i && hovered_ == i ? 255 : hovered_ == i ? kHoverLight : 0;
        drawCommandButton(context, buttonRect(i), buttons_[static_cast<std::size_t>(i)].c_str(),
                          lit);
        if (i == 0 && lit != 255)
            drawFieldFocus(context, buttonRect(i), Palette::kGold.withAlpha(120), 4.0);
    }
    setDirty(false);
}

int CMessageBox::onMouseDown(CPoint where, std::int32_t* buttons) {
    if ((*buttons & Buttons::kLeft) != 0) pressed_ = hovered_ = buttonAt(where);
    setDirty(true);
    return kMouseHandled;
}

int CMessageBox::onMouseMoved(CPoint where, std::int32_t* /*buttons*/) {
    const int under = buttonAt(where);
    if (under != hovered_) setDirty(true);
    hovered_ = under;
    return kMouseHandled;
}

int CMessageBox::onMouseUp(CPoint where, std::int32_t* /*buttons*/) {
    const int pressed = std::exchange(pressed_, -1);
    if (pressed >= 0 && buttonAt(where) == pressed) choose(pressed);
    setDirty(true);
    return kMouseHandled;
}

bool CMessageBox::onWheel(CPoint, int, float, std::int32_t*) { return true; }

int CMessageBox::onKeyDown(const KeyEvent& key) {
    if (key.virtualKey == Key::kReturn) choose(0);
    if (key.virtualKey == Key::kEscape) choose(static_cast<int>(buttons_.size()) - 1);
    return 1; // nothing below hears keys
}

void CMessageBox::choose(int index) {
    if (chosen_ < 0) chosen_ = index;
}

void CMessageBox::onIdle() {
    if (chosen_ < 0 || answered_ || getFrame() == nullptr) return;
    answered_ = true;
    const Counted<CMessageBox> self(this);
    const Answer answer = std::exchange(answer_, nullptr);
    getFrame()->setModalView(nullptr); // the answer may show the next message
    if (answer) answer(chosen_);
}

int CMessageBox::removed(CViewContainer* parent) {
    const int answer = CView::removed(parent);
    if (answer != 0) release(); // the one reference that `show` left with us
    return answer;
}

} // namespace Sorel

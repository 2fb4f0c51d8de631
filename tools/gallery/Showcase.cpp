#include "Showcase.h"

#include "controls/Palette.h"
#include "controls/Surfaces.h"
#include "platform/DragContainer.h"
#include "tree/Frame.h"

#include <cmath>
#include <numbers>

namespace Gallery {

using namespace Sorel;

Heading::Heading(const CRect& size, const char* text)
    : CView(size)
    , text_(text) {
    setMouseEnabled(false);
}

void Heading::draw(CDrawContext& context) {
    const CRect& r = getViewSize();
    context.setFont(kDefaultFont, 8.0, kBoldFont);
    context.setFontColor(Palette::kLine.withAlpha(150));
    // Capitals stand apart.
    double x = r.left;
    for (const char c : text_) {
        const std::string letter(1, c);
        context.drawStringAt(letter, {x, r.top + 9.0});
        x += context.getStringWidth(letter) + 1.0;
    }
    context.setFrameColor(Palette::kLine.withAlpha(40));
    context.setLineWidth(1.0);
    context.drawLine(r.left, r.bottom - 0.5, r.right, r.bottom - 0.5);
    setDirty(false);
}

void TypeSample::draw(CDrawContext& context) {
    const CRect& r = getViewSize();
    double y = r.top + 12.0;
    for (const double size : {8.0, 9.0, 10.0, 11.0, 12.0, 13.0}) {
        for (const auto style : {kRegularFont, kBoldFont}) {
            context.setFont(kDefaultFont, size, style);
            context.setFontColor(style == kBoldFont ? Palette::kBright : Palette::kLabel);
            std::string text = std::to_string(static_cast<int>(size));
            text += " px  -12.5 dB  1046.5 Hz (C3)  Åg";
            context.drawStringAt(text, {r.left + (style == kBoldFont ? r.width() / 2.0 : 0.0), y});
        }
        y += std::round(size * 1.6);
    }
    setDirty(false);
}

CurveSample::CurveSample(const CRect& size)
    : CView(size) {
    const auto columns = static_cast<std::size_t>(size.width());
    const double middle = size.top + size.height() * 0.25;
    const double half = size.height() * 0.22;
    for (std::size_t i = 0; i < columns; ++i) {
        const double x = static_cast<double>(i);
        const double beat = std::fmod(x, 90.0);
        const double level = std::exp(-beat / 26.0) * (0.75 + 0.25 * std::sin(x * 2.9));
        upper_.push_back(static_cast<float>(middle - half * level));
        lower_.push_back(static_cast<float>(middle + half * level * 0.9));
        const double ridge = 0.55 * std::exp(-x / 160.0) +
                             0.25 * std::exp(-std::pow((x - 70.0) / 9.0, 2.0)) +
                             0.06 * std::sin(x * 0.7) * std::exp(-x / 300.0);
        spectrum_.push_back(static_cast<float>(size.bottom - 4.0 - ridge * size.height() * 0.5));
        floor_.push_back(static_cast<float>(size.bottom));
    }
}

void CurveSample::draw(CDrawContext& context) {
    const CRect& r = getViewSize();
    context.setFillColor(Palette::kPanel);
    context.drawRect(r, kFilled);
    const CColor grid = Palette::kLine.withAlpha(120);
    const double quarter = r.height() * 0.5;
    context.drawColumnBand({r.left, 1.0, upper_, lower_},
                           CLinearGradient::vertical(r.top, r.top + quarter)
                               .stop(0.0, grid)
                               .stop(0.5, grid.withAlpha(30))
                               .stop(1.0, grid),
                           grid, 0.4);
    const CColor green{150, 190, 30, 185};
    context.drawColumnBand({r.left, 1.0, spectrum_, floor_},
                           CLinearGradient::vertical(r.top + quarter, r.bottom)
                               .stop(0.0, {200, 30, 40, 185})
                               .stop(0.25, {210, 140, 30, 185})
                               .stop(0.5, green)
                               .stop(1.0, green.withAlpha(22)),
                           {}, 0.0);
    context.drawColumnLine(r.left, 1.0, spectrum_, Palette::kGold, 0.7);
    setDirty(false);
}

void ColourSample::draw(CDrawContext& context) {
    struct Swatch {
        const char* name;
        CColor color;
    };
    static constexpr Swatch kSwatches[] = {
        {"ground", Palette::kGround},     {"panel", Palette::kPanel},
        {"value", Palette::kValue},       {"label", Palette::kLabel},
        {"green", Palette::kSwitchGreen}, {"orange", Palette::kSwitchOrange},
        {"field", Palette::kFieldBottom}, {"raised", Palette::kRaisedTop},
    };
    const CRect& r = getViewSize();
    double x = r.left;
    for (const Swatch& swatch : kSwatches) {
        const CRect box = CRect::ofSize(x, r.top, 40.0, 18.0);
        context.setFillColor(swatch.color);
        context.drawRoundRect(box, 3.0F, kFilled);
        drawFieldFocus(context, box, {0, 0, 0, 110}, 3.0);
        context.setFont(kDefaultFont, 8.0, kRegularFont);
        context.setFontColor(Palette::kLabel);
        context.drawStringAt(swatch.name, {x + 20.0, r.top + 29.0}, HorizontalAlign::kCentre);
        x += 46.0;
    }
    setDirty(false);
}

void DropArea::draw(CDrawContext& context) {
    drawField(context, getViewSize(), 4.0);
    if (over_) drawFieldFocus(context, getViewSize(), Palette::kGold.withAlpha(170), 4.0);
    context.setFont(kDefaultFont, 10.0, kRegularFont);
    context.setFontColor(over_ ? Palette::kValue : Palette::kLabel);
    context.drawStringMultiLine(text_, getViewSize().inset(8.0, 4.0));
    setDirty(false);
}

void DropArea::onDragEnter(CDragContainer& /*drag*/, CPoint /*where*/) {
    over_ = true;
    if (getFrame() != nullptr) getFrame()->setDropAccepted(true);
    setDirty(true);
}

void DropArea::onDragLeave(CDragContainer& /*drag*/, CPoint /*where*/) {
    over_ = false;
    if (getFrame() != nullptr) getFrame()->setDropAccepted(false);
    setDirty(true);
}

bool DropArea::onDrop(CDragContainer& drag, CPoint /*where*/) {
    over_ = false;
    text_.clear();
    for (int i = 0; i < drag.count(); ++i) {
        const std::string& path = drag.entry(i)->bytes;
        if (i > 0) text_ += '\n';
        text_.append(path, path.rfind('/') + 1);
    }
    setDirty(true);
    return drag.count() > 0;
}

CommandSample::CommandSample(
    const CRect& size, const char* title, int lit, bool active, std::function<void()> action)
    : CView(size)
    , title_(title)
    , lit_(lit)
    , works_(active)
    , action_(std::move(action)) {}

void CommandSample::draw(CDrawContext& context) {
    drawCommandButton(context, getViewSize(), title_.c_str(), lit_, works_);
    setDirty(false);
}

int CommandSample::onMouseDown(CPoint /*where*/, std::int32_t* buttons) {
    if (!action_ || (*buttons & Buttons::kLeft) == 0) return kMouseNotHandled;
    action_();
    return kMouseHandledDone;
}

} // namespace Gallery

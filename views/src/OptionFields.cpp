#include "views/OptionFields.h"

#include "analysis/OrvelScope.h"
#include "draw/FontDesc.h"
#include "views/DisplayColors.h"

#include <cmath>

namespace Sorel {

namespace {
constexpr double kHeight = 15.0;
constexpr double kCaptionSize = 8.0;
constexpr double kCaptionBaseline = 24.0;
} // namespace

void addChoices(COptionMenu& menu, Vardo::IPluginParameter& parameter) {
    const auto lowest = static_cast<int>(std::lround(parameter.getMin()));
    const auto highest = static_cast<int>(std::lround(parameter.getMax()));
    for (int plain = lowest; plain <= highest; ++plain) {
        char text[128] = "";
        parameter.formatValue(static_cast<float>(plain), text, Vardo::kWithUnit);
        menu.addEntry(text);
    }
}

const std::array<COptionFields::Field, 3> COptionFields::kFields{{
    {Orvel::kSpectrumFFTSize, 0.0, 40.0, "FFT Size"},
    {Orvel::kSpectrumUpdateSpeed, 42.0, 40.0, "Speed"},
    {Orvel::kSpectrumAnalyzeMode, 84.0, 52.0, "Analyze"},
}};

COptionFields::COptionFields(Orvel::COrvelScope& analyser)
    : CViewContainer(kRect) {
    setTransparency(true);
    for (const Field& field : kFields)
        addField(analyser, field);
}

void COptionFields::addField(Orvel::COrvelScope& analyser, const Field& field) {
    Vardo::IPluginParameter& parameter = analyser.parameter(field.parameter);
    auto* menu = new COptionMenu(CRect::ofSize(field.left, 0.0, field.width, kHeight), this,
                                 field.parameter);
    addChoices(*menu, parameter);
    menu->setParameter(&parameter);
    addView(menu);
}

void COptionFields::drawBackgroundRect(CDrawContext& context, const CRect& rect) {
    CViewContainer::drawBackgroundRect(context, rect);
    context.setFont(kDefaultFont, kCaptionSize, kRegularFont);
    context.setFontColor(displayColors().text2);
    for (const Field& field : kFields)
        context.drawStringAt(field.caption, {field.left + 0.5 * field.width, kCaptionBaseline},
                             HorizontalAlign::kCentre);
}

} // namespace Sorel

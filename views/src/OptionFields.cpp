#include "views/OptionFields.h"

#include "analysis/OrvelScope.h"
#include "draw/FontDesc.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

namespace {
constexpr double kWidth = 44.0;
constexpr double kHeight = 15.0;
constexpr double kGap = 2.0;
constexpr std::size_t kShortened = 4; // letters of a word that is too long

/// A field is narrow: it shows the first letters of a word that is too long.
class COptionField final : public COptionMenu {
  public:
    using COptionMenu::COptionMenu;
    void draw(CDrawContext& context) override {
        const CMenuItem* item = getEntry(getCurrent());
        std::string text = item != nullptr ? item->getTitle() : std::string();
        applyFont(context);
        if (context.getStringWidth(text) > kWidth - 4.0) {
            text.resize(std::min<std::size_t>(text.size(), kShortened));
            text += '.';
        }
        if (text != shown_) {
            shown_ = text;
            setFieldText(text.c_str());
        }
        COptionMenu::draw(context);
    }

  private:
    std::string shown_;
};
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

COptionFields::COptionFields(Orvel::COrvelScope& analyser)
    : CViewContainer(kRect) {
    setTransparency(true);
    addField(analyser, Orvel::kSpectrumFFTSize);
    addField(analyser, Orvel::kSpectrumUpdateSpeed);
    addField(analyser, Orvel::kSpectrumAnalyzeMode);
}

void COptionFields::addField(Orvel::COrvelScope& analyser, Orvel::ParameterId id) {
    Vardo::IPluginParameter& parameter = analyser.parameter(id);
    auto* field = new COptionField(CRect::ofSize((kWidth + kGap) * fields_++, 0.0, kWidth, kHeight),
                                   this, id);
    addChoices(*field, parameter);
    field->setParameter(&parameter);
    addView(field);
}

} // namespace Sorel

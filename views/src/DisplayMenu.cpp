#include "views/DisplayMenu.h"

#include "analysis/OrvelScope.h"
#include "tree/Frame.h"
#include "views/OptionFields.h"

#include <cmath>

namespace Sorel {

namespace {
constexpr int kScopePage = 0;
constexpr std::int32_t kResetOvers = -1; // tag of an entry that is no parameter
} // namespace

CDisplayMenu::CDisplayMenu(Orvel::COrvelScope& analyser)
    : COptionMenu({}, nullptr, 0)
    , analyser_(analyser) {
    setListener(this);
    setMouseEnabled(false);
    setWantsWheel(false);
    setChecksCurrent(false);
}

void CDisplayMenu::addSwitch(const char* title, Orvel::ParameterId parameter) {
    CMenuItem* item = addEntry(title);
    item->setTag(parameter);
    item->setChecked(analyser_.parameter(parameter).getBoolValue());
}

void CDisplayMenu::addSub(const char* title, Orvel::ParameterId id) {
    Vardo::IPluginParameter& parameter = analyser_.parameter(id);
    const auto menu = Counted<COptionMenu>::make(CRect{}, nullptr, id);
    addChoices(*menu, parameter);
    menu->setCurrent(parameter.getIntValue() - static_cast<int>(std::lround(parameter.getMin())));
    addSubmenu(title, menu.get())->setTag(id);
}

void CDisplayMenu::open(int page, CPoint where) {
    removeAllEntries();
    if (page == kScopePage) {
        addSwitch("Freeze", Orvel::kScopeFreeze);
        addSwitch("Show Transients", Orvel::kScopeTransientDetection);
        addSwitch("Male 'Ess'", Orvel::kScopeDeEsserMale);
        addSwitch("Female 'Ess'", Orvel::kScopeDeEsserFemale);
        addSeparator();
        addSub("Channel Mode", Orvel::kScopeChannelMode);
        addSub("Sync Mode", Orvel::kScopeSyncMode);
    } else {
        addSwitch("Freeze", Orvel::kSpectrumFreeze);
        addSwitch("Line", Orvel::kSpectrumDrawLine);
        addSwitch("Waterfall", Orvel::kSpectrumDrawWaterfall);
        addSwitch("Linear Scale", Orvel::kSpectrumLinearFrequencyScale);
        addSeparator();
        addSub("Num Bands", Orvel::kSpectrumNumBands);
        addSub("FFT Size", Orvel::kSpectrumFFTSize);
        addSub("Update Speed", Orvel::kSpectrumUpdateSpeed);
        addSub("Analyze Mode", Orvel::kSpectrumAnalyzeMode);
    }
    addSeparator();
    addSub("Metering Mode", Orvel::kGlobalMeteringMode);
    openAt(where);
}

void CDisplayMenu::openForMeter(CPoint where, std::function<void()> resetOvers) {
    removeAllEntries();
    Vardo::IPluginParameter& mode = analyser_.parameter(Orvel::kGlobalMeteringMode);
    addChoices(*this, mode);
    for (int i = 0; i < getNbEntries(); ++i) {
        getEntry(i)->setTag(Orvel::kGlobalMeteringMode);
        getEntry(i)->setChecked(i == mode.getIntValue());
    }
    addSeparator();
    addEntry("Reset Overs")->setTag(kResetOvers);
    resetOvers_ = std::move(resetOvers);
    openAt(where);
}

void CDisplayMenu::openAt(CPoint where) { popup(CRect{where.x, where.y, where.x, where.y}); }

void CDisplayMenu::valueChanged(CControl* /*control*/) {
    COptionMenu* menu = getLastMenu();
    if (menu == nullptr) return;
    if (menu == this) {
        const CMenuItem* item = getEntry(getLastResult());
        if (item == nullptr) return;
        if (item->getTag() == kResetOvers) {
            resetOvers_();
            return;
        }
        const auto id = static_cast<Orvel::ParameterId>(item->getTag());
        if (id == Orvel::kGlobalMeteringMode)
            change(id, getLastResult());
        else
            change(id, analyser_.parameter(id).getBoolValue() ? 0.0 : 1.0);
    } else {
        const auto id = static_cast<Orvel::ParameterId>(menu->getTag());
        change(id, double{analyser_.parameter(id).getMin()} + getLastResult());
    }
}

void CDisplayMenu::change(Orvel::ParameterId id, double plain) {
    if (getFrame() == nullptr) return;
    Vardo::IPluginParameter& parameter = analyser_.parameter(id);
    getFrame()->beginEdit(&parameter);
    getFrame()->performEdit(&parameter, double{parameter.plainToNormalized(plain)}, nullptr);
    getFrame()->endEdit(&parameter);
}

} // namespace Sorel

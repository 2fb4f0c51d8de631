// The scope's dials, of which two follow the sync mode.
#include "analysis/OrvelScope.h"
#include "analysis/ScopeTiming.h"
#include "tree/SorelineEditor.h"
#include "views/DialStrip.h"

namespace Sorel {

using Orvel::ScopeSyncMode;

CScopeDialStrip::CScopeDialStrip(Orvel::COrvelScope& analyser,
                                 CPictureCache& pictures,
                                 CControlListener* listener)
    : CDialStrip(analyser, pictures, listener, "Scope") {
    addDial("Channel Mode", Orvel::kScopeChannelMode, true);
    addDial("Sync Mode", Orvel::kScopeSyncMode, true);
    syncDuration_ = addDial("Sync Duration", Orvel::kScopeSyncDurationBeatTime, true);
    visibleTime_ = addDial("Visible Time", Orvel::kScopeVisibleTimeMs);
    addSwitch("Freeze", Orvel::kScopeFreeze, SwitchColor::kPlain);
    addSwitch("Show Transients", Orvel::kScopeTransientDetection, SwitchColor::kGreen);
    addSwitch("Male 'Ess'", Orvel::kScopeDeEsserMale, SwitchColor::kOrange);
    addSwitch("Female 'Ess'", Orvel::kScopeDeEsserFemale, SwitchColor::kOrange);
    finish();
    bindTimeDials();
}

void CScopeDialStrip::setVisibleTimeChanged(VisibleTimeChanged changed) {
    visibleTimeChanged_ = std::move(changed);
    if (visibleTimeChanged_) visibleTimeChanged_(visibleTime_->getParameter());
}

void CScopeDialStrip::bindTimeDials() {
    const auto bindDuration = [this](Orvel::ParameterId id, bool stepped) {
        syncDuration_->setParameter(&analyser().parameter(id));
        syncDuration_->setSteppedByParameter(stepped);
        syncDuration_->setActive(true);
    };
    const auto bindVisibleTime = [this](Orvel::ParameterId id, bool stepped) {
        visibleTime_->setParameter(&analyser().parameter(id));
        visibleTime_->setSteppedByParameter(stepped);
    };
    const auto mode =
        static_cast<ScopeSyncMode>(analyser().parameter(Orvel::kScopeSyncMode).getIntValue());
    switch (mode) {
    case ScopeSyncMode::beatTime:
        bindDuration(Orvel::kScopeSyncDurationBeatTime, true);
        break;
    case ScopeSyncMode::pitch:
        bindDuration(Orvel::kScopeSyncDurationPitch, true);
        break;
    case ScopeSyncMode::frequency:
        bindDuration(Orvel::kScopeSyncDurationFrequency, false);
        break;
    default:
        syncDuration_->setSteppedByParameter(false);
        syncDuration_->setActive(false);
        break;
    }
    if (syncDuration_->getActive())
        bindVisibleTime(Orvel::kScopeVisibleTimeMultiplier, true);
    else
        bindVisibleTime(Orvel::kScopeVisibleTimeMs, false);
    if (visibleTimeChanged_) visibleTimeChanged_(visibleTime_->getParameter());
}

void CScopeDialStrip::onParameterChanged(int parameterIndex) {
    if (parameterIndex == Orvel::kScopeSyncMode) bindTimeDials();
}

int CScopeDialStrip::attached(CViewContainer* parent) {
    const int answer = CDialStrip::attached(parent);
    if (CSorelineEditor* editor = getEditor()) {
        editor->addControlToParameter(analyser().parameter(Orvel::kScopeSyncMode), this);
        bindTimeDials();
    }
    return answer;
}

} // namespace Sorel

#include "views/Scope.h"

#include "analysis/OrvelScope.h"

namespace Sorel {

namespace {
constexpr double kTextHeight = 12.0; // above and below the data
constexpr double kRulerHeight = 30.0;
constexpr CRect kSyncLabel{5.0, 15.0, 35.0, 29.0};

constexpr Orvel::ParameterId kParameters[] = {Orvel::kScopeChannelMode, Orvel::kScopeSyncMode,
                                              Orvel::kScopeTransientDetection,
                                              Orvel::kScopeDeEsserMale, Orvel::kScopeDeEsserFemale};
constexpr int kMidFadeAlpha = 110;
} // namespace

CScope::CScope(const CRect& size, Orvel::COrvelScope* analyser)
    : IDisplayControl(size, analyser)
    , dataRect_{size.left, size.top + kTextHeight, size.right, size.bottom - kTextHeight}
    , beatRulerRect_{dataRect_.left, dataRect_.top, dataRect_.right, dataRect_.top + kRulerHeight}
    , timeRulerRect_{dataRect_.left, dataRect_.bottom - kRulerHeight, dataRect_.right,
                     dataRect_.bottom}
    , syncLabelRect_(kSyncLabel.moved(size.topLeft())) {
    setDrawCursor(true);
    if (analyser == nullptr) {
        SetChannelMode(0);
        return;
    }
    const int width = static_cast<int>(dataRect_.width());
    // A table of the right width goes on as it is: a window that is opened again while the scope is
    // frozen shows what it showed before.
    if (analyser->scopeTable().numColumns() != width) analyser->scopeTable().SetNumColumns(width);
    renderer_.attach(&analyser->scopeTable(), width);
    applyColours();
    applyParameters(false);
    takeTiming();
    renderer_.fetch(dataRect_.height());
}

std::span<const Orvel::ParameterId> CScope::parameters() { return kParameters; }

void CScope::applyColours() {
    const DisplayColors& palette = colors();
    for (const int lane :
         {Orvel::kScopeBothLanes, Orvel::kScopeFirstLane, Orvel::kScopeSecondLane}) {
        ScopeRenderLayer& layer = renderer_.layer(lane);
        layer.lineColour = palette.wave;
        layer.topFade = layer.bottomFade = palette.waveFill;
        layer.midFade = palette.waveFill.withAlpha(kMidFadeAlpha);
    }
    renderer_.layer(Orvel::kScopeTransients).fillColour = palette.good;
    renderer_.layer(Orvel::kScopeSibilance).fillColour = palette.warn;
    renderer_.layer(Orvel::kScopeOvers).fillColour = palette.hot;
}

void CScope::applyParameters(bool clearing) {
    if (analyser() == nullptr) return;
    const auto isOn = [this](Orvel::ParameterId id) {
        return analyser()->parameter(id).getBoolValue();
    };
    SetChannelMode(analyser()->parameter(Orvel::kScopeChannelMode).getIntValue());
    const bool twoLanes = channelMode_ == static_cast<int>(Orvel::ScopeChannelMode::leftAndRight);
    showLayer(Orvel::kScopeBothLanes, !twoLanes, clearing);
    showLayer(Orvel::kScopeFirstLane, twoLanes, clearing);
    showLayer(Orvel::kScopeSecondLane, twoLanes, clearing);
    showLayer(Orvel::kScopeTransients, isOn(Orvel::kScopeTransientDetection), clearing);
    showLayer(Orvel::kScopeSibilance,
              isOn(Orvel::kScopeDeEsserMale) || isOn(Orvel::kScopeDeEsserFemale), clearing);
    showLayer(Orvel::kScopeOvers, true, clearing);
    showSyncLabel_ = analyser()->parameter(Orvel::kScopeSyncMode).getIntValue() >
                     static_cast<int>(Orvel::ScopeSyncMode::transient);
    if (!showSyncLabel_ && syncMarkerActive_) arm(false);
}

void CScope::showLayer(int layer, bool on, bool clearing) {
    if (layer < 0 || layer >= renderer_.numLayers()) return;
    bool& visible = renderer_.layer(layer).visible;
    if (on && !visible && clearing) renderer_.clearLayer(layer);
    visible = on;
}

void CScope::SetLayerVisible(int layer, bool on) {
    showLayer(layer, on, true);
    setDirty(true);
}

void CScope::SetPeriod(float milliseconds) {
    if (milliseconds == periodMs_.load()) return;
    periodMs_ = milliseconds;
    markDirty();
}

void CScope::SetTempo(float beatsPerMinute) {
    if (beatsPerMinute == tempo_.load()) return;
    tempo_ = beatsPerMinute;
    markDirty();
}

void CScope::SetChannelMode(int mode) {
    if (mode != channelMode_)
        for (StillPicture& name : laneNames_)
            name.invalidate();
    channelMode_ = mode;
    setDirty(true);
}

void CScope::SetWheelParameter(Vardo::IPluginParameter* parameter) {
    wheelParameter_ = parameter;
    notches_ = {};
}

void CScope::onParameterChanged(int /*parameterIndex*/) { applyParameters(true); }

void CScope::takeTiming() {
    const float tempo = analyser()->transport().tempo();
    const double period = analyser()->scopeTiming().period(double{tempo}).milliseconds;
    tempo_ = tempo;
    periodMs_ = static_cast<float>(period);
    // Of the columns that are there: those of a new period come with the next audio.
    const bool drewTrace = renderer_.drawsTrace();
    renderer_.setSamplesPerColumn(analyser()->scopeTable().samplesPerColumn());
    if (renderer_.drawsTrace() != drewTrace) setDirty(true);
}

void CScope::onIdle() {
    if (analyser() == nullptr || !isVisible()) return;
    takeTiming();
    if (periodMs_.load() != shownPeriodMs_ || tempo_.load() != shownTempo_) setDirty(true);
    const ColumnRange changed = renderer_.fetch(dataRect_.height());
    if (changed.isEmpty()) return;
    if (renderer_.drawsTrace()) {
        setDirty(true);
        return;
    }
    // The outline's corners reach a neighbour further, a transient's mark far to the right.
    invalidRect(
        {dataRect_.left + std::max(0, changed.first - 2), dataRect_.top,
         std::min(dataRect_.right, dataRect_.left + changed.end + CStereoScopeRenderer::kMarkReach),
         dataRect_.bottom});
}

void CScope::layOutRulers() {
    const float period = periodMs_;
    const float tempo = tempo_;
    if (period == shownPeriodMs_ && tempo == shownTempo_) return;
    const int width = static_cast<int>(dataRect_.width());
    layOutBeats(beats_, double{tempo}, double{period}, width);
    layOutTime(times_, double{period}, width);
    shownPeriodMs_ = period;
    shownTempo_ = tempo;
}

} // namespace Sorel

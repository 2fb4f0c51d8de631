#include "views/Spectrum.h"

#include "analysis/OrvelScope.h"
#include "core/NumberText.h"
#include "tree/Frame.h"
#include "views/NoteName.h"

#include <cstring>

namespace Sorel {

namespace {

constexpr int kTimerMs = 25;
constexpr double kTurnPerPixel = 0.0035;
constexpr double kWellRadius = 4.0;
constexpr float kSameRow = 0.05F; // pixels
constexpr int kLastFFTSize = Orvel::SpectrumAnalyser::kNumSizes - 1;
constexpr int kLastNumBands = 4; // 8, 16, 32, 64, 128
constexpr int kFewestBands = 8;

constexpr Orvel::ParameterId kParameters[] = {
    Orvel::kSpectrumFFTSize,   Orvel::kSpectrumFreeze,
    Orvel::kSpectrumDrawLine,  Orvel::kSpectrumLinearFrequencyScale,
    Orvel::kSpectrumRotate,    Orvel::kSpectrumDrawWaterfall,
    Orvel::kSpectrumNumBands,  Orvel::kSpectrumProjectorFrequency,
    Orvel::kSpectrumPeakReset, Orvel::kSpectrumAnalyzeMode,
};

} // namespace

CSpectrum::CSpectrum(const CRect& size,
                     Orvel::COrvelScope* analyser,
                     Orvel::DisplayRecord::SpectrumView view)
    : IDisplayControl(size, analyser)
    , view_(view) {
    setDrawCursor(true);
    layOut();
    if (analyser != nullptr) {
        for (const Orvel::ParameterId id : kParameters)
            readParameter(id);
        followEngine();
    }
    updateHighest();
    startTimer(kTimerMs);
}

CSpectrum::~CSpectrum() {
    stopTimer();
    showVisible(false);
}

std::span<const Orvel::ParameterId> CSpectrum::parameters() { return kParameters; }

// ---- Parameters
// -----------------------------------------------------------------------------------

float CSpectrum::plain(Orvel::ParameterId id) const {
    return analyser() != nullptr ? analyser()->parameter(id).getValue() : 0.0F;
}

void CSpectrum::onParameterChanged(int parameterIndex) {
    if (analyser() == nullptr) return;
    readParameter(static_cast<Orvel::ParameterId>(parameterIndex));
}

void CSpectrum::readParameter(Orvel::ParameterId id) {
    const auto index = [&](int highest) { return Orvel::indexValue(double{plain(id)}, highest); };
    switch (id) {
    case Orvel::kSpectrumFFTSize:
        followEngine();
        break;
    case Orvel::kSpectrumDrawLine:
        SetDrawLine(isOn(id));
        break;
    case Orvel::kSpectrumDrawWaterfall:
        SetWaterfall(isOn(id));
        break;
    case Orvel::kSpectrumLinearFrequencyScale:
        SetLinearScale(isOn(id));
        break;
    case Orvel::kSpectrumNumBands:
        SetNumBands(kFewestBands << index(kLastNumBands));
        break;
    case Orvel::kSpectrumPeakReset:
        SetPeakReset(plain(id));
        break;
    case Orvel::kSpectrumAnalyzeMode:
        SetAnalyzeMode(static_cast<Orvel::AnalyzeMode>(index(1)));
        break;
    case Orvel::kSpectrumProjectorFrequency:
        SetProjector(Orvel::projectorHz(double{plain(id)}, double{analyser()->sampleRate()}));
        break;
    case Orvel::kSpectrumRotate:
        if (waterfallMode_) setDirty(true); // painting reads it
        break;
    default:
        break;
    }
}

void CSpectrum::SetFFTSize(int size) {
    if (size == model_.fftSize()) return;
    const double rate = analyser() != nullptr ? double{analyser()->sampleRate()} : 48000.0;
    model_.setFormat(rate, size);
    layOut();
    updatePicture();
}

void CSpectrum::SetNumBands(int count) {
    if (count == model_.bands().shownCount()) return;
    model_.setNumBands(count);
    if (waterfallMode_) showFrozenFrame();
    updatePicture();
}

void CSpectrum::SetPeakReset(float dbPerSecond) {
    model_.setPeakReset(dbPerSecond);
    setDirty(true);
}

void CSpectrum::SetDrawPeak(bool on) {
    drawPeak_ = on;
    setDirty(true);
}

void CSpectrum::SetLinearScale(bool on) {
    if (on == model_.scale().isLinear()) return;
    model_.setLinearScale(on);
    layOut();
    if (waterfallMode_ || !lineMode_) showFrozenFrame(); // the line is still there
    updatePicture();
}

void CSpectrum::SetDrawLine(bool on) {
    if (on == lineMode_) return;
    lineMode_ = on;
    model_.setLine(on);
    showFrozenFrame();
    updatePicture();
}

void CSpectrum::SetWaterfall(bool on) {
    if (on == waterfallMode_) return;
    if (!on) endDrag();
    waterfallMode_ = on;
    model_.setWaterfall(on);
    setDrawCursor(!on);
    showFrozenFrame();
    updatePicture();
}

void CSpectrum::SetProjector(double hz) {
    projectorHz_ = model_.scale().limited(hz);
    setDirty(true);
}

void CSpectrum::SetAnalyzeMode(Orvel::AnalyzeMode mode) {
    if (mode == model_.analyzeMode()) return;
    model_.setAnalyzeMode(mode);
    updatePicture();
}

// ---- What the engine is and gives
// -----------------------------------------------------------------

void CSpectrum::followEngine() {
    if (analyser() == nullptr) return;
    const float rate = analyser()->sampleRate();
    const int index = Orvel::indexValue(double{plain(Orvel::kSpectrumFFTSize)}, kLastFFTSize);
    const int size = Orvel::SpectrumAnalyser::fftSizeFor(rate, index);
    const bool sameRate = model_.scale().highestHz() == double{rate} * 0.5;
    if (sameRate && size == model_.fftSize()) return;
    const bool hasPicture = model_.fftSize() != 0;
    if (hasPicture && isOn(Orvel::kSpectrumFreeze)) return; // it stays as it was measured
    model_.setFormat(double{rate}, size);
    layOut();
    readParameter(Orvel::kSpectrumProjectorFrequency);
    updatePicture();
}

void CSpectrum::followVisibility() {
    if (const bool visible = isVisible(); visible != shown_) showVisible(visible);
}

void CSpectrum::showVisible(bool visible) {
    shown_ = visible;
    if (analyser() != nullptr) analyser()->display().spectra[view_].setVisible(visible);
    // Only a frozen picture outlives a change of the page.
    if (!isOn(Orvel::kSpectrumFreeze)) model_.clear();
    if (!visible) return;
    followEngine();
    updatePicture();
}

void CSpectrum::setVisible(bool state) {
    IDisplayControl::setVisible(state);
    followVisibility();
}

void CSpectrum::setViewSize(const CRect& rect, bool invalidate) {
    IDisplayControl::setViewSize(rect, invalidate);
    layOut();
    updatePicture();
}

void CSpectrum::layOut() {
    const CRect& size = getViewSize();
    model_.setBounds(static_cast<float>(size.width()), 0.0F, static_cast<float>(size.height()));
    axes_.setRoom(size, view_ == Orvel::DisplayRecord::kSpectrumPage ? kWellRadius : 0.0);
    axes_.setScale(model_.scale());
}

void CSpectrum::onTimer(std::int64_t elapsedMilliseconds) {
    followVisibility();
    if (!shown_ || analyser() == nullptr || isOn(Orvel::kSpectrumFreeze)) return;
    followEngine();
    model_.receive(analyser()->display().spectra[view_]);
    const int steps = model_.advance(static_cast<double>(elapsedMilliseconds));
    if (steps == 0) return;
    if (waterfallMode_) {
        if (waterfallMoved(steps)) setDirty(true);
        return;
    }
    const bool all = measurePicture();
    // The cross reads what is under it.
    if (all || (isMouseInside() && changes_.any()))
        setDirty(true);
    else
        askForChanges();
    if (updateHighest()) invalidRect(highestRoom());
}

bool CSpectrum::measurePicture() {
    const CRect& room = getViewSize();
    return lineMode_ ? curve_.update(model_, room.height(), changes_)
                     : bars_.update(model_, room, changes_);
}

void CSpectrum::askForChanges() {
    const CRect& room = getViewSize();
    changes_.forEach([&](int first, int end, float top, float bottom) {
        const CRect part{room.left + first, room.top + std::floor(double{top}), room.left + end,
                         room.top + std::ceil(double{bottom})};
        invalidRect(part.intersected(room));
    });
}

/// After a change that left nothing of what is shown: the frame that is frozen appears in the new
/// form at once.
void CSpectrum::showFrozenFrame() {
    if (isOn(Orvel::kSpectrumFreeze))
        model_.advance(double{Orvel::SpectrumModel::kStepMs} * Orvel::SpectrumModel::kMostSteps);
}

/// After a change of settings.
void CSpectrum::updatePicture() {
    sameRows_ = 0;
    if (!waterfallMode_) measurePicture();
    updateHighest();
    setDirty(true);
}

/// A row that equals the one behind it moves nothing, once all are alike.
bool CSpectrum::waterfallMoved(int steps) {
    const Orvel::SpectrumWaterfall& rows = model_.waterfall();
    for (int age = steps - 1; age >= 0; --age) {
        const auto& row = rows.row(age);
        const bool same = std::equal(row.begin(), row.end(), rows.row(age + 1).begin(),
                                     [](float a, float b) { return std::abs(a - b) < kSameRow; });
        sameRows_ = same ? sameRows_ + 1 : 0;
    }
    return sameRows_ < Orvel::SpectrumWaterfall::kNumRows + steps;
}

bool CSpectrum::updateHighest() {
    char text[64];
    Core::TextWriter(text, sizeof text)
        .text("Highest: ")
        .fixed(double{model_.highestDb()}, 1)
        .text("dB @ ")
        .fixed(model_.highestHz(), 1)
        .text("Hz (")
        .text(noteName(model_.highestHz()).c_str())
        .text(")");
    if (std::strcmp(text, highestText_.c_str()) == 0) return false;
    highestText_.assign(text);
    return true;
}

// ---- Turning the waterfall
// ------------------------------------------------------------------------

int CSpectrum::onMouseDown(CPoint where, std::int32_t* buttons) {
    if (dragActive_) return kMouseHandled;
    const bool turns = waterfallMode_ && analyser() != nullptr && (*buttons & Buttons::kLeft) != 0;
    if (!turns) return IDisplayControl::onMouseDown(where, buttons);
    dragOrigin_ = where;
    dragValue_ = double{plain(Orvel::kSpectrumRotate)};
    dragActive_ = true;
    if (CFrame* const frame = getFrame()) {
        frame->beginEdit(&analyser()->parameter(Orvel::kSpectrumRotate));
        frame->setCursor(CursorKind::kHorizontal);
    }
    return kMouseHandled;
}

int CSpectrum::onMouseMoved(CPoint where, std::int32_t* buttons) {
    const int answer = IDisplayControl::onMouseMoved(where, buttons);
    if ((*buttons & Buttons::kLeft) == 0) endDrag(); // let go where nobody told us
    if (!dragActive_ || getFrame() == nullptr) return answer;
    const double value = dragValue_ + (where.x - dragOrigin_.x) * kTurnPerPixel;
    getFrame()->performEdit(&analyser()->parameter(Orvel::kSpectrumRotate),
                            std::clamp(value, 0.0, 1.0), this);
    setDirty(true);
    return kMouseHandled;
}

int CSpectrum::onMouseUp(CPoint where, std::int32_t* buttons) {
    if (!dragActive_) return IDisplayControl::onMouseUp(where, buttons);
    if ((*buttons & Buttons::kLeft) == 0) endDrag();
    return kMouseHandled;
}

void CSpectrum::endDrag() {
    if (!dragActive_) return;
    dragActive_ = false;
    if (CFrame* const frame = getFrame()) {
        frame->endEdit(&analyser()->parameter(Orvel::kSpectrumRotate));
        frame->setCursor(CursorKind::kArrow);
    }
}

int CSpectrum::removed(CViewContainer* parent) {
    endDrag();
    const int answer = IDisplayControl::removed(parent);
    followVisibility();
    return answer;
}

bool CSpectrum::isTypeOf(const char* name) const {
    return std::strcmp(name, "CSpectrum") == 0 || IDisplayControl::isTypeOf(name);
}

} // namespace Sorel

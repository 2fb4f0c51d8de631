#include "views/DialStrip.h"

#include "analysis/OrvelScope.h"
#include "controls/ActionButton.h"
#include "controls/GroupLabel.h"
#include "draw/PictureCache.h"
#include "views/DisplayColors.h"

namespace Sorel {

namespace {
constexpr double kDialWidth = 72.0;
constexpr double kDialTop = 4.0;
constexpr double kGroupLeft = 232.0;
constexpr double kLabelHeight = 11.0;
constexpr double kSwitchLeft = 536.0; // of the picture; its pill begins 4 pixels further in
constexpr double kFirstSwitchTop = 9.0;
constexpr double kSwitchPitch = 16.0;
constexpr double kCaptionWidth = 100.0;
constexpr double kCentreOfGain = 0.5;
constexpr double kGainZone = 0.02;

const char* pictureOf(CDialStrip::SwitchColor color) {
    switch (color) {
    case CDialStrip::SwitchColor::kGreen:
        return "OnOff_ButtonGreen.png";
    case CDialStrip::SwitchColor::kOrange:
        return "OnOff_ButtonOrange.png";
    default:
        return "OnOff_Button.png";
    }
}

CView* heading(double left, int dials, const std::string& text) {
    return new CGroupLabel(CRect::ofSize(left, 0.0, kDialWidth * dials, kLabelHeight), text.c_str(),
                           displayColors().text2);
}
} // namespace

CDialStrip::CDialStrip(Orvel::COrvelScope& analyser,
                       CPictureCache& pictures,
                       CControlListener* listener,
                       const char* groupName)
    : CViewContainer(kRect)
    , analyser_(analyser)
    , pictures_(pictures)
    , listener_(listener)
    , groupName_(groupName) {
    setTransparency(true);
    CDial* gain = placeDial(0.0, "Input Gain", Orvel::kGlobalInputGain);
    gain->setCenter(kCentreOfGain, kGainZone);
    gain->setSnapToCenter(true);
    placeDial(kDialWidth, "Metering Mode", Orvel::kGlobalMeteringMode)->setSteppedByParameter(true);
    placeDial(2.0 * kDialWidth, "RMS Length", Orvel::kGlobalRMSLength);
    addView(heading(0.0, 3, "Global"));
}

CDial* CDialStrip::placeDial(double x, const char* label, Orvel::ParameterId parameter) {
    const CDial::Pictures pictures{pictures_.getBitmap("NormalDialBG.png"),
                                   pictures_.getBitmap("NormalDialLedRing.png"),
                                   pictures_.getBitmap("NormalDial.png")};
    auto* dial = new CDial({x, kDialTop}, listener_, parameter, label, pictures,
                           &analyser_.parameter(parameter));
    addView(dial);
    return dial;
}

CDial* CDialStrip::addDial(const char* label, Orvel::ParameterId parameter, bool stepped) {
    CDial* dial = placeDial(kGroupLeft + kDialWidth * dials_++, label, parameter);
    dial->setSteppedByParameter(stepped);
    return dial;
}

CDial* CDialStrip::addSmallDial(const char* label, Orvel::ParameterId parameter) {
    const CSmallDial::SmallPictures pictures{pictures_.getBitmap("TolvaneDialBG.png"),
                                             pictures_.getBitmap("TolvaneDial.png")};
    auto* dial = new CSmallDial({kGroupLeft + kDialWidth * dials_++, kDialTop}, listener_,
                                parameter, label, pictures, &analyser_.parameter(parameter));
    addView(dial);
    return dial;
}

void CDialStrip::addSwitch(const char* caption, Orvel::ParameterId parameter, SwitchColor color) {
    auto* button = new CSwitch({kSwitchLeft, kFirstSwitchTop + kSwitchPitch * switches_++},
                               listener_, parameter, pictures_.getBitmap(pictureOf(color)),
                               &analyser_.parameter(parameter));
    button->setCaption(caption, kCaptionWidth);
    addView(button);
}

void CDialStrip::finish() { addView(heading(kGroupLeft, dials_, groupName_)); }

CDialStrip* makeSpectrumStrip(Orvel::COrvelScope& analyser,
                              CPictureCache& pictures,
                              CControlListener* listener) {
    auto* strip = new CDialStrip(analyser, pictures, listener, "Spectrum");
    strip->addDial("Num Bands", Orvel::kSpectrumNumBands, true);
    strip->addDial("Peak Reset", Orvel::kSpectrumPeakReset);
    strip->addSmallDial("Rotate", Orvel::kSpectrumRotate);
    strip->addSmallDial("Projector", Orvel::kSpectrumProjectorFrequency);
    strip->addSwitch("Freeze", Orvel::kSpectrumFreeze, CDialStrip::SwitchColor::kPlain);
    strip->addSwitch("Line", Orvel::kSpectrumDrawLine, CDialStrip::SwitchColor::kGreen);
    strip->addSwitch("Waterfall", Orvel::kSpectrumDrawWaterfall, CDialStrip::SwitchColor::kGreen);
    strip->addSwitch("Linear Scale", Orvel::kSpectrumLinearFrequencyScale,
                     CDialStrip::SwitchColor::kGreen);
    strip->finish();
    return strip;
}

CDialStrip*
makeStereoStrip(Orvel::COrvelScope& analyser, CPictureCache& pictures, CControlListener* listener) {
    auto* strip = new CDialStrip(analyser, pictures, listener, "Stereofield");
    strip->addDial("Peak Reset", Orvel::kSpectrumPeakReset);
    strip->addSmallDial("Rotate", Orvel::kSpectrumRotate);
    strip->addSwitch("Freeze", Orvel::kSpectrumFreeze, CDialStrip::SwitchColor::kPlain);
    strip->finish();
    return strip;
}

} // namespace Sorel

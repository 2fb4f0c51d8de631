// Where everything stands in the window. Frame coordinates, pixels.
#include "analysis/OrvelScope.h"
#include "assets/Archives.h"
#include "controls/ButtonBar.h"
#include "presets/PresetBrowser.h"
#include "tree/ViewContainer.h"
#include "views/CorrelationMeter.h"
#include "views/DialStrip.h"
#include "views/DisplayMenu.h"
#include "views/Goniometer.h"
#include "views/LevelMeterStereo.h"
#include "views/OptionFields.h"
#include "views/OrvelScopeEditor.h"
#include "views/Pictures.h"
#include "views/Scope.h"
#include "views/Spectrum.h"
#include "views/SystemInfo.h"
#include "views/SystemPage.h"

namespace Orvel {

using namespace Sorel;

namespace {
constexpr std::int32_t kPageButtonsTag = 0x42544E42;
constexpr CColor kGround{0x30, 0x2F, 0x38, 0xFF};

constexpr CRect kPageButtons{312.0, 1.0, 787.0, 46.0};
constexpr double kButtonWidth = 118.0;
constexpr double kButtonHeight = 25.0;
constexpr double kButtonGap = 1.0;
constexpr double kButtonTop = 10.0; // in the bar
constexpr CRect kMeterRect{10.0, 56.0, 135.0, 431.0};
constexpr CRect kDisplay{145.0, 56.0, 990.0, 431.0};
constexpr CRect kSystemWell{10.0, 56.0, 990.0, 431.0};
constexpr double kLipHeight = 1.0; // the lit edge below a well
constexpr CRect kSystemInfo{838.0, 456.0, 975.0, 498.0};
constexpr CRect kPathRow{130.0, 170.0, 850.0, 196.0}; // in the system page

// The rooms of the stereo-field page, in its container.
constexpr CRect kGoniometer{0.0, 0.0, 330.0, 330.0};
constexpr CRect kCorrelation{0.0, 331.0, 330.0, 375.0};
constexpr CRect kMid{331.0, 0.0, 719.0, 187.0};
constexpr CRect kSide{331.0, 188.0, 719.0, 375.0};
constexpr CRect kMidSideMeterRect{720.0, 0.0, 845.0, 375.0};

CRect inside(const CRect& rect) { return CRect::ofSize(0.0, 0.0, rect.width(), rect.height()); }

/// The hairlines that part rooms of one well: one dark, one lit.
class RoomDividers final : public CView {
  public:
    explicit RoomDividers(const CRect& size)
        : CView(size) {
        setMouseEnabled(false);
    }
    void draw(CDrawContext& context) override {
        const CRect& r = getViewSize();
        vertical(context, r.left + 330.0, r.top, r.bottom);
        vertical(context, r.left + 719.0, r.top, r.bottom);
        horizontal(context, r.left, r.left + 330.0, r.top + 330.0);
        horizontal(context, r.left + 331.0, r.left + 719.0, r.top + 187.0);
        setDirty(false);
    }
    CView* newCopy() const override { return nullptr; }

  private:
    static constexpr CColor kDark{12, 13, 22, 170};
    static constexpr CColor kLit{255, 255, 255, 12};

    static void fill(CDrawContext& context, const CRect& rect, CColor color) {
        context.setFillColor(color);
        context.drawRect(rect, kFilled);
    }
    static void vertical(CDrawContext& context, double x, double top, double bottom) {
        fill(context, {x, top + 1.0, x + 1.0, bottom - 1.0}, kDark);
        fill(context, {x + 1.0, top + 1.0, x + 2.0, bottom - 1.0}, kLit);
    }
    static void horizontal(CDrawContext& context, double left, double right, double y) {
        fill(context, {left + 1.0, y, right, y + 1.0}, kDark);
        fill(context, {left + 1.0, y + 1.0, right, y + 2.0}, kLit);
    }
};
} // namespace

CPictureCache& editorPictures() {
    static CPictureCache pictures(Assets::pictureArchive());
    return pictures;
}

void COrvelScopeEditor::onFrameCreated(CFrame& frame) {
    frame.setBackgroundColor(kGround);
    frame.setBackground(editorPictures().getBitmap("Background.png"));
    addHeader(frame);
    addMeters(frame);
    displayMenu_ = new CDisplayMenu(analyser_);
    addPages(frame);
    addStrips(frame);
    frame.addView(displayMenu_);
    setActivePage(analyser_.activePage());
}

void COrvelScopeEditor::addHeader(CFrame& frame) {
    CPictureCache& pictures = editorPictures();
    CPresetBrowser::CInfo info;
    info.size = CRect::ofSize(63.0, 13.0, 235.0, 21.0);
    info.arrowDown = pictures.getBitmap("ArrowDownBig.png");
    info.arrowLeft = pictures.getBitmap("ArrowLeftBig.png");
    info.arrowRight = pictures.getBitmap("ArrowRightBig.png");
    browser_ = new CPresetBrowser(info, presets_);
    frame.addView(browser_);
    presets_.showStoredName();

    pageButtons_ = new CButtonBar(kPageButtons, this, kPageButtonsTag);
    for (const char* name :
         {"ButtonScope.png", "ButtonSpectrum.png", "ButtonStereofield.png", "ButtonSystem.png"})
        pageButtons_->addButton(pictures.getBitmap(name), kButtonWidth, kButtonHeight, kButtonGap,
                                kButtonTop);
    frame.addView(pageButtons_);
    systemInfo_ = new CSystemInfo(kSystemInfo, &analyser_);
    frame.addView(systemInfo_);
}

CVUMeter_Stereo* COrvelScopeEditor::addMeter(CViewContainer& parent, CVUMeter_Stereo* meter) {
    meter->setContextMenu([this, meter](CPoint where) {
        displayMenu_->openForMeter(where, [meter] { meter->resetAllOvers(); });
    });
    parent.addView(meter);
    for (const ParameterId id : CVUMeter_Stereo::parameters())
        addControlToParameter(analyser_.parameter(id), meter);
    return meter;
}

void COrvelScopeEditor::addMeters(CFrame& frame) {
    meter_ = addMeter(frame, new CVUMeter_Stereo(kMeterRect, &analyser_, kLeftRightMeter));
}

CViewContainer* COrvelScopeEditor::addPage(CFrame& frame, const CRect& rect, int page) {
    auto* container = new CViewContainer(rect);
    container->setTransparency(true);
    frame.addView(container);
    pages_[static_cast<std::size_t>(page)] = container;
    return container;
}

template <class View>
View* COrvelScopeEditor::addDisplay(CViewContainer& page, View* view, int index) {
    view->setContextMenu([this, index](CPoint where) { displayMenu_->open(index, where); });
    page.addView(view);
    for (const ParameterId id : View::parameters())
        addControlToParameter(analyser_.parameter(id), view);
    return view;
}

void COrvelScopeEditor::addPages(CFrame& frame) {
    CViewContainer* page = addPage(frame, kDisplay, 0);
    scope_ = addDisplay(*page, new CScope(inside(kDisplay), &analyser_), 0);

    page = addPage(frame, kDisplay, 1);
    addDisplay(*page, new CSpectrum(inside(kDisplay), &analyser_, DisplayRecord::kSpectrumPage), 1);

    addStereoRooms(*addPage(frame, kDisplay, 2));

    CRect system = kSystemWell;
    system.bottom += kLipHeight;
    page = addPage(frame, system, 3);
    systemPage_ = new CSystemPage(inside(system), &analyser_, surroundings_.versionText);
    page->addView(systemPage_);
    wireSystemPage();
    auto* location = new CContentLocationView(kPathRow);
    location->setFolderChanged([this] { presets_.Notify(nullptr, kNotifyPresetFolderChanged); });
    page->addView(location);
}

void COrvelScopeEditor::addStereoRooms(CViewContainer& page) {
    page.addView(new RoomDividers(inside(kDisplay)));
    addDisplay(page, new CGoniometer(kGoniometer, &analyser_), 2);
    addDisplay(page, new CCorrelationMeter(kCorrelation, &analyser_), 2);
    for (const bool side : {false, true}) {
        auto* spectrum =
            new CSpectrum(side ? kSide : kMid, &analyser_,
                          side ? DisplayRecord::kStereoSide : DisplayRecord::kStereoMid);
        spectrum->setLabel(side ? "Side" : "Mid");
        spectrum->setDrawLabel(true);
        addDisplay(page, spectrum, 2);
    }
    auto* midSide =
        addMeter(page, new CVUMeter_Stereo(kMidSideMeterRect, &analyser_, kMidSideMeter));
    // The engine counts for both: a click on one sets both back.
    midSide->setResetCallback([this] { meter_->resetOvers(); });
    meter_->setResetCallback([midSide] { midSide->resetOvers(); });
}

void COrvelScopeEditor::addStrips(CFrame& frame) {
    CPictureCache& pictures = editorPictures();
    auto* scopeStrip = new CScopeDialStrip(analyser_, pictures, this);
    strips_ = {scopeStrip, makeSpectrumStrip(analyser_, pictures, this),
               makeStereoStrip(analyser_, pictures, this), nullptr};
    for (CView* strip : strips_)
        if (strip != nullptr) frame.addView(strip);
    scopeStrip->setVisibleTimeChanged(
        [this](Vardo::IPluginParameter* parameter) { scope_->SetWheelParameter(parameter); });
    optionFields_ = new COptionFields(analyser_);
    frame.addView(optionFields_);
}

} // namespace Orvel

#include "Gallery.h"

#include "Showcase.h"
#include "assets/Archives.h"
#include "controls/ActionButton.h"
#include "controls/ButtonBar.h"
#include "controls/GroupLabel.h"
#include "controls/MessageBox.h"
#include "controls/Palette.h"
#include "controls/TextEdit.h"

#include <array>

namespace Gallery {

using namespace Sorel;

namespace {
constexpr double kLeft = 24.0;
constexpr const char* kMeteringModes = "Peak|Histogram|K12|K14|K20";

/// A part of a picture, as it is.
class PictureSample : public CView {
  public:
    PictureSample(const CRect& size, CBitmap* picture, CPoint offset)
        : CView(size)
        , picture_(picture)
        , offset_(offset) {}
    void draw(CDrawContext& context) override {
        if (picture_) picture_->draw(context, getViewSize(), offset_);
        setDirty(false);
    }

  private:
    Counted<CBitmap> picture_;
    CPoint offset_;
};
} // namespace

Editor::Editor()
    : CSorelineEditor(nullptr, nullptr)
    , pictures_(Assets::pictureArchive()) {
    setRect(kWidth, kHeight);
}

Editor::~Editor() { closeFrame(); }

void Editor::onFrameCreated(CFrame& frame) {
    page_ = &frame;
    frame.setBackgroundColor(Palette::kGround);
    addDials();
    addButtons();
    addFields();
    addSurfaces();
    page_->setDirty(true);
}

void Editor::onFrameClosing() {
    fileSelector_.reset();
    page_ = nullptr;
    typedDial_ = nullptr;
    shownMenu_ = nullptr;
    status_ = nullptr;
}

void Editor::addHeading(double x, double y, double width, const char* text) {
    page_->addView(new Heading(CRect::ofSize(x, y, width, 16.0), text));
}

CDial* Editor::addDial(double x, double y, const char* label, Vardo::IPluginParameter& parameter) {
    const CDial::Pictures pictures{pictures_.getBitmap("NormalDialBG.png"),
                                   pictures_.getBitmap("NormalDialLedRing.png"),
                                   pictures_.getBitmap("NormalDial.png")};
    auto* dial = new CDial({x, y}, this, 0, label, pictures, &parameter);
    page_->addView(dial);
    return dial;
}

void Editor::addDials() {
    addHeading(kLeft, 18.0, 368.0, "DIAL: DRAG, WHEEL, DOUBLE CLICK, TYPE");
    addDial(24.0, 44.0, "Input Gain", parameters_.gain(0.0F))->setSnapToCenter(true);
    CDial* mode = addDial(97.0, 44.0, "Metering Mode", parameters_.choice(kMeteringModes, 5, 2));
    mode->setSteppedByParameter(true);
    addDial(170.0, 44.0, "RMS Length", parameters_.milliseconds(505.0F));
    addDial(243.0, 44.0, "Input Gain", parameters_.gain(0.766F));
    addDial(316.0, 44.0, "Input Gain", parameters_.gain(2.0F));

    addHeading(424.0, 18.0, 150.0, "INACTIVE, TYPING");
    addDial(424.0, 44.0, "Sync Duration", parameters_.percent(0.5F))->setActive(false);
    typedDial_ = addDial(500.0, 44.0, "RMS Length", parameters_.milliseconds(623.8F));

    addHeading(606.0, 18.0, 216.0, "SMALL DIAL");
    const CSmallDial::SmallPictures small{pictures_.getBitmap("TolvaneDialBG.png"),
                                          pictures_.getBitmap("TolvaneDial.png")};
    const auto addSmall = [&](double x, const char* label, Vardo::IPluginParameter& parameter) {
        page_->addView(new CSmallDial({x, 44.0}, this, 0, label, small, &parameter));
    };
    addSmall(606.0, "Projector", parameters_.hertz(20.0F));
    addSmall(678.0, "Rotate", parameters_.percent(0.65F));
    addSmall(750.0, "Projector", parameters_.hertz(24000.0F));

    addHeading(854.0, 18.0, 122.0, "ARROWS");
    double x = 860.0;
    for (const char* name : {"ArrowLeftBig.png", "ArrowRightBig.png", "ArrowDownBig.png"}) {
        for (const double y : {0.0, 21.0})
            page_->addView(new PictureSample(CRect::ofSize(x, 44.0 + y * 1.5, 18.0, 21.0),
                                             pictures_.getBitmap(name), {0.0, y}));
        x += 36.0;
    }
}

void Editor::addButtons() {
    addHeading(kLeft, 148.0, 550.0, "PAGE BUTTONS");
    // The track is part of the instrument's ground: cut it out of there.
    page_->addView(new PictureSample(CRect::ofSize(23.0, 176.0, 480.0, 30.0),
                                     pictures_.getBitmap("Background.png"), {311.0, 9.0}));
    auto* bar = new CButtonBar(CRect::ofSize(24.0, 168.0, 475.0, 45.0), this, 0);
    for (const char* name :
         {"ButtonScope.png", "ButtonSpectrum.png", "ButtonStereofield.png", "ButtonSystem.png"})
        bar->addButton(pictures_.getBitmap(name), 118.0, 25.0, 1.0, 10.0);
    page_->addView(bar);

    addHeading(606.0, 148.0, 370.0, "SWITCHES");
    const std::array pictures{"OnOff_Button.png", "OnOff_ButtonGreen.png",
                              "OnOff_ButtonOrange.png"};
    const std::array captions{"Freeze", "Show Transients", "Male 'Ess'"};
    for (std::size_t i = 0; i < pictures.size(); ++i)
        for (const bool on : {false, true}) {
            auto* button = new CSwitch(
                {606.0 + 140.0 * (on ? 1.0 : 0.0), 170.0 + 22.0 * static_cast<double>(i)}, this, 0,
                pictures_.getBitmap(pictures[i]), &parameters_.onOff(on));
            button->setCaption(captions[i], 80.0);
            page_->addView(button);
        }
    addHeading(kLeft, 226.0, 550.0, "COMMAND BUTTONS: WORKING, PRESSED, FADING, INACTIVE");
    const double y = 254.0;
    page_->addView(new CommandSample(CRect::ofSize(24.0, y, 90.0, 25.0), "Message...", 0, true,
                                     [this] { showMessage(); }));
    page_->addView(new CommandSample(CRect::ofSize(122.0, y, 90.0, 25.0), "Open...", 0, true,
                                     [this] { chooseFile(); }));
    page_->addView(new CommandSample(CRect::ofSize(220.0, y, 90.0, 25.0), "Update", 255, true));
    page_->addView(new CommandSample(CRect::ofSize(318.0, y, 90.0, 25.0), "Update", 140, true));
    page_->addView(new CommandSample(CRect::ofSize(416.0, y, 90.0, 25.0), "Update", 0, false));
}

void Editor::addFields() {
    addHeading(kLeft, 300.0, 270.0, "TEXT BOX");
    Sorel_TextEdit::CInfo info;
    info.size = CRect::ofSize(24.0, 326.0, 195.0, 21.0);
    info.margin = 8.0;
    info.text = "Mix Bus 8 Beats";
    page_->addView(new Sorel_TextEdit(info, this, 0));
    info.size = info.size.moved(0.0, 28.0);
    info.text = "A text that is longer than its box can show, with Ümläuts";
    page_->addView(new Sorel_TextEdit(info, this, 0));

    addHeading(312.0, 300.0, 262.0, "MENU FIELDS");
    const std::array names{"16384", "x4", "Max"};
    double x = 312.0;
    for (const char* name : names) {
        auto* menu = new COptionMenu(CRect::ofSize(x, 328.0, 44.0, 15.0), this, 0);
        menu->addEntry(name);
        menu->addEntry("Another");
        menu->addEntry("And one more");
        menu->setCurrent(0);
        page_->addView(menu);
        x += 46.0;
    }
    shownMenu_ = new COptionMenu(CRect::ofSize(312.0, 354.0, 136.0, 21.0), this, 0);
    shownMenu_->setHorizontalAlign(HorizontalAlign::kLeft);
    shownMenu_->setFieldText("Menu with sub-menus");
    for (const char* title : {"Save Preset", "Save Preset as.."})
        shownMenu_->addEntry(title);
    shownMenu_->addSeparator();
    shownMenu_->addEntry("Delete Preset")->setEnabled(false);
    shownMenu_->addEntry("Rename Preset");
    shownMenu_->addSeparator();
    const auto mastering = Counted<COptionMenu>::make(CRect{}, nullptr, 0);
    for (const char* title :
         {"1 - Loudness K14", "2 - Loudness K20", "3 - Width Check", "4 - Low End 64 Bands"})
        mastering->addEntry(title);
    mastering->setCurrent(1);
    shownMenu_->addSubmenu("Mastering", mastering.get())->setChecked(true);
    shownMenu_->addEntry("1 - Default Preset");
    shownMenu_->addEntry("2 - Drum Bus");
    page_->addView(shownMenu_);

    status_ = new CTextLabel(CRect::ofSize(24.0, 384.0, 270.0, 15.0), "");
    status_->setFont(kDefaultFont, 9.0, kRegularFont);
    status_->setFontColor(Palette::kLabel);
    status_->setHorizontalAlign(HorizontalAlign::kLeft);
    page_->addView(status_);

    addHeading(606.0, 300.0, 370.0, "GROUP LABELS");
    page_->addView(
        new CGroupLabel(CRect::ofSize(606.0, 328.0, 160.0, 11.0), "Global", Palette::kLine));
    page_->addView(
        new CGroupLabel(CRect::ofSize(782.0, 328.0, 194.0, 11.0), "Stereofield", Palette::kLine));
    addHeading(606.0, 352.0, 370.0, "DRAG AND DROP");
    page_->addView(new DropArea(CRect::ofSize(606.0, 378.0, 370.0, 46.0)));
}

void Editor::addSurfaces() {
    addHeading(606.0, 444.0, 370.0, "COLOURS");
    page_->addView(new ColourSample(CRect::ofSize(606.0, 470.0, 370.0, 34.0)));
    addHeading(606.0, 520.0, 370.0, "CURVES");
    page_->addView(new CurveSample(CRect::ofSize(606.0, 546.0, 370.0, 200.0)));
    addHeading(kLeft, 636.0, 550.0, "TYPE");
    page_->addView(new TypeSample(CRect::ofSize(24.0, 656.0, 550.0, 100.0)));
}

void Editor::showMessage() {
    CMessageBox::show(
        *page_, "Overwrite Preset?",
        "The preset \"Mix Bus 8 Beats\" already exists.\nDo you want to overwrite it?",
        {"Overwrite", "Cancel"},
        [this](int button) { status_->setText(button == 0 ? "Overwrite" : "Cancel"); });
}

void Editor::chooseFile() {
    FileDialogRequest request;
    request.title = "Open a sound";
    request.extensions = {{"Sound", "wav", "audio/x-wav"}, {"Sound", "flac", "audio/flac"}};
    fileSelector_ = std::make_unique<CFileSelector>(*page_, request);
    fileSelector_->run([this](const FileDialogAnswer& answer) {
        if (!answer.problem.empty())
            CMessageBox::show(*page_, "No dialog", answer.problem, {"OK"}, {});
        else if (!answer.paths.empty())
            status_->setText(answer.paths.front().c_str());
    });
}

void Editor::valueChanged(CControl* control) {
    if (control->isTypeOf("COptionMenu") && status_ != nullptr) {
        const auto* menu = static_cast<COptionMenu*>(control);
        const CMenuItem* item = menu->getLastMenu() != nullptr
                                    ? menu->getLastMenu()->getEntry(menu->getLastResult())
                                    : nullptr;
        if (item != nullptr) status_->setText(item->getTitle().c_str());
    }
}

void Editor::showHandMadeStates() {
    if (typedDial_ != nullptr) typedDial_->openTyping();
    if (shownMenu_ != nullptr) shownMenu_->popup();
}

} // namespace Gallery

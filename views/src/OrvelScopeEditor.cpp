// The editor's life: windows and pictures, pages, and what host and plug-in tell it.
#include "views/OrvelScopeEditor.h"

#include "EditorFrame.h"
#include "analysis/OrvelScope.h"
#include "assets/Archives.h"
#include "controls/ButtonBar.h"
#include "frame/IdleList.h"
#include "online/UpdateCheck.h"
#include "platform/Offscreen.h"
#include "presets/PresetBrowser.h"
#include "views/DialStrip.h"
#include "views/DisplayMenu.h"
#include "views/LevelMeterStereo.h"
#include "views/OptionFields.h"
#include "views/Pictures.h"

#include <algorithm>

namespace Orvel {

using Sorel::CRect;

namespace {
enum Page { kScopePage = 0, kSpectrumPage = 1, kStereoPage = 2, kSystemPage = 3 };
}

COrvelScopeEditor::COrvelScopeEditor(COrvelScope& analyser, EditorSurroundings surroundings)
    : CSorelineEditor(&analyser, surroundings.callback)
    , analyser_(analyser)
    , surroundings_(std::move(surroundings))
    , presets_(&analyser, this, Assets::pictureArchive()) {
    // The ground is as large as the window; its picture is not decoded before one opens.
    setRect(kWidth, kHeight);
}

COrvelScopeEditor::~COrvelScopeEditor() { COrvelScopeEditor::close(); }

// ---- windows and pictures

void COrvelScopeEditor::openOn(Sorel::IPlatform& platform, void* parentWindow) {
    if (isFrameOpen()) return;
    Sorel::setPlatform(&platform);
    analyser_.display().setWatched(true);
    openFrame(parentWindow);
    Vardo::IdleList::instance().add(this);
}

void COrvelScopeEditor::open(void* parentWindow) {
    if (!surroundings_.desktop || isFrameOpen()) return;
    startUpdateCheck(); // for a user at a window, not for pictures
    openOn(surroundings_.desktop(), parentWindow);
}

int COrvelScopeEditor::close() {
    if (!isFrameOpen()) return 0;
    Vardo::IdleList::instance().remove(this);
    analyser_.display().setWatched(false);
    closeFrame();
    updateCheck_.reset(); // its question, if open, went with the frame
    checkAsked_ = false;
    downloadDone_ = false;
    return 1;
}

void COrvelScopeEditor::openPicture() {
    if (!memory_) memory_ = std::make_unique<Sorel::COffscreenPlatform>();
    openOn(*memory_, nullptr);
}

void COrvelScopeEditor::passTime(int milliseconds) {
    if (!memory_ || !isFrameOpen()) return;
    memory_->advance(static_cast<std::uint64_t>(std::max(milliseconds, 0)));
    idleFrame();
}

void COrvelScopeEditor::pointAt(double x, double y) {
    if (!memory_ || memory_->frame() == nullptr) return;
    const bool inside = getRect().contains(Sorel::CPoint{x, y});
    if (inside)
        memory_->frame()->moveMouse({x, y});
    else
        memory_->frame()->leave();
}

bool COrvelScopeEditor::writePicture(const std::string& utf8Path, std::string& problem) {
    if (!memory_ || memory_->frame() == nullptr) {
        problem = "there is no picture: it was not opened";
        return false;
    }
    return memory_->frame()->writePng(utf8Path, &problem);
}

Sorel::CFrame* COrvelScopeEditor::createFrame(const CRect& rect, void* parentWindow) {
    return new CEditorFrame(rect, parentWindow, this, windowTitle(), [this] { return host_; });
}

void COrvelScopeEditor::onFrameClosing() {
    browser_ = nullptr;
    pageButtons_ = nullptr;
    meter_ = nullptr;
    pages_.fill(nullptr);
    strips_.fill(nullptr);
    optionFields_ = nullptr;
    displayMenu_ = nullptr;
    systemInfo_ = nullptr;
    systemPage_ = nullptr;
}

int COrvelScopeEditor::eventDescriptor() {
    return isFrameOpen() && frame()->platformFrame() != nullptr
               ? frame()->platformFrame()->eventDescriptor()
               : -1;
}

void COrvelScopeEditor::onCloseRequested() {
    if (host_ != nullptr) host_->editorCloseRequested();
}

// ---- pages

void COrvelScopeEditor::setActivePage(int page) {
    if (page < 0 || page >= kNumPages) return;
    analyser_.setActivePage(page);
    for (int i = 0; i < kNumPages; ++i) {
        const auto index = static_cast<std::size_t>(i);
        if (pages_[index] != nullptr) pages_[index]->setVisible(i == page);
        if (strips_[index] != nullptr) strips_[index]->setVisible(i == page);
    }
    if (meter_ != nullptr) meter_->setVisible(page != kSystemPage);
    if (optionFields_ != nullptr)
        optionFields_->setVisible(page == kSpectrumPage || page == kStereoPage);
    if (pageButtons_ != nullptr) pageButtons_->setValue(page);
}

void COrvelScopeEditor::valueChanged(Sorel::CControl* control) {
    if (control == pageButtons_) setActivePage(pageButtons_->getIndex());
}

void COrvelScopeEditor::stateReplaced(int page) {
    if (!isFrameOpen()) return;
    meter_->resetAllOvers();
    presets_.showStoredName();
    setActivePage(page);
    frame()->setDirty(true);
}

// ---- what a host asks

void COrvelScopeEditor::update(int /*part*/) {
    if (isFrameOpen()) frame()->setDirty(true);
}

// Listeners brought every control up to date; what no control shows is painted with the rest.
void COrvelScopeEditor::parameterChanged() { update(0); }

bool COrvelScopeEditor::onWheel(float distance) {
    if (!isFrameOpen()) return false;
    Sorel::CPoint where;
    frame()->getCurrentMouseLocation(&where);
    std::int32_t buttons = frame()->getCurrentMouseButtons();
    return frame()->onWheel(where, 1, distance, &buttons);
}

bool COrvelScopeEditor::onKeyDown(const Vardo::KeyEvent& key) {
    return isFrameOpen() && frame()->onKeyDown(key) > 0;
}

bool COrvelScopeEditor::onKeyUp(const Vardo::KeyEvent& key) {
    return isFrameOpen() && frame()->onKeyUp(key) > 0;
}

} // namespace Orvel

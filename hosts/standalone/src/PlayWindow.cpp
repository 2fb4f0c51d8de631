// The window of its own.
#include "PlayWindow.h"

#include "AudioSource.h"
#include "Keys.h"
#include "PictureBeat.h"
#include "PlayDeck.h"
#include "PluginSetup.h"
#include "StandardError.h"
#include "UserError.h"
#include "frame/IdleList.h"
#include "frame/PluginBase.h"
#include "frame/PluginEditor.h"

#include <thread>
#include <utility>

#include <poll.h>

namespace Standalone {
namespace {

Vardo::IPluginEditor& editorOf(Vardo::IPluginBase& plugin) {
    Vardo::IPluginEditor* editor = plugin.getEditor();
    if (editor == nullptr) throw NoWindow("the analyser has no window");
    return *editor;
}

} // namespace

PlayWindow::PlayWindow(Vardo::IPluginBase& plugin, PlayDeck& deck, FileOpener openFile)
    : plugin_(plugin)
    , editor_(editorOf(plugin))
    , deck_(deck)
    , openFile_(std::move(openFile)) {
    editor_.setHost(this);
    editor_.open(nullptr);
    if (editor_.isOpen() && editor_.eventDescriptor() >= 0) return;
    editor_.close();
    editor_.setHost(nullptr);
    throw NoWindow("no window can be opened here; is there a display, and does DISPLAY name it?");
}

PlayWindow::~PlayWindow() {
    editor_.close();
    editor_.setHost(nullptr);
}

void PlayWindow::run(const volatile std::sig_atomic_t& stop) {
    while (!quit_ && stop == 0) {
        waitForEvents();
        Vardo::IdleList::instance().tick(); // the editor entered itself when it opened
        plugin_.onIdle();
        if (wantedPage_ >= 0)
            activatePage(plugin_, static_cast<Vardo::AnalyserPage>(std::exchange(wantedPage_, -1)));
        if (!droppedPath_.empty()) loadDropped();
        deck_.watch();
        if (!editor_.isOpen() || editor_.eventDescriptor() < 0) {
            tell("the display is gone");
            quit_ = true;
        }
    }
}

/// Sleeps until the next picture. Events wait for it as well: what they change is seen with it, and
/// the display's answer to each picture would wake us in vain. Only in a still window they wake us
/// at once.
void PlayWindow::waitForEvents() {
    const auto now = PictureBeat::Clock::now();
    if (!editor_.isStill()) {
        std::this_thread::sleep_until(PictureBeat::next(now));
        return;
    }
    const auto due = PictureBeat::next(now, PictureBeat::kPeriodsWhenStill);
    const timespec left{0, std::chrono::duration_cast<std::chrono::nanoseconds>(due - now).count()};
    pollfd events{editor_.eventDescriptor(), POLLIN, 0};
    ppoll(&events, 1, &left, nullptr);
}

bool PlayWindow::editorKeyDown(const Vardo::KeyEvent& key) {
    const std::optional<KeyAction> action = actionOf(key);
    if (!action) return false;
    switch (action->kind) {
    case KeyAction::Kind::togglePlaying:
        deck_.togglePlaying();
        break;
    case KeyAction::Kind::seekBy:
        deck_.seekBy(action->seconds);
        break;
    case KeyAction::Kind::toStart:
        deck_.toStart();
        break;
    case KeyAction::Kind::showPage:
        wantedPage_ = action->page;
        break;
    case KeyAction::Kind::quit:
        quit_ = true;
        break;
    }
    return true;
}

// Opened when the drop is over: the program that dragged waits for our answer.
bool PlayWindow::editorFilesDropped(const std::vector<std::string>& paths) {
    if (paths.empty()) return false;
    droppedPath_ = paths.front();
    return true;
}

void PlayWindow::loadDropped() {
    const std::string path = std::exchange(droppedPath_, {});
    try {
        deck_.load(openFile_(path));
        tell("playing " + deck_.description());
    } catch (const UserError& error) {
        tell(error.what());
    }
}

} // namespace Standalone

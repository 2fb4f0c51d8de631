// Window, keys, size and time of the editor.
#include "VardoVST3EditorView.h"

#include "Guarded.h"
#include "VardoVST3.h"
#include "frame/IdleList.h"
#include "frame/PluginEditor.h"

#include <chrono>
#include <cmath>

namespace Vardo {

using namespace Steinberg;

namespace {
/// All open editors of this module get their idle time from whichever view's timer comes first;
/// the timers of the others find it done.
void tickOncePerPeriod() {
    using std::chrono::steady_clock;
    constexpr steady_clock::duration kLeast =
        std::chrono::milliseconds(IdleList::kDefaultPeriodMs / 2);
    static Core::Relaxed<steady_clock::rep> last{0};
    const steady_clock::rep now = steady_clock::now().time_since_epoch().count();
    if (now - last < kLeast.count()) return;
    last = now;
    IdleList::instance().tick();
}
} // namespace

KeyEvent keyEventOf(char16 key, int16 keyCode, int16 modifiers) {
    // Hosts name keys without a character by codes, the printable ones among them from here on.
    constexpr int kFirstPrintableCode = 0x80;
    constexpr int kFromCodeToCharacter = 0x50;
    // Shift and alt are the same on both sides. What VST 3 calls command is the control key of
    // PCs, and its control key is there the other one.
    constexpr int kSame = 1 | 2;
    constexpr int kHostCommand = 4;
    constexpr int kHostControl = 8;
    constexpr int kControl = 8;
    constexpr int kOtherCommand = 4;

    KeyEvent event;
    event.virtualKey = static_cast<std::uint8_t>(keyCode);
    if (key == 0)
        event.character = keyCode < kFirstPrintableCode ? 0 : keyCode - kFromCodeToCharacter;
    else if (key < 0x80)
        event.character = key;
    int bits = modifiers & kSame;
    if ((modifiers & kHostCommand) != 0) bits |= kControl;
    if ((modifiers & kHostControl) != 0) bits |= kOtherCommand;
    event.modifiers = static_cast<std::uint8_t>(bits);
    return event;
}

Vardo_VST3_EditorView::Vardo_VST3_EditorView(Vardo_VST3& effect)
    : effect_(&effect)
    , loop_(*this) {
    rect = editorRect();
    told_ = rect;
}

Vardo_VST3_EditorView::~Vardo_VST3_EditorView() {
    guarded([&]() -> tresult {
        letGo(); // hosts forget `removed`
        return kResultOk;
    });
    effect_->viewGone(this);
}

// --- window -------------------------------------------------------------------------------------

tresult PLUGIN_API Vardo_VST3_EditorView::isPlatformTypeSupported(FIDString type) {
    return FIDStringsEqual(type, platformWindowType()) ? kResultTrue : kResultFalse;
}

tresult PLUGIN_API Vardo_VST3_EditorView::attached(void* parent, FIDString type) {
    return guarded([&]() -> tresult {
        if (parent == nullptr || isPlatformTypeSupported(type) != kResultTrue)
            return kInvalidArgument;
        IPluginEditor* editor = effect_->editor();
        if (editor == nullptr) return kResultFalse;
        if (Vardo_VST3_EditorView* owner = effect_->editorOwner()) owner->letGo();
        effect_->setEditorOwner(this);
        editor->open(parent);
        if (!editor->isOpen()) {
            effect_->setEditorOwner(nullptr);
            return kResultFalse;
        }
        editor->idle();
        lookForHostLoop();
        return CPluginView::attached(parent, type);
    });
}

tresult PLUGIN_API Vardo_VST3_EditorView::removed() {
    return guarded([&]() -> tresult {
        letGo();
        plugFrame = nullptr;
        return CPluginView::removed();
    });
}

void Vardo_VST3_EditorView::letGo() {
    loop_.stop(); // before the window: the loop watches its connection
    if (effect_->editorOwner() != this) return;
    effect_->setEditorOwner(nullptr);
    IPluginEditor* editor = effect_->editor();
    if (editor != nullptr && editor->isOpen()) editor->close();
}

IPluginEditor* Vardo_VST3_EditorView::openEditor() {
    IPluginEditor* editor = effect_->editorOwner() == this ? effect_->editor() : nullptr;
    return editor != nullptr && editor->isOpen() ? editor : nullptr;
}

// --- the host's loop ----------------------------------------------------------------------------

void Vardo_VST3_EditorView::lookForHostLoop() {
    IPluginEditor* editor = openEditor();
    if (editor == nullptr) return;
    if (effect_->enterHostLoop(loop_, plugFrame, IdleList::kDefaultPeriodMs))
        loop_.watch(editor->eventDescriptor());
}

tresult PLUGIN_API Vardo_VST3_EditorView::setFrame(IPlugFrame* frame) {
    return guarded([&]() -> tresult {
        if (frame == plugFrame) return kResultTrue;
        if (frame == nullptr) loop_.stop(); // maybe the frame's
        plugFrame = frame;
        lookForHostLoop();
        return kResultTrue;
    });
}

void Vardo_VST3_EditorView::onHostTimer() {
    const IPtr<Vardo_VST3_EditorView> alive(this); // an idle step may let the host close us
    tickOncePerPeriod();
    effect_->onHostTurn();
    tellNewSize();
    // The display may be gone, and its connection with it.
    if (IPluginEditor* editor = openEditor()) loop_.watch(editor->eventDescriptor());
}

void Vardo_VST3_EditorView::onHostEvents() {
    const IPtr<Vardo_VST3_EditorView> alive(this);
    IdleList::instance().tick(); // at once: until they are read, the host finds events waiting
    if (IPluginEditor* editor = openEditor()) loop_.watch(editor->eventDescriptor());
}

// --- size ---------------------------------------------------------------------------------------

ViewRect Vardo_VST3_EditorView::editorRect() {
    int width = 0;
    int height = 0;
    IPluginEditor* editor = effect_->editor();
    if (editor == nullptr || !editor->getSize(&width, &height)) return rect;
    return ViewRect(0, 0, width, height);
}

tresult PLUGIN_API Vardo_VST3_EditorView::getSize(ViewRect* size) {
    if (size == nullptr) return kInvalidArgument;
    return guarded([&]() -> tresult {
        *size = editorRect();
        return kResultTrue;
    });
}

void Vardo_VST3_EditorView::tellNewSize() {
    ViewRect now = editorRect();
    if (plugFrame == nullptr || !isAttached() ||
        (now.getWidth() == told_.getWidth() && now.getHeight() == told_.getHeight()))
        return;
    rect = now;
    told_ = now;
    plugFrame->resizeView(this, &now);
}

// --- keys and wheel -----------------------------------------------------------------------------

tresult PLUGIN_API Vardo_VST3_EditorView::onWheel(float distance) {
    return guarded([&]() -> tresult {
        IPluginEditor* editor = openEditor();
        if (editor == nullptr || !std::isfinite(distance)) return kResultFalse;
        return editor->onWheel(distance) ? kResultTrue : kResultFalse;
    });
}

tresult PLUGIN_API Vardo_VST3_EditorView::onKeyDown(char16 key, int16 keyCode, int16 modifiers) {
    return guarded([&]() -> tresult {
        IPluginEditor* editor = openEditor();
        return editor != nullptr && editor->onKeyDown(keyEventOf(key, keyCode, modifiers))
                   ? kResultOk
                   : kResultFalse;
    });
}

tresult PLUGIN_API Vardo_VST3_EditorView::onKeyUp(char16 key, int16 keyCode, int16 modifiers) {
    return guarded([&]() -> tresult {
        IPluginEditor* editor = openEditor();
        return editor != nullptr && editor->onKeyUp(keyEventOf(key, keyCode, modifiers))
                   ? kResultOk
                   : kResultFalse;
    });
}

} // namespace Vardo

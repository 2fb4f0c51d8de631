// What the keys of the window do while something plays.
#include "Keys.h"

#include "frame/PluginEditor.h"

namespace Standalone {
namespace {

// KeyEvent::virtualKey of the keys used here, the same on every platform.
enum Key : int {
    kEscape = 6,
    kSpace = 7,
    kHome = 10,
    kLeft = 11,
    kRight = 13,
    kNumpad1 = 25,
    kNumpad4 = 28,
};

// Bits of KeyEvent::modifiers: shift 1, alt 2, command 4, control 8.
constexpr int kShift = 1;
constexpr int kOtherModifiers = 2 | 4 | 8;
constexpr int kControl = 8;

constexpr int kStepSeconds = 5;
constexpr int kShortStepSeconds = 1;

KeyAction seekBy(int direction, bool shift) {
    KeyAction action{KeyAction::Kind::seekBy};
    action.seconds = direction * (shift ? kShortStepSeconds : kStepSeconds);
    return action;
}

KeyAction showPage(int page) {
    KeyAction action{KeyAction::Kind::showPage};
    action.page = page;
    return action;
}

} // namespace

std::optional<KeyAction> actionOf(const Vardo::KeyEvent& key) {
    const bool isQ = key.character == 'q' || key.character == 'Q';
    if ((key.modifiers & kOtherModifiers) != 0) {
        // Ctrl+Q is what programs end with; all else belongs to the desktop.
        if (isQ && (key.modifiers & kOtherModifiers) == kControl)
            return KeyAction{KeyAction::Kind::quit};
        return std::nullopt;
    }
    const bool shift = (key.modifiers & kShift) != 0;
    switch (key.virtualKey) {
    case kEscape:
        return KeyAction{KeyAction::Kind::quit};
    case kSpace:
        return KeyAction{KeyAction::Kind::togglePlaying};
    case kHome:
        return KeyAction{KeyAction::Kind::toStart};
    case kLeft:
        return seekBy(-1, shift);
    case kRight:
        return seekBy(+1, shift);
    default:
        break;
    }
    if (key.virtualKey >= kNumpad1 && key.virtualKey <= kNumpad4)
        return showPage(key.virtualKey - kNumpad1);
    if (key.character >= '1' && key.character <= '4') return showPage(key.character - '1');
    if (isQ) return KeyAction{KeyAction::Kind::quit};
    return std::nullopt;
}

} // namespace Standalone

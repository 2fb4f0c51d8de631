// Mouse buttons, keys and cursors, the same on every platform.
#pragma once

#include "frame/PluginEditor.h"

#include <cstdint>

namespace Sorel {

using KeyEvent = Vardo::KeyEvent;

/// Bits of a mouse-button mask.
namespace Buttons {
enum : std::int32_t {
    kDoubleClick = 0x01,
    kLeft = 0x02,
    kMiddle = 0x04,
    kRight = 0x08,
    kShift = 0x10,
    kControl = 0x20,
    kAlt = 0x40,
    kExtra1 = 0x100,
    kExtra2 = 0x200,
    /// In a hit test: whatever is pressed.
    kAny = -1,
    kAnyModifier = 0xF0,
};
}

/// KeyEvent::virtualKey. 0 stands for a key that is not listed: its character counts.
namespace Key {
enum : std::uint8_t {
    kNone = 0,
    kBack = 1,
    kTab = 2,
    kClear = 3,
    kReturn = 4,
    kPause = 5,
    kEscape = 6,
    kSpace = 7,
    kEnd = 9,
    kHome = 10,
    kLeft = 11,
    kUp = 12,
    kRight = 13,
    kDown = 14,
    kPageUp = 15,
    kPageDown = 16,
    kSelect = 17,
    kPrint = 18,
    kSnapshot = 20,
    kInsert = 21,
    kDelete = 22,
    kHelp = 23,
    kNumpad0 = 24, // to 33 for numpad 9
    kMultiply = 34,
    kAdd = 35,
    kSeparator = 36,
    kSubtract = 37,
    kDecimal = 38,
    kDivide = 39,
    kF1 = 40, // to 51 for F12
    kNumLock = 52,
    kScroll = 53,
    kShift = 54,
    kControl = 55,
    kAlt = 56,
    kEquals = 57,
};
}

/// Bits of KeyEvent::modifiers.
namespace Modifier {
enum : std::uint8_t { kShift = 1, kAlt = 2, kCommand = 4, kControl = 8 };
}

enum class CursorKind : std::uint8_t {
    kArrow,
    kWait,
    kHorizontal,
    kVertical,
    kSizeAll,
    kHand,
    kText,
    kCross,
    kForbidden,
};

} // namespace Sorel

// Whether a host's window shows the instrument, judged by its colours on the screen.
#pragma once

#include "XServer.h"

/// As the interfaces hand a window to a plug-in.
inline void* asParent(xcb_window_t window) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(window));
}

inline int redOf(std::uint32_t pixel) { return static_cast<int>(pixel >> 16 & 0xFF); }
inline int blueOf(std::uint32_t pixel) { return static_cast<int>(pixel & 0xFF); }

/// Header and wells have their own greys. `x`, `y`: where the window stands on the screen.
inline bool showsInstrument(const XUser& user, int x, int y) {
    const std::uint32_t header = user.pixel(x + 820, y + 40);
    const std::uint32_t well = user.pixel(x + 20, y + 425);
    return redOf(header) > 45 && redOf(header) < 62 && blueOf(header) > redOf(header) &&
           blueOf(well) > redOf(well) + 15;
}

/// The gold bar under a chosen page button, a lit switch.
inline bool isLit(const XUser& user, int x, int y) { return redOf(user.pixel(x, y)) > 180; }

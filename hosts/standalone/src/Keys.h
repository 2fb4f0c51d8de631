// What the keys of the window do while something plays.
#pragma once

#include <optional>

namespace Vardo {
struct KeyEvent;
}

namespace Standalone {

struct KeyAction {
    enum class Kind { togglePlaying, seekBy, toStart, showPage, quit };
    Kind kind = Kind::quit;
    int seconds = 0; ///< of seekBy, negative for back
    int page = 0;    ///< of showPage, 0 to 3
};

/// Nothing for a key that does nothing here.
std::optional<KeyAction> actionOf(const Vardo::KeyEvent& key);

} // namespace Standalone

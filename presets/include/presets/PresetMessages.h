// Questions and messages of the presets, over the window that a view is in.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Sorel {

class CView;

/// While another message covers the window, these wait for their turn; a window that closes takes
/// them along, and nobody is told. Threads: GUI thread.
namespace PresetMessages {

/// `then` hears whether the first button was chosen, from a later idle; at once, and no, where
/// there is no window.
void ask(CView* view,
         const std::string& title,
         const std::string& text,
         std::vector<std::string> buttons,
         std::function<void(bool)> then);

/// Something went wrong; nothing is shown without a window.
void tell(CView* view, const std::string& text, const std::string& title = "Error!");

} // namespace PresetMessages
} // namespace Sorel

// Questions and messages of the presets, over the window that a view is in.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Sorel {

class CView;

namespace PresetMessages {

/// `then` hears whether the first button was chosen, from a later idle; at once, and no, where the
/// question cannot be shown. Nobody is told when the window closes first.
void ask(CView* view,
         const std::string& title,
         const std::string& text,
         std::vector<std::string> buttons,
         std::function<void(bool)> then);

/// Something went wrong; nothing is shown without a window.
void tell(CView* view, const std::string& text);

} // namespace PresetMessages
} // namespace Sorel

#include "PresetMessages.h"

#include "controls/MessageBox.h"
#include "presets/PresetName.h"
#include "tree/Frame.h"

#include <utility>

namespace Sorel::PresetMessages {

namespace {
// Names and paths can be of any length, the window cannot.
constexpr std::size_t kMaxTextBytes = 1278;

std::string cut(const std::string& text) {
    return std::string(cutBetweenCharacters(text, kMaxTextBytes));
}
} // namespace

void ask(CView* view,
         const std::string& title,
         const std::string& text,
         std::vector<std::string> buttons,
         std::function<void(bool)> then) {
    CFrame* frame = view != nullptr ? view->getFrame() : nullptr;
    const auto answer = [then](int button) {
        if (then) then(button == 0);
    };
    if (frame == nullptr ||
        !CMessageBox::show(*frame, title, cut(text), std::move(buttons), answer))
        answer(-1);
}

void tell(CView* view, const std::string& text) {
    CFrame* frame = view != nullptr ? view->getFrame() : nullptr;
    if (frame != nullptr) CMessageBox::show(*frame, "Error!", cut(text), {"OK"}, {});
}

} // namespace Sorel::PresetMessages

#include "presets/PresetMessages.h"

#include "controls/MessageBox.h"
#include "presets/PresetName.h"
#include "tree/Frame.h"

#include <utility>

namespace Sorel::PresetMessages {

namespace {
// Names and paths can be of any length, the window cannot.
constexpr std::size_t kMaxTextBytes = 1278;

struct Message {
    std::string title;
    std::string text;
    std::vector<std::string> buttons;
    CMessageBox::Answer answer;
};

void show(CFrame& frame, const Message& message) {
    const std::string text(cutBetweenCharacters(message.text, kMaxTextBytes));
    CMessageBox::show(frame, message.title, text, message.buttons, message.answer);
}

/// Waits in the frame, unseen, until nothing covers it.
class WaitingMessage final : public CView {
  public:
    explicit WaitingMessage(Message message)
        : CView(CRect{})
        , message_(std::move(message)) {
        setMouseEnabled(false);
    }
    void onIdle() override {
        CFrame* frame = getFrame();
        if (frame == nullptr || frame->getModalView() != nullptr) return;
        const Counted<WaitingMessage> self(this);
        frame->removeView(this, true);
        show(*frame, message_);
    }
    CView* newCopy() const override { return nullptr; }

  private:
    Message message_;
};

void showOrWait(CFrame& frame, Message message) {
    if (frame.getModalView() == nullptr)
        show(frame, message);
    else
        frame.addView(new WaitingMessage(std::move(message)));
}

CFrame* frameOf(const CView* view) { return view != nullptr ? view->getFrame() : nullptr; }
} // namespace

void ask(CView* view,
         const std::string& title,
         const std::string& text,
         std::vector<std::string> buttons,
         std::function<void(bool)> then) {
    CFrame* frame = frameOf(view);
    if (frame != nullptr)
        showOrWait(*frame, {title, text, std::move(buttons), [then = std::move(then)](int button) {
                                if (then) then(button == 0);
                            }});
    else if (then)
        then(false);
}

void tell(CView* view, const std::string& text, const std::string& title) {
    if (CFrame* frame = frameOf(view)) showOrWait(*frame, {title, text, {"OK"}, {}});
}

} // namespace Sorel::PresetMessages

// A popup menu that a control has asked for, between the control and the window that shows it.
#pragma once

#include "common/MenuStack.h"
#include "draw/DrawContext.h"

#include <memory>
#include <optional>

namespace Sorel {

/// Shared by both, as either may go first: the control cancels, the window collects the answer.
struct OpenMenu {
    std::optional<MenuStack> stack;
    IOSOptionMenu::Answer answer;

    bool isOpen() const { return answer != nullptr; }
    void cancel() { answer = nullptr; }
    /// In a window's idle: calls `answer` when there is a result. The callee may cancel or destroy
    /// everything.
    void deliver() {
        if (!isOpen() || !stack->isFinished()) return;
        const IOSOptionMenu::Answer call = std::exchange(answer, nullptr);
        call(stack->result());
    }
};

} // namespace Sorel

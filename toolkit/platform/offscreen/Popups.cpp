// Menus and file dialogs of an off-screen frame.
#include "offscreen/Popups.h"

namespace Sorel {

/// Reached by the objects below, which the frame has handed out.
struct OffscreenAccess {
    static bool showMenu(COffscreenFrame& frame,
                         const MenuRequest& request,
                         const std::shared_ptr<OpenMenu>& menu) {
        if (frame.events_ == nullptr || frame.popups_->shownMenu()) return false;
        const MenuStack::Setting setting{request.anchor, frame.size_, frame.mouse_,
                                         frame.buttons_ != 0, frame.owner_.now_};
        menu->stack.emplace(request, setting, menuTextWidth());
        frame.popups_->menu = menu;
        return true;
    }
    static void showDialog(COffscreenFrame& frame,
                           const FileDialogRequest& request,
                           const std::shared_ptr<OffscreenFileRequest>& pending) {
        frame.owner_.lastFileDialog_ = request;
        frame.popups_->fileRequest = pending;
    }
};

namespace {

class OffscreenMenu : public IOSOptionMenu {
  public:
    explicit OffscreenMenu(std::shared_ptr<OffscreenLink> link)
        : link_(std::move(link)) {}
    ~OffscreenMenu() override { OffscreenMenu::cancel(); }
    OffscreenMenu(const OffscreenMenu&) = delete;
    OffscreenMenu& operator=(const OffscreenMenu&) = delete;

    bool popup(const MenuRequest& request, Answer answer) override {
        if (isOpen() || link_->frame == nullptr || request.items.empty() || !answer) return false;
        menu_ = std::make_shared<OpenMenu>();
        if (!OffscreenAccess::showMenu(*link_->frame, request, menu_)) return false;
        menu_->answer = std::move(answer);
        return true;
    }
    void cancel() override {
        if (menu_) menu_->cancel();
    }
    bool isOpen() const override { return menu_ && menu_->isOpen(); }

  private:
    std::shared_ptr<OffscreenLink> link_;
    std::shared_ptr<OpenMenu> menu_;
};

class OffscreenFileDialog : public IOSFileDialog {
  public:
    explicit OffscreenFileDialog(std::shared_ptr<OffscreenLink> link)
        : link_(std::move(link)) {}

    void run(const FileDialogRequest& request, Answer answer) override {
        if (isOpen() || link_->frame == nullptr || !answer) return;
        pending_ = std::make_shared<OffscreenFileRequest>();
        pending_->answer = std::move(answer);
        OffscreenAccess::showDialog(*link_->frame, request, pending_);
    }
    void cancel() override { pending_ = nullptr; }
    bool isOpen() const override { return pending_ && pending_->answer; }

  private:
    std::shared_ptr<OffscreenLink> link_;
    std::shared_ptr<OffscreenFileRequest> pending_;
};

} // namespace

std::shared_ptr<OpenMenu> COffscreenFrame::Popups::shownMenu() const {
    std::shared_ptr<OpenMenu> open = menu.lock();
    return open && open->isOpen() ? open : nullptr;
}

std::shared_ptr<OffscreenFileRequest> COffscreenFrame::Popups::pendingFileRequest() const {
    std::shared_ptr<OffscreenFileRequest> pending = fileRequest.lock();
    return pending && pending->answer ? pending : nullptr;
}

std::unique_ptr<IOSOptionMenu> COffscreenFrame::Popups::createMenu() const {
    return std::make_unique<OffscreenMenu>(link);
}

std::unique_ptr<IOSFileDialog> COffscreenFrame::Popups::createFileDialog() const {
    return std::make_unique<OffscreenFileDialog>(link);
}

void COffscreenFrame::Popups::drawMenus(IOSBitmap& picture) const {
    const std::shared_ptr<OpenMenu> open = shownMenu();
    if (!open || open->stack->isFinished()) return;
    CRenderer renderer;
    renderer.attach(picture);
    for (int i = 0; i < open->stack->columnCount(); ++i) {
        const MenuColumn& column = open->stack->column(i);
        MenuPicture panel(column, true);
        panel.update();
        const CPoint at = column.rect().topLeft() - panel.panelOrigin();
        renderer.copyImage(panel.bitmap(), 0, 0, panel.bitmap().width, panel.bitmap().height,
                           static_cast<int>(at.x), static_cast<int>(at.y));
    }
}

} // namespace Sorel

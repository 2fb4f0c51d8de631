// A window in memory: what the frame may ask of it.
#include "offscreen/PngFile.h"
#include "offscreen/Popups.h"

#include <algorithm>
#include <cstring>

namespace Sorel {

COffscreenPlatform::COffscreenPlatform() = default;
COffscreenPlatform::~COffscreenPlatform() = default;

IFrame* COffscreenPlatform::createFrame(IFrameEvents& events,
                                        const CRect& size,
                                        void*,
                                        const std::string&) {
    return new COffscreenFrame(*this, events, size);
}

COffscreenFrame* COffscreenPlatform::frame() const {
    return frames_.empty() ? nullptr : frames_.back();
}

COffscreenFrame::COffscreenFrame(COffscreenPlatform& owner, IFrameEvents& events, const CRect& size)
    : owner_(owner)
    , events_(&events)
    , size_{0.0, 0.0, size.width(), size.height()}
    , popups_(std::make_unique<Popups>()) {
    popups_->link->frame = this;
    popups_->textLink->frame = this;
    owner_.frames_.push_back(this);
}

COffscreenFrame::~COffscreenFrame() { COffscreenFrame::destroyWindow(); }

void COffscreenFrame::destroyWindow() {
    if (events_ == nullptr) return;
    events_ = nullptr;
    popups_->link->frame = nullptr;
    popups_->textLink->frame = nullptr;
    if (const auto menu = popups_->shownMenu()) menu->cancel();
    if (const auto request = popups_->pendingFileRequest()) request->answer = nullptr;
    std::erase(owner_.frames_, this);
}

void* COffscreenFrame::getPlatformHandle() { return events_ != nullptr ? this : nullptr; }

bool COffscreenFrame::getPosition(double* x, double* y) {
    *x = 0.0;
    *y = 0.0;
    return events_ != nullptr;
}

bool COffscreenFrame::setSize(double width, double height) {
    if (events_ == nullptr) return false;
    size_ = {0.0, 0.0, width, height};
    return true;
}

bool COffscreenFrame::getSize(CRect* rect) {
    if (events_ == nullptr) return false;
    *rect = size_;
    return true;
}

bool COffscreenFrame::getCurrentMouseLocation(CPoint* where) {
    if (events_ == nullptr) return false;
    *where = mouse_;
    return true;
}

void COffscreenFrame::invalidRect(const CRect& rect) {
    if (events_ == nullptr) return;
    const CRect shown = rect.intersected(size_);
    shownPixels_ += static_cast<std::uint64_t>(shown.width() * shown.height());
}

std::uint64_t COffscreenFrame::takeShownPixels() { return std::exchange(shownPixels_, 0U); }

void COffscreenFrame::doIdle() {
    if (events_ == nullptr || popups_->inIdle) return;
    const Counted<COffscreenFrame> hold(this);
    popups_->inIdle = true;
    if (const auto menu = popups_->shownMenu()) {
        menu->stack->onIdle(owner_.now_);
        menu->deliver();
    }
    if (const auto request = popups_->pendingFileRequest()) {
        const IOSFileDialog::Answer answer = std::exchange(request->answer, nullptr);
        answer(owner_.fileAnswer_);
    }
    if (events_ != nullptr) events_->platformIdle();
    popups_->inIdle = false;
}

std::unique_ptr<IOSBitmap> COffscreenFrame::createSurface() {
    return std::make_unique<CMemoryBitmap>();
}

std::unique_ptr<IOSTextEdit> COffscreenFrame::createTextEdit(ITextEditCallback& callback,
                                                             const CRect&) {
    return std::make_unique<CInFrameTextEdit>(callback, popups_->textLink);
}

std::unique_ptr<IOSOptionMenu> COffscreenFrame::createOptionMenu() { return popups_->createMenu(); }

std::unique_ptr<IOSFileDialog> COffscreenFrame::createFileDialog() {
    return popups_->createFileDialog();
}

void COffscreenFrame::setClipboardText(const std::string& utf8) { owner_.clipboard_ = utf8; }

void COffscreenFrame::requestClipboardText(std::function<void(const std::string&)> answer) {
    if (events_ != nullptr) answer(owner_.clipboard_);
}

std::unique_ptr<IOSBitmap> COffscreenFrame::picture() {
    auto copy = std::make_unique<CMemoryBitmap>();
    copy->create(static_cast<int>(size_.width()), static_cast<int>(size_.height()));
    IOSBitmap* surface = events_ != nullptr ? events_->platformSurface() : nullptr;
    if (surface != nullptr && surface->getPixels() != nullptr) {
        const auto bytes = static_cast<std::size_t>(std::min(surface->width, copy->width)) * 4;
        for (int y = 0; y < std::min(surface->height, copy->height); ++y)
            std::memcpy(copy->getPixels() + y * copy->stride,
                        surface->getPixels() + y * surface->stride, bytes);
    }
    popups_->drawMenus(*copy);
    return copy;
}

bool COffscreenFrame::writePng(const std::string& path, std::string* problem) {
    return writePngFile(*picture(), path, problem);
}

bool COffscreenFrame::isMenuOpen() const { return popups_->shownMenu() != nullptr; }

std::vector<std::string> COffscreenFrame::menuTitles() const {
    std::vector<std::string> titles;
    if (const auto menu = popups_->shownMenu())
        for (const MenuItem& item : menu->stack->column(menu->stack->columnCount() - 1).items())
            titles.push_back(item.title);
    return titles;
}

CPoint COffscreenFrame::menuItemPosition(const std::string& title) const {
    const auto menu = popups_->shownMenu();
    for (int i = menu ? menu->stack->columnCount() - 1 : -1; i >= 0; --i) {
        const MenuColumn& column = menu->stack->column(i);
        for (int row = 0; row < column.count(); ++row)
            if (column.item(row).title == title) {
                const CPoint middle = column.rowRect(row).centre();
                if (column.rowAt(middle) == row) return middle;
            }
    }
    return {-1.0, -1.0};
}

} // namespace Sorel

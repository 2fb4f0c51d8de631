// File dialogs.
#include "x11/X11FileDialog.h"

#include "x11/FrameX11.h"

#include <array>
#include <utility>

namespace Sorel {

namespace {

using OpenBackend = std::unique_ptr<X11DialogBackend> (*)(const FileDialogRequest&, std::uint32_t);

/// In the order in which they are tried.
constexpr std::array<OpenBackend, 3> kBackends{openPortalDialog, openZenity, openKdialog};

constexpr const char* kNoDialog =
    "No file dialog could be opened: this desktop offers none through its portal, and neither "
    "\"zenity\" nor \"kdialog\" is installed.";

} // namespace

X11DialogSession::X11DialogSession(FileDialogRequest request,
                                   std::uint32_t parentWindow,
                                   IOSFileDialog::Answer answer)
    : request_(std::move(request))
    , parentWindow_(parentWindow)
    , answer_(std::move(answer)) {}

void X11DialogSession::cancel() {
    answer_ = nullptr;
    backend_ = nullptr;
}

void X11DialogSession::finish(const FileDialogAnswer& answer) {
    backend_ = nullptr;
    const IOSFileDialog::Answer call = std::exchange(answer_, nullptr);
    call(answer);
}

void X11DialogSession::openNext() {
    backend_ = nullptr;
    while (!backend_ && tried_ < static_cast<int>(kBackends.size()))
        backend_ = kBackends[static_cast<std::size_t>(tried_++)](request_, parentWindow_);
}

void X11DialogSession::poll() {
    if (!isOpen()) return;
    if (!backend_) openNext();
    if (!backend_) return finish({{}, kNoDialog});
    FileDialogAnswer answer;
    switch (backend_->poll(answer)) {
    case X11DialogBackend::State::kRunning:
        return;
    case X11DialogBackend::State::kUnavailable:
        backend_ = nullptr; // the next one in the next idle
        return;
    case X11DialogBackend::State::kAnswered:
        finish(answer);
    }
}

void X11FileDialog::run(const FileDialogRequest& request, Answer answer) {
    if (isOpen() || link_->frame == nullptr || !answer) return;
    session_ = std::make_shared<X11DialogSession>(request, link_->frame->topLevelWindow(),
                                                  std::move(answer));
    link_->frame->watch(session_);
}

void X11FileDialog::cancel() {
    if (session_) session_->cancel();
}

} // namespace Sorel

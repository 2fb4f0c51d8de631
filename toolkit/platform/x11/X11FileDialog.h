// File dialogs: the desktop's portal, else a helper program, else a clear word.
#pragma once

#include "platform/FileDialog.h"

#include <cstdint>
#include <memory>

namespace Sorel {

struct X11FrameLink;

/// One way to show a dialog, asked again and again until it has an end. Destroying it takes the
/// dialog away.
class X11DialogBackend {
  public:
    enum class State : std::uint8_t { kRunning, kAnswered, kUnavailable };

    virtual ~X11DialogBackend() = default;
    /// Never waits. Fills `answer` with the end.
    virtual State poll(FileDialogAnswer& answer) = 0;
};

/// Through org.freedesktop.portal.FileChooser on the session's D-Bus.
std::unique_ptr<X11DialogBackend> openPortalDialog(const FileDialogRequest& request,
                                                   std::uint32_t parentWindow);
/// Through `zenity`.
std::unique_ptr<X11DialogBackend> openZenity(const FileDialogRequest& request,
                                             std::uint32_t parentWindow);
/// Through `kdialog`.
std::unique_ptr<X11DialogBackend> openKdialog(const FileDialogRequest& request,
                                              std::uint32_t parentWindow);

/// One run of a dialog, shared by the control's object and the window that keeps it going.
class X11DialogSession {
  public:
    X11DialogSession(FileDialogRequest request,
                     std::uint32_t parentWindow,
                     IOSFileDialog::Answer answer);

    bool isOpen() const { return answer_ != nullptr; }
    void cancel();
    /// In the window's idle. May call the answer; everything may be gone afterwards.
    void poll();

  private:
    void openNext();
    void finish(const FileDialogAnswer& answer);

    FileDialogRequest request_;
    std::uint32_t parentWindow_;
    IOSFileDialog::Answer answer_;
    std::unique_ptr<X11DialogBackend> backend_;
    int tried_ = 0;
};

class X11FileDialog : public IOSFileDialog {
  public:
    explicit X11FileDialog(std::shared_ptr<X11FrameLink> link)
        : link_(std::move(link)) {}
    ~X11FileDialog() override { X11FileDialog::cancel(); }
    X11FileDialog(const X11FileDialog&) = delete;
    X11FileDialog& operator=(const X11FileDialog&) = delete;

    void run(const FileDialogRequest& request, Answer answer) override;
    void cancel() override;
    bool isOpen() const override { return session_ && session_->isOpen(); }

  private:
    std::shared_ptr<X11FrameLink> link_;
    std::shared_ptr<X11DialogSession> session_;
};

} // namespace Sorel

// Menus and file dialogs of an off-screen frame.
#pragma once

#include "common/InFrameTextEdit.h"
#include "common/MenuPainter.h"
#include "common/OpenMenu.h"
#include "platform/Offscreen.h"

namespace Sorel {

/// What the objects that were handed to controls keep of their frame; it may be gone.
struct OffscreenLink {
    COffscreenFrame* frame = nullptr;
};

/// A dialog that was asked for and is answered in the next idle.
struct OffscreenFileRequest {
    IOSFileDialog::Answer answer;
};

struct COffscreenFrame::Popups {
    std::shared_ptr<TextEditLink> textLink = std::make_shared<TextEditLink>();
    std::shared_ptr<OffscreenLink> link = std::make_shared<OffscreenLink>();
    std::weak_ptr<OpenMenu> menu;
    std::weak_ptr<OffscreenFileRequest> fileRequest;
    bool inIdle = false;

    /// The menu that is shown, or null.
    std::shared_ptr<OpenMenu> shownMenu() const;
    /// A pending file request, or null.
    std::shared_ptr<OffscreenFileRequest> pendingFileRequest() const;

    std::unique_ptr<IOSOptionMenu> createMenu() const;
    std::unique_ptr<IOSFileDialog> createFileDialog() const;
    /// Blends the open columns onto the frame's picture.
    void drawMenus(IOSBitmap& picture) const;
};

} // namespace Sorel

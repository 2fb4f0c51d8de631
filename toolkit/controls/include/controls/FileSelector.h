// Asks the user for a file or a folder.
#pragma once

#include "platform/FileDialog.h"

#include <functional>
#include <memory>

namespace Sorel {

class CFrame;
class IOSFileDialog;

/// Shows the desktop's own dialog and never blocks. Belongs to one frame; goes before it closes,
/// and takes an open dialog with it. Threads: GUI thread.
class CFileSelector {
  public:
    /// `request.title` of a folder dialog is "Select a folder" when it is empty.
    CFileSelector(CFrame& frame, FileDialogRequest request);
    virtual ~CFileSelector();
    CFileSelector(const CFileSelector&) = delete;
    CFileSelector& operator=(const CFileSelector&) = delete;

    /// Called once, from a later idle: no path means that the user gave up, or, with a `problem`,
    /// that no dialog could be shown.
    using Answer = std::function<void(const FileDialogAnswer&)>;
    void run(Answer answer);
    bool isOpen() const;

  private:
    CFrame& frame_;
    FileDialogRequest request_;
    std::unique_ptr<IOSFileDialog> dialog_;
};

} // namespace Sorel

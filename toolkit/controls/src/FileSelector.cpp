#include "controls/FileSelector.h"

#include "tree/Frame.h"

namespace Sorel {

CFileSelector::CFileSelector(CFrame& frame, FileDialogRequest request)
    : frame_(frame)
    , request_(std::move(request)) {
    if (request_.title.empty() && request_.style == FileDialogRequest::Style::kFolder)
        request_.title = "Select a folder";
}

CFileSelector::~CFileSelector() {
    if (dialog_) dialog_->cancel();
}

void CFileSelector::run(Answer answer) {
    if (isOpen() || frame_.platformFrame() == nullptr) return;
    dialog_ = frame_.platformFrame()->createFileDialog();
    if (dialog_) dialog_->run(request_, std::move(answer));
}

bool CFileSelector::isOpen() const { return dialog_ && dialog_->isOpen(); }

} // namespace Sorel

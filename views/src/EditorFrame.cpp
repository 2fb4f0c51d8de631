#include "EditorFrame.h"

#include "platform/DragContainer.h"

namespace Orvel {

namespace {
std::vector<std::string> filesOf(const Sorel::CDragContainer& drag) {
    std::vector<std::string> paths;
    for (int i = 0; i < drag.count(); ++i)
        if (drag.entry(i)->kind == Sorel::CDragContainer::Kind::kFilePath)
            paths.push_back(drag.entry(i)->bytes);
    return paths;
}
} // namespace

CEditorFrame::CEditorFrame(const Sorel::CRect& rect,
                           void* parentWindow,
                           Sorel::CSorelineEditor* editor,
                           const std::string& title,
                           Host host)
    : CFrame(rect, parentWindow, editor, title)
    , host_(std::move(host)) {}

int CEditorFrame::onKeyDown(const Sorel::KeyEvent& key) {
    const int answer = CFrame::onKeyDown(key);
    if (answer != Sorel::kKeyNotHandled) return answer;
    Vardo::IEditorHost* host = host_();
    return host != nullptr && host->editorKeyDown(key) ? 1 : Sorel::kKeyNotHandled;
}

void CEditorFrame::onDragEnter(Sorel::CDragContainer& drag, Sorel::CPoint where) {
    CFrame::onDragEnter(drag, where);
    setDropAccepted(host_() != nullptr && !filesOf(drag).empty());
}

void CEditorFrame::onDragMove(Sorel::CDragContainer& drag, Sorel::CPoint where) {
    CFrame::onDragMove(drag, where);
    setDropAccepted(host_() != nullptr && !filesOf(drag).empty());
}

bool CEditorFrame::onDrop(Sorel::CDragContainer& drag, Sorel::CPoint where) {
    if (CFrame::onDrop(drag, where)) return true;
    Vardo::IEditorHost* host = host_();
    return host != nullptr && host->editorFilesDropped(filesOf(drag));
}

} // namespace Orvel

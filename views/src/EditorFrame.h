// The editor's frame: what no view takes goes to the program around the window.
#pragma once

#include "frame/EditorHost.h"
#include "tree/Frame.h"

namespace Orvel {

/// `host` is asked when something happens; it may give null.
class CEditorFrame final : public Sorel::CFrame {
  public:
    using Host = std::function<Vardo::IEditorHost*()>;

    CEditorFrame(const Sorel::CRect& rect,
                 void* parentWindow,
                 Sorel::CSorelineEditor* editor,
                 const std::string& title,
                 Host host);

    int onKeyDown(const Sorel::KeyEvent& key) override;
    void onDragEnter(Sorel::CDragContainer& drag, Sorel::CPoint where) override;
    void onDragMove(Sorel::CDragContainer& drag, Sorel::CPoint where) override;
    bool onDrop(Sorel::CDragContainer& drag, Sorel::CPoint where) override;

  private:
    Host host_;
};

} // namespace Orvel

// A message over the editor, with buttons to answer it.
#pragma once

#include "tree/View.h"

#include <functional>
#include <string>
#include <vector>

namespace Sorel {

/// Covers the whole frame as its modal view, so that nothing below takes events. Return chooses the
/// first button, Escape the last. It needs no window of its own and never blocks.
class CMessageBox : public CView {
  public:
    /// The index of the button. Nobody is told when the frame closes first.
    using Answer = std::function<void(int button)>;

    /// Shows it over `frame`; `answer` is called once, from a later idle. False, and no answer,
    /// while another modal view is open. Lines of `text` are parted by 0x0A; long ones are wrapped.
    static bool show(CFrame& frame,
                     const std::string& title,
                     const std::string& text,
                     std::vector<std::string> buttons,
                     Answer answer);

    void draw(CDrawContext& context) override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    int onMouseUp(CPoint where, std::int32_t* buttons) override;
    int onMouseMoved(CPoint where, std::int32_t* buttons) override;
    bool onWheel(CPoint where, int axis, float distance, std::int32_t* buttons) override;
    int onKeyDown(const KeyEvent& key) override;
    void onIdle() override;
    int removed(CViewContainer* parent) override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "CMessageBox"; }

    /// Frame coordinates; for tests and for scripts that click.
    CRect buttonRect(int index) const;

  private:
    CMessageBox(const CRect& frame,
                const std::string& title,
                const std::string& text,
                std::vector<std::string> buttons,
                Answer answer);
    void layOut(CFrame& frame, const std::string& text);
    void choose(int index);
    int buttonAt(CPoint where) const;

    std::string title_;
    std::vector<std::string> lines_;
    std::vector<std::string> buttons_;
    Answer answer_;
    CRect panel_;
    int hovered_ = -1;
    int pressed_ = -1;
    int chosen_ = -1;
    bool answered_ = false;
};

} // namespace Sorel

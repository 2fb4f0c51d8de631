// The base of everything that draws what the engine measured.
#pragma once

#include "core/Strings.h"
#include "tree/View.h"
#include "views/DisplayColors.h"

#include <functional>
#include <string>

namespace Orvel {
class COrvelScope;
}

namespace Sorel {

/// A view with an optional frame, label and cursor read-out over its picture. It reads the engine's
/// display values itself, in onIdle, and becomes dirty only when its picture would change. Derived
/// classes paint their picture in `draw` and then call the base's `draw`.
/// Threads: GUI thread. The analyser may be null (nothing to show) and outlives the view.
class IDisplayControl : public CView {
  public:
    explicit IDisplayControl(const CRect& size, Orvel::COrvelScope* analyser = nullptr);

    void setDrawFrame(bool on) { drawFrame_ = on; }
    void setDrawLabel(bool on) { drawLabel_ = on; }
    void setDrawCursor(bool on);
    bool drawsCursor() const { return drawCursor_; }
    /// Cut to 63 bytes.
    void setLabel(const char* text);
    const char* label() const { return label_.c_str(); }
    /// What a press with the right button asks for; `where` in the coordinates of the frame.
    using ContextMenu = std::function<void(CPoint where)>;
    void setContextMenu(ContextMenu open) { contextMenu_ = std::move(open); }

    /// Frame, label and, while the mouse is inside, the cursor.
    void draw(CDrawContext& context) override;
    virtual void DrawFrame(CDrawContext& context);
    virtual void DrawLabel(CDrawContext& context);
    virtual void DrawCursor(CDrawContext& context, CPoint position);

    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    int onMouseMoved(CPoint where, std::int32_t* buttons) override;
    int onMouseExited(CPoint where, std::int32_t* buttons) override;
    CView* newCopy() const override { return nullptr; }

  protected:
    Orvel::COrvelScope* analyser() const { return analyser_; }
    const DisplayColors& colors() const { return displayColors(); }
    /// In the coordinates of the parent; outside the view when the mouse is elsewhere.
    CPoint mousePosition() const { return mouse_; }
    bool isMouseInside() const { return mouseInside_; }

  private:
    Orvel::COrvelScope* analyser_;
    bool drawFrame_ = false;
    bool drawLabel_ = false;
    bool drawCursor_ = false;
    bool mouseInside_ = false;
    CPoint mouse_{-1.0, -1.0};
    Core::CStringBufferd<64> label_{"Label"};
    ContextMenu contextMenu_;
};

/// "%.1f" and the like without a locale: `value` with `decimals`, a sign always when `withSign`.
std::string numberText(double value, int decimals, bool withSign = false);

} // namespace Sorel

// The editor that a host adapter opens, idles and closes: owns the frame, binds controls to
// parameters.
#pragma once

#include "core/CriticalSection.h"
#include "core/Strings.h"
#include "frame/PluginEditor.h"
#include "frame/PluginParameter.h"
#include "tree/Frame.h"

#include <map>
#include <string>
#include <vector>

namespace Vardo {
class IPluginBase;
class VardoCallback;
} // namespace Vardo

namespace Sorel {

/// Threads: the host's GUI thread. `idle` may come from another thread: it never waits.
/// A product derives from this and from Vardo::IPluginEditor (or something richer), whose open,
/// close, idle and setSize call openFrame, closeFrame, idleFrame and setHostSize.
class CSorelineEditor : public Vardo::ParameterChangeListener {
  public:
    /// Both may be null and outlive the editor.
    CSorelineEditor(Vardo::IPluginBase* plugin, Vardo::VardoCallback* callback);
    CSorelineEditor(const CSorelineEditor&) = delete;
    CSorelineEditor& operator=(const CSorelineEditor&) = delete;
    ~CSorelineEditor() override;

    // ---- The window ----------------------------------------------------------------------------
    /// Builds the frame and fills it. An editor that is open stays as it is.
    void openFrame(void* parentWindow);
    void closeFrame();
    bool isFrameOpen() const { return frame_ != nullptr; }
    CFrame* frame() const { return frame_; }
    /// Timers, events, views, repaint. Skipped when a call is under way.
    void idleFrame();
    /// Nothing was painted for a second.
    bool isFrameStill() const;
    const CRect& getRect() const { return rect_; }
    /// Pixels of the frame.
    void setRect(double width, double height);
    /// Pixels of the host: divided by the scale factor.
    void setHostSize(int width, int height);
    bool getHostSize(int* width, int* height) const;
    /// The one place that knows how much larger than the frame the host's window is.
    double scale() const { return scale_; }

    /// A short text for the user that goes away after a second; at most kHintBytes - 1 bytes.
    static constexpr std::size_t kHintBytes = 2305;
    void setHint(const char* text);
    const char* hint() const { return hintText_.c_str(); }

    // ---- Controls and parameters ---------------------------------------------------------------
    /// From now on the control hears onParameterChanged(parameterIndex), until it leaves the tree.
    void addControlToParameter(Vardo::IPluginParameter& parameter, CView* control);
    /// Everywhere it was entered.
    void removeControl(const CView* control);
    /// Tells all controls of this parameter but `except`, the one that made the change.
    void parameterChanged(int parameterIndex, const CView* except);

    /// A user's gesture: begin, any number of changes, end. The host hears of all three.
    virtual void beginEdit(Vardo::IPluginParameter& parameter);
    virtual void endEdit(Vardo::IPluginParameter& parameter);
    /// `normalized` 0..1; the controls of the parameter follow, except the one that did it.
    virtual void performEdit(Vardo::IPluginParameter& parameter, double normalized, CView* except);

    /// The user wants to close a window that has no host.
    virtual void onCloseRequested() {}

    // ParameterChangeListener: somebody else changed it
    void parameterChanged(Vardo::IPluginParameter* parameter) override;

  protected:
    /// The frame to open; the base gives a plain one of the size of getRect.
    virtual CFrame* createFrame(const CRect& rect, void* parentWindow);
    /// Fill the frame.
    virtual void onFrameCreated(CFrame& frame) = 0;
    /// The frame's views go; drop what points to them.
    virtual void onFrameClosing() {}
    virtual void onIdle() {}
    /// Title of a window without a host.
    virtual std::string windowTitle() const { return {}; }

    Vardo::IPluginBase* plugin() const { return plugin_; }
    Vardo::VardoCallback* callback() const { return callback_; }

  private:
    struct Binding {
        Vardo::IPluginParameter* parameter = nullptr;
        std::vector<CView*> controls; // not counted: they take themselves out
    };

    CRect rect_{0.0, 0.0, 100.0, 100.0};
    CFrame* frame_ = nullptr; // one reference
    Core::CStringBufferd<kHintBytes> hintText_;
    std::map<int, Binding> controlsByParameter_;
    std::uint64_t timeOfHint_ = 0;
    std::uint64_t lastIdleTime_ = 0;
    Core::Threads::CriticalSection lock_;
    bool idling_ = false;
    double scale_ = 1.0;
    Vardo::IPluginBase* plugin_;
    Vardo::VardoCallback* callback_;
};

} // namespace Sorel

// A frame in memory for tests of the view tree and of controls.
#pragma once

#include "draw/Bitmap.h"
#include "platform/Offscreen.h"
#include "tree/SorelineEditor.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>

namespace Sorel {

/// An editor whose frame a test fills.
class TestEditor : public CSorelineEditor {
  public:
    using Fill = std::function<void(CFrame&)>;

    explicit TestEditor(Fill fill, Vardo::VardoCallback* callback = nullptr)
        : CSorelineEditor(nullptr, callback)
        , fill_(std::move(fill)) {
        setRect(200.0, 100.0);
    }
    ~TestEditor() override { closeFrame(); }
    void onCloseRequested() override { ++closeRequests; }

    int closeRequests = 0;

  protected:
    void onFrameCreated(CFrame& frame) override {
        frame.setBackgroundColor(kBlackCColor);
        fill_(frame);
    }

  private:
    Fill fill_;
};

class ToolkitTest : public ::testing::Test {
  protected:
    ToolkitTest() { setPlatform(&platform_); }
    ~ToolkitTest() override {
        editor_.reset();
        setPlatform(nullptr);
    }

    /// Opens a 200 by 100 frame, black, and paints it.
    CFrame& open(TestEditor::Fill fill, Vardo::VardoCallback* callback = nullptr) {
        editor_ = std::make_unique<TestEditor>(std::move(fill), callback);
        editor_->openFrame(nullptr);
        idle();
        window().takeShownPixels();
        return *editor_->frame();
    }
    void idle(std::uint64_t milliseconds = 25) {
        platform_.advance(milliseconds);
        editor_->idleFrame();
    }
    COffscreenFrame& window() { return *platform_.frame(); }
    CFrame& frame() { return *editor_->frame(); }

    /// The pixel as it is shown, alpha left out.
    std::uint32_t pixel(int x, int y) {
        const std::unique_ptr<IOSBitmap> picture = window().picture();
        const std::uint8_t* p = picture->getPixels() + y * picture->stride + 4 * x;
        return static_cast<std::uint32_t>(p[2] << 16 | p[1] << 8 | p[0]);
    }

    COffscreenPlatform platform_;
    std::unique_ptr<TestEditor> editor_;
};

/// Fills its rectangle, and writes down what happens to it.
class ProbeView : public CView {
  public:
    ProbeView(const CRect& size, CColor color)
        : CView(size)
        , color_(color) {}

    void drawRect(CDrawContext& context, const CRect&) override {
        ++draws;
        clip = context.clipRect();
        context.setFillColor(color_);
        context.drawRect(getViewSize(), kFilled);
        setDirty(dirtyAgain);
    }
    int onMouseDown(CPoint where, std::int32_t* buttons) override {
        ++downs;
        lastWhere = where;
        lastButtons = *buttons;
        if (whenPressed) whenPressed();
        return answer;
    }
    int onMouseUp(CPoint, std::int32_t*) override {
        ++ups;
        return kMouseHandled;
    }
    int onMouseMoved(CPoint where, std::int32_t*) override {
        ++moves;
        lastWhere = where;
        return moveAnswer;
    }
    int onMouseEntered(CPoint, std::int32_t*) override { return ++entered, kMouseHandled; }
    int onMouseExited(CPoint, std::int32_t*) override { return ++exited, kMouseHandled; }
    using CView::onWheel;
    bool onWheel(CPoint, float distance, std::int32_t*) override {
        wheel += distance;
        return takesWheel;
    }
    int onKeyDown(const KeyEvent& key) override {
        lastKey = key.virtualKey;
        return keyAnswer;
    }
    void onDragEnter(CDragContainer&, CPoint) override {
        ++dragEntered;
        getFrame()->setDropAccepted(true);
    }
    void onDragLeave(CDragContainer&, CPoint) override { ++dragLeft; }
    bool onDrop(CDragContainer& drag, CPoint) override {
        dropped = drag.count() > 0 ? drag.entry(0)->bytes : "";
        return true;
    }
    void takeFocus() override { ++focusTaken; }
    void looseFocus() override { ++focusLost; }

    CColor color_;
    bool dirtyAgain = false;
    int answer = kMouseHandled;
    int moveAnswer = kMouseHandled;
    bool takesWheel = true;
    int keyAnswer = kKeyNotHandled;
    std::function<void()> whenPressed;
    int draws = 0, downs = 0, ups = 0, moves = 0, entered = 0, exited = 0;
    int dragEntered = 0, dragLeft = 0, focusTaken = 0, focusLost = 0;
    float wheel = 0;
    std::uint8_t lastKey = 0;
    std::int32_t lastButtons = 0;
    CPoint lastWhere;
    CRect clip;
    std::string dropped;
};

} // namespace Sorel

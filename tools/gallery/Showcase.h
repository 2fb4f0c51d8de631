// Views of the gallery that show drawing itself: text, curves, colours, a place to drop files.
#pragma once

#include "tree/View.h"

#include <functional>
#include <string>
#include <vector>

namespace Gallery {

/// A small heading with a hairline below.
class Heading : public Sorel::CView {
  public:
    Heading(const Sorel::CRect& size, const char* text);
    void draw(Sorel::CDrawContext& context) override;

  private:
    std::string text_;
};

/// The sizes and faces of text that are used.
class TypeSample : public Sorel::CView {
  public:
    using CView::CView;
    void draw(Sorel::CDrawContext& context) override;
};

/// A waveform as a column band, and a spectrum as a filled curve with a top line.
class CurveSample : public Sorel::CView {
  public:
    explicit CurveSample(const Sorel::CRect& size);
    void draw(Sorel::CDrawContext& context) override;

  private:
    std::vector<float> upper_;
    std::vector<float> lower_;
    std::vector<float> spectrum_;
    std::vector<float> floor_;
};

/// Swatches with their names.
class ColourSample : public Sorel::CView {
  public:
    using CView::CView;
    void draw(Sorel::CDrawContext& context) override;
};

/// Shows what was dropped on it.
class DropArea : public Sorel::CView {
  public:
    explicit DropArea(const Sorel::CRect& size)
        : CView(size) {}
    void draw(Sorel::CDrawContext& context) override;
    void onDragEnter(Sorel::CDragContainer& drag, Sorel::CPoint where) override;
    void onDragLeave(Sorel::CDragContainer& drag, Sorel::CPoint where) override;
    bool onDrop(Sorel::CDragContainer& drag, Sorel::CPoint where) override;

  private:
    std::string text_ = "Drop files here";
    bool over_ = false;
};

/// A command button in one fixed state, or one that works.
class CommandSample : public Sorel::CView {
  public:
    CommandSample(const Sorel::CRect& size,
                  const char* title,
                  int lit,
                  bool active,
                  std::function<void()> action = {});
    void draw(Sorel::CDrawContext& context) override;
    int onMouseDown(Sorel::CPoint where, std::int32_t* buttons) override;

  private:
    std::string title_;
    int lit_;
    bool works_;
    std::function<void()> action_;
};

} // namespace Gallery

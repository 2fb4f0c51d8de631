// The heading over a group of controls, with its line.
#pragma once

#include "tree/View.h"

#include <string>

namespace Sorel {

class CGroupLabel : public CView {
  public:
    CGroupLabel(const CRect& size, const char* text, CColor color);
    void draw(CDrawContext& context) override;
    CView* newCopy() const override { return new CGroupLabel(*this); }
    const char* getClassName() const override { return "CGroupLabel"; }

  private:
    std::string text_;
    CColor color_;
};

} // namespace Sorel

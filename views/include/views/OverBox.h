// The box that says how often full scale was exceeded.
#pragma once

#include "draw/DrawContext.h"

namespace Sorel {

/// Flares up with every new over, cools within a third of a second, and stays dark red, so that one
/// sees later that something happened. Where counting ends it says "Too Many!" and stays lit.
/// Threads: GUI thread.
class OverBox {
  public:
    static constexpr int kMostOvers = 9999;

    /// The count so far; negative ones count as 0. True when the box looks different now.
    bool setOvers(int overs);
    /// The count when the box comes into sight: old overs do not flare up.
    bool setOldOvers(int overs);
    /// One picture later. True when the box looks different now.
    bool cool();

    int overs() const { return overs_; }
    /// 0..255; a third of it once cooled.
    int flash() const { return flash_; }

    /// Whole-pixel rectangle.
    void draw(CDrawContext& context, const CRect& box) const;

  private:
    int overs_ = 0;
    int flash_ = 0;
};

} // namespace Sorel

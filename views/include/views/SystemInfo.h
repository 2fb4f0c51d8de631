// Sample rate, block size, tempo and memory in the corner; or how far a download is.
#pragma once

#include "tree/TimerObject.h"
#include "tree/View.h"

#include <string>

namespace Orvel {
class COrvelScope;
}

namespace Sorel {

/// Threads: GUI thread.
class CSystemInfo : public CView, public CTimerObject {
  public:
    CSystemInfo(const CRect& size, Orvel::COrvelScope* analyser);
    ~CSystemInfo() override;

    /// Percent; shows the bar until `endDownload`.
    void showDownload(double percent);
    void endDownload();

    void draw(CDrawContext& context) override;
    void onTimer(std::int64_t elapsedMilliseconds) override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "CSystemInfo"; }

  private:
    void drawDownload(CDrawContext& context) const;

    Orvel::COrvelScope* analyser_;
    std::string values_; // four lines, as shown
    bool downloading_ = false;
    double progress_ = 0.0; // percent
};

} // namespace Sorel

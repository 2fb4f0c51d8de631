#include "views/SystemInfo.h"

#include "analysis/OrvelScope.h"
#include "core/Memory.h"
#include "core/NumberText.h"
#include "views/DisplayColors.h"
#include "views/DisplayControl.h"

#include <algorithm>
#include <array>

namespace Sorel {

namespace {
constexpr int kTimerMs = 250;
constexpr double kLabelRight = 58.0; // from the view's left edge
constexpr double kValueLeft = 62.0;
constexpr double kFirstBaseline = 8.0;
constexpr double kLineHeight = 10.0;
constexpr double kSize = 9.0;
constexpr CColor kLabelColor{255, 255, 255, 150};
constexpr std::array kLabels{"Sample Rate:", "Blocksize:", "Tempo:", "RAM used:"};

constexpr double kBarTop = 20.0;
constexpr double kBarHeight = 8.0;
constexpr double kBarRadius = 2.0;

std::string currentValues(Orvel::COrvelScope& analyser) {
    const Core::MemoryFigures memory = Core::readMemoryFigures();
    char text[128];
    Core::TextWriter(text, sizeof text)
        .fixed(double{analyser.sampleRate()}, 0)
        .text(" Hz\n")
        .integer(analyser.blockSize())
        .text(" Samples\n")
        .fixed(double{analyser.transport().tempo()}, 3)
        .text(" bpm\n")
        .fixed(double{memory.residentMb}, 0)
        .text(" / ")
        .fixed(double{memory.installedMb}, 0)
        .text(" MB");
    return text;
}
} // namespace

CSystemInfo::CSystemInfo(const CRect& size, Orvel::COrvelScope* analyser)
    : CView(size)
    , analyser_(analyser) {
    setMouseEnabled(false);
    if (analyser_ != nullptr) values_ = currentValues(*analyser_);
    startTimer(kTimerMs);
}

CSystemInfo::~CSystemInfo() { stopTimer(); }

void CSystemInfo::onTimer(std::int64_t /*elapsedMilliseconds*/) {
    if (analyser_ == nullptr || downloading_) return;
    std::string values = currentValues(*analyser_);
    if (values == values_) return;
    values_ = std::move(values);
    setDirty(true);
}

void CSystemInfo::showDownload(double percent) {
    downloading_ = true;
    progress_ = std::clamp(percent, 0.0, 100.0);
    setDirty(true);
}

void CSystemInfo::endDownload() {
    downloading_ = false;
    setDirty(true);
}

void CSystemInfo::draw(CDrawContext& context) {
    setDirty(false);
    context.setFont(kDefaultFont, kSize, kRegularFont);
    if (downloading_) {
        drawDownload(context);
        return;
    }
    const CPoint origin = getViewSize().topLeft();
    double y = origin.y + kFirstBaseline;
    std::size_t at = 0;
    for (const char* label : kLabels) {
        context.setFontColor(kLabelColor);
        context.drawStringAt(label, {origin.x + kLabelRight, y}, HorizontalAlign::kRight);
        const std::size_t end = std::min(values_.find('\n', at), values_.size());
        context.setFontColor(kWhiteCColor);
        context.drawStringAt(std::string_view(values_).substr(at, end - at),
                             {origin.x + kValueLeft, y});
        at = std::min(end + 1, values_.size());
        y += kLineHeight;
    }
}

void CSystemInfo::drawDownload(CDrawContext& context) const {
    const CRect& r = getViewSize();
    const DisplayColors& colors = displayColors();
    context.setFontColor(kWhiteCColor);
    context.drawStringAt("Download", {r.left, r.top + kFirstBaseline});
    context.setFontColor(colors.main);
    context.drawStringAt(numberText(progress_, 1) + "%", {r.right, r.top + kFirstBaseline},
                         HorizontalAlign::kRight);
    const CRect bar{r.left, r.top + kBarTop, r.right, r.top + kBarTop + kBarHeight};
    context.setFillColor({20, 20, 28, 255});
    context.drawRoundRect(bar, static_cast<float>(kBarRadius), kFilled);
    CRect fill = bar.inset(1.0, 1.0);
    fill.right = fill.left + fill.width() * progress_ / 100.0;
    context.setFillColor(colors.main.withAlpha(255));
    if (!fill.isEmpty()) context.drawRoundRect(fill, 1.0F, kFilled);
    context.setLineWidth(1.0);
    context.setFrameColor(colors.gridDim);
    context.drawRoundRect(bar.inset(0.5, 0.5), static_cast<float>(kBarRadius), kStroked);
}

} // namespace Sorel

#include "views/SpectrumColors.h"

#include "views/DisplayColors.h"

namespace Sorel {

namespace {

constexpr double kTopDb = 9.0;
constexpr double kRangeDb = 81.0;
constexpr CColor kFog{30, 33, 53, 255};

double offsetOf(double db) { return (kTopDb - db) / kRangeDb; }

} // namespace

CLinearGradient spectrumFill(double top, double bottom, double footFactor) {
    const DisplayColors& c = displayColors();
    const auto thinned = [&](double alpha) {
        return c.good2.withAlpha(static_cast<int>(std::lround(alpha * footFactor)));
    };
    return CLinearGradient::vertical(top, bottom)
        .stop(offsetOf(0.0), c.bad)
        .stop(offsetOf(-6.0), c.warn2)
        .stop(offsetOf(-18.0), c.good2.mixed(c.warn2, 0.35))
        .stop(offsetOf(-30.0), thinned(140.0))
        .stop(offsetOf(-54.0), thinned(62.0))
        .stop(offsetOf(-72.0), thinned(22.0));
}

CColor waterfallColor(double level, double depth) {
    const DisplayColors& c = displayColors();
    // Two overlaid gradients: the colour of the level, and the panel's over the foot.
    static const CLinearGradient colors = CLinearGradient({}, {})
                                              .stop(0.56, c.good2.withAlpha(255))
                                              .stop(0.72, c.warn2.withAlpha(255))
                                              .stop(0.90, c.bad.withAlpha(255));
    static const CLinearGradient shade = CLinearGradient({}, {})
                                             .stop(0.00, c.panel.faded(0.86))
                                             .stop(0.18, c.panel.faded(0.66))
                                             .stop(0.36, c.panel.faded(0.34))
                                             .stop(0.56, c.panel.faded(0.04))
                                             .stop(0.72, c.panel.faded(0.0));
    const double fog = 0.62 * std::pow(depth, 0.8);
    return colors.at(level).mixed(c.panel, shade.at(level).alpha / 255.0).mixed(kFog, fog);
}

} // namespace Sorel

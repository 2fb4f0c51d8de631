#include "analysis/DisplayRecord.h"

#include "analysis/LevelMetering.h"

#include <algorithm>

namespace Orvel {

void DisplayRecord::pushLevels(const LevelMetering& metering, bool withMidAndSide) noexcept {
    const int channels = withMidAndSide ? 4 : 2;
    for (int i = 0; i < channels; ++i) {
        const LevelMeterModel& model = metering.meter(i);
        MeterDisplay& meter = meters[static_cast<std::size_t>(i)];
        meter.bar.push(model.bar());
        meter.hold.push(model.hold());
        meter.rms.push(model.rms());
        meter.dynamicRangeDb = model.dynamicRangeDb();
        meter.overs = static_cast<int>(metering.overs(i));

        if (!metering.isHistogramOn()) continue;
        HistogramDisplay& display = histograms[static_cast<std::size_t>(i)];
        for (int bin = 0; bin < kNumShownBins; ++bin)
            display.counts[static_cast<std::size_t>(bin)] = metering.histogram(i).count(bin);
        display.highestCount = std::max(1, metering.histogram(i).highestCount());
    }
    levelsGeneration = levelsGeneration + 1;
}

} // namespace Orvel

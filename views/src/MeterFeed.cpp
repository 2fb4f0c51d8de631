#include "views/MeterFeed.h"

#include "analysis/OrvelScope.h"

#include <algorithm>

namespace Sorel {

MeterFeed::MeterFeed(Orvel::COrvelScope* analyser, int firstChannel, int numChannels)
    : analyser_(analyser)
    , firstChannel_(firstChannel)
    , numChannels_(numChannels) {}

void MeterFeed::take() {
    for (int i = 0; i < numChannels_; ++i) {
        auto& meter = analyser_->display().meters[channel(i)];
        levels_[static_cast<std::size_t>(i)] = {meter.bar.take(), meter.hold.take(),
                                                meter.rms.take(), meter.dynamicRangeDb,
                                                resetting_ ? 0 : int{meter.overs}};
    }
}

bool MeterFeed::poll(bool visible) {
    if (analyser_ == nullptr) return false;
    if (!visible) {
        pictures_ = 0;
        return false;
    }
    const unsigned generation = analyser_->display().levelsGeneration;
    if (pictures_ > 0 && generation == seen_) return false;
    // The slice under way at a reset brings one generation, the first that counts anew the second.
    if (resetting_ && generation - resetAt_ >= 2) resetting_ = false;
    take();
    seen_ = generation;
    pictures_ = std::min(pictures_ + 1, kOldPictures + 1);
    // Maxima that grew while nobody looked are taken and forgotten.
    return pictures_ > 1;
}

void MeterFeed::readHistogram(int i, HistogramColumn::Counts& counts, int& highest) const {
    counts.fill(0);
    highest = 1;
    if (analyser_ == nullptr) return;
    const auto& histogram = analyser_->display().histograms[channel(i)];
    for (std::size_t bin = 0; bin < counts.size(); ++bin)
        counts[bin] = histogram.counts[bin];
    highest = histogram.highestCount;
}

void MeterFeed::resetOvers() {
    if (analyser_ == nullptr) return;
    analyser_->resetOvers();
    resetting_ = true;
    resetAt_ = analyser_->display().levelsGeneration;
    for (MeterLevels& levels : levels_)
        levels.overs = 0;
}

} // namespace Sorel

#include "analysis/LevelMeterModel.h"

#include <algorithm>
#include <cmath>

namespace Orvel {

namespace {

const double kLowestLevel = std::pow(10.0, double{LevelMeterModel::kLowestDb} / 20);

/// Distance of two levels in dB, each at least -96 dBFS.
double distanceDb(double a, double b) {
    return std::abs(20 * std::log10(std::max(a, kLowestLevel) / std::max(b, kLowestLevel)));
}

} // namespace

LevelMeterModel::LevelMeterModel() {
    // Attack, release, hold in milliseconds.
    bar_.setTimes(0, 300, 0);
    hold_.setTimes(0, 5000, 2000);
    rms_.setTimes(1500, 1500, 0);
    dynamicRange_.setTimes(1000, 1000, 0);
}

void LevelMeterModel::setSampleRate(float sampleRate) {
    for (PeakFollower* follower : {&bar_, &hold_, &rms_, &dynamicRange_})
        follower->setSampleRate(sampleRate);
}

void LevelMeterModel::reset() {
    for (PeakFollower* follower : {&bar_, &hold_, &rms_, &dynamicRange_})
        follower->reset();
    dynamicRangeDb_ = kNoDynamicRangeDb;
}

void LevelMeterModel::update(float peak, float rms, int samples) noexcept {
    bar_.advance(double{peak}, samples);
    hold_.advance(double{peak}, samples);
    rms_.advance(double{rms}, samples);

    if (hold_.value() > 0 && rms_.value() > 0 && samples > 0) {
        const double crest = distanceDb(hold_.value(), rms_.value());
        dynamicRangeDb_ = static_cast<float>(dynamicRange_.advance(crest, samples));
    } else {
        dynamicRangeDb_ = kNoDynamicRangeDb;
    }
}

} // namespace Orvel

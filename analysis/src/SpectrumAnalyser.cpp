#include "analysis/SpectrumAnalyser.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace Orvel {

namespace {

constexpr double kTableRate = 48000; // Hz
constexpr int kSizes[SpectrumAnalyser::kNumSizes] = {2048, 4096, 8192, 16384};

/// Hann, symmetric: both ends are 0.
void fillWindow(float* window, int size) {
    for (int i = 0; i < size; ++i)
        window[i] =
            static_cast<float>((1 - std::cos(i * (2 * std::numbers::pi) / (size - 1))) * 0.5);
}

} // namespace

int SpectrumAnalyser::fftSizeFor(float sampleRate, int sizeIndex) noexcept {
    const int index = std::clamp(sizeIndex, 0, kNumSizes - 1);
    const double rate = std::clamp(double{sampleRate}, 1.0, 1e7);
    return CRealFFT::sizeFor(static_cast<int>(kSizes[index] * (rate / kTableRate)));
}

SpectrumAnalyser::SpectrumAnalyser() {
    active_[Vardo::kMid] = true;
    active_[Vardo::kSide] = true;
}

void SpectrumAnalyser::configure(float sampleRate, int sizeIndex, float updateSpeed) {
    const int size = fftSizeFor(sampleRate, sizeIndex);
    if (size != fftSize() || sampleRate != sampleRate_) {
        allocate(size);
        sampleRate_ = sampleRate;
    }
    setUpdateSpeed(updateSpeed);
}

void SpectrumAnalyser::setUpdateSpeed(float updateSpeed) noexcept {
    updateSpeed_ = updateSpeed >= 1 ? std::min(updateSpeed, 16.0F) : 1.0F;
    hopSize_ = std::max(1, static_cast<int>(static_cast<float>(fftSize()) / updateSpeed_));
    hopFill_ = 0;
}

void SpectrumAnalyser::setActive(int channel, bool active) {
    if (channel < 0 || channel >= kNumChannels || active_[index(channel)] == active) return;
    active_[index(channel)] = active;
    if (fftSize() == 0) return;
    try {
        allocate(fftSize());
    } catch (...) {
        active_[index(channel)] = !active;
        throw;
    }
    hopFill_ = 0;
}

void SpectrumAnalyser::allocate(int size) {
    Buffers rings;
    Buffers levels;
    for (std::size_t i = 0; i < active_.size(); ++i) {
        if (!active_[i]) continue;
        rings[i].resize(2 * size, 1);
        levels[i].resize(size, 1);
    }
    Vardo::CNChannelBuffer window(size, 1);
    fillWindow(window.channel(0), size);
    fft_.setSize(size);

    // From here on nothing fails.
    for (std::size_t i = 0; i < active_.size(); ++i) {
        rings_[i].swap(rings[i]);
        levels_[i].swap(levels[i]);
    }
    window_.swap(window);
    ringWrite_ = 0;
    frames_ = 0;
    setFloor();
}

void SpectrumAnalyser::setFloor() noexcept {
    for (Vardo::CNChannelBuffer& levels : levels_)
        std::fill_n(levels.channel(0), levels.numSamples(), kSpectrumFloorDb);
}

void SpectrumAnalyser::clear() noexcept {
    for (Vardo::CNChannelBuffer& ring : rings_)
        ring.clear();
    setFloor();
    ringWrite_ = 0;
    hopFill_ = 0;
    frames_ = 0;
}

bool SpectrumAnalyser::feed(const Slice& slice) noexcept {
    const int size = fftSize();
    if (size == 0) return false;
    bool finished = false;
    for (int done = 0; done < slice.count;) {
        const int chunk = std::min({slice.count - done, hopSize_ - hopFill_, size - ringWrite_});
        store(slice, done, chunk);
        done += chunk;
        hopFill_ += chunk;
        ringWrite_ += chunk;
        if (ringWrite_ == size) ringWrite_ = 0;
        if (hopFill_ < hopSize_) continue;
        makeFrame();
        hopFill_ = 0;
        finished = true;
    }
    return finished;
}

void SpectrumAnalyser::store(const Slice& slice, int from, int count) noexcept {
    for (int i = 0; i < kNumChannels; ++i) {
        if (!active_[index(i)]) continue;
        float* const ring = rings_[index(i)].channel(0);
        std::copy_n(slice.channels[i] + from, count, ring + ringWrite_);
        std::copy_n(slice.channels[i] + from, count, ring + ringWrite_ + fftSize());
    }
}

void SpectrumAnalyser::makeFrame() noexcept {
    for (std::size_t i = 0; i < active_.size(); ++i) {
        if (!active_[i]) continue;
        float* const levels = levels_[i].channel(0);
        fft_.forwardToDb(rings_[i].channel(0) + ringWrite_, window_.channel(0),
                         kSpectrumCalibrationDb, kSpectrumFloorDb, levels);
        levels[0] = kSpectrumDcDb;
    }
    ++frames_;
}

} // namespace Orvel

// Overlapping spectra of the analysis channels, in decibels.
#pragma once

#include "analysis/RealFFT.h"
#include "analysis/Slice.h"
#include "core/RealTime.h"
#include "frame/ChannelBuffer.h"

#include <array>

namespace Orvel {

/// 20 log10(4): a full-scale sine loses half of its magnitude to the bins of negative frequency and
/// half to the window, and is to read 0 dB at the centre of a bin.
inline constexpr float kSpectrumCalibrationDb = 12.0411998F;
inline constexpr float kSpectrumFloorDb = -192.0F; ///< no bin is lower
inline constexpr float kSpectrumDcDb = -72.0F;     ///< bin 0, which is not shown

/// Shape: one frame is `fftSize` samples of each active channel through a symmetric Hann window;
/// the next follows `hopSize` samples later. Unit: dB, a full-scale sine is 0.
/// Threads: `feed` on the analysing thread; `configure` and the setters on the main thread and
/// everything else on any thread, all under the analysis lock.
class SpectrumAnalyser {
  public:
    static constexpr int kNumSizes = 4;
    static constexpr int kNumChannels = Vardo::kNumAnalysisChannels;

    /// Samples in a frame: 2048, 4096, 8192 or 16384 at 48 kHz, as long in time at other rates, and
    /// rounded up to a power of two.
    static int fftSizeFor(float sampleRate, int sizeIndex) noexcept;

    SpectrumAnalyser();

    /// Makes everything anew, silent, when sample rate or size change; `sizeIndex` 0..3. Speed
    /// alone only sets the hop. Fails: std::bad_alloc, and all stays as it was.
    void configure(float sampleRate, int sizeIndex, float updateSpeed);
    /// Frames per frame length, 1 to 16. Starts a new hop, the samples stay.
    void setUpdateSpeed(float updateSpeed) noexcept;
    /// Which channels are analysed; Mid and Side at first. Makes everything anew.
    void setActive(int channel, bool active);
    bool isActive(int channel) const noexcept { return active_[index(channel)]; }
    /// Forgets all samples and levels.
    void clear() noexcept;

    /// One slice. Gives whether a frame was finished. Does nothing before `configure`.
    bool feed(const Slice& slice) noexcept ORVEL_NONBLOCKING;

    int fftSize() const noexcept { return fft_.size(); } ///< samples; 0 before `configure`
    int hopSize() const noexcept { return hopSize_; }    ///< samples
    float binHz() const noexcept { return fftSize() > 0 ? sampleRate_ / float(fftSize()) : 0; }
    /// Finished since the last set-up or `clear`.
    long long frames() const noexcept { return frames_; }
    /// The last frame: `fftSize` levels, of which those above half the size are always the floor.
    /// Null for a channel that is not active.
    const float* levelsDb(int channel) const noexcept { return levels_[index(channel)].channel(0); }

  private:
    using Buffers = std::array<Vardo::CNChannelBuffer, kNumChannels>;
    static std::size_t index(int channel) { return static_cast<std::size_t>(channel); }

    void allocate(int size);
    void setFloor() noexcept;
    void store(const Slice& slice, int from, int count) noexcept;
    void makeFrame() noexcept;

    float sampleRate_ = 0; // Hz
    float updateSpeed_ = 16;
    int hopSize_ = 1;
    int hopFill_ = 0; // samples since the last frame
    int ringWrite_ = 0;
    long long frames_ = 0;
    std::array<bool, kNumChannels> active_{};
    CRealFFT fft_;
    Vardo::CNChannelBuffer window_;
    // Each sample stands in a ring twice, `fftSize` apart: from `ringWrite_` on, the last
    // `fftSize` samples are one piece in time order, wherever the ring begins.
    Buffers rings_;
    Buffers levels_;
};

} // namespace Orvel

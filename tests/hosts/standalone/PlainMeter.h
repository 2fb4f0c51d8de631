// Levels worked out the plain way, over a whole recording at once, from their definitions alone.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

struct StereoRecording {
    int rate = 0;
    int channels = 0;
    std::vector<float> left, right;
};

/// With libsndfile; throws std::runtime_error when the file cannot be read.
StereoRecording readRecording(const std::string& path);
/// 32-bit float WAV of interleaved samples.
void writeRecording(const std::string& path,
                    int rate,
                    int channels,
                    const std::vector<float>& samples);

struct PlainLevels {
    float peakLast = 0;
    float peakMax = 0;
    int overs = 0;
    double meanSquare = 0; ///< over the RMS window
    std::array<int, 109> histogram{};
};

struct PlainMeasurement {
    std::array<PlainLevels, 5> channels; ///< left, right, mid, side, max
    std::int64_t slices = 0;
};

PlainMeasurement
measurePlainly(const StereoRecording& recording, int blockSize, float gain, double rmsMilliseconds);

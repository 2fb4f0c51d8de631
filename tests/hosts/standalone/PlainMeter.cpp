// Levels worked out the plain way.
#include "PlainMeter.h"

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace {

// Full blocks and a rest; a rest below ten shares the last full block with it.
std::vector<int> blockLengths(int frames, int block) {
    std::vector<int> lengths(static_cast<std::size_t>(frames / block), block);
    const int rest = frames % block;
    if (rest >= 10 || (rest > 0 && lengths.empty()))
        lengths.push_back(std::max(rest, 10));
    else if (rest > 0) {
        lengths.pop_back();
        const int both = block + rest;
        lengths.push_back(both - both / 2);
        lengths.push_back(both / 2);
    }
    return lengths;
}

PlainLevels levelsOf(const std::vector<float>& samples,
                     const std::vector<int>& slices,
                     int rate,
                     double rmsMilliseconds) {
    PlainLevels levels;
    std::size_t at = 0;
    for (const int slice : slices) {
        levels.peakLast = 0;
        for (int i = 0; i < slice; ++i, ++at)
            levels.peakLast = std::max(levels.peakLast, std::abs(samples[at]));
        levels.peakMax = std::max(levels.peakMax, levels.peakLast);
        if (levels.peakLast > 1) ++levels.overs;
    }

    const auto window = static_cast<std::size_t>(rmsMilliseconds * rate * 0.001);
    const std::size_t first = samples.size() > window ? samples.size() - window : 0;
    for (std::size_t i = first; i < samples.size(); ++i)
        levels.meanSquare += static_cast<double>(samples[i]) * static_cast<double>(samples[i]);
    levels.meanSquare /= static_cast<double>(window);

    const auto second = static_cast<std::size_t>(rate);
    for (std::size_t i = samples.size() > second ? samples.size() - second : 0; i < samples.size();
         ++i) {
        const float db = 20.0F * std::log10(std::abs(samples[i]));
        if (db >= -96.0F)
            ++levels.histogram[static_cast<std::size_t>(
                std::clamp(static_cast<int>(db + 96.0F), 0, 108))];
    }
    return levels;
}

} // namespace

StereoRecording readRecording(const std::string& path) {
    SF_INFO format{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &format);
    if (file == nullptr) throw std::runtime_error("missing recording: " + path);
    const auto channels = static_cast<std::size_t>(format.channels);
    std::vector<float> samples(static_cast<std::size_t>(format.frames) * channels);
    const auto frames =
        static_cast<std::size_t>(sf_readf_float(file, samples.data(), format.frames));
    sf_close(file);

    StereoRecording recording{format.samplerate, format.channels, {}, {}};
    for (std::size_t i = 0; i < frames; ++i) {
        recording.left.push_back(samples[i * channels]);
        recording.right.push_back(samples[i * channels + (channels > 1 ? 1 : 0)]);
    }
    return recording;
}

void writeRecording(const std::string& path,
                    int rate,
                    int channels,
                    const std::vector<float>& samples) {
    SF_INFO format{};
    format.samplerate = rate;
    format.channels = channels;
    format.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &format);
    if (file == nullptr) throw std::runtime_error("cannot write " + path);
    sf_writef_float(file, samples.data(), static_cast<sf_count_t>(samples.size()) / channels);
    sf_close(file);
}

PlainMeasurement measurePlainly(const StereoRecording& recording,
                                int blockSize,
                                float gain,
                                double rmsMilliseconds) {
    std::vector<int> slices;
    const int millisecond = static_cast<int>(recording.rate * 0.001);
    int total = 0;
    for (const int block : blockLengths(static_cast<int>(recording.left.size()), blockSize)) {
        total += block;
        for (int left = block; left > 0; left -= slices.back())
            slices.push_back(std::min(left, millisecond));
    }

    std::array<std::vector<float>, 5> signals;
    for (std::size_t i = 0; i < static_cast<std::size_t>(total); ++i) {
        const bool inside = i < recording.left.size();
        const float l = inside ? recording.left[i] * gain : 0;
        const float r = inside ? recording.right[i] * gain : 0;
        signals[0].push_back(l);
        signals[1].push_back(r);
        signals[2].push_back((l + r) * 0.5F);
        signals[3].push_back((l - r) * 0.5F);
        signals[4].push_back(std::abs(l) > std::abs(r) ? l : r);
    }

    PlainMeasurement result;
    result.slices = static_cast<std::int64_t>(slices.size());
    for (std::size_t c = 0; c < signals.size(); ++c)
        result.channels[c] = levelsOf(signals[c], slices, recording.rate, rmsMilliseconds);
    return result;
}

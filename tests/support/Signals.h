// Test signals and the plainest possible host.
#pragma once

#include "frame/AnalysisSnapshot.h"
#include "frame/PluginBase.h"
#include "frame/ProcessContext.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <vector>

namespace orvel_test {

struct Stereo {
    std::vector<float> left;
    std::vector<float> right;
    int size() const { return static_cast<int>(left.size()); }
};

inline std::vector<float> sine(int samples, double hz, double sampleRate, double amplitude = 1.0) {
    std::vector<float> result(static_cast<std::size_t>(samples));
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = static_cast<float>(
            amplitude * std::sin(2 * std::numbers::pi * hz * static_cast<double>(i) / sampleRate));
    return result;
}

/// Uniform noise, the same for the same seed.
inline std::vector<float> noise(int samples, std::uint32_t seed, float amplitude = 1.0F) {
    std::mt19937 generator(seed);
    std::uniform_real_distribution<float> uniform(-amplitude, amplitude);
    std::vector<float> result(static_cast<std::size_t>(samples));
    std::generate(result.begin(), result.end(), [&] { return uniform(generator); });
    return result;
}

inline Stereo stereoNoise(int samples, std::uint32_t seed, float amplitude = 1.0F) {
    return {noise(samples, seed, amplitude), noise(samples, seed + 1000, amplitude)};
}

struct Transport {
    float tempo = 120.0F;
    bool playing = true;
};

/// Runs audio through a plug-in and gives what came out.
class PlainHost {
  public:
    PlainHost(Vardo::IPluginBase& plugin, double sampleRate, int blockSize)
        : plugin_(plugin)
        , sampleRate_(sampleRate) {
        plugin.setSampleRate(sampleRate);
        plugin.setBlockSize(blockSize);
    }

    /// One process call.
    Stereo block(const Stereo& audio, int offset, int samples) {
        Stereo out{std::vector<float>(static_cast<std::size_t>(samples)),
                   std::vector<float>(static_cast<std::size_t>(samples))};
        Stereo in{{audio.left.begin() + offset, audio.left.begin() + offset + samples},
                  {audio.right.begin() + offset, audio.right.begin() + offset + samples}};
        float* inputs[2] = {in.left.data(), in.right.data()};
        float* outputs[2] = {out.left.data(), out.right.data()};
        Vardo::CProcessContext context(inputs, 2, outputs, 2, nullptr, samples);
        context.setTempo(transport.tempo);
        context.setPlaying(transport.playing);
        context.setSamplePosition(position);
        context.setPpqPosition(position / sampleRate_ * double{transport.tempo} / 60);
        plugin_.process(context);
        if (transport.playing) position += samples;
        return out;
    }

    /// The whole signal in blocks of that size. Gives whether it came out bit for bit.
    bool play(const Stereo& audio, int blockSize) {
        bool same = true;
        for (int offset = 0; offset < audio.size(); offset += blockSize) {
            const int samples = std::min(blockSize, audio.size() - offset);
            const Stereo out = block(audio, offset, samples);
            same = same &&
                   std::equal(out.left.begin(), out.left.end(), audio.left.begin() + offset) &&
                   std::equal(out.right.begin(), out.right.end(), audio.right.begin() + offset);
        }
        return same;
    }

    Vardo::AnalysisSnapshot read() {
        Vardo::AnalysisSnapshot snapshot;
        plugin_.getAnalysis()->readAnalysis(snapshot);
        return snapshot;
    }

    Transport transport;
    double position = 0; // samples

  private:
    Vardo::IPluginBase& plugin_;
    double sampleRate_;
};

} // namespace orvel_test

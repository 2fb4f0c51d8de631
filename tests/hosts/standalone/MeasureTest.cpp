// What `measure --json` tells, against levels worked out the plain way.
#include "PlainMeter.h"
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <random>

namespace {

using Arguments = std::vector<std::string>;
using Json = nlohmann::ordered_json;

constexpr std::array<const char*, 5> kChannels = {"left", "right", "mid", "side", "max"};

std::string measureText(Arguments arguments) {
    arguments.insert(arguments.begin(), "measure");
    arguments.push_back("--json");
    const ProgramResult result = runProgram(arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    return result.out;
}

Json measure(const Arguments& arguments) { return Json::parse(measureText(arguments)); }

Arguments keysOf(const Json& object) {
    Arguments keys;
    for (const auto& [key, value] : object.items())
        keys.push_back(key);
    return keys;
}

// The meter sums squares as whole multiples of 1/20000000, cut, each rounded to a float before.
void expectRms(const Json& rms, double meanSquare) {
    const double square = rms.get<double>() * rms.get<double>();
    EXPECT_LE(square, meanSquare * (1 + 6e-7));
    EXPECT_GE(square, meanSquare * (1 - 6e-7) - 1.0 / 20000000);
}

void expectLevels(const Json& measured,
                  const PlainMeasurement& plain,
                  bool midAndSide,
                  double power) {
    EXPECT_EQ(measured["engine"]["slices"], plain.slices);
    for (std::size_t c = 0; c < kChannels.size(); ++c) {
        SCOPED_TRACE(kChannels[c]);
        const Json& levels = measured["levels"][kChannels[c]];
        EXPECT_EQ(levels["peak_last"], static_cast<double>(plain.channels[c].peakLast));
        EXPECT_EQ(levels["peak_max"], static_cast<double>(plain.channels[c].peakMax));
        EXPECT_EQ(levels["overs"], plain.channels[c].overs);
        if (c < 2 || (midAndSide && c < 4))
            expectRms(levels["rms"], plain.channels[c].meanSquare * power);
        else
            EXPECT_TRUE(levels["rms"].is_null());
    }
}

// Stereo noise that swells above full scale, with a stretch of silence and samples of exactly 1.
std::string noiseFile(const std::string& name, int rate, int channels, int frames) {
    constexpr unsigned seed = 20240607;
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> noise(-1, 1);
    std::vector<float> samples;
    for (int i = 0; i < frames; ++i)
        for (int c = 0; c < channels; ++c) {
            const float swell = 1.15F * static_cast<float>(i) / static_cast<float>(frames);
            const bool silent = i > frames / 2 && i < frames / 2 + rate / 50;
            const float sample = noise(random) * swell * (c == 1 ? 0.8F : 1.0F);
            samples.push_back(silent ? 0 : i % 997 == 0 ? 1.0F : sample);
        }
    const std::string path = testFolder() + "/" + name;
    writeRecording(path, rate, channels, samples);
    return path;
}

class RealRecording : public testing::TestWithParam<const char*> {};

TEST_P(RealRecording, AgreesWithThePlainCalculation) {
    const StereoRecording recording = readRecording(GetParam());
    ASSERT_GT(recording.left.size(), static_cast<std::size_t>(recording.rate));
    for (const int block : {64, 512, 1000}) {
        SCOPED_TRACE(block);
        const Json measured =
            measure({GetParam(), "--block", std::to_string(block), "--page", "stereo"});
        EXPECT_EQ(measured["file"]["sample_rate"], recording.rate);
        EXPECT_EQ(measured["file"]["channels"], recording.channels);
        EXPECT_EQ(measured["file"]["frames"], recording.left.size());
        expectLevels(measured, measurePlainly(recording, block, 1, 500), true, 1);
    }
}

INSTANTIATE_TEST_SUITE_P(SpeechAndMusic,
                         RealRecording,
                         testing::Values("/usr/share/sounds/alsa/Front_Center.wav",
                                         "/usr/share/games/parsec47/sounds/ptn0.ogg"));

TEST(Measure, HasTheAgreedShape) {
    const Json measured = measure({"--demo", "--tempo", "90"});
    EXPECT_EQ(keysOf(measured),
              (Arguments{"file", "engine", "levels", "dynamic_range", "histogram", "transients",
                         "sibilance", "correlation", "spectrum", "scope"}));
    EXPECT_TRUE(measured["histogram"].is_null());
    EXPECT_GT(measured["levels"]["max"]["overs"], 0);

    for (const char* page : {"scope", "spectrum", "stereo", "system"}) {
        const Json other = measure({"--demo", "--page", page});
        EXPECT_EQ(other["engine"]["page"], page);
        EXPECT_EQ(other["levels"]["mid"]["rms"].is_null(), std::string(page) != "stereo");
        const bool stereo = std::string(page) == "stereo";
        EXPECT_EQ(other["correlation"].is_null(), !stereo);
        EXPECT_EQ(other["spectrum"].is_null(), !stereo && std::string(page) != "spectrum");
        EXPECT_EQ(other["transients"].is_null(), std::string(page) != "scope");
    }
}

TEST(Measure, PagesAddWhatTheyShow) {
    const Json spectrum = measure({"--demo", "--page", "spectrum", "--set", "SpectrumFFTSize=1",
                                   "SpectrumUpdateSpeed=4"})["spectrum"];
    EXPECT_EQ(spectrum["bin_hz"], 48000.0 / 4096);
    EXPECT_EQ(spectrum["frames"], 384000 / 1024);
    EXPECT_EQ(spectrum["mid"].size(), 2049U);

    const Json scope = measure({"--demo", "--columns", "300", "--set", "ScopeSyncMode=2",
                                "ScopeDeEsserFemale=1", "--tempo", "110"});
    ASSERT_EQ(scope["scope"]["layers"].size(), 6U);
    for (const Json& layer : scope["scope"]["layers"])
        EXPECT_EQ(layer.size(), 300U);
    EXPECT_GT(scope["transients"].size(), 4U) << "the demonstration signal has drums";
    EXPECT_GT(scope["sibilance"]["female"], 0.1);
}

TEST(Measure, SettingsReachTheMeter) {
    const std::string path = noiseFile("settings.wav", 44100, 2, 60001);
    const StereoRecording recording = readRecording(path);
    const Json gain = measure({path, "--set", "GlobalInputGain=0.7", "GlobalRMSLength=123",
                               "--page", "stereo", "--set", "GlobalRMSLength=300"});
    EXPECT_EQ(gain["engine"]["parameters"]["GlobalRMSLength"], 300);
    EXPECT_EQ(gain["engine"]["parameters"]["GlobalInputGain"], static_cast<double>(0.7F));
    expectLevels(gain, measurePlainly(recording, 512, 0.7F, 300), true, 1);

    // A full-scale sine shall read as its peak: doubled power.
    for (const char* mode : {"2", "3", "4"})
        expectLevels(measure({path, "--set", std::string("GlobalMeteringMode=") + mode}),
                     measurePlainly(recording, 512, 1, 500), false, 2);
}

TEST(Measure, HistogramCountsTheLastSecond) {
    for (const std::string& path : {noiseFile("histogram.wav", 48000, 2, 100003),
                                    std::string("/usr/share/sounds/alsa/Front_Center.wav")}) {
        const Json measured = measure({path, "--set", "GlobalMeteringMode=1"});
        const PlainMeasurement plain = measurePlainly(readRecording(path), 512, 1, 500);
        EXPECT_EQ(keysOf(measured["histogram"]), Arguments(kChannels.begin(), kChannels.end()));
        for (std::size_t c = 0; c < kChannels.size(); ++c)
            EXPECT_EQ(measured["histogram"][kChannels[c]], Json(plain.channels[c].histogram))
                << kChannels[c];
        expectLevels(measured, plain, false, 1);
    }
}

// Ends that do not fit the block: the rest is analysed once, without silence behind it.
TEST(Measure, EveryLengthIsMeasuredToItsLastSample) {
    for (const int frames : {4, 11, 48, 505, 512, 513, 521, 522, 1024, 1029, 5000})
        for (const int block : {64, 512, 100000}) {
            SCOPED_TRACE(testing::Message() << frames << " frames, block " << block);
            const std::string path = noiseFile("length.wav", 48000, 2, frames);
            const Json measured = measure({path, "--block", std::to_string(block)});
            EXPECT_EQ(measured["file"]["frames"], frames);
            expectLevels(measured, measurePlainly(readRecording(path), block, 1, 500), false, 1);
        }
}

TEST(Measure, AnyNumberOfChannelsBecomesAPair) {
    for (const int channels : {1, 2, 3, 6}) {
        const std::string path = noiseFile("channels.wav", 32000, channels, 40000);
        const Json measured = measure({path, "--page", "stereo"});
        EXPECT_EQ(measured["file"]["channels"], channels);
        expectLevels(measured, measurePlainly(readRecording(path), 512, 1, 500), true, 1);
    }
}

TEST(Measure, IsTheSameOnEitherThreadAndEveryTime) {
    const std::string path = noiseFile("threads.wav", 48000, 2, 200000);
    for (const char* block : {"17", "512", "70000"}) {
        const Arguments common = {
            path, "--block", block, "--page", "stereo", "--set", "GlobalMeteringMode=1"};
        const auto with = [&](const char* threaded) {
            Arguments arguments = common;
            arguments.insert(arguments.end(), {"--threaded", threaded});
            return measureText(arguments);
        };
        const std::string first = with("on");
        for (int run = 0; run < 5; ++run)
            EXPECT_EQ(with("on"), first);
        Json on = Json::parse(first);
        Json off = Json::parse(with("off"));
        EXPECT_EQ(on["engine"]["threaded"], true);
        EXPECT_EQ(off["engine"]["threaded"], false);
        on["engine"].erase("threaded");
        off["engine"].erase("threaded");
        EXPECT_EQ(on, off);
    }
}

TEST(Measure, ThreadedIsOfThisRunOnly) {
    const Json before = measure({"--demo"})["engine"]["threaded"];
    measure({"--demo", "--threaded", before.get<bool>() ? "off" : "on"});
    EXPECT_EQ(measure({"--demo"})["engine"]["threaded"], before);
}

} // namespace

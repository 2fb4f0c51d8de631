// What `measure --json` tells. Its figures are compared with numpy's by tools/accuracy; here, that
// all of a recording gets to the meter, and all that is measured to the page.
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace {

using Json = nlohmann::ordered_json;

std::string measureText(Arguments arguments) {
    arguments.insert(arguments.begin(), "measure");
    arguments.push_back("--json");
    const ProgramResult result = runProgram(arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    return result.out;
}

Json measure(const Arguments& arguments) { return Json::parse(measureText(arguments)); }

TEST(Measure, HasTheAgreedShape) {
    const Json measured = measure({"--demo", "--tempo", "90"});
    Arguments keys;
    for (const auto& [key, value] : measured.items())
        keys.push_back(key);
    EXPECT_EQ(keys, (Arguments{"file", "engine", "levels", "dynamic_range", "histogram",
                               "transients", "sibilance", "correlation", "spectrum", "scope"}));
    EXPECT_TRUE(measured["histogram"].is_null());
    // The demonstration signal is as loud as music, with a few clipped peaks.
    const Json& left = measured["levels"]["left"];
    EXPECT_GT(left["rms"], 0.1);
    EXPECT_LT(left["rms"], 0.32);
    EXPECT_GT(left["overs"], 0);
    EXPECT_LT(left["overs"], 200);

    for (const std::string page : {"scope", "spectrum", "stereo", "system"}) {
        const Json other = measure({"--demo", "--page", page});
        EXPECT_EQ(other["engine"]["page"], page);
        EXPECT_EQ(other["levels"]["mid"]["rms"].is_null(), page != "stereo");
        EXPECT_EQ(other["correlation"].is_null(), page != "stereo");
        EXPECT_EQ(other["spectrum"].is_null(), page != "stereo" && page != "spectrum");
        EXPECT_EQ(other["transients"].is_null(), page != "scope");
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
    std::vector<float> samples(44100, 0.0F); // silence, then 300 ms of one half
    std::fill(samples.end() - 13230, samples.end(), 0.5F);
    const Arguments common{recordingOf(44100, 1, samples), "--set", "GlobalInputGain=0.7",
                           "GlobalRMSLength=123",          "--set", "GlobalRMSLength=300"};
    for (const auto& [mode, factor] : {std::pair{"1", 1.0}, {"2", M_SQRT2}, {"4", M_SQRT2}}) {
        Arguments arguments = common;
        arguments.push_back(std::string("--set=GlobalMeteringMode=") + mode);
        const Json measured = measure(arguments);
        EXPECT_EQ(measured["engine"]["parameters"]["GlobalRMSLength"], 300);
        EXPECT_EQ(measured["levels"]["left"]["peak_max"], double{0.5F * 0.7F});
        // The K modes read a full-scale sine as its peak. Squares are summed in steps of 5e-8.
        EXPECT_NEAR(measured["levels"]["right"]["rms"], 0.35 * factor, 2e-7) << mode;
    }
}

// Ends that do not fit the block: the rest is analysed once, without silence behind it.
TEST(Measure, EveryLengthIsMeasuredToItsLastSample) {
    for (const int frames : {4, 11, 48, 505, 512, 513, 521, 522, 1024, 1029, 5000})
        for (const int block : {64, 512, 100000}) {
            SCOPED_TRACE(testing::Message() << frames << " frames, block " << block);
            std::vector<float> samples(static_cast<std::size_t>(frames), 0.25F);
            samples.back() = 1.5F;
            const Json measured =
                measure({recordingOf(48000, 1, samples), "--block", std::to_string(block)});
            EXPECT_EQ(measured["file"]["frames"], frames);
            EXPECT_EQ(measured["levels"]["left"]["peak_last"], 1.5);
            EXPECT_EQ(measured["levels"]["left"]["overs"], 1);
        }
}

TEST(Measure, AnyNumberOfChannelsBecomesAPair) {
    for (const int channels : {1, 2, 3, 6}) {
        std::vector<float> samples;
        for (int i = 0; i < 40000 * channels; ++i)
            samples.push_back(0.125F * static_cast<float>(1 + i % channels));
        const Json measured = measure({recordingOf(32000, channels, samples)});
        EXPECT_EQ(measured["file"]["channels"], channels);
        EXPECT_EQ(measured["file"]["sample_rate"], 32000);
        EXPECT_EQ(measured["levels"]["left"]["peak_max"], 0.125);
        EXPECT_EQ(measured["levels"]["right"]["peak_max"], channels == 1 ? 0.125 : 0.25);
    }
    EXPECT_GT(measure({"/usr/share/games/parsec47/sounds/ptn0.ogg"})["levels"]["left"]["peak_max"],
              0.1);
}

TEST(Measure, IsTheSameOnEitherThreadAndEveryTime) {
    for (const char* block : {"17", "512", "70000"}) {
        const auto with = [&](const char* threaded) {
            return measureText({"--demo", "--block", block, "--page", "stereo", "--set",
                                "GlobalMeteringMode=1", "--threaded", threaded});
        };
        const std::string first = with("on");
        for (int run = 0; run < 3; ++run)
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

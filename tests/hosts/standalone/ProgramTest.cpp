// The program from outside: errors, help, output.
#include "Program.h"
#include "PlainMeter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace {

using Arguments = std::vector<std::string>;
using testing::HasSubstr;

constexpr const char* kSpeech = "/usr/share/sounds/alsa/Front_Center.wav";

std::string fileWith(const std::string& name, const std::string& content) {
    const std::string path = testFolder() + "/" + name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

void expectOneLineError(const Arguments& arguments, const std::string& hint) {
    SCOPED_TRACE(testing::PrintToString(arguments));
    const ProgramResult result = runProgram(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    EXPECT_THAT(result.err, testing::StartsWith("orvelscope: "));
    EXPECT_THAT(result.err, HasSubstr(hint));
}

TEST(Program, RefusesWrongArgumentsInOneLine) {
    expectOneLineError({"--loud"}, "play --help");
    expectOneLineError({"measure"}, "needs a FILE");
    expectOneLineError({"measure", kSpeech, "--set", "NoSuchKey=1"}, "measure --help");
    expectOneLineError({"measure", kSpeech, "--set", "GlobalRMSLength=9.99"}, "from 10 to 1000");
    expectOneLineError({"measure", kSpeech, "--set", "GlobalInputGain=1.01", "--json"}, "0 to 1");
}

TEST(Program, RefusesFilesItCannotMeasureInOneLine) {
    expectOneLineError({"measure", testFolder() + "/none.wav"}, "check the path");
    expectOneLineError({"measure", testFolder()}, "is a folder");
    expectOneLineError({"measure", "/dev/zero"}, "is a device");
    expectOneLineError({"measure", fileWith("empty.wav", "")}, "is empty");
    const std::string text(5000, 'x');
    expectOneLineError({"measure", fileWith("text.txt", text), "--json"}, "WAV, FLAC, OGG or MP3");
    // Decoders chosen by the name alone, one of which talks to standard error.
    expectOneLineError({"measure", fileWith("text.mp3", text)}, "WAV, FLAC, OGG or MP3");
    expectOneLineError({"measure", fileWith("text.gsm", text)}, "no header");
    expectOneLineError({"measure", fileWith("two\nlines.wav", text)}, "two?lines.wav");
    std::ifstream speech(kSpeech, std::ios::binary);
    std::string header(44, 0);
    speech.read(header.data(), 44);
    expectOneLineError({"measure", fileWith("header.wav", header)}, "holds no sound");
}

TEST(Program, OutputThatCannotBeWrittenIsAnError) {
    for (const Arguments& arguments :
         {Arguments{"measure", kSpeech, "--json"}, Arguments{"measure", "--help"}}) {
        const ProgramResult result = runProgram(arguments, "/dev/full");
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.err, HasSubstr("cannot write"));
    }
}

TEST(Program, HelpListsTheParametersAndVersionTheVersion) {
    const ProgramResult help = runProgram({"measure", "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.out, HasSubstr("GlobalRMSLength               10 .. 1000    500"));
    for (const char* command : {"play", "render"})
        EXPECT_THAT(runProgram({command, "--help"}).out, HasSubstr("GlobalRMSLength"));
    EXPECT_EQ(runProgram({"--version"}).out, "Orvel Scope 1.0.4\n");
}

TEST(Program, TableIsShortAndTellsLevelsBothWays) {
    // Half of full scale on the left only, for two seconds.
    std::vector<float> samples;
    for (int i = 0; i < 2 * 48000; ++i) {
        samples.push_back(i % 2 == 0 ? 0.5F : -0.5F);
        samples.push_back(0);
    }
    const std::string path = testFolder() + "/half.wav";
    writeRecording(path, 48000, 2, samples);
    const ProgramResult result =
        runProgram({"measure", path, "--set", "GlobalMeteringMode=1", "--page", "stereo"});
    EXPECT_EQ(result.status, 0);
    EXPECT_LE(std::count(result.out.begin(), result.out.end(), '\n'), 25);
    EXPECT_THAT(result.out, testing::ContainsRegex("Left +-6.02 +0.50000 +-6.02 +0.50000 +-6.02 "
                                                   "+0.50000 +0\n"));
    EXPECT_THAT(result.out, testing::ContainsRegex("Right +-oo +0.00000 +-oo +0.00000 +-oo"));
}

} // namespace

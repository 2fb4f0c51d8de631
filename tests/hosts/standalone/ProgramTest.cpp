// The program from outside: errors, help, output.
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

constexpr const char* kSpeech = "/usr/share/sounds/alsa/Front_Center.wav";

std::string fileWith(const std::string& name, const std::string& content) {
    const std::string path = inTestFolder(name);
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

TEST(Program, RefusesInOneLine) {
    const std::string text(5000, 'x');
    std::string header(44, 0);
    std::ifstream(kSpeech, std::ios::binary).read(header.data(), 44);
    const std::pair<Arguments, const char*> cases[] = {
        {{"measure", kSpeech, "--set", "NoSuchKey=1"}, "measure --help"},
        {{"measure", kSpeech, "--set", "GlobalRMSLength=9.99"}, "from 10 to 1000"},
        {{"measure", kSpeech, "--set", "GlobalInputGain=1.01", "--json"}, "0 to 1"},
        {{"measure", inTestFolder("none.wav")}, "check the path"},
        {{"measure", inTestFolder("")}, "is a folder"},
        {{"measure", "/dev/zero"}, "is a device"},
        {{"measure", fileWith("empty.wav", "")}, "is empty"},
        {{"measure", fileWith("text.txt", text), "--json"}, "WAV, FLAC, OGG or MP3"},
        // Decoders chosen by the name alone, one of which talks to standard error.
        {{"measure", fileWith("text.mp3", text)}, "WAV, FLAC, OGG or MP3"},
        {{"measure", fileWith("text.gsm", text)}, "no header"},
        {{"measure", fileWith("two\nlines.wav", text)}, "two?lines.wav"},
        {{"measure", fileWith("header.wav", header)}, "holds no sound"},
        {{"render", "--demo", "-o", fileWith("file", "x") + "/a.png"}, "a file has that name"},
        {{"render", "--demo", "-o", inTestFolder("")}, "is a folder"},
        {{"render", "--demo", "-o", "/dev/full"}, "is a device"},
        {{"render", "--demo", "-o", "/proc/here/a.png"}, "cannot make the folder"},
        {{"render", "--demo", "--set", "Nothing=1", "-o", inTestFolder("b.png")}, "no parameter"},
    };
    for (const auto& [arguments, hint] : cases) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const ProgramResult result = runProgram(arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
        EXPECT_THAT(result.err, testing::StartsWith("orvelscope: "));
        EXPECT_THAT(result.err, HasSubstr(hint));
    }
    EXPECT_FALSE(std::ifstream(inTestFolder("b.png")).is_open());
}

TEST(Program, OutputThatCannotBeWrittenIsAnError) {
    for (const char* what : {"--demo", "--help"}) {
        const ProgramResult result = runProgram({"measure", what}, "/dev/full");
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.err, HasSubstr("cannot write"));
    }
}

TEST(Program, PlayWithoutADisplaySaysSoAndEnds) {
    unsetenv("DISPLAY");
    const ProgramResult result = runProgram({"--demo", "--silent"});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.err, HasSubstr("DISPLAY"));
}

TEST(Program, HelpListsTheParametersAndVersionTheVersion) {
    for (const char* command : {"measure", "play", "render"})
        EXPECT_THAT(runProgram({command, "--help"}).out,
                    HasSubstr("GlobalRMSLength               10 .. 1000    500"));
    EXPECT_EQ(runProgram({"--version"}).out, "Orvel Scope 1.0.4\n");
}

TEST(Program, TableIsShortAndTellsLevelsBothWays) {
    std::vector<float> samples; // two seconds of half of full scale, on the left only
    for (int i = 0; i < 4 * 48000; ++i)
        samples.push_back(i % 2 == 0 ? 0.5F : 0.0F);
    const ProgramResult result = runProgram({"measure", recordingOf(48000, 2, samples), "--set",
                                             "GlobalMeteringMode=1", "--page", "stereo"});
    EXPECT_LE(std::count(result.out.begin(), result.out.end(), '\n'), 25);
    EXPECT_THAT(result.out, ContainsRegex("Left +-6.02 +0.50000 +-6.02 +0.50000 +-6.02 "
                                          "+0.50000 +0\n"));
    EXPECT_THAT(result.out, ContainsRegex("Right +-oo +0.00000 +-oo +0.00000 +-oo"));
}

} // namespace

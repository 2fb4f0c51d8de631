// What the command line understands, and what it says to what it does not.
#include "CommandLine.h"
#include "UserError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Standalone {
namespace {

using Arguments = std::vector<std::string>;
using testing::HasSubstr;

MeasureOptions measureOf(Arguments arguments) {
    arguments.insert(arguments.begin(), "measure");
    return parseCommandLine(arguments).measure;
}

std::string errorOf(const Arguments& arguments) {
    try {
        parseCommandLine(arguments);
    } catch (const UserError& error) {
        return error.what();
    }
    return "no error";
}

TEST(CommandLine, ReadsEveryOptionInAnyOrder) {
    const MeasureOptions all =
        measureOf({"--json", "--block=64", "--page", "stereo", "song.wav", "--threaded", "off",
                   "--tempo", "97.5", "--set", "A=1", "--set=B=-2.5e-1", "--set", "A=+3"});
    EXPECT_EQ(all.path, "song.wav");
    EXPECT_TRUE(all.json);
    EXPECT_EQ(all.blockSize, 64);
    EXPECT_EQ(all.page, Vardo::AnalyserPage::stereoField);
    EXPECT_EQ(all.threaded, false);
    EXPECT_EQ(all.tempo, 97.5);
    ASSERT_EQ(all.settings.size(), 3U);
    EXPECT_EQ(all.settings[0].key, "A");
    EXPECT_EQ(all.settings[1].value, -0.25);
    EXPECT_EQ(all.settings[2].value, 3);
}

TEST(CommandLine, OneSetMayBeFollowedBySeveralSettings) {
    const MeasureOptions options = measureOf({"--set", "A=1", "B=2", "song.wav", "--json"});
    EXPECT_EQ(options.settings.size(), 2U);
    EXPECT_EQ(options.path, "song.wav");
    // Elsewhere such a word is a file's name.
    EXPECT_EQ(measureOf({"take=2.wav"}).path, "take=2.wav");
    EXPECT_EQ(measureOf({"--json", "--", "--set"}).path, "--set");
}

TEST(CommandLine, WithoutACommandItPlays) {
    using Action = CommandLine::Action;
    EXPECT_EQ(parseCommandLine({}).action, Action::play);
    const CommandLine file = parseCommandLine({"a.wav", "--page", "stereo", "--set", "A=1"});
    EXPECT_EQ(file.action, Action::play);
    EXPECT_EQ(file.play.path, "a.wav");
    EXPECT_EQ(file.play.page, Vardo::AnalyserPage::stereoField);
    EXPECT_TRUE(parseCommandLine({"--silent", "--demo"}).play.silent);
    // A recording may be called like a command.
    EXPECT_EQ(parseCommandLine({"play", "render"}).play.path, "render");
    EXPECT_EQ(parseCommandLine({"--help"}).action, Action::help);
    EXPECT_EQ(parseCommandLine({"render", "--help"}).action, Action::commandHelp);
    EXPECT_EQ(parseCommandLine({"a.wav", "--help"}).action, Action::commandHelp);
}

TEST(CommandLine, ReadsWhatPicturesNeed) {
    const RenderOptions options =
        parseCommandLine({"render", "a.wav", "--at", "1.5", "--mouse", "400,-2.5", "-o", "x.png",
                          "--page", "system", "--block", "64"})
            .render;
    EXPECT_EQ(options.seconds, 1.5);
    EXPECT_EQ(options.mouse->x, 400);
    EXPECT_EQ(options.mouse->y, -2.5);
    EXPECT_EQ(options.output, "x.png");
    EXPECT_EQ(options.page, Vardo::AnalyserPage::system);
    EXPECT_EQ(options.blockSize, 64);
    EXPECT_FALSE(options.allPages);
}

TEST(CommandLine, SaysWhatWouldHaveBeenRight) {
    const std::vector<std::pair<Arguments, const char*>> cases = {
        {{"measure"}, "needs a FILE"},
        {{"measure", "a.wav", "--demo"}, "not both"},
        {{"measure", "a.wav", "b.wav"}, "b.wav"},
        {{"measure", "a.wav", "--loud"}, "--loud"},
        {{"measur", "a.wav"}, "'measur' is no command"},
        {{"a.wav", "--loud"}, "--loud"},
        {{"render", "a.wav"}, "-o PICTURE.png"},
        {{"render", "a.wav", "--all"}, "-o FOLDER"},
        {{"render", "--all", "--demo", "--page", "scope", "-o", "x"}, "not both"},
        {{"render", "-o", "x"}, "needs a FILE"},
        {{"play", "a.wav", "--demo"}, "not both"},
        {{"measure", "a.wav", "--block"}, "--block"},
        {{"measure", "a.wav", "--threaded", "yes"}, "on or off"}};
    for (const auto& [arguments, hint] : cases)
        EXPECT_THAT(errorOf(arguments), HasSubstr(hint));
    for (const char* block : {"0", "-1", "1048577", "12.5", "many", "1e99", "nan"})
        EXPECT_THAT(errorOf({"measure", "a.wav", std::string("--block=") + block}),
                    HasSubstr("1 to 1048576"));
    for (const char* tempo : {"0", "0.99", "1000.1", "-120", "fast", "inf", "1,5", "+-3"})
        EXPECT_THAT(errorOf({"measure", "a.wav", std::string("--tempo=") + tempo}),
                    HasSubstr("1 to 1000"));
    for (const char* at : {"-1", "noon", "1:30", "1e7"})
        EXPECT_THAT(errorOf({"render", "a.wav", "-o", "x", std::string("--at=") + at}),
                    HasSubstr("seconds from the start"));
    for (const char* mouse : {"1", "1,", ",2", "1;2", "a,b"})
        EXPECT_THAT(errorOf({"render", "a.wav", "-o", "x", "--mouse", mouse}), HasSubstr("X,Y"));
    for (const char* page : {"Scope", "3", "stereo field", ""})
        EXPECT_THAT(errorOf({"measure", "a.wav", "--page", page}),
                    HasSubstr("scope, spectrum, stereo or system"));
    for (const char* setting : {"Gain", "=1", "Gain=", "Gain=loud", "Gain=1dB", "Gain=nan", "-oo"})
        EXPECT_THAT(errorOf({"measure", "a.wav", "--set", setting}),
                    HasSubstr("GlobalRMSLength=300"));
}

} // namespace
} // namespace Standalone

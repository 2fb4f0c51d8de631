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
    const MeasureOptions plain = measureOf({"song.wav"});
    EXPECT_EQ(plain.path, "song.wav");
    EXPECT_EQ(plain.blockSize, 512);
    EXPECT_EQ(plain.tempo, 120);
    EXPECT_FALSE(plain.page || plain.threaded || plain.json || plain.demo);
    EXPECT_TRUE(plain.settings.empty());

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

TEST(CommandLine, HelpAndVersion) {
    using Action = CommandLine::Action;
    EXPECT_EQ(parseCommandLine({"--help"}).action, Action::help);
    EXPECT_EQ(parseCommandLine({"--version"}).action, Action::version);
    const CommandLine help = parseCommandLine({"measure", "--help"});
    EXPECT_EQ(help.action, Action::measureHelp);
    EXPECT_THAT(help.helpText, HasSubstr("orvelscope measure master.wav"));
    for (const char* option : {"--block", "--page", "--set", "--threaded", "--tempo", "--json"})
        EXPECT_THAT(help.helpText, HasSubstr(option));
}

TEST(CommandLine, SaysWhatWouldHaveBeenRight) {
    EXPECT_THAT(errorOf({}), HasSubstr("orvelscope measure song.wav"));
    EXPECT_THAT(errorOf({"measure"}), HasSubstr("needs a FILE"));
    EXPECT_THAT(errorOf({"measure", "a.wav", "--demo"}), HasSubstr("not both"));
    EXPECT_THAT(errorOf({"measure", "a.wav", "b.wav"}), HasSubstr("b.wav"));
    EXPECT_THAT(errorOf({"measure", "a.wav", "--loud"}), HasSubstr("--loud"));
    EXPECT_THAT(errorOf({"measur", "a.wav"}), HasSubstr("measur"));
    EXPECT_THAT(errorOf({"measure", "a.wav", "--block"}), HasSubstr("--block"));
    EXPECT_THAT(errorOf({"measure", "a.wav", "--set"}), HasSubstr("--set"));
    for (const char* block : {"0", "-1", "1048577", "12.5", "many", "1e99", "nan"})
        EXPECT_THAT(errorOf({"measure", "a.wav", std::string("--block=") + block}),
                    HasSubstr("1 to 1048576"));
    for (const char* tempo : {"0", "0.99", "1000.1", "-120", "fast", "inf", "1,5", "+-3"})
        EXPECT_THAT(errorOf({"measure", "a.wav", std::string("--tempo=") + tempo}),
                    HasSubstr("1 to 1000"));
    for (const char* page : {"Scope", "3", "stereo field", ""})
        EXPECT_THAT(errorOf({"measure", "a.wav", "--page", page}),
                    HasSubstr("scope, spectrum, stereo or system"));
    EXPECT_THAT(errorOf({"measure", "a.wav", "--threaded", "yes"}), HasSubstr("on or off"));
    for (const char* setting : {"Gain", "=1", "Gain=", "Gain=loud", "Gain=1dB", "Gain=nan", "-oo"})
        EXPECT_THAT(errorOf({"measure", "a.wav", "--set", setting}),
                    HasSubstr("GlobalRMSLength=300"));
    for (const Arguments& wrong : {Arguments{"measure", "a.wav", "--loud"}, Arguments{"nonsense"}})
        EXPECT_THAT(errorOf(wrong), testing::Not(HasSubstr("\n")));
}

} // namespace
} // namespace Standalone

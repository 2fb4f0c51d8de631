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
                   "--tempo", "97.5", "--set", "A=1", "B=+2", "--set=B=-2.5e-1"});
    EXPECT_EQ(all.path, "song.wav");
    EXPECT_TRUE(all.json);
    EXPECT_EQ(all.blockSize, 64);
    EXPECT_EQ(all.page, Vardo::AnalyserPage::stereoField);
    EXPECT_EQ(all.threaded, false);
    EXPECT_EQ(all.tempo, 97.5);
    ASSERT_EQ(all.settings.size(), 3U);
    EXPECT_EQ(all.settings[0].key, "A");
    EXPECT_EQ(all.settings[1].value, 2);
    EXPECT_EQ(all.settings[2].value, -0.25);
    // Elsewhere a word like a setting is a file's name.
    EXPECT_EQ(measureOf({"take=2.wav"}).path, "take=2.wav");
    EXPECT_EQ(measureOf({"--json", "--", "--set"}).path, "--set");

    const RenderOptions render = parseCommandLine({"render", "a.wav", "--at", "1.5", "--mouse",
                                                   "400,-2.5", "-o", "x.png", "--block", "64"})
                                     .render;
    EXPECT_EQ(render.seconds, 1.5);
    EXPECT_EQ(render.mouse->x, 400);
    EXPECT_EQ(render.mouse->y, -2.5);
    EXPECT_EQ(render.output, "x.png");
    EXPECT_EQ(render.blockSize, 64);
    EXPECT_FALSE(render.allPages);
}

TEST(CommandLine, WithoutACommandItPlays) {
    using Action = CommandLine::Action;
    EXPECT_EQ(parseCommandLine({}).action, Action::play);
    const CommandLine file = parseCommandLine({"a.wav", "--silent", "--set", "A=1"});
    EXPECT_EQ(file.action, Action::play);
    EXPECT_EQ(file.play.path, "a.wav");
    EXPECT_TRUE(file.play.silent);
    // A recording may be called like a command.
    EXPECT_EQ(parseCommandLine({"play", "render"}).play.path, "render");
    EXPECT_EQ(parseCommandLine({"--help"}).action, Action::help);
    for (const char* first : {"render", "a.wav"})
        EXPECT_EQ(parseCommandLine({first, "--help"}).action, Action::commandHelp);
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
    const struct {
        const char* option;
        Arguments wrong;
        const char* hint;
    } values[] = {
        {"--block", {"0", "-1", "1048577", "12.5", "many", "1e99", "nan"}, "1 to 1048576"},
        {"--tempo", {"0", "0.99", "1000.1", "fast", "inf", "1,5", "+-3"}, "1 to 1000"},
        {"--at", {"-1", "noon", "1:30", "1e7"}, "seconds from the start"},
        {"--mouse", {"1", "1,", ",2", "1;2", "a,b"}, "X,Y"},
        {"--page", {"Scope", "3", "stereo field"}, "scope, spectrum, stereo or system"},
        {"--set", {"Gain", "=1", "Gain=", "Gain=+-1", "Gain=nan", "-oo"}, "GlobalRMSLength=300"},
    };
    for (const auto& [option, wrong, hint] : values)
        for (const std::string& value : wrong)
            EXPECT_THAT(errorOf({"render", "a.wav", "-o", "x", std::string(option) + "=" + value}),
                        HasSubstr(hint))
                << value;
}

} // namespace
} // namespace Standalone

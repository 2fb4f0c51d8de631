// Pictures of the window, written by the real program without a display.
#include "CommandLine.h"
#include "Program.h"
#include "RenderCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <vector>

namespace {

using testing::HasSubstr;
namespace fs = std::filesystem;

struct Picture {
    unsigned width = 0;
    unsigned height = 0;
    std::vector<std::uint32_t> pixels;
};

Picture readPicture(const fs::path& path) {
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0) return {};
    image.format = PNG_FORMAT_RGBA;
    Picture picture{image.width, image.height, {}};
    picture.pixels.resize(std::size_t{image.width} * image.height);
    png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr);
    return picture;
}

fs::path folder(const std::string& name) { return fs::path(testFolder()) / name; }

/// All but the figure that tells how much memory the program uses.
bool isSteady(std::size_t x, std::size_t y) { return x < 820 || y < 450 || y > 505; }

std::size_t difference(const Picture& one, const Picture& other) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < one.pixels.size(); ++i)
        if (one.pixels[i] != other.pixels[i] && isSteady(i % one.width, i / one.width)) ++count;
    return count;
}

TEST(Render, AllPagesAreWholeDifferentAndReproducible) {
    unsetenv("DISPLAY");
    const fs::path pictures = folder("new/pictures");
    const ProgramResult result =
        runProgram({"render", "--demo", "--all", "--at", "1.5", "-o", pictures.string()});
    ASSERT_EQ(result.status, 0) << result.err;
    std::vector<Picture> pages;
    for (const char* page : {"scope", "spectrum", "stereo", "system"}) {
        const fs::path path = pictures / (std::string(page) + ".png");
        EXPECT_THAT(result.out, HasSubstr(path.string() + "\n"));
        pages.push_back(readPicture(path));
        ASSERT_EQ(pages.back().width, 1000U);
        ASSERT_EQ(pages.back().height, 545U);
        const std::set<std::uint32_t> colours(pages.back().pixels.begin(),
                                              pages.back().pixels.end());
        EXPECT_GT(colours.size(), 50U) << page;
        for (std::size_t i = 0; i + 1 < pages.size(); ++i)
            EXPECT_GT(difference(pages[i], pages.back()), 20000U) << page;
    }
    // One page alone: the same picture, if the moment is the same.
    const fs::path again = folder("again.png");
    ASSERT_EQ(
        runProgram({"render", "--demo", "--page", "scope", "--at", "1.5", "-o", again}).status, 0);
    EXPECT_EQ(difference(readPicture(again), pages[0]), 0U);
    ASSERT_EQ(runProgram({"render", "--demo", "--at", "1.2", "-o", again}).status, 0);
    EXPECT_GT(difference(readPicture(again), pages[0]), 1000U);
    // What is set shows.
    ASSERT_EQ(
        runProgram({"render", "--demo", "--at", "1.5", "--set", "GlobalInputGain=0.1", "-o", again})
            .status,
        0);
    EXPECT_GT(difference(readPicture(again), pages[0]), 1000U);
}

TEST(Render, SaysWhatCannotBeWritten) {
    std::ofstream(folder("file")) << "x";
    const std::vector<std::pair<std::vector<std::string>, const char*>> cases = {
        {{"-o", folder("file") / "a.png"}, "a file has that name"},
        {{"-o", testFolder()}, "is a folder"},
        {{"-o", "/dev/full"}, "is a device"},
        {{"-o", "/proc/here/a.png"}, "cannot make the folder"},
        {{"--set", "Nothing=1", "-o", folder("b.png")}, "no parameter"}};
    for (const auto& [arguments, hint] : cases) {
        std::vector<std::string> all = {"render", "--demo", "--at", "0.1"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const ProgramResult result = runProgram(all);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, HasSubstr(hint));
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }
    EXPECT_FALSE(fs::exists(folder("b.png")));
}

TEST(Render, TakesThePictureWhereItShows) {
    using Standalone::pictureFrame;
    Standalone::RenderOptions options;
    Standalone::SourceInfo source;
    source.sampleRate = 1000;
    for (const auto& [length, frame] : {std::pair{100000, 60000}, {0, 10000}}) {
        source.frames = length;
        EXPECT_EQ(pictureFrame(source, options), frame);
    }
    options.seconds = 1.2345;
    EXPECT_EQ(pictureFrame(source, options), 1235); // 1234.5, rounded
}

TEST(Program, PlayWithoutADisplaySaysSoAndEnds) {
    unsetenv("DISPLAY");
    const ProgramResult result = runProgram({"--demo", "--silent"});
    EXPECT_EQ(result.status, 3);
    EXPECT_THAT(result.err, HasSubstr("DISPLAY"));
}

} // namespace

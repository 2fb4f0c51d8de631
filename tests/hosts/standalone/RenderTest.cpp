// Pictures of the window, written by the real program without a display.
#include "CommandLine.h"
#include "Program.h"
#include "RenderCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <png.h>

#include <cstdlib>
#include <cstring>
#include <set>

namespace {

struct Picture {
    unsigned width = 0;
    unsigned height = 0;
    std::vector<std::uint32_t> pixels;
};

Picture readPicture(const std::string& path) {
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

/// The picture that `render --demo` makes with these further arguments.
Picture rendered(Arguments arguments) {
    const std::string path = inTestFolder("one.png");
    arguments.insert(arguments.begin(), {"render", "--demo", "-o", path});
    EXPECT_EQ(runProgram(arguments).status, 0);
    return readPicture(path);
}

/// Pixels that differ, but for the figure that tells how much memory the program uses.
std::size_t difference(const Picture& one, const Picture& other) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < one.pixels.size(); ++i) {
        const std::size_t x = i % one.width;
        const std::size_t y = i / one.width;
        const bool isSteady = x < 820 || y < 450 || y > 505;
        if (isSteady && one.pixels[i] != other.pixels[i]) ++count;
    }
    return count;
}

TEST(Render, AllPagesAreWholeDifferentAndReproducible) {
    unsetenv("DISPLAY");
    const std::string folder = inTestFolder("new/pictures");
    const ProgramResult result =
        runProgram({"render", "--demo", "--all", "--at", "1.5", "-o", folder});
    ASSERT_EQ(result.status, 0) << result.err;
    std::vector<Picture> pages;
    for (const char* page : {"scope", "spectrum", "stereo", "system"}) {
        const std::string path = folder + "/" + page + ".png";
        EXPECT_THAT(result.out, testing::HasSubstr(path + "\n"));
        const Picture picture = readPicture(path);
        ASSERT_EQ(picture.width, 1000U);
        ASSERT_EQ(picture.height, 545U);
        const std::set<std::uint32_t> colours(picture.pixels.begin(), picture.pixels.end());
        EXPECT_GT(colours.size(), 50U) << page;
        for (const Picture& other : pages)
            EXPECT_GT(difference(other, picture), 20000U) << page;
        pages.push_back(picture);
    }
    // One page alone: the same picture, if the moment and the settings are the same.
    EXPECT_EQ(difference(rendered({"--page", "scope", "--at", "1.5"}), pages[0]), 0U);
    EXPECT_GT(difference(rendered({"--at", "1.2"}), pages[0]), 1000U);
    EXPECT_GT(difference(rendered({"--at", "1.5", "--set", "GlobalInputGain=0.1"}), pages[0]),
              1000U);
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

} // namespace

// The archives that the binary carries: every picture and font the editor asks for is there, and
// has the size that the editor's layout takes for granted.
#include "assets/Archives.h"
#include "draw/ResourceArchive.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string_view>
#include <utility>

using Sorel::CResourceArchive;

namespace {

// A PNG file says its size in its first chunk, high bytes first.
int pngField(const std::byte* png, std::size_t at) {
    int value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value = value * 256 + std::to_integer<int>(png[at + i]);
    return value;
}

class Embedded : public testing::Test {
  protected:
    ~Embedded() override { reader.close(); }
    std::string_view find(const char* name) {
        std::size_t size = 0;
        const std::byte* const found = reader.find(name, size);
        return {reinterpret_cast<const char*>(found), size};
    }
    CResourceArchive& reader = CResourceArchive::instance();
};

} // namespace

TEST_F(Embedded, HaveThePicturesAtTheirSizes) {
    constexpr struct {
        const char* name;
        int width, height;
    } kPictures[] = {{"ArrowDownBig.png", 18, 42},           {"ArrowLeftBig.png", 18, 42},
                     {"ArrowRightBig.png", 18, 42},          {"Background.png", 1000, 545},
                     {"ButtonScope.png", 138, 90},           {"ButtonSpectrum.png", 138, 90},
                     {"ButtonStereofield.png", 138, 90},     {"ButtonSystem.png", 138, 90},
                     {"NormalDial.png", 43, 65 * 43},        {"NormalDialBG.png", 72, 76},
                     {"NormalDialLedRing.png", 60, 65 * 55}, {"OnOff_Button.png", 34, 44},
                     {"OnOff_ButtonGreen.png", 34, 44},      {"OnOff_ButtonOrange.png", 34, 44},
                     {"TolvaneDial.png", 21, 128 * 21},      {"TolvaneDialBG.png", 41, 41}};
    const auto archive = Assets::pictureArchive();
    ASSERT_TRUE(reader.open(archive.data(), archive.size()));
    ASSERT_EQ(reader.count(), std::size(kPictures));
    for (std::size_t i = 0; i < std::size(kPictures); ++i) {
        const auto& [name, width, height] = kPictures[i];
        EXPECT_STREQ(reader.entryName(i), name);
        std::size_t size = 0;
        const std::byte* const png = reader.find(name, size);
        ASSERT_GT(size, 26U) << name;
        EXPECT_EQ(std::memcmp(png, "\x89PNG\r\n\x1A\n", 8), 0) << name;
        EXPECT_EQ(pngField(png, 16), width) << name;
        EXPECT_EQ(pngField(png, 20), height) << name;
        EXPECT_EQ(std::to_integer<int>(png[24]), 8) << name << ": bits a channel";
        EXPECT_EQ(std::to_integer<int>(png[25]), 6) << name << ": RGBA";
    }
}

TEST_F(Embedded, HaveTwoTrueTypeFonts) {
    const auto archive = Assets::fontArchive();
    ASSERT_TRUE(reader.open(archive.data(), archive.size()));
    ASSERT_EQ(reader.count(), 2U);
    const std::string_view regular = find("arial.ttf");
    const std::string_view bold = find("arialbd.ttf");
    const std::string_view magic("\0\1\0\0", 4);
    EXPECT_EQ(regular.substr(0, 4), magic);
    EXPECT_EQ(bold.substr(0, 4), magic);
    EXPECT_NE(regular, bold);
}

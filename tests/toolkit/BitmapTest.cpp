// Pictures: every kind of PNG, damaged ones, copying and scaling.
#include "References.h"
#include "draw/ResourceArchive.h"
#include "draw/ResourceWriter.h"

#include <cstring>
#include <png.h>
#include <zlib.h>

namespace {

using namespace Sorel;

/// A value that differs from sample to sample.
unsigned scattered(int x, int y, int channel) {
    return (static_cast<unsigned>(x * 7919 + y * 104729 + channel * 1299709) * 2654435761u) >> 8;
}

Rgba premultiplied(int red, int green, int blue, int alpha) {
    return {red * alpha >> 8, green * alpha >> 8, blue * alpha >> 8, alpha};
}

TEST(Png, EveryKindComesOutAsPremultipliedBgra) {
    std::vector<std::array<std::uint8_t, 4>> palette;
    for (unsigned i = 0; i < 16; ++i)
        palette.push_back({static_cast<std::uint8_t>(i * 16), static_cast<std::uint8_t>(255 - i),
                           static_cast<std::uint8_t>(i * i), static_cast<std::uint8_t>(i * 17)});
    std::vector<PngForm> forms;
    for (const bool interlaced : {false, true})
        for (const bool transparency : {false, true}) {
            for (const int depth : {1, 2, 4, 8, 16})
                forms.push_back({PNG_COLOR_TYPE_GRAY, depth, interlaced, transparency});
            for (const int depth : {8, 16})
                forms.push_back({PNG_COLOR_TYPE_RGB, depth, interlaced, transparency});
            forms.push_back({PNG_COLOR_TYPE_PALETTE, 4, interlaced, transparency, palette});
            if (transparency) continue;
            for (const int depth : {8, 16})
                for (const int type : {PNG_COLOR_TYPE_GRAY_ALPHA, PNG_COLOR_TYPE_RGB_ALPHA})
                    forms.push_back({type, depth, interlaced, false});
        }
    for (const PngForm& form : forms) {
        const unsigned most = (1u << form.bitDepth) - 1;
        const auto sample = [&](int x, int y, int channel) {
            return scattered(x, y, channel) & most;
        };
        MemoryStream stream(encodePng(13, 9, form, sample));
        CBitmap bitmap;
        ASSERT_TRUE(bitmap.loadFromStream(&stream));
        ASSERT_EQ(bitmap.getWidth(), 13.0);
        ASSERT_EQ(bitmap.getHeight(), 9.0);
        for (int y = 0; y < 9; ++y)
            for (int x = 0; x < 13; ++x) {
                const auto raw = [&](int channel) {
                    return static_cast<int>(sample(x, y, channel));
                };
                const auto eight = [&](int channel) {
                    return form.bitDepth == 16 ? raw(channel) >> 8
                                               : raw(channel) * 255 / static_cast<int>(most);
                };
                const bool isKey = form.transparency && raw(0) == 0;
                const int g = eight(0);
                Rgba expected;
                if (form.colorType == PNG_COLOR_TYPE_GRAY) {
                    expected = premultiplied(g, g, g, isKey ? 0 : 255);
                } else if (form.colorType == PNG_COLOR_TYPE_GRAY_ALPHA) {
                    expected = premultiplied(g, g, g, eight(1));
                } else if (form.colorType == PNG_COLOR_TYPE_RGB) {
                    expected = premultiplied(g, eight(1), eight(2),
                                             isKey && raw(1) == 0 && raw(2) == 0 ? 0 : 255);
                } else if (form.colorType == PNG_COLOR_TYPE_RGB_ALPHA) {
                    expected = premultiplied(g, eight(1), eight(2), eight(3));
                } else {
                    const auto& c = palette[sample(x, y, 0)];
                    expected = premultiplied(c[0], c[1], c[2], form.transparency ? c[3] : 255);
                }
                ASSERT_EQ(pixelOf(bitmap.surface(), x, y), expected)
                    << "type " << form.colorType << " depth " << form.bitDepth << " at " << x << " "
                    << y << (form.interlaced ? " interlaced" : "");
            }
    }
}

TEST(Png, DamagedFilesKeepTheRowsTheyHad) {
    const PngForm form{PNG_COLOR_TYPE_RGB_ALPHA};
    const auto sample = [](int x, int y, int channel) {
        return channel == 3 ? 255u : scattered(x, y, channel) & 255;
    };
    const std::vector<std::byte> whole = encodePng(40, 60, form, sample);
    MemoryStream stream(whole);
    CBitmap complete;
    ASSERT_TRUE(complete.loadFromStream(&stream));

    int rowsBefore = 0;
    for (std::size_t length = 0; length < whole.size(); length += length < 80 ? 1 : 97) {
        MemoryStream part({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)});
        CBitmap bitmap;
        const bool loaded = bitmap.loadFromStream(&part);
        // The signature and the header chunk are 33 bytes; libpng reads on to the first image data.
        EXPECT_TRUE(length >= 33 || !loaded) << length;
        EXPECT_EQ(loaded, bitmap.isLoaded());
        EXPECT_EQ(bitmap.getWidth(), loaded ? 40.0 : 0.0);
        if (!loaded) continue;
        int rows = 0;
        while (rows < 60 && std::memcmp(bitmap.surface().getPixels() + rows * 160,
                                        complete.surface().getPixels() + rows * 160, 160) == 0)
            ++rows;
        EXPECT_GE(rows, rowsBefore) << length;
        for (int y = rows + 1; y < 60; ++y)
            EXPECT_EQ(pixelOf(bitmap.surface(), 5, y), (Rgba{0, 0, 0, 0}));
        rowsBefore = rows;
    }
    EXPECT_GT(rowsBefore, 30);
}

TEST(Png, SizesBeyondTheLimitsAreRefused) {
    std::vector<std::byte> file =
        encodePng(2, 2, {PNG_COLOR_TYPE_GRAY}, [](int, int, int) { return 1u; });
    const auto put = [&](std::size_t at, std::uint32_t value) {
        for (std::size_t i = 0; i < 4; ++i)
            file[at + i] = static_cast<std::byte>(value >> (24 - 8 * i));
    };
    for (const auto& [width, height] : {std::pair{40000u, 2u}, {2u, 40000u}, {30000u, 30000u}}) {
        put(16, width);
        put(20, height);
        put(29, static_cast<std::uint32_t>(
                    crc32(0, reinterpret_cast<const Bytef*>(file.data() + 12), 17)));
        MemoryStream stream(file);
        CBitmap bitmap;
        EXPECT_FALSE(bitmap.loadFromStream(&stream)) << width << " " << height;
        EXPECT_EQ(bitmap.surface().getPixels(), nullptr);
    }
    CBitmap bitmap;
    EXPECT_FALSE(bitmap.loadFromStream(nullptr));
    EXPECT_FALSE(bitmap.loadFromFile("/nowhere/at/all.png"));
    EXPECT_FALSE(bitmap.loadFromFile("/"));
    bitmap.createEmpty(-1, 5);
    EXPECT_FALSE(bitmap.isLoaded());
    bitmap.createEmpty(0, 0);
    EXPECT_EQ(bitmap.getWidth(), 1.0);
}

TEST(Bitmap, LoadsFromTheOpenArchive) {
    const auto png = encodePng(3, 2, {PNG_COLOR_TYPE_GRAY}, [](int, int, int) { return 255u; });
    std::string error;
    const auto archive = writeResourceArchive(
        std::vector<ResourceEntry>{{"White.png", png, ResourceForm::stored}}, 0, error);
    ASSERT_TRUE(CResourceArchive::instance().open(archive.data(), archive.size())) << error;
    CBitmap white("White.png");
    CBitmap none("white.png");
    CResourceArchive::instance().close();
    ASSERT_TRUE(white.isLoaded());
    EXPECT_EQ(pixelOf(white.surface(), 2, 1), (Rgba{254, 254, 254, 255}));
    EXPECT_FALSE(none.isLoaded());
    white.reset();
    EXPECT_EQ(white.getWidth(), 0.0);
    Canvas canvas(4, 4);
    white.draw(canvas.context(), {0.0, 0.0, 4.0, 4.0}); // draws nothing
    EXPECT_EQ(canvas.ink().amount, 0);
}

/// Pixel x, y is (x, y, 10), opaque on even columns, else at half strength.
std::unique_ptr<CBitmap> chart(int width, int height) {
    auto bitmap = std::make_unique<CBitmap>(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            std::uint8_t* const p = bitmap->surface().getPixels() + y * width * 4 + x * 4;
            p[0] = 10;
            p[1] = static_cast<std::uint8_t>(y);
            p[2] = static_cast<std::uint8_t>(x);
            p[3] = x % 2 == 0 ? 255 : 128;
        }
    return bitmap;
}

TEST(Bitmap, DrawsAFrameOfAStripInsideTheClip) {
    const auto strip = chart(20, 100);
    for (const int alpha : {255, 100})
        for (const CPoint offset : {CPoint{0.0, 0.0}, CPoint{3.0, 60.0}, CPoint{-4.0, 90.0}}) {
            Canvas canvas(30, 30, {200, 200, 200, 255});
            canvas.context().setOffset({2.0, 1.0});
            canvas.context().setClipRect({1.0, 3.0, 16.0, 99.0});   // 3, 4 to 18, 30 on the surface
            const CRect rect = CRect::ofSize(0.7, 0.2, 20.0, 25.0); // at 2, 1
            if (alpha == 255)
                strip->draw(canvas.context(), rect, offset);
            else
                strip->drawAlpha(canvas.context(), rect, offset, alpha);
            for (int y = 0; y < 30; ++y)
                for (int x = 0; x < 30; ++x) {
                    const int sx = x - 2 + static_cast<int>(offset.x);
                    const int sy = y - 1 + static_cast<int>(offset.y);
                    const bool drawn = x >= 3 && x < 18 && y >= 4 && y < 26 && sx >= 0 && sx < 20 &&
                                       sy >= 0 && sy < 100;
                    const double part = drawn ? alpha / 255.0 : 0.0;
                    const double rest = 1.0 - part * (sx % 2 == 0 ? 1.0 : 128.0 / 255.0);
                    EXPECT_NEAR(canvas.at(x, y).red, sx * part + 200.0 * rest, 1.0)
                        << x << " " << y;
                    EXPECT_NEAR(canvas.at(x, y).green, sy * part + 200.0 * rest, 1.0);
                }
        }
    Canvas canvas(8, 8);
    strip->draw(canvas.context(), CRect::ofSize(1e300, -1e300, 20.0, 1e300), {1e300, NAN});
    EXPECT_EQ(canvas.ink().amount, 0);
}

TEST(Bitmap, ScalesByInterpolationAndByArea) {
    // Shrunk threefold, the mean of nine pixels; enlarged fourfold, straight between the centres.
    CBitmap ramp(12, 12);
    for (int i = 0; i < 144; ++i) {
        const auto level = static_cast<std::uint8_t>(i % 12 * 20);
        const std::uint8_t pixel[] = {level, level, level, 255};
        std::memcpy(ramp.surface().getPixels() + i * 4, pixel, 4);
    }
    Canvas small(4, 4);
    ramp.drawStretchedAlpha(small.context(), {0.0, 0.0, 4.0, 4.0}, {0.0, 0.0, 12.0, 12.0}, 255);
    Canvas large(48, 48);
    ramp.drawStretchedAlpha(large.context(), {0.0, 0.0, 48.0, 48.0}, {0.0, 0.0, 12.0, 12.0}, 255);
    for (int x = 0; x < 4; ++x)
        EXPECT_NEAR(small.at(x, 2).red, (3 * x + 1) * 20, 1);
    for (int x = 0; x < 48; ++x)
        EXPECT_NEAR(large.at(x, 20).red, std::clamp((x + 0.5) / 4.0 - 0.5, 0.0, 11.0) * 20.0, 1.0);

    // The clipped way shows the same pixels as the other within the clip; half a pixel counts half.
    Canvas clipped(48, 48);
    clipped.context().setClipRect({8.0, 8.0, 40.0, 30.5});
    ramp.drawStretched(clipped.context(), {0.0, 0.0, 48.0, 48.0}, {0.0, 0.0, 12.0, 12.0}, 255);
    EXPECT_EQ(clipped.at(20, 20), large.at(20, 20));
    EXPECT_EQ(clipped.at(7, 20).red, 0);
    EXPECT_NEAR(clipped.at(20, 30).red, large.at(20, 30).red / 2, 1);
}

TEST(Bitmap, BlitCopiesWholePixelsInsideBothSurfaces) {
    const auto source = chart(10, 10);
    CMemoryBitmap target;
    ASSERT_TRUE(target.create(8, 8));
    IOSBitmap* const to = &target;
    const CRect from{2.9, 3.9, 8.9, 9.9}; // truncated: 2, 3 and 6 by 6
    const CRect where{4.0, -2.0, 10.0, 4.0};
    source->surface().blit(to, &where, &from);
    EXPECT_EQ(pixelOf(target, 4, 0), pixelOf(source->surface(), 2, 5));
    EXPECT_EQ(pixelOf(target, 7, 3), pixelOf(source->surface(), 5, 8));
    EXPECT_EQ(pixelOf(target, 3, 0).alpha, 0);
    EXPECT_EQ(pixelOf(target, 4, 4).alpha, 0);
    const CRect twice{0.0, 0.0, 20.0, 20.0};
    source->surface().blit(to, &twice, nullptr);
    EXPECT_EQ(pixelOf(target, 6, 5), pixelOf(source->surface(), 3, 2));
    source->surface().blit(nullptr, nullptr, nullptr);
}

} // namespace

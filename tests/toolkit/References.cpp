// Encodes PNG through libpng.
#include "References.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <png.h>

namespace Sorel {

bool MemoryStream::read(void* buffer, std::size_t length) {
    if (length > bytes_.size() - position_) return false;
    std::memcpy(buffer, bytes_.data() + position_, length);
    position_ += length;
    return true;
}

std::vector<std::byte> encodePng(int width,
                                 int height,
                                 const PngForm& form,
                                 const std::function<unsigned(int, int, int)>& sample) {
    std::vector<std::byte> file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &file,
        [](png_structp p, png_bytep data, png_size_t length) {
            auto& out = *static_cast<std::vector<std::byte>*>(png_get_io_ptr(p));
            const auto* const bytes = reinterpret_cast<const std::byte*>(data);
            out.insert(out.end(), bytes, bytes + length);
        },
        nullptr);
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height),
                 form.bitDepth, form.colorType,
                 form.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, 0, 0);
    if (form.colorType == PNG_COLOR_TYPE_PALETTE) {
        std::vector<png_color> colors;
        std::vector<png_byte> alphas;
        for (const auto& c : form.palette) {
            colors.push_back({c[0], c[1], c[2]});
            alphas.push_back(c[3]);
        }
        png_set_PLTE(png, info, colors.data(), static_cast<int>(colors.size()));
        if (form.transparency)
            png_set_tRNS(png, info, alphas.data(), static_cast<int>(alphas.size()), nullptr);
    } else if (form.transparency) {
        png_color_16 key{}; // the colour 0 is transparent
        png_set_tRNS(png, info, nullptr, 0, &key);
    }
    png_write_info(png, info);

    const int channels = png_get_channels(png, info);
    std::vector<std::vector<png_byte>> rows;
    for (int y = 0; y < height; ++y) {
        std::vector<png_byte> row(png_get_rowbytes(png, info));
        for (int i = 0; i < width * channels; ++i) {
            const unsigned value = sample(i / channels, y, i % channels);
            const int bit = i * form.bitDepth;
            if (form.bitDepth == 16) {
                row[static_cast<std::size_t>(2 * i)] = static_cast<png_byte>(value >> 8);
                row[static_cast<std::size_t>(2 * i + 1)] = static_cast<png_byte>(value);
            } else {
                row[static_cast<std::size_t>(bit / 8)] |=
                    static_cast<png_byte>(value << (8 - form.bitDepth - bit % 8));
            }
        }
        rows.push_back(std::move(row));
    }
    std::vector<png_bytep> pointers;
    for (auto& row : rows)
        pointers.push_back(row.data());
    png_write_image(png, pointers.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

namespace {

void write(const std::filesystem::path& path, CBitmap& picture) {
    IOSBitmap& surface = picture.surface();
    const auto png = encodePng(
        surface.width, surface.height, {PNG_COLOR_TYPE_RGB}, [&](int x, int y, int channel) {
            const Rgba p = pixelOf(surface, x, y);
            return static_cast<unsigned>(channel == 0 ? p.red : channel == 1 ? p.green : p.blue);
        });
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(png.data()), static_cast<std::streamsize>(png.size()));
}

} // namespace

void expectLikeReference(CBitmap& picture, const std::string& name, int tolerance) {
    const std::filesystem::path path = std::filesystem::path(ORVEL_REFERENCES) / (name + ".png");
    if (std::getenv("ORVEL_NEW_REFERENCES") != nullptr) {
        write(path, picture);
        GTEST_SKIP() << "wrote " << path;
    }
    CBitmap reference(path.string(), CBitmap::Source::kFile);
    ASSERT_TRUE(reference.isLoaded()) << path;
    ASSERT_EQ(reference.getWidth(), picture.getWidth());
    ASSERT_EQ(reference.getHeight(), picture.getHeight());

    int largest = 0;
    for (int y = 0; y < picture.surface().height; ++y)
        for (int x = 0; x < picture.surface().width; ++x) {
            const Rgba is = pixelOf(picture.surface(), x, y);
            const Rgba was = pixelOf(reference.surface(), x, y);
            // Loading takes c * 255 >> 8 of every colour.
            largest = std::max({largest, std::abs((is.red * 255 >> 8) - was.red),
                                std::abs((is.green * 255 >> 8) - was.green),
                                std::abs((is.blue * 255 >> 8) - was.blue)});
        }
    const auto seen = std::filesystem::temp_directory_path() / (name + "-now.png");
    if (largest > tolerance) write(seen, picture);
    EXPECT_LE(largest, tolerance) << "compare " << path << " with " << seen;
}

} // namespace Sorel

// orvel_artwork: draws the editor's pictures.
#include "Pictures.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace {

struct Options {
    double scale = 1;
    std::string out;
    std::string only;
    std::string fonts = ORVEL_FONT_DIR;
};

void drawPictures(const Options& options) {
    std::filesystem::create_directories(options.out);
    Artwork::Lettering lettering(options.fonts, options.scale);
    const Artwork::Studio studio{lettering, options.scale};
    bool isKnown = false;
    for (const auto& [name, draw, rounding] : Artwork::kPictures) {
        if (!options.only.empty() && options.only != name) continue;
        isKnown = true;
        Artwork::writePng(draw(studio), rounding, options.out + "/" + std::string(name));
    }
    if (!isKnown) throw std::runtime_error("there is no picture called " + options.only);
}

int run(int argc, char** argv) {
    CLI::App app("Draws the pictures of the editor as PNG files.", "orvel_artwork");
    Options options;
    app.add_option("--out", options.out, "The folder to write into")->required();
    app.add_option("--scale", options.scale, "Pixels for each pixel of a plain screen")
        ->check(CLI::Range(1.0, 4.0))
        ->capture_default_str();
    app.add_option("--only", options.only, "One picture alone, by its name: Background.png");
    app.add_option("--fonts", options.fonts, "The folder with the Liberation Sans fonts")
        ->capture_default_str();
    CLI11_PARSE(app, argc, argv);
    drawPictures(options);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvel_artwork: %s\n", error.what());
        return 1;
    }
}

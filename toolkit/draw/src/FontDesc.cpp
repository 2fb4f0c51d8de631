// The two global fonts, from the font archive.
#include "draw/FontDesc.h"

#include "assets/Archives.h"
#include "draw/ResourceArchive.h"

namespace Sorel {

namespace {

constexpr const char* kBoldFile = "arialbd.ttf";
constexpr const char* kRegularFile = "arial.ttf";

std::vector<std::byte> unpacked(const char* name) {
    CResourceArchive& archive = CResourceArchive::instance();
    std::size_t size = 0;
    const std::byte* const data = archive.find(name, size);
    std::vector<std::byte> bytes;
    if (data != nullptr) bytes.assign(data, data + size);
    archive.free(data);
    return bytes;
}

/// The unpacked files; both globals share them.
struct FontFiles {
    std::vector<std::byte> bold;
    std::vector<std::byte> regular;

    FontFiles() {
        const auto archive = Assets::fontArchive();
        if (!CResourceArchive::instance().open(archive.data(), archive.size())) return;
        bold = unpacked(kBoldFile);
        regular = unpacked(kRegularFile);
        CResourceArchive::instance().close();
    }
};

/// A global: nobody's release may delete it.
class GlobalFont : public CFontDesc {
  public:
    explicit GlobalFont(TextMode mode)
        : CFontDesc(12.0, mode) {
        static const FontFiles files;
        firstData = files.bold;
        firstName = kBoldFile;
        secondData = files.regular;
        secondName = kRegularFile;
    }
    void retain() override {}
    void release() override {}
};

} // namespace

CFontDesc& defaultFont() {
    static GlobalFont font(TextMode::kOutline);
    return font;
}

CFontDesc& defaultBitmapFont() {
    static GlobalFont font(TextMode::kGrey);
    return font;
}

} // namespace Sorel

// The bytes of the font archive.
#include "assets/Archives.h"

#include "Embed.h"

ORVEL_EMBED(orvelFontArchive, ORVEL_ARCHIVE);

namespace Assets {

std::span<const std::byte> fontArchive() noexcept {
    return {orvelFontArchive, orvelFontArchiveEnd};
}

} // namespace Assets

// The bytes of the picture archive.
#include "assets/Archives.h"

#include "Embed.h"

ORVEL_EMBED(orvelPictureArchive, ORVEL_ARCHIVE);

namespace Assets {

std::span<const std::byte> pictureArchive() noexcept {
    return {orvelPictureArchive, orvelPictureArchiveEnd};
}

} // namespace Assets

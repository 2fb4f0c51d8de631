// The archives inside this binary, for Sorel::CResourceArchive to open.
#pragma once

#include <cstddef>
#include <span>

namespace Assets {

/// "arial.ttf" and "arialbd.ttf". Library: assets_fonts.
std::span<const std::byte> fontArchive() noexcept;

/// The editor's sixteen pictures, as PNG. Library: assets_pictures.
std::span<const std::byte> pictureArchive() noexcept;

} // namespace Assets

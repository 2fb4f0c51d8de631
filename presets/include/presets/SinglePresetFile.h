// A preset on disk: a header of 200 bytes, and behind it the state chunk of the plug-in.
#pragma once

#include "presets/FileFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Vardo {
class IPluginBase;
}

namespace Sorel {

/// Layout of the header; numbers are little-endian.
///
///      0   64  product key, padded with zeros
///     64    1  its end, zero
///     65  127  name of the preset, UTF-8, padded with zeros
///    192    4  reserved
///    196    4  size of the chunk, which follows at 200
///
/// Nothing but the product key tells such a file from others.
namespace PresetFormat {
inline constexpr const char* kProductKey = "Orvel Scope";
inline constexpr std::size_t kKeyBytes = 64;
inline constexpr std::size_t kNameAt = 65;
inline constexpr std::size_t kNameBytes = 127;
inline constexpr std::size_t kChunkSizeAt = 196;
inline constexpr std::size_t kHeaderBytes = 200;
/// A file that claims a larger chunk is none of ours.
inline constexpr std::uint32_t kMaxChunkBytes = std::uint32_t{16} << 20;
} // namespace PresetFormat

/// Saves and loads presets, and keeps the header of the last one.
/// Threads: main thread; waits for the disk.
class CSinglePresetFile : public Vardo::CFileFormat {
  public:
    /// Presets are known by the extension of their file type; this object adds none.
    const char* GetExtension() const override { return ".none"; }

    /// Writes the plug-in's state; the header's name becomes the file's, less folder and
    /// extension, cut to kNameBytes between characters.
    /// Fails: false for a null plug-in, one without state, and when the file could not be written
    /// completely; the old file is untouched then, and the header kept here too.
    virtual bool Save(Vardo::IPluginBase* plugin, const char* path);
    /// Hands the chunk to the plug-in; what the file is too short for reads as zeros.
    /// A file that is foreign, or shorter than a header, loads without effect on the plug-in, and
    /// what there is of its header is kept.
    /// Fails: false for a null plug-in and a file that cannot be opened.
    virtual bool Load(Vardo::IPluginBase* plugin, const char* path);
    /// The name in the header.
    virtual const char* GetPresetName() const { return name_.data(); }
    virtual const char* GetPresetDisplayName() const { return name_.data(); }

    void setPresetName(const char* name);

  private:
    using Header = std::array<std::byte, PresetFormat::kHeaderBytes>;

    void keep(const Header& header);

    Header header_{};
    std::array<char, PresetFormat::kNameBytes + 1> name_{}; // header_'s, always ended
};

} // namespace Sorel

#include "presets/SinglePresetFile.h"

#include "core/AtomicFile.h"
#include "core/LittleEndian.h"
#include "frame/PluginBase.h"
#include "presets/PresetName.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace Sorel {

namespace {
using namespace PresetFormat;

template <class Header>
void writeName(Header& header, std::string_view name) {
    name = cutBetweenCharacters(name, kNameBytes);
    std::fill_n(header.begin() + kNameAt, kNameBytes, std::byte{0});
    std::memcpy(header.data() + kNameAt, name.data(), name.size());
}

template <class Header>
void writeKey(Header& header) {
    std::fill_n(header.begin(), kKeyBytes + 1, std::byte{0});
    std::memcpy(header.data(), kProductKey, std::strlen(kProductKey));
}

template <class Header>
bool isOurs(const Header& header) {
    const auto* key = reinterpret_cast<const char*>(header.data());
    return std::strncmp(key, kProductKey, kKeyBytes) == 0 &&
           Core::readU32(header.data() + kChunkSizeAt) <= kMaxChunkBytes;
}

std::size_t readInto(std::ifstream& file, std::byte* bytes, std::size_t size) {
    file.read(reinterpret_cast<char*>(bytes), static_cast<std::streamsize>(size));
    return static_cast<std::size_t>(file.gcount());
}
} // namespace

void CSinglePresetFile::keep(const Header& header) {
    header_ = header;
    std::memcpy(name_.data(), header.data() + kNameAt, kNameBytes);
}

void CSinglePresetFile::setPresetName(const char* name) {
    Header header = header_;
    writeName(header, name != nullptr ? name : "");
    keep(header);
}

bool CSinglePresetFile::Save(Vardo::IPluginBase* plugin, const char* path) {
    if (plugin == nullptr || path == nullptr) return false;
    void* chunk = nullptr;
    const int size = plugin->getChunk(&chunk);
    if (size <= 0 || chunk == nullptr) return false;
    if (static_cast<std::uint32_t>(size) > kMaxChunkBytes) return false; // nobody would load it

    Header header = header_;
    writeKey(header);
    writeName(header, presetBaseName(path));
    Core::writeU32(header.data() + kChunkSizeAt, static_cast<std::uint32_t>(size));

    std::vector<std::byte> file(header.begin(), header.end());
    const auto* bytes = static_cast<const std::byte*>(chunk);
    file.insert(file.end(), bytes, bytes + size);
    if (!Core::writeFileAtomically(path, file)) return false;
    keep(header);
    return true;
}

bool CSinglePresetFile::Load(Vardo::IPluginBase* plugin, const char* path) {
    keep(Header{});
    if (plugin == nullptr || path == nullptr) return false;
    std::error_code error;
    // A folder opens like a file, and a pipe would keep us waiting.
    if (!std::filesystem::is_regular_file(path, error)) return false;
    std::ifstream file(path, std::ios::binary);
    if (!file) return false;

    Header header{};
    const std::size_t got = readInto(file, header.data(), header.size());
    keep(header);
    if (got < header.size() || !isOurs(header)) return true;

    const std::uint32_t size = Core::readU32(header.data() + kChunkSizeAt);
    std::vector<std::byte> chunk(std::max<std::uint32_t>(size, 1)); // never a null block
    readInto(file, chunk.data(), size);
    plugin->setChunk(chunk.data(), static_cast<int>(size));
    return true;
}

} // namespace Sorel

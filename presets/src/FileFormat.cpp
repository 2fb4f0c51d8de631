#include "presets/FileFormat.h"

#include "core/AtomicFile.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <span>

namespace Vardo {

void CFileFormat::ReadBlock(const char* path, void** data, std::size_t* size) {
    *data = nullptr;
    *size = 0;
    if (path == nullptr) return;
    std::error_code error;
    // A pipe or a device would keep us waiting.
    if (!std::filesystem::is_regular_file(path, error)) return;
    const std::uintmax_t bytes = std::filesystem::file_size(path, error);
    if (error || bytes > kMaxBlockBytes) return;

    std::ifstream file(path, std::ios::binary);
    if (!file) return;
    std::unique_ptr<std::byte[]> block(new (std::nothrow) std::byte[bytes]);
    if (!block) return;
    file.read(reinterpret_cast<char*>(block.get()), static_cast<std::streamsize>(bytes));
    *size = static_cast<std::size_t>(file.gcount()); // it may have shrunk meanwhile
    *data = block.release();
}

void CFileFormat::WriteBlock(const char* path, const void* data, std::size_t size) {
    if (path == nullptr || (data == nullptr && size > 0)) return;
    Core::writeFileAtomically(path, std::span(static_cast<const std::byte*>(data), size));
}

void CFileFormat::FreeBlock(void* data) { delete[] static_cast<std::byte*>(data); }

} // namespace Vardo

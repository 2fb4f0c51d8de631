// Preset files from anywhere: whatever is in one, it loads or has no effect, the plug-in gets a
// block of exactly the size that was announced, and the name stays inside its field.
#include "core/LittleEndian.h"
#include "frame/PluginBase.h"
#include "presets/SinglePresetFile.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <string>

namespace {

namespace Format = Sorel::PresetFormat;

volatile unsigned checksum = 0; // who reads all bytes must show for it, or reads none

void require(bool condition) {
    if (!condition) std::abort();
}

/// Reads every byte that it is given.
class Reader final : public Vardo::IPluginBase {
  public:
    void process(Vardo::IProcessContext&) ORVEL_NONBLOCKING override {}
    void setParameter(Vardo::IPluginParameter*, double, int) override {}
    int getNumParameters() override { return 0; }
    Vardo::IPluginParameter* getParameter(int) override { return nullptr; }
    void setSampleRate(double) override {}
    void setBlockSize(int) override {}
    int getChunk(void**) override { return 0; }
    void setChunk(const void* data, int size) override {
        require(data != nullptr && size >= 0);
        const auto* const bytes = static_cast<const unsigned char*>(data);
        checksum = std::accumulate(bytes, bytes + size, 0U);
        loadedSize = size;
    }
    void setBypass(bool) override {}
    void reset() override {}
    Vardo::IPluginEditor* getEditor() override { return nullptr; }

    int loadedSize = -1;
};

/// A folder that goes with the program.
class Folder {
  public:
    Folder() { require(mkdtemp(path_.data()) != nullptr); }
    ~Folder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    std::string file() const { return path_ + "/in.fxPreset"; }

  private:
    std::string path_ =
        (std::filesystem::temp_directory_path() / "orvel-preset-fuzz-XXXXXX").string();
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Folder folder;
    const std::string path = folder.file();
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    Reader plugin;
    Sorel::CSinglePresetFile file;
    require(file.Load(&plugin, path.c_str()));
    require(std::strlen(file.GetPresetName()) <= Format::kNameBytes);

    const auto* const header = reinterpret_cast<const std::byte*>(data);
    const bool isOurs =
        size >= Format::kHeaderBytes &&
        std::memcmp(data, Format::kProductKey, std::strlen(Format::kProductKey) + 1) == 0 &&
        Core::readU32(header + Format::kChunkSizeAt) <= Format::kMaxChunkBytes;
    const int announced =
        isOurs ? static_cast<int>(Core::readU32(header + Format::kChunkSizeAt)) : -1;
    require(plugin.loadedSize == announced);
    return 0;
}

// A plug-in whose whole state is a text, and a folder with its presets.
#pragma once

#include "FileFixture.h"
#include "core/LittleEndian.h"
#include "frame/ParameterProperty.h"
#include "frame/PluginBase.h"
#include "presets/SingleFXPresetInterface.h"

#include <unistd.h>

#include <string>
#include <vector>

namespace Sorel {

class TextPlugin : public Vardo::IPluginBase, public IPresetNameStore {
  public:
    TextPlugin() {
        for (auto* parameter : {&first, &second})
            parameter->setFromDescription(
                {"A", "A", "A", 0, 100, 25, 50, true, 0, Vardo::kPercentOfRange, 3});
    }
    void process(Vardo::IProcessContext&) ORVEL_NONBLOCKING override {}
    void setParameter(Vardo::IPluginParameter*, double, int) override {}
    int getNumParameters() override { return 2; }
    Vardo::IPluginParameter* getParameter(int index) override {
        return index == 0 ? &first : &second;
    }
    void setSampleRate(double) override {}
    void setBlockSize(int) override {}
    int getChunk(void** data) override {
        *data = state.data();
        return static_cast<int>(state.size());
    }
    void setChunk(const void* data, int size) override {
        state.assign(static_cast<const char*>(data), static_cast<std::size_t>(size));
        ++loads;
    }
    void setBypass(bool) override {}
    void reset() override {}
    Vardo::IPluginEditor* getEditor() override { return nullptr; }

    const char* currentPresetName() const override { return name.c_str(); }
    void setCurrentPresetName(const char* text) override { name = text; }

    Vardo::ParameterProperty first;
    Vardo::ParameterProperty second;
    std::string state = "start";
    std::string name = "Default";
    int loads = 0;
};

/// Without the rights of root, for whom no file is protected; `folder` and what is in it are given
/// away for that.
class WithoutRights {
  public:
    explicit WithoutRights(const std::filesystem::path& folder) {
        if (geteuid() != 0) return;
        EXPECT_EQ(chown(folder.c_str(), kNobody, kNobody), 0);
        for (const auto& item : std::filesystem::recursive_directory_iterator(folder))
            EXPECT_EQ(chown(item.path().c_str(), kNobody, kNobody), 0);
        EXPECT_EQ(seteuid(kNobody), 0);
    }
    ~WithoutRights() { EXPECT_EQ(seteuid(before_), 0); }

  private:
    static constexpr uid_t kNobody = 65534;
    uid_t before_ = geteuid();
};

/// A preset file, byte by byte.
inline std::string presetFile(const std::string& name,
                              const std::string& chunk,
                              std::uint32_t claimedSize,
                              std::string key = "Orvel Scope") {
    std::string file = key;
    file.resize(65);
    file += name;
    file.resize(196);
    for (int shift = 0; shift < 32; shift += 8)
        file += static_cast<char>(claimedSize >> shift & 0xFF);
    return file + chunk;
}
inline std::string presetFile(const std::string& name, const std::string& chunk) {
    return presetFile(name, chunk, static_cast<std::uint32_t>(chunk.size()));
}

} // namespace Sorel

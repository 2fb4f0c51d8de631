// Where the support report learns about the machine, the user and the program around the plug-in.
#pragma once

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace Dorna {

struct Processor {
    std::string name;
    std::string identifier; ///< family, model and stepping
    std::string vendor;
};

/// What a program says of itself, or its package says of it.
struct ProgramVersion {
    std::string name;
    std::string vendor;
    std::string version;
};

/// Each answer may be missing: an empty text, a zero, no value.
/// Threads: any but the audio thread; reads files.
class ISystemSources {
  public:
    virtual ~ISystemSources() = default;
    virtual std::tm localTime() const = 0;
    /// With its release, "Debian GNU/Linux 12 (bookworm)".
    virtual std::string systemName() const = 0;
    /// Which build of the system's kernel.
    virtual std::string systemBuild() const = 0;
    /// 64 or 32; 0 when it is neither or unknown.
    virtual int systemBits() const = 0;
    virtual Processor processor() const = 0;
    virtual std::uint64_t memoryBytes() const = 0;
    virtual std::string userName() const = 0;
    virtual std::optional<bool> isAdmin() const = 0;
    /// Path of the running program.
    virtual std::string executable() const = 0;
    virtual std::optional<ProgramVersion> versionOf(const std::string& executable) const = 0;
};

/// The machine's own. `root` stands in front of every path that is read, for a test's sake.
std::unique_ptr<ISystemSources> makeSystemSources(const std::filesystem::path& root = "/");

} // namespace Dorna

// What Linux tells about itself, mostly in files below /etc and /proc.
#include "online/SystemSources.h"

#include "DpkgDatabase.h"
#include "ElfPackageNote.h"
#include "online/UpdateQuery.h"

#include <grp.h>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <string_view>
#include <vector>

namespace Dorna {

namespace fs = std::filesystem;

static_assert(sizeof(void*) == 8, "name the 32-bit build here");
const char* platformName() { return "LINUX_64"; }

namespace {
constexpr std::size_t kMaxFileBytes = std::size_t{64} << 10; // the first processor's lines and more

/// The beginning of a file; empty when it cannot be read.
std::string readBeginning(const fs::path& path) {
    std::string text(kMaxFileBytes, '\0');
    std::ifstream in(path, std::ios::binary);
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(std::max<std::streamsize>(in.gcount(), 0)));
    return text;
}

std::string trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return std::string(text.substr(0, text.find_last_not_of(kBlanks) + 1));
}

/// What follows `sign` in the first line that begins with `key`, blanks and `sign`.
std::string field(std::string_view text, std::string_view key, char sign) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        const std::size_t at = line.find(sign);
        if (at != std::string_view::npos && trimmed(line.substr(0, at)) == key)
            return trimmed(line.substr(at + 1));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return {};
}

std::string withoutQuotes(const std::string& text) {
    if (text.size() < 2 || text.front() != text.back() ||
        (text.front() != '"' && text.front() != '\''))
        return text;
    return text.substr(1, text.size() - 2);
}

/// Calls one of the system's functions that fill memory of ours, with more of it while they say
/// that it is too little.
template <class Call>
bool withMemory(Call call) {
    std::vector<char> memory(4096);
    int error = call(memory);
    while (error == ERANGE && memory.size() < (std::size_t{1} << 20)) {
        memory.resize(memory.size() * 2);
        error = call(memory);
    }
    return error == 0;
}

bool belongsToGroup(const char* name, const std::vector<gid_t>& ours) {
    bool found = false;
    withMemory([&](std::vector<char>& memory) {
        group entry{};
        group* result = nullptr;
        const int error = getgrnam_r(name, &entry, memory.data(), memory.size(), &result);
        found = error == 0 && result != nullptr &&
                std::find(ours.begin(), ours.end(), result->gr_gid) != ours.end();
        return error;
    });
    return found;
}

class LinuxSources final : public ISystemSources {
  public:
    explicit LinuxSources(fs::path root)
        : root_(std::move(root)) {}

    std::tm localTime() const override {
        std::tm local{};
        const std::time_t now = std::time(nullptr);
        localtime_r(&now, &local);
        return local;
    }

    std::string systemName() const override {
        std::string text = readBeginning(root_ / "etc/os-release");
        if (text.empty()) text = readBeginning(root_ / "usr/lib/os-release");
        return withoutQuotes(field(text, "PRETTY_NAME", '='));
    }

    std::string systemBuild() const override {
        return trimmed(readBeginning(root_ / "proc/sys/kernel/osrelease"));
    }

    int systemBits() const override {
        const std::string machine = machineName();
        if (machine.ends_with("64")) return 64;
        return machine.size() == 4 && machine.starts_with('i') && machine.ends_with("86") ? 32 : 0;
    }

    Processor processor() const override {
        const std::string text = readBeginning(root_ / "proc/cpuinfo");
        Processor processor;
        processor.name = field(text, "model name", ':');
        processor.vendor = field(text, "vendor_id", ':');
        const std::string family = field(text, "cpu family", ':');
        if (!family.empty())
            processor.identifier = machineName() + " Family " + family + " Model " +
                                   field(text, "model", ':') + " Stepping " +
                                   field(text, "stepping", ':');
        return processor;
    }

    std::uint64_t memoryBytes() const override {
        const std::string kilobytes = field(readBeginning(root_ / "proc/meminfo"), "MemTotal", ':');
        std::uint64_t number = 0;
        std::from_chars(kilobytes.data(), kilobytes.data() + kilobytes.size(), number);
        return number * 1024;
    }

    std::string userName() const override {
        std::string name;
        withMemory([&](std::vector<char>& memory) {
            passwd entry{};
            passwd* result = nullptr;
            const int error = getpwuid_r(geteuid(), &entry, memory.data(), memory.size(), &result);
            if (error == 0 && result != nullptr) name = result->pw_name;
            return error;
        });
        return name;
    }

    std::optional<bool> isAdmin() const override {
        if (geteuid() == 0) return true;
        const int count = getgroups(0, nullptr);
        if (count < 0) return std::nullopt;
        std::vector<gid_t> groups(static_cast<std::size_t>(count));
        if (getgroups(count, groups.data()) != count) return std::nullopt;
        groups.push_back(getegid());
        for (const char* name : {"sudo", "wheel", "admin"})
            if (belongsToGroup(name, groups)) return true;
        return false;
    }

    std::string executable() const override {
        std::error_code error;
        return fs::read_symlink(root_ / "proc/self/exe", error).string();
    }

    std::optional<ProgramVersion> versionOf(const std::string& executable) const override {
        if (executable.empty()) return std::nullopt;
        if (auto package = packageOfFile(root_, executable)) return package;
        return readElfPackageNote(root_ / fs::path(executable).relative_path());
    }

  private:
    static std::string machineName() {
        utsname names{};
        return uname(&names) == 0 ? names.machine : "";
    }

    fs::path root_;
};
} // namespace

std::unique_ptr<ISystemSources> makeSystemSources(const fs::path& root) {
    return std::make_unique<LinuxSources>(root);
}

} // namespace Dorna

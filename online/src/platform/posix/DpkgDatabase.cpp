#include "DpkgDatabase.h"

#include <chrono>
#include <fstream>
#include <string_view>

namespace Dorna {

namespace fs = std::filesystem;

namespace {
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{1};
constexpr std::uintmax_t kMaxListBytes = std::uintmax_t{16} << 20;
// Where "/bin" is "/usr/bin", a file may be listed under either name.
constexpr std::string_view kMergedFolder = "/usr";

bool hasLine(std::string_view text, std::string_view line) {
    for (std::size_t at = text.find(line); at != std::string_view::npos;
         at = text.find(line, at + 1)) {
        const std::size_t end = at + line.size();
        if ((at == 0 || text[at - 1] == '\n') && (end == text.size() || text[end] == '\n'))
            return true;
    }
    return false;
}

bool readList(const fs::path& path, std::string& text) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    if (error || size > kMaxListBytes) return false;
    text.resize(size);
    std::ifstream in(path, std::ios::binary);
    return static_cast<bool>(in.read(text.data(), static_cast<std::streamsize>(size)));
}

/// "name" or "name:architecture"; empty when no list has the file.
std::string packageWithFile(const fs::path& folder, std::string_view file, Clock::time_point end) {
    const std::string_view shortened =
        file.starts_with(kMergedFolder) ? file.substr(kMergedFolder.size()) : file;
    std::error_code error;
    std::string text;
    for (auto entry = fs::directory_iterator(folder, error);
         !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (Clock::now() > end) break;
        const fs::path& path = entry->path();
        if (path.extension() == ".list" && readList(path, text) &&
            (hasLine(text, file) || hasLine(text, shortened)))
            return path.stem().string();
    }
    return {};
}

/// The value when `line` is a field of that name.
bool takeField(std::string_view line, std::string_view field, std::string& value) {
    if (!line.starts_with(field)) return false;
    line.remove_prefix(field.size());
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    value = line;
    return true;
}

std::optional<ProgramVersion>
packageStatus(const fs::path& status, const std::string& package, Clock::time_point end) {
    std::ifstream in(status, std::ios::binary);
    const std::string wanted = "Package: " + package;
    std::string line;
    while (std::getline(in, line) && line != wanted)
        if (Clock::now() > end) return std::nullopt;
    if (line != wanted) return std::nullopt;

    ProgramVersion program;
    program.name = package;
    while (std::getline(in, line) && !line.empty())
        if (!takeField(line, "Version:", program.version) &&
            takeField(line, "Maintainer:", program.vendor)) {
            // Without the mail address.
            const std::size_t name = program.vendor.find(" <");
            if (name != std::string::npos) program.vendor.resize(name);
        }
    return program;
}
} // namespace

std::optional<ProgramVersion> packageOfFile(const fs::path& root, const std::string& file) {
    if (file.empty()) return std::nullopt;
    const Clock::time_point end = Clock::now() + kPatience;
    const fs::path folder = root / "var/lib/dpkg";
    const std::string package = packageWithFile(folder / "info", file, end);
    if (package.empty()) return std::nullopt;
    return packageStatus(folder / "status", package.substr(0, package.find(':')), end);
}

} // namespace Dorna

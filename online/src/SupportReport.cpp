#include "online/SupportReport.h"

#include "core/AtomicFile.h"
#include "core/NumberText.h"
#include "core/Paths.h"
#include "core/Utf8.h"
#include "online/UpdateQuery.h"

#include <array>

namespace Dorna {

namespace {
constexpr double kGigabyte = 1073741824.0;
constexpr std::size_t kMaxValueBytes = 1024;

/// A value from outside as one line of bounded length.
std::string value(const std::string& text) {
    if (text.empty()) return "unknown";
    std::string line = Core::Utf8::oneLine(text);
    line.resize(Core::Utf8::boundaryAtOrBefore(line, kMaxValueBytes));
    return line;
}

std::string fixed(double number, int decimals) {
    std::array<char, 64> text{};
    Core::TextWriter(text.data(), text.size()).fixed(number, decimals);
    return text.data();
}

std::string padded(int number, std::size_t digits) {
    std::string text = std::to_string(number);
    if (text.size() < digits) text.insert(0, digits - text.size(), '0');
    return text;
}

/// "2026-11-21 17:25:40", with what is given between hours, minutes and seconds.
std::string timeText(const std::tm& time, char between) {
    return padded(time.tm_year + 1900, 4) + "-" + padded(time.tm_mon + 1, 2) + "-" +
           padded(time.tm_mday, 2) + " " + padded(time.tm_hour, 2) + between +
           padded(time.tm_min, 2) + between + padded(time.tm_sec, 2);
}

std::string heading(const std::string& title) { return "-\n- " + title + "\n-\n\n"; }

std::string systemBlock(const ISystemSources& sources, const std::tm& time) {
    std::string text = timeText(time, ':') + "\n\n" + heading("System");
    if (const std::string name = sources.systemName(); !name.empty()) text += value(name);
    if (const std::string build = sources.systemBuild(); !build.empty())
        text += "\nBuild " + value(build) + "\n\n";
    if (const int bits = sources.systemBits(); bits != 0)
        text += "System type: " + std::to_string(bits) + "-bit Operating System\n";
    const Processor processor = sources.processor();
    text += "\nProcessor  : " + value(processor.name) +
            "\nIdentifier : " + value(processor.identifier) +
            "\nVendor     : " + value(processor.vendor) + "\n\n";
    if (const std::uint64_t bytes = sources.memoryBytes(); bytes != 0) {
        const auto gigabytes = static_cast<float>(static_cast<double>(bytes) / kGigabyte);
        text += "Installed memory (RAM): " + fixed(double{gigabytes}, 2) + " GB\n";
    }
    const std::optional<bool> admin = sources.isAdmin();
    return text + "\nUser       : " + value(sources.userName()) + "\nAdmin      : " +
           (!admin   ? "unknown"
            : *admin ? "yes"
                     : "no") +
           "\n";
}

std::string hostBlock(const ReportSubject& subject, const ISystemSources& sources) {
    const std::string executable = sources.executable();
    std::string text = std::string("\n") + heading("Host") + "Executable : " + value(executable) +
                       "\n\nVERSIONINFO\n";
    if (const auto program = sources.versionOf(executable))
        text += "Name       : " + value(program->name) +
                "\nVendor     : " + value(program->vendor) +
                "\nVersion    : " + value(program->version) + "\n";
    else
        text += "not available!\n\n";
    return text + "MaxBufSize : " + std::to_string(subject.maxBlockSize) +
           "\nSamplerate : " + fixed(subject.sampleRate, 0) +
           "\nInterface  : " + subject.interfaceName + "\n\n";
}

std::string productBlock(const ReportSubject& subject) {
    return heading("Product") +
           "Vendor     : Quillmere Sound / hovenstad Audio\nProduct    : " + subject.product +
           "\nVersion    : " + subject.version + "\nPlatform   : " + platformName() + "\n";
}

std::string
reportText(const ReportSubject& subject, const ISystemSources& sources, const std::tm& time) {
    return systemBlock(sources, time) + hostBlock(subject, sources) + productBlock(subject) +
           subject.extraText;
}
} // namespace

std::string contentLocationText(const std::string& folder) {
    return std::string("\n")
        .append(heading("Product specific"))
        .append("Cont.Locat.: " + folder + "\n\n");
}

std::string supportReportText(const ReportSubject& subject, const ISystemSources& sources) {
    return reportText(subject, sources, sources.localTime());
}

std::filesystem::path writeSupportReport(const ReportSubject& subject,
                                         const ISystemSources& sources) {
    std::array<char, Core::kPathBufferSize> desktop{};
    if (!Core::getSpecialFolder(Core::kDesktopFolder, desktop.data())) return {};
    const std::tm time = sources.localTime();
    const std::filesystem::path file =
        std::filesystem::path(desktop.data()) /
        (subject.product + "_support_" + timeText(time, '_') + ".txt");
    return Core::writeFileAtomically(file, reportText(subject, sources, time))
               ? file
               : std::filesystem::path();
}

} // namespace Dorna

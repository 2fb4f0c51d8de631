// The support report: its words, a machine without answers, and what Linux files say.
#include "online/SupportReport.h"
#include "ElfPackageNote.h"
#include "FileFixture.h"

#include <gmock/gmock.h>

#include <unistd.h>

namespace Dorna {
namespace {

/// Knows nothing, or what a test tells it.
class Sources final : public ISystemSources {
  public:
    std::tm localTime() const override { return {7, 6, 5, 4, 2, 126, 0, 0, 0, 0, nullptr}; }
    std::string systemName() const override { return name; }
    std::string systemBuild() const override { return build; }
    int systemBits() const override { return bits; }
    Processor processor() const override { return chip; }
    std::uint64_t memoryBytes() const override { return memory; }
    std::string userName() const override { return user; }
    std::optional<bool> isAdmin() const override { return admin; }
    std::string executable() const override { return program; }
    std::optional<ProgramVersion> versionOf(const std::string&) const override { return version; }

    std::string name, build, user, program;
    int bits = 0;
    Processor chip;
    std::uint64_t memory = 0;
    std::optional<bool> admin;
    std::optional<ProgramVersion> version;
};

const ReportSubject kSubject{"Orvel Scope", "1.0.4", 512,
                             44100.0,       "VST2",  contentLocationText("/content/")};
const std::string kProductPart = "-\n- Product\n-\n\n"
                                 "Vendor     : Quillmere Sound / hovenstad Audio\n"
                                 "Product    : Orvel Scope\nVersion    : 1.0.4\n"
                                 "Platform   : LINUX_64\n"
                                 "\n-\n- Product specific\n-\n\nCont.Locat.: /content/\n\n";

TEST(SupportReport, SaysWhatIsKnown) {
    Sources sources;
    sources.name = "Debian GNU/Linux 12 (bookworm)";
    sources.build = "6.1.0-18-amd64";
    sources.bits = 64;
    sources.chip = {"Fast CPU", "x86_64 Family 6 Model 85 Stepping 7", "Maker"};
    sources.memory = std::uint64_t{16} << 30 | std::uint64_t{1} << 29;
    sources.user = "ann\nAdmin      : yes"; // one value is one line
    sources.admin = false;
    sources.program = "/usr/bin/host";
    sources.version = ProgramVersion{"host", "Somebody", ""};
    EXPECT_EQ(supportReportText(kSubject, sources),
              "2026-03-04 05:06:07\n\n-\n- System\n-\n\n"
              "Debian GNU/Linux 12 (bookworm)\nBuild 6.1.0-18-amd64\n\n"
              "System type: 64-bit Operating System\n\n"
              "Processor  : Fast CPU\nIdentifier : x86_64 Family 6 Model 85 Stepping 7\n"
              "Vendor     : Maker\n\nInstalled memory (RAM): 16.50 GB\n\n"
              "User       : ann Admin      : yes\nAdmin      : no\n"
              "\n-\n- Host\n-\n\nExecutable : /usr/bin/host\n\nVERSIONINFO\n"
              "Name       : host\nVendor     : Somebody\nVersion    : unknown\n"
              "MaxBufSize : 512\nSamplerate : 44100\nInterface  : VST2\n\n" +
                  kProductPart);
}

TEST(SupportReport, WorksWhenNothingIsKnown) {
    EXPECT_EQ(supportReportText(kSubject, Sources()),
              "2026-03-04 05:06:07\n\n-\n- System\n-\n\n"
              "\nProcessor  : unknown\nIdentifier : unknown\nVendor     : unknown\n\n"
              "\nUser       : unknown\nAdmin      : unknown\n"
              "\n-\n- Host\n-\n\nExecutable : unknown\n\nVERSIONINFO\nnot available!\n\n"
              "MaxBufSize : 512\nSamplerate : 44100\nInterface  : VST2\n\n" +
                  kProductPart);
}

using SupportReportFile = FileTest;

TEST_F(SupportReportFile, StandsOnTheDesktop) {
    const auto file = writeSupportReport(kSubject, Sources());
    EXPECT_EQ(file, folder / "home/Orvel Scope_support_2026-03-04 05_06_07.txt");
    EXPECT_EQ(read(file), supportReportText(kSubject, Sources()));
    Sources other;
    other.name = "Another";
    EXPECT_EQ(writeSupportReport(kSubject, other), file) << "the same second";
    EXPECT_EQ(read(file), supportReportText(kSubject, other));
    EXPECT_EQ(entriesIn(folder / "home"), 1);
    write(folder / "config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"/nowhere\"\n");
    EXPECT_EQ(writeSupportReport(kSubject, Sources()), "");
}

TEST_F(SupportReportFile, LinuxAnswersComeFromItsFiles) {
    const auto machine = makeSystemSources(folder);
    EXPECT_EQ(machine->systemName() + machine->systemBuild() + machine->executable(), "");
    EXPECT_EQ(machine->memoryBytes(), 0u);
    EXPECT_EQ(machine->processor().identifier, "");
    EXPECT_FALSE(machine->versionOf("/usr/bin/host"));

    write(folder / "etc/os-release", "NAME=x\nPRETTY_NAME=\"My Linux 1\"\n");
    write(folder / "proc/sys/kernel/osrelease", "6.6\n");
    write(folder / "proc/meminfo", "MemFree:  1 kB\nMemTotal:       2048 kB\n");
    write(folder / "proc/cpuinfo", "processor\t: 0\nvendor_id\t: Maker\ncpu family\t: 6\n"
                                   "model\t\t: 85\nmodel name\t: Fast\nstepping\t: 7\n");
    write(folder / "var/lib/dpkg/info/a.list", "/usr/bin/host-tool\n/usr/bin/hos\n");
    write(folder / "var/lib/dpkg/info/b:amd64.list", "/.\n/bin/host\n");
    write(folder / "var/lib/dpkg/status", "Package: a\nVersion: 1\n\nPackage: b\nMaintainer: Ann "
                                          "<ann@example.org>\nVersion: 2-1\n\nPackage: c\n");
    EXPECT_EQ(machine->systemName(), "My Linux 1");
    EXPECT_EQ(machine->systemBuild(), "6.6");
    EXPECT_EQ(machine->memoryBytes(), 2048u * 1024u);
    EXPECT_EQ(machine->processor().name, "Fast");
    EXPECT_THAT(machine->processor().identifier, testing::EndsWith("Family 6 Model 85 Stepping 7"));
    const auto version = machine->versionOf("/usr/bin/host");
    ASSERT_TRUE(version);
    EXPECT_EQ(version->name + "|" + version->vendor + "|" + version->version, "b|Ann|2-1");
    EXPECT_FALSE(machine->versionOf("/usr/bin/hosts"));
}

/// A program file with one note segment, which holds another note in front of ours.
std::string elfWithNote(const std::string& json) {
    const auto number = [](std::uint64_t value, int bytes) {
        std::string text;
        for (; bytes > 0; --bytes, value >>= 8)
            text += static_cast<char>(value & 0xFF);
        return text;
    };
    const auto note = [&](std::uint64_t type, std::string text) {
        std::string all = number(4, 4) + number(text.size(), 4) + number(type, 4);
        text.resize((text.size() + 3) / 4 * 4);
        return all + std::string("FDO\0", 4) + text;
    };
    const std::string notes = note(1, "other") + note(0xCAFE1A7E, json);
    return "\x7F"
           "ELF\x02\x01" +
           std::string(26, '\0') + number(64, 8) + std::string(16, '\0') + number(1, 8) +
           number(4, 8) + number(120, 8) + number(0, 8) + number(0, 8) + number(notes.size(), 8) +
           std::string(16, '\0') + notes;
}

TEST_F(SupportReportFile, AProgramsOwnPackageNoteIsRead) {
    const std::string elf = elfWithNote(
        R"({"type":"rpm", "name" : "host","version":"3.1","osCpe":"cpe:/o:x:linux:40"})");
    write(folder / "opt/host", elf);
    const auto version = makeSystemSources(folder)->versionOf("/opt/host");
    ASSERT_TRUE(version);
    EXPECT_EQ(version->name + "|" + version->vendor + "|" + version->version,
              "host|cpe:/o:x:linux:40|3.1");
    // Whatever is cut off or changed, nothing outside the file is read.
    for (std::size_t size = 0; size < elf.size(); ++size) {
        write(folder / "cut", elf.substr(0, size));
        EXPECT_FALSE(readElfPackageNote(folder / "cut")) << size;
    }
    for (std::size_t at = 5; at < elf.size(); ++at) {
        std::string changed = elf;
        changed[at] = '\xFF';
        write(folder / "changed", changed);
        (void)readElfPackageNote(folder / "changed"); // the sanitizers watch
    }
    EXPECT_FALSE(parsePackageNote(R"({"name":"a\"b","version":3})"));
}

} // namespace
} // namespace Dorna

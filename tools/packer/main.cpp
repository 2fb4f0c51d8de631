// orvel_pack: puts files into one archive of the form that the editor carries in its binary.
#include "draw/ResourceWriter.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

using Bytes = std::vector<std::byte>;

Bytes readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string content(std::istreambuf_iterator<char>(file), {});
    if (!file.is_open() || file.bad()) throw std::runtime_error("cannot read " + path);
    const auto* const first = reinterpret_cast<const std::byte*>(content.data());
    return {first, first + content.size()};
}

// Written beside its place and moved there: a build that is broken off leaves no half archive.
void writeFile(const std::string& path, const Bytes& bytes) {
    const std::string temporary = path + ".part";
    std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) throw std::runtime_error("cannot write " + temporary);
    std::filesystem::rename(temporary, path);
}

// "name=path" or "name=path:stored".
Sorel::ResourceEntry readEntry(const std::string& argument) {
    constexpr std::string_view kStored = ":stored";
    const std::size_t equals = argument.find('=');
    if (equals == std::string::npos)
        throw std::runtime_error("an entry is written name=path, not '" + argument + "'");
    Sorel::ResourceEntry entry;
    entry.name = argument.substr(0, equals);
    std::string path = argument.substr(equals + 1);
    if (path.ends_with(kStored)) {
        entry.form = Sorel::ResourceForm::stored;
        path.resize(path.size() - kStored.size());
    }
    entry.bytes = readFile(path);
    return entry;
}

void pack(const std::string& out, const std::vector<std::string>& arguments, std::uint32_t word) {
    std::vector<Sorel::ResourceEntry> entries;
    entries.reserve(arguments.size());
    for (const std::string& argument : arguments)
        entries.push_back(readEntry(argument));
    std::string error;
    const Bytes archive = Sorel::writeResourceArchive(entries, word, error);
    if (!error.empty()) throw std::runtime_error(error);
    writeFile(out, archive);
}

int run(int argc, char** argv) {
    CLI::App app(
        "Puts files into one archive, in the order given. Entries are packed; those marked\n"
        ":stored, best for what is packed already, are only scrambled.\n\n"
        "Example: orvel_pack fonts.res arial.ttf=Regular.ttf logo.png=art/logo.png:stored",
        "orvel_pack");
    std::string out;
    std::vector<std::string> entries;
    std::uint32_t word = 0;
    app.add_option("archive", out, "The archive to write")->required()->type_name("OUT.res");
    app.add_option("entry", entries, "What goes into it")
        ->required()
        ->type_name("name=path[:stored]");
    app.add_option("--word", word, "Packer word of the directory; no reader looks at it");
    CLI11_PARSE(app, argc, argv);
    pack(out, entries, word);
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvel_pack: %s\n", error.what());
        return 1;
    }
}

#include "presets/PresetName.h"

#include "core/Utf8.h"

#include <algorithm>

namespace Sorel {

namespace {
constexpr unsigned char kDelete = 0x7F;

bool hasControlCharacter(std::string_view name) {
    unsigned char before = 0;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < ' ' || byte == kDelete) return true;
        if (before == 0xC2 && byte >= 0x80 && byte < 0xA0) return true; // U+0080 to U+009F
        before = byte;
    }
    return false;
}

std::size_t extensionAt(std::string_view path) {
    const std::size_t dot = path.find_last_of("./");
    return dot == std::string_view::npos || path[dot] == '/' ? path.size() : dot;
}
} // namespace

std::string_view presetFolderPart(std::string_view path) {
    return path.substr(0, path.rfind('/') + 1); // npos + 1 is 0
}

std::string_view presetExtension(std::string_view path) { return path.substr(extensionAt(path)); }

std::string_view presetBaseName(std::string_view path) {
    return path.substr(0, extensionAt(path)).substr(presetFolderPart(path).size());
}

std::string presetPath(std::string_view text,
                       PresetPlace place,
                       std::string_view folder,
                       std::string_view extension) {
    std::string path(place == PresetPlace::kInFolder ? folder : "");
    path += text;
    const std::string_view present = presetExtension(path);
    if (present.empty() || present.substr(1) != extension) (path += '.') += extension;
    return path;
}

std::string_view withoutPresetExtension(std::string_view name, std::string_view extension) {
    const std::string_view present = presetExtension(name);
    if (!present.empty() && present.substr(1) == extension) name.remove_suffix(present.size());
    return name;
}

PresetNameProblem presetNameProblem(std::string_view name, std::string_view extension) {
    if (name.find_first_not_of(' ') == std::string_view::npos) return PresetNameProblem::kEmpty;
    if (name.front() == '.') return PresetNameProblem::kLeadingDot;
    if (name.find_first_of("/\\") != std::string_view::npos) return PresetNameProblem::kSeparator;
    if (hasControlCharacter(name)) return PresetNameProblem::kControlCharacter;
    std::string ending(".");
    if (name.find(ending += extension) != std::string_view::npos)
        return PresetNameProblem::kExtension;
    return PresetNameProblem::kNone;
}

const char* presetNameMessage(PresetNameProblem problem) {
    switch (problem) {
    case PresetNameProblem::kNone:
        break;
    case PresetNameProblem::kEmpty:
        return "A preset needs a name.";
    case PresetNameProblem::kLeadingDot:
        return "The name of a preset cannot begin with a dot.";
    case PresetNameProblem::kSeparator:
        return "The name of a preset cannot contain / or \\.";
    case PresetNameProblem::kControlCharacter:
        return "The name of a preset cannot contain control characters.";
    case PresetNameProblem::kExtension:
        return "The name of a preset cannot contain the extension of its file.";
    case PresetNameProblem::kDefault:
        return "\"Default\" is what the default settings are called.\n"
               "A preset needs another name.";
    }
    return "";
}

std::string_view cutBetweenCharacters(std::string_view text, std::size_t bytes) {
    return text.substr(0, Core::Utf8::boundaryAtOrBefore(text, bytes));
}

} // namespace Sorel

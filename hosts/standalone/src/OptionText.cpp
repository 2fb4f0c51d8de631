// Reads the values of options, and says to wrong ones what would have been right.
#include "OptionText.h"

#include "UserError.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>

namespace Standalone {
namespace {

constexpr std::array<const char*, 4> kPageNames = {"scope", "spectrum", "stereo", "system"};

std::string quoted(const std::string& text) { return "'" + text + "'"; }

std::optional<double> readNumber(const std::string& text) {
    const char* first = text.data();
    const char* last = first + text.size();
    if (first != last && *first == '+') ++first;
    if (first != last && *first == '-' && first != text.data()) return std::nullopt; // "+-1"
    double value = 0;
    const auto [end, error] = std::from_chars(first, last, value);
    if (error != std::errc() || end != last || !std::isfinite(value)) return std::nullopt;
    return value;
}

bool looksLikeSetting(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0) return false;
    return std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(equals),
                       [](char c) {
                           return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                                  (c >= '0' && c <= '9') || c == '_';
                       });
}

} // namespace

int readWhole(const char* option, const char* unit, int highest, const std::string& text) {
    const std::optional<double> value = readNumber(text);
    if (!value || *value < 1 || *value > highest || *value != std::floor(*value))
        throw UserError(std::string(option) + " takes a whole number of " + unit + " from 1 to " +
                        std::to_string(highest) + ", not " + quoted(text));
    return static_cast<int>(*value);
}

double readTempo(const std::string& text) {
    const std::optional<double> value = readNumber(text);
    if (!value || *value < kSlowestTempo || *value > kFastestTempo)
        throw UserError("--tempo takes beats per minute from 1 to 1000, not " + quoted(text));
    return *value;
}

double readSeconds(const std::string& text) {
    const std::optional<double> value = readNumber(text);
    if (!value || *value < 0 || *value > kLatestSecond)
        throw UserError("--at takes seconds from the start, for example 12.5, not " + quoted(text));
    return *value;
}

MousePlace readPlace(const std::string& text) {
    const std::size_t comma = text.find(',');
    const std::optional<double> x = readNumber(text.substr(0, comma));
    const std::optional<double> y =
        comma == std::string::npos ? std::nullopt : readNumber(text.substr(comma + 1));
    if (!x || !y)
        throw UserError("--mouse takes X,Y in pixels of the window, for example 400,250, not " +
                        quoted(text));
    return {*x, *y};
}

Vardo::AnalyserPage readPage(const std::string& text) {
    const auto found = std::find(kPageNames.begin(), kPageNames.end(), text);
    if (found == kPageNames.end())
        throw UserError("--page takes scope, spectrum, stereo or system, not " + quoted(text));
    return static_cast<Vardo::AnalyserPage>(found - kPageNames.begin());
}

bool readSwitch(const std::string& text) {
    if (text != "on" && text != "off")
        throw UserError("--threaded takes on or off, not " + quoted(text));
    return text == "on";
}

ParameterSetting readSetting(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        throw UserError("--set takes Key=value, for example GlobalRMSLength=300, not " +
                        quoted(text));
    const std::optional<double> value = readNumber(text.substr(equals + 1));
    if (!value)
        throw UserError("the value of --set " + quoted(text) +
                        " is not a number; write it as in GlobalRMSLength=300");
    return {text.substr(0, equals), *value};
}

std::vector<std::string> withSettingsApart(const std::vector<std::string>& arguments) {
    std::vector<std::string> result;
    bool inSettings = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--") {
            result.insert(result.end(), arguments.begin() + static_cast<std::ptrdiff_t>(i),
                          arguments.end());
            break;
        }
        if (argument == "--set" && i + 1 < arguments.size()) {
            // Glued together, so that a value like -oo is never taken for an option.
            result.push_back("--set=" + arguments[++i]);
            inSettings = true;
            continue;
        }
        inSettings = inSettings && looksLikeSetting(argument);
        result.push_back(inSettings ? "--set=" + argument : argument);
    }
    return result;
}

const char* pageName(Vardo::AnalyserPage page) {
    const auto index = static_cast<std::size_t>(page);
    return index < kPageNames.size() ? kPageNames[index] : "unknown";
}

} // namespace Standalone

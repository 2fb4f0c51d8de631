// Numbers and columns of the reports as text.
#include "ReportText.h"

#include <charconv>
#include <cmath>

namespace Standalone {
namespace {

template <class... Arguments>
std::string charsOf(Arguments... arguments) {
    char text[400]; // the largest double has 309 digits before its point
    const auto [end, error] = std::to_chars(text, text + sizeof text, arguments...);
    return error == std::errc() ? std::string(text, end) : "?";
}

} // namespace

std::string shortNumber(float value) { return charsOf(value); }
std::string shortNumber(double value) { return charsOf(value); }

std::string fixedNumber(double value, int digits) {
    std::string text = charsOf(value, std::chars_format::fixed, digits);
    // What rounds to zero has no sign.
    if (text.find_first_not_of("-0.") == std::string::npos && text[0] == '-') text.erase(0, 1);
    return text;
}

std::string decibels(double linear) {
    return linear > 0 ? fixedNumber(20 * std::log10(linear), 2) : "-oo";
}

std::string padded(std::string text, std::size_t width) {
    if (text.size() < width) text.append(width - text.size(), ' ');
    return text;
}

std::string aligned(std::string text, std::size_t width) {
    if (text.size() < width) text.insert(0, width - text.size(), ' ');
    return text;
}

} // namespace Standalone

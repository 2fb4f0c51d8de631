#include "core/NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

namespace Core {

namespace {
constexpr std::size_t kLongestNumber = 400; // a double with all its digits before the point

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
} // namespace

TextWriter::TextWriter(char* begin, std::size_t capacity) noexcept
    : end_(begin)
    , room_(capacity - 1) {
    *end_ = 0;
}

void TextWriter::append(const char* characters, std::size_t length) noexcept {
    length = std::min(length, room_);
    std::memcpy(end_, characters, length);
    end_ += length;
    room_ -= length;
    *end_ = 0;
}

TextWriter& TextWriter::text(const char* characters) noexcept {
    append(characters, std::strlen(characters));
    return *this;
}

TextWriter& TextWriter::fixed(double value, int decimals, int minWidth) noexcept {
    char digits[kLongestNumber];
    const auto result =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
    const auto length = static_cast<std::size_t>(result.ptr - digits);
    for (auto width = length; width < static_cast<std::size_t>(minWidth); ++width)
        append(" ", 1);
    append(digits, length);
    return *this;
}

TextWriter& TextWriter::integer(long long value) noexcept {
    char digits[32];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    append(digits, static_cast<std::size_t>(result.ptr - digits));
    return *this;
}

double parseNumber(const char* text, const char** rest) noexcept {
    if (rest != nullptr) *rest = text;
    const char* start = skipSpaces(text);
    double sign = 1;
    if (*start == '+' || *start == '-') {
        sign = *start == '-' ? -1 : 1;
        start = skipSpaces(start + 1);
        if (*start == '-') return 0; // from_chars would take a second sign
    }

    // A copy with the comma turned into a point. Longer texts than this are no numbers.
    char digits[kLongestNumber];
    const std::size_t length = strnlen(start, sizeof digits);
    std::copy_n(start, length, digits);
    if (char* const comma = std::find(digits, digits + length, ','); comma != digits + length)
        *comma = '.';

    double value = 0;
    const auto result = std::from_chars(digits, digits + length, value);
    if (result.ec == std::errc::invalid_argument || std::isnan(value)) return 0;
    if (result.ec == std::errc::result_out_of_range) value = HUGE_VAL;
    if (rest != nullptr) *rest = start + (result.ptr - digits);
    return sign * value;
}

bool equalsIgnoringCase(const char* a, const char* b) noexcept {
    while (*a != 0 && lower(*a) == lower(*b)) {
        ++a;
        ++b;
    }
    return lower(*a) == lower(*b);
}

const char* skipSpaces(const char* text) noexcept {
    while (*text == ' ' || *text == '\t')
        ++text;
    return text;
}

} // namespace Core

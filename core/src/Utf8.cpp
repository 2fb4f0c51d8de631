// UTF-8 by characters.
#include "core/Utf8.h"

namespace Core::Utf8 {

namespace {

bool isContinuation(std::string_view text, std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
}

bool isCharacter(char32_t code) { return code <= 0x10FFFF && !(code >= 0xD800 && code <= 0xDFFF); }

bool breaksLine(char32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029;
}

} // namespace

Decoded decode(std::string_view text, std::size_t at) {
    const auto first = static_cast<unsigned char>(text[at]);
    if (first < 0x80) return {first, 1};

    std::size_t length = 0;
    char32_t code = 0;
    char32_t smallest = 0;
    if (first >= 0xC2 && first < 0xE0) {
        length = 2, code = first & 0x1FU, smallest = 0x80;
    } else if (first >= 0xE0 && first < 0xF0) {
        length = 3, code = first & 0x0FU, smallest = 0x800;
    } else if (first >= 0xF0 && first < 0xF5) {
        length = 4, code = first & 0x07U, smallest = 0x10000;
    } else {
        return {kReplacement, 1};
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(text, at + i)) return {kReplacement, 1};
        code = (code << 6) | (static_cast<unsigned char>(text[at + i]) & 0x3FU);
    }
    if (code < smallest || !isCharacter(code)) return {kReplacement, 1};
    return {code, length};
}

void append(std::string& out, char32_t code) {
    if (!isCharacter(code)) code = kReplacement;
    const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | (code >> 6));
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | (code >> 12));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | (code >> 18));
        put(0x80 | ((code >> 12) & 0x3F));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

std::string oneLine(std::string_view text) {
    std::string line;
    line.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const Decoded next = decode(text, at);
        append(line, breaksLine(next.code) ? U' ' : next.code);
        at += next.length;
    }
    return line;
}

std::size_t next(std::string_view text, std::size_t at) {
    do
        ++at;
    while (isContinuation(text, at));
    return at < text.size() ? at : text.size();
}

std::size_t boundaryAtOrBefore(std::string_view text, std::size_t maxBytes) {
    std::size_t at = maxBytes < text.size() ? maxBytes : text.size();
    while (at > 0 && isContinuation(text, at))
        --at;
    return at;
}

bool isExtending(char32_t code) {
    return (code >= 0x0300 && code <= 0x036F) || (code >= 0x0483 && code <= 0x0489) ||
           (code >= 0x0591 && code <= 0x05BD) || (code >= 0x064B && code <= 0x065F) ||
           (code >= 0x1AB0 && code <= 0x1AFF) || (code >= 0x1DC0 && code <= 0x1DFF) ||
           (code >= 0x20D0 && code <= 0x20FF) || (code >= 0xFE00 && code <= 0xFE0F) ||
           (code >= 0xFE20 && code <= 0xFE2F) || code == 0x200D ||
           (code >= 0x1F3FB && code <= 0x1F3FF) || (code >= 0xE0100 && code <= 0xE01EF);
}

} // namespace Core::Utf8

// UTF-8 to UTF-16 and back.
#include "Text16.h"

#include "core/Utf8.h"

#include <string_view>

namespace Vardo {

namespace {
constexpr std::size_t kUnits = sizeof(Steinberg::Vst::String128) / sizeof(Steinberg::Vst::TChar);
constexpr char32_t kFirstOfPairs = 0x10000;

bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }
} // namespace

void copyText16(Steinberg::Vst::String128 target, const char* utf8) noexcept {
    const std::string_view text = utf8 == nullptr ? std::string_view() : std::string_view(utf8);
    std::size_t length = 0;
    for (std::size_t at = 0; at < text.size();) {
        const Core::Utf8::Decoded character = Core::Utf8::decode(text, at);
        const std::size_t units = character.code < kFirstOfPairs ? 1 : 2;
        if (length + units >= kUnits) break;
        if (units == 1) {
            target[length++] = static_cast<char16_t>(character.code);
        } else {
            const char32_t offset = character.code - kFirstOfPairs;
            target[length++] = static_cast<char16_t>(0xD800 + (offset >> 10));
            target[length++] = static_cast<char16_t>(0xDC00 + (offset & 0x3FF));
        }
        at += character.length;
    }
    target[length] = 0;
}

std::string toUtf8(const Steinberg::Vst::TChar* text) {
    std::string out;
    if (text == nullptr) return out;
    for (std::size_t i = 0; i < kUnits - 1 && text[i] != 0; ++i) {
        char32_t code = text[i];
        if (isHighSurrogate(code) && i + 1 < kUnits - 1 && isLowSurrogate(text[i + 1]))
            code = kFirstOfPairs + ((code - 0xD800) << 10) + (char32_t{text[++i]} - 0xDC00);
        Core::Utf8::append(out, code);
    }
    return out;
}

} // namespace Vardo

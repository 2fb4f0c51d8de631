#include "ValueText.h"

#include "core/NumberText.h"
#include "frame/NoteName.h"
#include "frame/ParameterDescription.h"

#include <cmath>
#include <cstring>

namespace Vardo {

namespace {

using Core::TextWriter;

constexpr const char* kSilence = "-oo"; // minus infinity, where a level is 0
constexpr double kSilenceDb = -99;

int wholeNumber(float plain) { return static_cast<int>(plain < 0 ? plain - 0.02F : plain + 0.02F); }

void formatPercentOfRange(const ValueScale& scale, double plain, TextWriter& out, int decimals) {
    if (plain < 0)
        out.text("-").fixed(plain / double{scale.min} * 100, decimals);
    else
        out.text(scale.min >= 0 ? "" : "+")
            .fixed(scale.max == 0 ? 0 : plain / double{scale.max} * 100, decimals);
}

void formatGain(double plain, TextWriter& out, int decimals) {
    const double decibels = 20 * std::log10(plain);
    if (!(decibels >= kSilenceDb))
        out.text(kSilence);
    else
        out.text(decibels < 0 ? "" : "+").fixed(decibels, decimals, 2);
}

void formatSignedPercent(const ValueScale& scale, double plain, TextWriter& out, bool shortForm) {
    if (plain > 0)
        out.text("+").fixed(plain / double{scale.max} * 100, shortForm ? 0 : 2, 2);
    else
        out.fixed(scale.min == 0 ? 0 : plain / double{scale.min} * -100 + 0.0, shortForm ? 0 : 2);
    out.text("%");
}

void formatPitchOffset(double plain, TextWriter& out) {
    const int semitones = static_cast<int>(plain);
    const int cents = static_cast<int>(std::lround((plain - semitones) * 100));
    const char* const sign = plain > 0 ? "+" : "";
    out.text(sign).integer(semitones).text(" ").text(sign).integer(cents).text(" cent");
}

void formatBalance(const ValueScale& scale, double plain, TextWriter& out) {
    if (plain == 0)
        out.text("Center");
    else if (plain > 0)
        out.text("Right ").fixed(plain / double{scale.max} * 100, 0, 2);
    else
        out.text("Left ").fixed(plain / double{scale.max} * -100, 0, 2);
}

bool startsWith(const char* text, const char* word, const char*& rest) {
    const std::size_t length = std::strlen(word);
    char head[16];
    Core::TextWriter(head, length + 1).text(text);
    if (!Core::equalsIgnoringCase(head, word)) return false;
    rest = text + length;
    return true;
}

/// What a user types as percent is a position in the range. Where the range has a negative side,
/// a sign in front says which side is meant, as it is shown.
float parsePercentOfRange(const ValueScale& scale, const char* text) {
    const double part = Core::parseNumber(text) / 100;
    const char sign = *Core::skipSpaces(text);
    if (scale.min < 0 && sign == '-') return static_cast<float>(-part * double{scale.min});
    if (scale.min < 0 && sign == '+') return static_cast<float>(part * double{scale.max});
    return static_cast<float>(double{scale.min} + part * (double{scale.max} - double{scale.min}));
}

float parseSignedPercent(const ValueScale& scale, const char* text) {
    const double number = Core::parseNumber(text);
    if (std::strchr(text, '%') == nullptr) return static_cast<float>(number);
    return static_cast<float>(number / 100 * (number > 0 ? double{scale.max} : -double{scale.min}));
}

float parsePitchOffset(const char* text) {
    const char* rest = text;
    const double semitones = Core::parseNumber(text, &rest);
    return static_cast<float>(semitones + Core::parseNumber(rest) / 100);
}

float parseBalance(const ValueScale& scale, const char* text) {
    const char* rest = text;
    if (startsWith(text, "Right", rest))
        return static_cast<float>(Core::parseNumber(rest) / 100 * double{scale.max});
    if (startsWith(text, "Left", rest))
        return static_cast<float>(Core::parseNumber(rest) / -100 * double{scale.max});
    return static_cast<float>(Core::parseNumber(text) / 100);
}

float parseRatio(const ValueScale& scale, const char* text) {
    if (const char* const colon = std::strchr(text, ':')) text = colon + 1;
    text = Core::skipSpaces(text);
    if (Core::equalsIgnoringCase(text, "inf")) return scale.max;
    if (Core::equalsIgnoringCase(text, "-inf")) return scale.min;
    return static_cast<float>(Core::parseNumber(text));
}

} // namespace

const char* unitOfKind(int kind) {
    switch (kind) {
    case kMilliseconds:
        return "ms";
    case kPercentOfRange:
    case kPercent:
        return "%";
    case kGainInDecibels:
    case kDecibels:
        return "dB";
    case kHertz:
        return "Hz";
    default:
        return "";
    }
}

void formatValueOfKind(
    const ValueScale& scale, float plain, char* text, std::size_t capacity, bool shortForm) {
    TextWriter out(text, capacity);
    const double value{plain};
    const int decimals = shortForm ? 0 : 2;
    switch (scale.kind) {
    case kPercentOfRange:
        formatPercentOfRange(scale, value, out, decimals);
        break;
    case kGainInDecibels:
        formatGain(value, out, decimals);
        break;
    case kSignedPercent:
        formatSignedPercent(scale, value, out, shortForm);
        break;
    case kPitchOffset:
        formatPitchOffset(value, out);
        break;
    case kSwitch:
        out.text(value >= 0.5 ? "On" : "Off");
        break;
    case kBalance:
        formatBalance(scale, value, out);
        break;
    case kUserText:
        out.text(scale.userText == nullptr ? "" : scale.userText);
        break;
    case kNote:
        formatNote(wholeNumber(plain), text, capacity);
        break;
    case kInteger:
        out.integer(wholeNumber(plain));
        break;
    case kRatio:
        if (value >= 10)
            out.text(" 1 : inf");
        else
            out.text(" 1 : ").fixed(value, 2);
        break;
    default:
        out.fixed(value, shortForm ? 0 : 1);
        break;
    }
}

bool parseValueOfKind(const ValueScale& scale, const char* text, float& plain) {
    text = Core::skipSpaces(text);
    if (const char* rest = text; startsWith(text, kSilence, rest)) {
        plain = scale.min;
        return true;
    }
    switch (scale.kind) {
    case kPercentOfRange:
        plain = parsePercentOfRange(scale, text);
        return true;
    case kGainInDecibels:
        plain = static_cast<float>(std::pow(10.0, Core::parseNumber(text) / 20));
        return true;
    case kSignedPercent:
        plain = parseSignedPercent(scale, text);
        return true;
    case kPitchOffset:
        plain = parsePitchOffset(text);
        return true;
    case kSwitch:
        plain = Core::equalsIgnoringCase(text, "On") ? 1.0F
                                                     : static_cast<float>(Core::parseNumber(text));
        return true;
    case kBalance:
        plain = parseBalance(scale, text);
        return true;
    case kNote: {
        if (std::strlen(text) < 2) return false;
        int note = 0;
        plain = parseNote(text, note) ? static_cast<float>(note)
                                      : static_cast<float>(Core::parseNumber(text));
        return true;
    }
    case kRatio:
        plain = parseRatio(scale, text);
        return true;
    default:
        plain = static_cast<float>(Core::parseNumber(text));
        return true;
    }
}

} // namespace Vardo

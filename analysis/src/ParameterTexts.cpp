#include "ParameterTexts.h"

#include "analysis/AnalyserParameters.h"
#include "core/NumberText.h"
#include "frame/BeatTimeList.h"
#include "frame/ParameterProperty.h"

#include <cstring>

namespace Orvel {

namespace {
using Core::TextWriter;
using Vardo::BeatTimeList;
using Vardo::kMaxValueText;

constexpr const char* kHold = "Hold";

/// The number at the start of the text, times 1000 where a unit with this small letter in front
/// follows it.
double parseInThousands(const char* text, char letter) {
    const char* rest = text;
    const double number = Core::parseNumber(text, &rest);
    const char unit = *Core::skipSpaces(rest);
    const bool scaled = unit == letter || unit == letter - 'a' + 'A';
    return scaled ? number * 1000 : number;
}
} // namespace

void formatBeatTime(float plain, char* text, int /*flags*/) {
    const BeatTimeList& list = BeatTimeList::straight();
    TextWriter(text, kMaxValueText)
        .text(list.at(indexValue(double{plain}, list.size() - 1)).label.c_str());
}

bool parseBeatTime(const char* text, float& plain, void* /*userData*/) {
    const int index = BeatTimeList::straight().find(Core::skipSpaces(text));
    if (index < 0) return false;
    plain = static_cast<float>(index);
    return true;
}

void formatTime(float plain, char* text, int /*flags*/) {
    if (plain < 1000)
        TextWriter(text, kMaxValueText).fixed(double{plain}, 0).text(" ms");
    else
        TextWriter(text, kMaxValueText).fixed(double{plain} / 1000, 2).text(" s");
}

bool parseTime(const char* text, float& plain, void* /*userData*/) {
    plain = static_cast<float>(parseInThousands(text, 's'));
    return true;
}

double parseHertz(const char* text) { return parseInThousands(text, 'k'); }

void formatMultiplier(float plain, char* text, int /*flags*/) {
    TextWriter(text, kMaxValueText).text("Duration x").fixed(double{plain} + 0.02, 0);
}

bool parseMultiplier(const char* text, float& plain, void* /*userData*/) {
    const char* const sign = std::strrchr(text, 'x');
    plain = static_cast<float>(Core::parseNumber(sign == nullptr ? text : sign + 1));
    return true;
}

void formatSpeed(float plain, char* text, int /*flags*/) {
    TextWriter(text, kMaxValueText).text("x").fixed(double{plain}, 1);
}

void formatPeakReset(float plain, char* text, int /*flags*/) {
    if (plain == 0)
        TextWriter(text, kMaxValueText).text(kHold);
    else
        TextWriter(text, kMaxValueText).fixed(double{plain}, 1).text(" dB/s");
}

bool parsePeakReset(const char* text, float& plain, void* /*userData*/) {
    plain = Core::equalsIgnoringCase(Core::skipSpaces(text), kHold)
                ? 0.0F
                : static_cast<float>(Core::parseNumber(text));
    return true;
}

} // namespace Orvel

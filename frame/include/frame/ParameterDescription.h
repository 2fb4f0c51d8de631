// One row of a static table of parameters.
#pragma once

namespace Vardo {

/// How a value is written and read, and which unit stands behind it.
enum ValueKind : int {
    kMilliseconds = 0,
    kPercentOfRange = 1,
    kPercent = 2,
    kGainInDecibels = 3, ///< a linear gain, shown in dB
    kDecibels = 4,
    kHertz = 5,
    kSignedPercent = 6,
    kPitchOffset = 7, ///< semitones and cents
    kSwitch = 8,
    kBalance = 9,
    kNumber = 10,
    kUserText = 11, ///< the text in the user data
    kNote = 12,
    kInteger = 13,
    kRatio = 14,
    kOwnText = 15, ///< shown only through a text function
};

struct ParameterDescription {
    const char* key;
    const char* name;
    const char* shortName;
    float min;
    float max;
    float value;
    float defaultValue;
    bool automatable;
    float skew; ///< see ValueTaper.h
    int kind;   ///< ValueKind
    int id;
};

} // namespace Vardo

// What was measured, for people and for programs.
#pragma once

#include <string>

namespace Standalone {

struct Measurement;

/// One JSON object and a line end. Numbers are exact: a 32-bit float is written as the double it
/// is. What was not measured is null.
std::string jsonReport(const Measurement& measurement);

/// A table of at most 25 lines, levels in dBFS and linear.
std::string tableReport(const Measurement& measurement);

/// "left", "right", "mid", "side", "max".
const char* channelKey(int channel);

} // namespace Standalone

// Reads the values of options, and says to wrong ones what would have been right.
#pragma once

#include "CommandLine.h"

#include <string>
#include <vector>

namespace Standalone {

// All fail by throwing UserError.

int readWhole(const char* option, const char* unit, int highest, const std::string& text);
double readTempo(const std::string& text);
double readSeconds(const std::string& text);
MousePlace readPlace(const std::string& text);
Vardo::AnalyserPage readPage(const std::string& text);
bool readSwitch(const std::string& text);
ParameterSetting readSetting(const std::string& text);

/// One --set may be followed by several settings; each gets a --set of its own, so that a file name
/// behind them is not taken for one.
std::vector<std::string> withSettingsApart(const std::vector<std::string>& arguments);

} // namespace Standalone

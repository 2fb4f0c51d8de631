// What the user asked for on the command line.
#pragma once

#include "frame/AnalysisSnapshot.h"

#include <optional>
#include <string>
#include <vector>

namespace Standalone {

struct ParameterSetting {
    std::string key;
    double value = 0; ///< plain
};

struct MeasureOptions {
    std::string path;  ///< empty for the demonstration signal
    bool demo = false; ///< measure the demonstration signal
    int blockSize = 512;
    std::optional<Vardo::AnalyserPage> page;
    std::vector<ParameterSetting> settings; ///< in the order given: a later one wins
    std::optional<bool> threaded;           ///< empty: as the user's settings say
    double tempo = 120;                     ///< beats per minute
    int columns = 0;                        ///< of the scope's table in the report; 0: no table
    bool json = false;
};

struct CommandLine {
    enum class Action { help, measureHelp, version, measure };
    Action action = Action::help;
    std::string helpText; ///< for the two helps
    MeasureOptions measure;
};

inline constexpr int kLargestBlock = 1048576;
inline constexpr int kMostColumns = 100000;
inline constexpr double kSlowestTempo = 1;
inline constexpr double kFastestTempo = 1000;

/// `arguments` without the program's name. Knows nothing of the plug-in: whether a parameter exists
/// and takes the value is found out when it is set.
/// Fails: throws UserError.
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

/// The page's name on the command line and in reports.
const char* pageName(Vardo::AnalyserPage page);

} // namespace Standalone

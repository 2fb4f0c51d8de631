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

/// What every command takes.
struct CommonOptions {
    std::string path;  ///< empty for the demonstration signal, or for what the command takes then
    bool demo = false; ///< the demonstration signal
    std::optional<Vardo::AnalyserPage> page;
    std::vector<ParameterSetting> settings; ///< in the order given: a later one wins
    double tempo = 120;                     ///< beats per minute
};

struct MeasureOptions : CommonOptions {
    int blockSize = 512;
    std::optional<bool> threaded; ///< empty: as the user's settings say
    int columns = 0;              ///< of the scope's table in the report; 0: no table
    bool json = false;
};

/// A place in the window, in its pixels from the upper left corner.
struct MousePlace {
    double x = 0;
    double y = 0;
};

struct RenderOptions : CommonOptions {
    int blockSize = 512;
    bool allPages = false;
    std::string output;            ///< a picture's file, or the folder for all pages
    std::optional<double> seconds; ///< the moment of the picture; empty: see pictureFrame
    std::optional<MousePlace> mouse;
};

/// No file and no demonstration signal: the default input.
struct PlayOptions : CommonOptions {
    bool silent = false;  ///< leaves the sound card alone
    std::string pictures; ///< the folder for pictures where no window opens; empty for none
};

struct CommandLine {
    enum class Action { help, commandHelp, version, measure, render, play };
    Action action = Action::help;
    std::string helpText; ///< for the two helps; the list of parameters goes behind a command's
    MeasureOptions measure;
    RenderOptions render;
    PlayOptions play;
};

inline constexpr int kLargestBlock = 1048576;
inline constexpr int kMostColumns = 100000;
inline constexpr double kSlowestTempo = 1;
inline constexpr double kFastestTempo = 1000;
inline constexpr double kLatestSecond = 1e6; ///< of a picture

/// `arguments` without the program's name; without a command they are those of `play`. Knows
/// nothing of the plug-in: whether a parameter exists and takes the value is found out when it is
/// set.
/// Fails: throws UserError.
CommandLine parseCommandLine(const std::vector<std::string>& arguments);

/// The page's name on the command line, in reports and of picture files.
const char* pageName(Vardo::AnalyserPage page);

} // namespace Standalone

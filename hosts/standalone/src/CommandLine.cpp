// What the user asked for on the command line. CLI11 splits it into options; values are read here,
// so that every message says what would have been right.
#include "CommandLine.h"

#include "UserError.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace Standalone {
namespace {

constexpr std::array<const char*, 4> kPageNames = {"scope", "spectrum", "stereo", "system"};

constexpr const char* kExamples = R"(Examples:
  orvelscope measure master.wav --set GlobalMeteringMode=3
      peaks, overs and dynamic range of a finished master, RMS by the K-14 meter
  orvelscope measure mix.flac --page stereo --set GlobalRMSLength=300 --json > mix.json
      mono compatibility: correlation, mid and side, and the spectrum of the end, for other programs
  orvelscope measure drums.wav --tempo 128 --set ScopeSyncMode=2 --columns 800 --json
      where the hits are, and the last quarter note as the scope draws it
  orvelscope measure voice.wav --set ScopeDeEsserFemale=1
      how many seconds of a female voice hiss)";

std::string quoted(const std::string& text) { return "'" + text + "'"; }

std::optional<double> readNumber(const std::string& text) {
    const char* first = text.data();
    const char* last = first + text.size();
    if (first != last && *first == '+') ++first;
    if (first != last && *first == '-' && first != text.data()) return std::nullopt; // "+-1"
    double value = 0;
    const auto [end, error] = std::from_chars(first, last, value);
    if (error != std::errc() || end != last || !std::isfinite(value)) return std::nullopt;
    return value;
}

int readWhole(const char* option, const char* unit, int highest, const std::string& text) {
    const std::optional<double> value = readNumber(text);
    if (!value || *value < 1 || *value > highest || *value != std::floor(*value))
        throw UserError(std::string(option) + " takes a whole number of " + unit + " from 1 to " +
                        std::to_string(highest) + ", not " + quoted(text));
    return static_cast<int>(*value);
}

double readTempo(const std::string& text) {
    const std::optional<double> value = readNumber(text);
    if (!value || *value < kSlowestTempo || *value > kFastestTempo)
        throw UserError("--tempo takes beats per minute from 1 to 1000, not " + quoted(text));
    return *value;
}

Vardo::AnalyserPage readPage(const std::string& text) {
    const auto found = std::find(kPageNames.begin(), kPageNames.end(), text);
    if (found == kPageNames.end())
        throw UserError("--page takes scope, spectrum, stereo or system, not " + quoted(text));
    return static_cast<Vardo::AnalyserPage>(found - kPageNames.begin());
}

bool readSwitch(const std::string& text) {
    if (text != "on" && text != "off")
        throw UserError("--threaded takes on or off, not " + quoted(text));
    return text == "on";
}

ParameterSetting readSetting(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0)
        throw UserError("--set takes Key=value, for example GlobalRMSLength=300, not " +
                        quoted(text));
    const std::optional<double> value = readNumber(text.substr(equals + 1));
    if (!value)
        throw UserError("the value of --set " + quoted(text) +
                        " is not a number; write it as in GlobalRMSLength=300");
    return {text.substr(0, equals), *value};
}

bool looksLikeSetting(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0) return false;
    return std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(equals),
                       [](char c) {
                           return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                                  (c >= '0' && c <= '9') || c == '_';
                       });
}

// One --set may be followed by several settings; each gets a --set of its own, so that a file name
// behind them is not taken for one.
std::vector<std::string> withSettingsApart(const std::vector<std::string>& arguments) {
    std::vector<std::string> result;
    bool inSettings = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--") {
            result.insert(result.end(), arguments.begin() + static_cast<std::ptrdiff_t>(i),
                          arguments.end());
            break;
        }
        if (argument == "--set" && i + 1 < arguments.size()) {
            // Glued together, so that a value like -oo is never taken for an option.
            result.push_back("--set=" + arguments[++i]);
            inSettings = true;
            continue;
        }
        inSettings = inSettings && looksLikeSetting(argument);
        result.push_back(inSettings ? "--set=" + argument : argument);
    }
    return result;
}

// CLI11 tells errors in several lines; the first says it.
std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

// What the user wrote for `measure`, not yet read.
struct MeasureTexts {
    std::string path;
    std::string block = "512";
    std::optional<std::string> page;
    std::optional<std::string> threaded;
    std::optional<std::string> columns;
    std::string tempo = "120";
    std::vector<std::string> settings;
    bool demo = false;
    bool json = false;
};

CLI::App* addMeasure(CLI::App& app, MeasureTexts& texts) {
    CLI::App* measure =
        app.add_subcommand("measure", "Play a recording through the analyser and print its levels");
    measure->add_option("FILE", texts.path, "Recording: WAV, FLAC, OGG, MP3")->type_name("");
    measure->add_flag("--demo", texts.demo, "Measure the built-in demonstration signal instead");
    measure->add_option("--block", texts.block, "Samples per block, 1 to 1048576 (512)")
        ->type_name("N");
    measure
        ->add_option("--page", texts.page,
                     "Page that counts as open: scope (transients, sibilance), spectrum, stereo "
                     "(correlation, spectrum, RMS of mid and side), system")
        ->type_name("PAGE");
    measure
        ->add_option("--set", texts.settings,
                     "Set a parameter to a plain value; may be repeated, a later one wins")
        ->type_name("KEY=VALUE")
        ->expected(1)
        ->take_all()
        ->allow_extra_args(false);
    measure
        ->add_option("--threaded", texts.threaded,
                     "Analyse on a thread of its own, for this run only: on or off")
        ->type_name("on|off");
    measure->add_option("--tempo", texts.tempo, "Tempo of the transport, 1 to 1000 (120)")
        ->type_name("BPM");
    measure
        ->add_option("--columns", texts.columns,
                     "With --json on the scope page: its table, N columns wide, as at the end")
        ->type_name("N");
    measure->add_flag("--json", texts.json, "Print one JSON object instead of a table");
    for (CLI::Option* option : measure->get_options())
        if (option->get_name() != "--set")
            option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    measure->footer(kExamples);
    return measure;
}

MeasureOptions readMeasure(const MeasureTexts& texts) {
    MeasureOptions options;
    options.path = texts.path;
    options.demo = texts.demo;
    options.json = texts.json;
    if (options.demo && !options.path.empty())
        throw UserError("give either a FILE or --demo, not both");
    if (!options.demo && options.path.empty())
        throw UserError("measure needs a FILE, for example 'orvelscope measure song.wav', "
                        "or --demo");
    options.blockSize = readWhole("--block", "samples", kLargestBlock, texts.block);
    if (texts.columns)
        options.columns = readWhole("--columns", "columns", kMostColumns, *texts.columns);
    options.tempo = readTempo(texts.tempo);
    if (texts.page) options.page = readPage(*texts.page);
    if (texts.threaded) options.threaded = readSwitch(*texts.threaded);
    for (const std::string& setting : texts.settings)
        options.settings.push_back(readSetting(setting));
    return options;
}

} // namespace

const char* pageName(Vardo::AnalyserPage page) {
    const auto index = static_cast<std::size_t>(page);
    return index < kPageNames.size() ? kPageNames[index] : "unknown";
}

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
    CLI::App app(
        "Orvel Scope measures recordings: peaks, overs, RMS, dynamic range, level histogram.",
        "orvelscope");
    bool version = false;
    app.add_flag("--version", version, "Print the version and exit");
    app.footer("'orvelscope measure --help' tells the options, the parameters and examples.");
    MeasureTexts texts;
    CLI::App* measure = addMeasure(app, texts);

    CommandLine result;
    std::vector<std::string> reversed = withSettingsApart(arguments);
    std::reverse(reversed.begin(), reversed.end()); // as CLI11 wants them
    try {
        app.parse(reversed);
    } catch (const CLI::CallForHelp&) {
        const bool ofMeasure = measure->parsed();
        result.action = ofMeasure ? CommandLine::Action::measureHelp : CommandLine::Action::help;
        result.helpText = ofMeasure ? measure->help("orvelscope") : app.help();
        return result;
    } catch (const CLI::ParseError& error) {
        throw UserError(firstLine(error.what()) +
                        "; 'orvelscope measure --help' tells the options");
    }
    if (version) {
        result.action = CommandLine::Action::version;
        return result;
    }
    if (!measure->parsed())
        throw UserError("say what to do, for example 'orvelscope measure song.wav'; "
                        "'orvelscope --help' tells more");
    result.action = CommandLine::Action::measure;
    result.measure = readMeasure(texts);
    return result;
}

} // namespace Standalone

// What the user asked for on the command line. CLI11 splits it into options; values are read here,
// so that every message says what would have been right.
#include "CommandLine.h"

#include "CommandArguments.h"
#include "OptionText.h"
#include "UserError.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <array>

namespace Standalone {
namespace {

constexpr std::array<const char*, 3> kCommands = {"play", "render", "measure"};
constexpr std::array<const char*, 3> kProgramOptions = {"--help", "-h", "--version"};

template <class Names>
bool contains(const Names& names, const std::string& text) {
    return std::find(names.begin(), names.end(), text) != names.end();
}

// Who names no command wants to play.
bool namesCommand(const std::vector<std::string>& arguments) {
    return !arguments.empty() &&
           (contains(kCommands, arguments[0]) || contains(kProgramOptions, arguments[0]));
}

// CLI11 tells errors in several lines; the first says it.
std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
    CLI::App app("Orvel Scope shows recordings in a window of its own while they play, draws "
                 "pictures of it, and measures peaks, overs, RMS, dynamic range.",
                 "orvelscope");
    bool version = false;
    app.add_flag("--version", version, "Print the version and exit");
    app.footer("'orvelscope FILE' plays it: that is 'orvelscope play FILE'.\n"
               "'orvelscope play --help' (or render, or measure) tells the options, the parameters "
               "and examples.");
    app.require_subcommand(0, 1); // behind it such a word is a file
    PlayArguments play(app);
    RenderArguments render(app);
    MeasureArguments measure(app);

    const bool named = namesCommand(arguments);
    std::vector<std::string> reversed = withSettingsApart(arguments);
    if (!named) reversed.insert(reversed.begin(), "play");
    std::reverse(reversed.begin(), reversed.end()); // as CLI11 wants them

    CommandLine result;
    const auto parsed = [&]() -> const CommandArguments* {
        for (const CommandArguments* command : {static_cast<const CommandArguments*>(&play),
                                                static_cast<const CommandArguments*>(&render),
                                                static_cast<const CommandArguments*>(&measure)})
            if (command->command().parsed()) return command;
        return nullptr;
    };
    try {
        app.parse(reversed);
    } catch (const CLI::CallForHelp&) {
        const CommandArguments* command = parsed();
        result.action =
            command != nullptr ? CommandLine::Action::commandHelp : CommandLine::Action::help;
        result.helpText = command != nullptr ? command->command().help("orvelscope") : app.help();
        return result;
    } catch (const CLI::ParseError& error) {
        if (!named && !arguments.empty() && arguments[0].find('-') != 0)
            throw UserError(firstLine(error.what()) + " ('" + arguments[0] +
                            "' is no command, so it was taken for a file to play); "
                            "'orvelscope --help' tells more");
        const CommandArguments* command = parsed();
        throw UserError(firstLine(error.what()) + "; 'orvelscope " +
                        (command != nullptr ? command->command().get_name() + " " : "") +
                        "--help' tells the options");
    }
    if (version) {
        result.action = CommandLine::Action::version;
    } else if (measure.command().parsed()) {
        result.action = CommandLine::Action::measure;
        result.measure = measure.read();
    } else if (render.command().parsed()) {
        result.action = CommandLine::Action::render;
        result.render = render.read();
    } else if (play.command().parsed()) {
        result.action = CommandLine::Action::play;
        result.play = play.read();
    }
    return result;
}

} // namespace Standalone

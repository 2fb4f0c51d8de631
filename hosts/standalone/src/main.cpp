// The standalone program: chooses the command, prints its result, and tells errors in one line.
#include "AudioFile.h"
#include "CommandLine.h"
#include "DemoSignal.h"
#include "MeasureCommand.h"
#include "PlayCommand.h"
#include "PluginSetup.h"
#include "ProgressLine.h"
#include "RenderCommand.h"
#include "Report.h"
#include "StandardError.h"
#include "UserError.h"
#include "frame/PluginBase.h"
#include "frame/PluginModule.h"

#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <new>

namespace {

using namespace Standalone;

constexpr int kSuccess = 0;
constexpr int kFault = 1; // ours, not the user's
constexpr int kUserError = 2;
constexpr int kNoWindow = 3;

Vardo::PluginDescription description() {
    Vardo::PluginDescriptionList list;
    getPluginDescriptions(list);
    if (list.empty()) throw std::runtime_error("the program contains no analyser");
    return list.front();
}

PluginFactory analyserFactory() {
    const int id = static_cast<int>(description().uniqueId);
    return [id](Vardo::VardoCallback* host) {
        return std::unique_ptr<Vardo::IPluginBase>(createPlugin(host, id));
    };
}

// Nothing counts as printed before it has left this program.
void print(const std::string& text) {
    const bool written =
        std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
    if (!written)
        throw UserError(std::string("cannot write the result (") + std::strerror(errno) +
                        "); check where standard output goes");
}

std::string commandHelp(const std::string& optionsHelp) {
    StandaloneHost host(CommonOptions().tempo);
    return optionsHelp + "\n" + parameterHelp(*analyserFactory()(&host));
}

std::unique_ptr<AudioSource> openSource(const CommonOptions& options) {
    if (options.demo) return std::make_unique<DemoSignal>();
    return std::make_unique<AudioFile>(options.path);
}

void runMeasure(const MeasureOptions& options) {
    const PluginFactory factory = analyserFactory();
    checkSettings(factory, options);
    const std::unique_ptr<AudioSource> source = openSource(options);
    Measurement result;
    {
        ProgressLine progress("Measuring", source->info().frames);
        result =
            measure(factory, *source, options, [&](std::int64_t frames) { progress.show(frames); });
    }
    if (source->info().frames > result.source.frames)
        tell("note: the recording ends after " + std::to_string(result.source.frames) + " of " +
             std::to_string(source->info().frames) + " frames");
    print(options.json ? jsonReport(result) : tableReport(result));
}

void runRender(const RenderOptions& options) {
    constexpr std::int64_t kSteps = 1000;
    std::string paths;
    {
        ProgressLine progress("Playing", kSteps);
        for (const std::string& path : render(
                 analyserFactory(), [&] { return openSource(options); }, options,
                 [&](double share) { progress.show(std::llround(share * kSteps)); }))
            paths += path + "\n";
    }
    print(paths);
}

// What can be had without a display.
void runWithoutWindow(const PlayOptions& options) {
    CommonOptions common = options;
    common.demo = common.path.empty();
    RenderOptions pictures;
    static_cast<CommonOptions&>(pictures) = common;
    pictures.allPages = true;
    pictures.output = options.pictures;
    runRender(pictures);
    print("\n");
    MeasureOptions measures;
    static_cast<CommonOptions&>(measures) = common;
    runMeasure(measures);
}

void runPlay(const PlayOptions& options) {
    try {
        play(
            analyserFactory(),
            [](const std::string& path) { return std::make_unique<AudioFile>(path); }, options);
    } catch (const NoWindow& error) {
        if (options.pictures.empty()) throw;
        tell(std::string(error.what()) + " Drawing pictures instead.");
        runWithoutWindow(options);
    }
}

void run(const CommandLine& commandLine) {
    switch (commandLine.action) {
    case CommandLine::Action::help:
        return print(commandLine.helpText);
    case CommandLine::Action::commandHelp:
        return print(commandHelp(commandLine.helpText));
    case CommandLine::Action::version:
        return print(description().effectName + " " + description().versionText + "\n");
    case CommandLine::Action::measure:
        return runMeasure(commandLine.measure);
    case CommandLine::Action::render:
        return runRender(commandLine.render);
    case CommandLine::Action::play:
        return runPlay(commandLine.play);
    }
}

int fail(const std::string& message, int status) {
    tell(message);
    return status;
}

} // namespace

int main(int argc, char** argv) {
    // A reader that goes away is an error to report, not a reason to vanish.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        run(parseCommandLine(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc)));
        return kSuccess;
    } catch (const UserError& error) {
        return fail(error.what(), kUserError);
    } catch (const NoWindow& error) {
        return fail(error.what(), kNoWindow);
    } catch (const std::bad_alloc&) {
        return fail("not enough memory; try a smaller --block", kUserError);
    } catch (const std::exception& error) {
        return fail(error.what(), kFault);
    }
}

// The standalone program: chooses the command, prints its result, and tells errors in one line.
#include "AudioFile.h"
#include "CommandLine.h"
#include "DemoSignal.h"
#include "MeasureCommand.h"
#include "PluginSetup.h"
#include "ProgressLine.h"
#include "Report.h"
#include "UserError.h"
#include "frame/PluginBase.h"
#include "frame/PluginModule.h"

#include <cerrno>
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

std::string measureHelp(const std::string& optionsHelp) {
    StandaloneHost host(MeasureOptions().tempo);
    return optionsHelp + "\n" + parameterHelp(*analyserFactory()(&host));
}

std::unique_ptr<AudioSource> openSource(const MeasureOptions& options) {
    if (options.demo) return std::make_unique<DemoSignal>();
    return std::make_unique<AudioFile>(options.path);
}

void runMeasure(const MeasureOptions& options) {
    const PluginFactory factory = analyserFactory();
    checkSettings(factory, options);
    const std::unique_ptr<AudioSource> source = openSource(options);
    Measurement result;
    {
        ProgressLine progress(source->info().frames);
        result =
            measure(factory, *source, options, [&](std::int64_t frames) { progress.show(frames); });
    }
    if (source->info().frames > result.source.frames)
        std::fprintf(stderr, "orvelscope: note: the recording ends after %lld of %lld frames\n",
                     static_cast<long long>(result.source.frames),
                     static_cast<long long>(source->info().frames));
    print(options.json ? jsonReport(result) : tableReport(result));
}

void run(const CommandLine& commandLine) {
    switch (commandLine.action) {
    case CommandLine::Action::help:
        return print(commandLine.helpText);
    case CommandLine::Action::measureHelp:
        return print(measureHelp(commandLine.helpText));
    case CommandLine::Action::version:
        return print(description().effectName + " " + description().versionText + "\n");
    case CommandLine::Action::measure:
        return runMeasure(commandLine.measure);
    }
}

// File names may hold anything; a message is one line.
int fail(std::string message, int status) {
    for (char& c : message)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = '?';
    std::fprintf(stderr, "orvelscope: %s\n", message.c_str());
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
    } catch (const std::bad_alloc&) {
        return fail("not enough memory; try a smaller --block", kUserError);
    } catch (const std::exception& error) {
        return fail(error.what(), kFault);
    }
}

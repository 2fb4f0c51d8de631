// The command `play`.
#include "PlayCommand.h"

#include "DemoSignal.h"
#include "PlayDeck.h"
#include "StandardError.h"
#include "frame/PluginBase.h"

#include <csignal>

namespace Standalone {
namespace {

volatile std::sig_atomic_t stopSignal = 0;

void onStopSignal(int number) {
    stopSignal = number;
    std::signal(number, SIG_DFL); // a second one ends a program that hangs
}

void start(PlayDeck& deck, const PlayOptions& options, std::unique_ptr<AudioSource> file) {
    if (file) return deck.load(std::move(file));
    if (!options.demo && deck.listen()) return;
    if (!options.demo) tell("there is no input to listen to; playing the demonstration signal");
    deck.load(std::make_unique<DemoSignal>());
}

} // namespace

void play(const PluginFactory& createPlugin,
          const PlayWindow::FileOpener& openFile,
          const PlayOptions& options) {
    std::unique_ptr<AudioSource> file = options.path.empty() ? nullptr : openFile(options.path);
    StandaloneHost host(options.tempo); // outlives the plug-in
    const std::unique_ptr<Vardo::IPluginBase> plugin = makePlugin(createPlugin, host);
    if (options.page) activatePage(*plugin, *options.page);
    applySettings(*plugin, options.settings);

    std::signal(SIGINT, onStopSignal);
    std::signal(SIGTERM, onStopSignal);
    if (std::signal(SIGHUP, onStopSignal) == SIG_IGN) std::signal(SIGHUP, SIG_IGN); // nohup

    // Built up in this order, and taken down in the other: window, clock and stream, plug-in.
    PlayDeck deck(*plugin, options.tempo, options.silent);
    PlayWindow window(*plugin, deck, openFile);
    start(deck, options, std::move(file));
    tell((deck.isListening() ? "listening to " : "playing ") + deck.description());
    window.run(stopSignal);

    if (const int dropOuts = deck.numDropOuts(); dropOuts > 0)
        tell("note: the sound broke off " + std::to_string(dropOuts) +
             (dropOuts == 1 ? " time" : " times"));
}

} // namespace Standalone

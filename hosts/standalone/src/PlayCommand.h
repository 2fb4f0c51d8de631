// The command `play`: the window, with something playing.
#pragma once

#include "CommandLine.h"
#include "PlayWindow.h"
#include "PluginSetup.h"

namespace Standalone {

/// Until the user quits, or SIGINT, SIGTERM or SIGHUP ask for it. Says on standard error what
/// plays.
/// Fails: throws UserError for settings and files that cannot be used, NoWindow without a display.
void play(const PluginFactory& createPlugin,
          const PlayWindow::FileOpener& openFile,
          const PlayOptions& options);

} // namespace Standalone

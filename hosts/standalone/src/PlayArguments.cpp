// The command line of `play`.
#include "CommandArguments.h"

#include <CLI/App.hpp>

namespace Standalone {
namespace {

constexpr const char* kFooter =
    R"(Without FILE it listens to the default input if there is one, else it plays the demonstration
signal. The sound goes to the sound card bit for bit, converted only where the card cannot play the
recording's sample rate; without a card, playing goes on in silence. At its end the recording starts
over. A file dropped on the window takes the other's place.

Keys:
  Space             play, pause
  Left, Right       back and on by 5 seconds, with Shift by 1 second
  Home              to the start
  1, 2, 3, 4        scope, spectrum, stereo field, system
  Escape, Q         quit

Exit status: 0 after quitting, 2 for what you can mend, 3 when no window can be opened.

Examples:
  orvelscope song.wav
  orvelscope play drums.wav --tempo 128 --set ScopeSyncMode=2
      one quarter note at 128 beats per minute on the scope
  orvelscope play mix.flac --page stereo --silent
      in time, but without a sound)";

} // namespace

PlayArguments::PlayArguments(CLI::App& app)
    : CommandArguments(app,
                       "play",
                       "Open the window and play a recording (the command when none is named)",
                       "Page to open with: scope (default), spectrum, stereo, system") {
    command_->add_flag("--silent", silent_, "Leave the sound card alone");
    command_
        ->add_option("--pictures", pictures_,
                     "Where no window can be opened: write pictures of all pages into this folder "
                     "and print what 'measure' prints")
        ->type_name("FOLDER");
    finish(kFooter);
}

PlayOptions PlayArguments::read() const {
    PlayOptions options;
    readCommon(options);
    options.silent = silent_;
    options.pictures = pictures_;
    return options;
}

} // namespace Standalone

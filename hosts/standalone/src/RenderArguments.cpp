// The command line of `render`.
#include "CommandArguments.h"
#include "OptionText.h"
#include "UserError.h"

#include <CLI/App.hpp>

namespace Standalone {
namespace {

constexpr const char* kFooter =
    R"(The recording is really played up to the moment of the picture, with the window's clock running
along; no display is needed, and the same command draws the same picture (but for the memory in use
that it tells). Pictures are PNG files of 1000 by 545 pixels.

Examples:
  orvelscope render song.wav --page spectrum -o spectrum.png
      the spectrum when three fifths of the song are over
  orvelscope render song.wav --all --at 42.5 -o pictures
      pictures/scope.png, spectrum.png, stereo.png and system.png, after 42.5 seconds
  orvelscope render drums.wav --tempo 128 --set ScopeSyncMode=2 -o beat.png
      one quarter note at 128 beats per minute on the scope
  orvelscope render --demo --page stereo --mouse 500,250 -o stereo.png
      the demonstration signal, with the mouse over the middle of the page)";

} // namespace

RenderArguments::RenderArguments(CLI::App& app)
    : CommandArguments(app,
                       "render",
                       "Play a recording and write pictures of the window",
                       "Page of the picture: scope (default), spectrum, stereo, system") {
    command_->add_flag("--all", all_,
                       "Pictures of all pages; each is played from the start with its page open");
    command_
        ->add_option("-o,--output", output_,
                     "PNG file to write; with --all the folder, which is made if need be")
        ->type_name("PATH");
    command_->add_option("--at", at_, "Moment of the picture in seconds (60 % of the recording)")
        ->type_name("SECONDS");
    command_->add_option("--mouse", mouse_, "Where the mouse is, in pixels of the window")
        ->type_name("X,Y");
    addBlock();
    finish(kFooter);
}

RenderOptions RenderArguments::read() const {
    RenderOptions options;
    readCommon(options);
    if (!options.demo && options.path.empty())
        throw UserError("render needs a FILE, for example 'orvelscope render song.wav -o "
                        "scope.png', or --demo");
    options.allPages = all_;
    if (all_ && options.page) throw UserError("give either --page or --all, not both");
    options.output = output_;
    if (output_.empty())
        throw UserError(all_ ? "say where the pictures go: -o FOLDER"
                             : "say where the picture goes: -o PICTURE.png");
    options.blockSize = readBlock();
    if (at_) options.seconds = readSeconds(*at_);
    if (mouse_) options.mouse = readPlace(*mouse_);
    return options;
}

} // namespace Standalone

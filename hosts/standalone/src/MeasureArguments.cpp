// The command line of `measure`.
#include "CommandArguments.h"
#include "OptionText.h"
#include "UserError.h"

#include <CLI/App.hpp>

namespace Standalone {
namespace {

constexpr const char* kExamples = R"(Examples:
  orvelscope measure master.wav --set GlobalMeteringMode=3
      peaks, overs and dynamic range of a finished master, RMS by the K-14 meter
  orvelscope measure mix.flac --page stereo --set GlobalRMSLength=300 --json > mix.json
      mono compatibility: correlation, mid and side, and the spectrum of the end, for other programs
  orvelscope measure drums.wav --tempo 128 --set ScopeSyncMode=2 --columns 800 --json
      where the hits are, and the last quarter note as the scope draws it
  orvelscope measure voice.wav --set ScopeDeEsserFemale=1
      how many seconds of a female voice hiss)";

constexpr const char* kPageHelp =
    "Page that counts as open: scope (transients, sibilance), spectrum, stereo "
    "(correlation, spectrum, RMS of mid and side), system";

} // namespace

MeasureArguments::MeasureArguments(CLI::App& app)
    : CommandArguments(
          app, "measure", "Play a recording through the analyser and print its levels", kPageHelp) {
    addBlock();
    command_
        ->add_option("--threaded", threaded_,
                     "Analyse on a thread of its own, for this run only: on or off")
        ->type_name("on|off");
    command_
        ->add_option("--columns", columns_,
                     "With --json on the scope page: its table, N columns wide, as at the end")
        ->type_name("N");
    command_->add_flag("--json", json_, "Print one JSON object instead of a table");
    finish(kExamples);
}

MeasureOptions MeasureArguments::read() const {
    MeasureOptions options;
    readCommon(options);
    if (!options.demo && options.path.empty())
        throw UserError("measure needs a FILE, for example 'orvelscope measure song.wav', "
                        "or --demo");
    options.json = json_;
    options.blockSize = readBlock();
    if (columns_) options.columns = readWhole("--columns", "columns", kMostColumns, *columns_);
    if (threaded_) options.threaded = readSwitch(*threaded_);
    return options;
}

} // namespace Standalone

// What all commands take.
#include "CommandArguments.h"

#include "OptionText.h"
#include "UserError.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace Standalone {

CommandArguments::CommandArguments(CLI::App& app,
                                   const char* name,
                                   const char* purpose,
                                   const char* pageHelp)
    : command_(app.add_subcommand(name, purpose)) {
    command_->add_option("FILE", path_, "Recording: WAV, FLAC, OGG, MP3")->type_name("");
    command_->add_flag("--demo", demo_, "Take the built-in demonstration signal instead");
    command_->add_option("--page", page_, pageHelp)->type_name("PAGE");
    command_
        ->add_option("--set", settings_,
                     "Set a parameter to a plain value; may be repeated, a later one wins")
        ->type_name("KEY=VALUE")
        ->expected(1)
        ->take_all()
        ->allow_extra_args(false);
    command_->add_option("--tempo", tempo_, "Tempo of the transport, 1 to 1000 (120)")
        ->type_name("BPM");
}

void CommandArguments::addBlock() {
    command_->add_option("--block", block_, "Samples per block, 1 to 1048576 (512)")
        ->type_name("N");
}

void CommandArguments::finish(const char* footer) {
    for (CLI::Option* option : command_->get_options())
        if (option->get_name() != "--set")
            option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    command_->footer(footer);
}

void CommandArguments::readCommon(CommonOptions& options) const {
    options.path = path_;
    options.demo = demo_;
    if (options.demo && !options.path.empty())
        throw UserError("give either a FILE or --demo, not both");
    options.tempo = readTempo(tempo_);
    if (page_) options.page = readPage(*page_);
    for (const std::string& setting : settings_)
        options.settings.push_back(readSetting(setting));
}

int CommandArguments::readBlock() const {
    return readWhole("--block", "samples", kLargestBlock, block_);
}

} // namespace Standalone

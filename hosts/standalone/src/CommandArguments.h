// The commands as the command line knows them: which options there are, and what they mean.
#pragma once

#include "CommandLine.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace Standalone {

/// What the user wrote, not yet read. Filled in by `CLI::App::parse`, so it must stay where it is.
class CommandArguments {
  public:
    CommandArguments(const CommandArguments&) = delete;
    CommandArguments& operator=(const CommandArguments&) = delete;

    const CLI::App& command() const { return *command_; }

  protected:
    /// Adds the command with the options that all have in common.
    CommandArguments(CLI::App& app, const char* name, const char* purpose, const char* pageHelp);
    ~CommandArguments() = default;

    void addBlock();
    /// Behind the last option: repeated ones count as written last.
    void finish(const char* footer);
    /// Fails: throws UserError.
    void readCommon(CommonOptions& options) const;
    int readBlock() const;

    CLI::App* command_;
    std::string path_;
    bool demo_ = false;
    std::optional<std::string> page_;
    std::vector<std::string> settings_;
    std::string tempo_ = "120";
    std::string block_ = "512";
};

class MeasureArguments final : public CommandArguments {
  public:
    explicit MeasureArguments(CLI::App& app);
    MeasureOptions read() const;

  private:
    std::optional<std::string> threaded_;
    std::optional<std::string> columns_;
    bool json_ = false;
};

class RenderArguments final : public CommandArguments {
  public:
    explicit RenderArguments(CLI::App& app);
    RenderOptions read() const;

  private:
    bool all_ = false;
    std::string output_;
    std::optional<std::string> at_;
    std::optional<std::string> mouse_;
};

class PlayArguments final : public CommandArguments {
  public:
    explicit PlayArguments(CLI::App& app);
    PlayOptions read() const;

  private:
    bool silent_ = false;
    std::string pictures_;
};

} // namespace Standalone

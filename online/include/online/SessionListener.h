// What the update check asks of whoever has a window, and tells it.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace Dorna {

/// Hears how checks and downloads go.
/// Threads: every call comes from UpdateCheck::Tick.
class IDornaSessionListener {
  public:
    enum class CheckOutcome { kUpToDate, kUpdateExists, kNoAnswer };

    /// The server was asked.
    virtual void checkEnded(CheckOutcome outcome) = 0;
    /// 0 to 1, while a download runs.
    virtual void downloadProgress(float fraction) = 0;
    /// `file` is where the download is now; empty when it failed.
    virtual void downloadEnded(const std::filesystem::path& file) = 0;

  protected:
    ~IDornaSessionListener() = default;
};

/// Puts a yes/no question to the user.
class IUpdateQuestion {
  public:
    /// True when the question is shown; `answer` is then called once from a later idle, or never
    /// when the window closes first. False: not now, ask again.
    virtual bool askYesNo(const std::string& title,
                          const std::string& text,
                          std::function<void(bool yes)> answer) = 0;

  protected:
    ~IUpdateQuestion() = default;
};

} // namespace Dorna

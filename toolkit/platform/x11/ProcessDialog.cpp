// File dialogs of helper programs: started as a child, their output read without waiting.
#include "x11/X11FileDialog.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <utility>

extern char** environ;

namespace Sorel {

namespace {

/// Output beyond this is not of a file dialog.
constexpr std::size_t kMaxOutput = 1 << 20;
constexpr int kCancelledStatus = 1;

/// One path a line. A line that does not begin a path belongs to the name before it.
std::vector<std::string> pathsOf(std::string_view output) {
    std::vector<std::string> paths;
    if (output.ends_with('\n')) output.remove_suffix(1);
    while (!output.empty()) {
        std::size_t end = output.find("\n/");
        if (end == std::string_view::npos) end = output.size();
        if (output.front() == '/') paths.emplace_back(output.substr(0, end));
        output.remove_prefix(std::min(end + 1, output.size()));
    }
    return paths;
}

class ProcessDialog : public X11DialogBackend {
  public:
    /// Null when the program cannot be started. `variable` is added to its environment.
    static std::unique_ptr<X11DialogBackend> start(std::vector<std::string> arguments,
                                                   const std::string& variable);
    ~ProcessDialog() override;

    State poll(FileDialogAnswer& answer) override;

  private:
    ProcessDialog(std::string name, pid_t child, int output)
        : name_(std::move(name))
        , child_(child)
        , output_(output) {}
    bool readOutput();
    State answerFor(bool reaped, int status, FileDialogAnswer& answer) const;

    std::string name_;
    pid_t child_;
    int output_;
    std::string text_;
};

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

std::vector<std::string> environmentWith(const std::string& variable) {
    std::vector<std::string> all;
    const std::string_view name = std::string_view(variable).substr(0, variable.find('=') + 1);
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry)
        if (!std::string_view(*entry).starts_with(name)) all.emplace_back(*entry);
    all.push_back(variable);
    return all;
}

std::unique_ptr<X11DialogBackend> ProcessDialog::start(std::vector<std::string> arguments,
                                                       const std::string& variable) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return nullptr;

    // A group of its own, so that what it starts goes with it; none of the host's files and
    // signals.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigaddset(&signals, SIGCHLD);
    sigaddset(&signals, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                              POSIX_SPAWN_SETPGROUP);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 34)
    posix_spawn_file_actions_addclosefrom_np(&actions, 3);
#endif

    std::vector<std::string> environment = environmentWith(variable);
    pid_t child = 0;
    const int error = posix_spawnp(&child, arguments[0].c_str(), &actions, &attributes,
                                   pointers(arguments).data(), pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    close(ends[1]);
    if (error == 0)
        return std::unique_ptr<X11DialogBackend>(new ProcessDialog(arguments[0], child, ends[0]));
    close(ends[0]);
    return nullptr;
}

ProcessDialog::~ProcessDialog() {
    close(output_);
    if (child_ <= 0) return;
    kill(-child_, SIGKILL);
    while (waitpid(child_, nullptr, 0) < 0 && errno == EINTR) {
    }
}

/// False once there is no more to come.
bool ProcessDialog::readOutput() {
    std::array<char, 4096> bytes{};
    for (;;) {
        const ssize_t count = read(output_, bytes.data(), bytes.size());
        if (count > 0 && text_.size() < kMaxOutput)
            text_.append(bytes.data(), static_cast<std::size_t>(count));
        if (count == 0) return false;
        if (count < 0 && errno != EINTR) return errno == EAGAIN;
    }
}

X11DialogBackend::State ProcessDialog::poll(FileDialogAnswer& answer) {
    const bool open = readOutput();
    int status = 0;
    const pid_t ended = waitpid(child_, &status, WNOHANG);
    // A host that reaps all children, or ignores their end, leaves us only the output's end.
    const bool lost = ended < 0 && errno == ECHILD;
    if (ended == 0 || (lost && open)) return State::kRunning;
    readOutput();
    if (ended == child_) child_ = 0;
    return answerFor(!lost, status, answer);
}

X11DialogBackend::State
ProcessDialog::answerFor(bool reaped, int status, FileDialogAnswer& answer) const {
    constexpr int kNotFound = 127; // how some systems tell that there is no such program
    if (reaped && WIFEXITED(status) && WEXITSTATUS(status) == kNotFound) return State::kUnavailable;
    const bool ok = !reaped || (WIFEXITED(status) && WEXITSTATUS(status) == 0);
    const bool cancelled = WIFEXITED(status) && WEXITSTATUS(status) == kCancelledStatus;
    if (ok)
        answer.paths = pathsOf(text_);
    else if (!cancelled)
        answer.problem = "The file dialog could not be shown: \"" + name_ + "\" failed.";
    return State::kAnswered;
}

/// Folder and name that the dialog begins with.
std::string startPath(const FileDialogRequest& request) {
    std::string path = request.initialPath;
    if (!path.empty() && path.back() != '/') path += '/';
    if (request.style == FileDialogRequest::Style::kSave) path += request.defaultSaveName;
    return path;
}

std::string titleOf(const FileDialogRequest& request) {
    if (!request.title.empty()) return request.title;
    switch (request.style) {
    case FileDialogRequest::Style::kSave:
        return "Save File";
    case FileDialogRequest::Style::kFolder:
        return "Select a folder";
    case FileDialogRequest::Style::kOpen:
        break;
    }
    return "Open File";
}

} // namespace

std::unique_ptr<X11DialogBackend> openZenity(const FileDialogRequest& request,
                                             std::uint32_t parentWindow) {
    using Style = FileDialogRequest::Style;
    std::vector<std::string> arguments{"zenity", "--file-selection", "--title=" + titleOf(request)};
    if (request.style == Style::kSave) {
        arguments.emplace_back("--save");
        arguments.emplace_back("--confirm-overwrite");
    }
    if (request.style == Style::kFolder) arguments.emplace_back("--directory");
    if (request.multiSelect && request.style == Style::kOpen) {
        arguments.emplace_back("--multiple");
        arguments.emplace_back("--separator=\n");
    }
    if (const std::string start = startPath(request); !start.empty())
        arguments.push_back("--filename=" + start);
    if (request.style != Style::kFolder)
        for (const FileDialogRequest::Extension& kind : request.extensions) {
            const std::string pattern = "*." + kind.extension;
            arguments.push_back("--file-filter=" + kind.description + " (" + pattern + ") | " +
                                pattern);
        }
    // The window that the dialog stays above.
    return ProcessDialog::start(std::move(arguments), "WINDOWID=" + std::to_string(parentWindow));
}

std::unique_ptr<X11DialogBackend> openKdialog(const FileDialogRequest& request,
                                              std::uint32_t parentWindow) {
    using Style = FileDialogRequest::Style;
    std::vector<std::string> arguments{"kdialog", "--title", titleOf(request), "--attach",
                                       std::to_string(parentWindow)};
    if (request.multiSelect && request.style == Style::kOpen) {
        arguments.emplace_back("--multiple");
        arguments.emplace_back("--separate-output");
    }
    arguments.emplace_back(request.style == Style::kSave     ? "--getsavefilename"
                           : request.style == Style::kFolder ? "--getexistingdirectory"
                                                             : "--getopenfilename");
    const std::string start = startPath(request);
    arguments.push_back(start.empty() ? "." : start);
    std::string filters;
    for (const FileDialogRequest::Extension& kind : request.extensions)
        filters.append(filters.empty() ? "" : "|")
            .append(kind.description)
            .append(" (*.")
            .append(kind.extension)
            .append(")");
    if (!filters.empty() && request.style != Style::kFolder) arguments.push_back(filters);
    return ProcessDialog::start(std::move(arguments), "WINDOWID=" + std::to_string(parentWindow));
}

} // namespace Sorel

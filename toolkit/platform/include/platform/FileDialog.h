// The platform's dialogs for opening and saving files and for choosing a folder.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace Sorel {

struct FileDialogRequest {
    enum class Style : std::uint8_t { kOpen, kSave, kFolder };
    struct Extension {
        /// "Wave file"
        std::string description;
        /// "wav", without the dot.
        std::string extension;
        std::string mimeType;
    };

    Style style = Style::kOpen;
    std::string title;
    std::vector<Extension> extensions;
    /// Folder to begin in; UTF-8, empty for the platform's choice.
    std::string initialPath;
    /// For saving: the name that stands there first.
    std::string defaultSaveName;
    bool multiSelect = false;
};

struct FileDialogAnswer {
    /// Full paths, UTF-8; none when the user gave up.
    std::vector<std::string> paths;
    /// Why no dialog could be shown, in words for the user; empty otherwise.
    std::string problem;
};

/// Shows one dialog at a time and never blocks.
/// Threads: GUI thread.
class IOSFileDialog {
  public:
    using Answer = std::function<void(const FileDialogAnswer&)>;

    virtual ~IOSFileDialog() = default;
    /// `answer` is called once, from a later idle of the frame.
    virtual void run(const FileDialogRequest& request, Answer answer) = 0;
    /// Takes an open dialog away without an answer.
    virtual void cancel() = 0;
    virtual bool isOpen() const = 0;
};

} // namespace Sorel

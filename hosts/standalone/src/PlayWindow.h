// The window of its own: the plug-in's editor, its events, and what the keys do.
#pragma once

#include "frame/EditorHost.h"

#include <csignal>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

namespace Vardo {
class IPluginBase;
}

namespace Standalone {

class AudioSource;
class PlayDeck;

/// No display, or one that refuses windows.
class NoWindow : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Threads: main.
class PlayWindow final : public Vardo::IEditorHost {
  public:
    /// Opens a file that was dropped on the window. Fails: throws UserError.
    using FileOpener = std::function<std::unique_ptr<AudioSource>(const std::string& path)>;

    /// Opens the window. Plug-in and deck outlive it. Fails: throws NoWindow.
    PlayWindow(Vardo::IPluginBase& plugin, PlayDeck& deck, FileOpener openFile);
    /// Closes it.
    ~PlayWindow();
    PlayWindow(const PlayWindow&) = delete;
    PlayWindow& operator=(const PlayWindow&) = delete;

    /// Until the user closes the window or quits, the display goes, or `stop` is not 0, as a
    /// signal handler may set it.
    void run(const volatile std::sig_atomic_t& stop);

    // IEditorHost
    bool editorKeyDown(const Vardo::KeyEvent& key) override;
    void editorCloseRequested() override { quit_ = true; }
    bool editorFilesDropped(const std::vector<std::string>& paths) override;

  private:
    void waitForEvents();
    void loadDropped();

    Vardo::IPluginBase& plugin_;
    Vardo::IPluginEditor& editor_;
    PlayDeck& deck_;
    FileOpener openFile_;
    bool quit_ = false;
    int wantedPage_ = -1;     ///< the user pressed its key; -1 for none
    std::string droppedPath_; ///< to be opened when the drop is over; empty for none
};

} // namespace Standalone

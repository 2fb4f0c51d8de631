// What lies between an editor and a program that is nothing but its window, or its picture.
#pragma once

#include "frame/PluginEditor.h"

#include <string>
#include <vector>

namespace Vardo {

/// What the program hears of a window that has no host around it.
/// Threads: GUI thread, from inside idle.
class IEditorHost {
  public:
    /// A key that nothing in the window used; true when taken.
    virtual bool editorKeyDown(const KeyEvent& key) = 0;
    /// The user closes the window. The program closes the editor, later.
    virtual void editorCloseRequested() = 0;
    /// Files dropped on the window, UTF-8; true when taken.
    virtual bool editorFilesDropped(const std::vector<std::string>& paths) = 0;

  protected:
    ~IEditorHost() = default;
};

/// An editor that paints into memory, where there is no display. Its clock stands still until time
/// is passed.
/// Threads: GUI thread.
class IEditorPicture {
  public:
    /// Instead of open; close ends both.
    virtual void openPicture() = 0;
    /// Lets the editor's clock advance, and idle once.
    virtual void passTime(int milliseconds) = 0;
    /// Where the mouse is, in pixels of the window; outside takes it away.
    virtual void pointAt(double x, double y) = 0;
    /// A PNG file of what the window shows. False, with words for the user, when that failed.
    virtual bool writePicture(const std::string& utf8Path, std::string& problem) = 0;

  protected:
    ~IEditorPicture() = default;
};

} // namespace Vardo

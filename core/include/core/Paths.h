// Where the user's content lives, and how to show it to the user.
#pragma once

#include <cstddef>

namespace Core {

/// Room for every path below, its end included.
inline constexpr std::size_t kPathBufferSize = 1026;

/// Folder kinds. The numbers 16 and 46 are what some callers know the documents folder by.
enum FolderKind : int {
    kDesktopFolder = 0,
    kDocumentsFolder = 1,
    kDataFolder = 3,
    kPersonalDocumentsFolder = 16,
    kCommonDocumentsFolder = 46,
};

/// The folder that holds presets and other content, with forward slashes and one at the end: the
/// setting "ContentLocation", or, while that is empty, a folder below the user's documents. Empty
/// when the system names no folder at all. Makes and remembers nothing: a host that looks at a
/// plug-in leaves no traces.
/// The text is shared by the whole process and good until the next call.
/// Threads: main thread; reads files.
const char* getContentLocation();

/// Makes that folder if it is missing, and remembers it if the setting is empty.
/// False when there is no such folder afterwards.
/// Threads: main thread; reads and writes files.
bool makeContentLocation();

/// Remembers another folder, for all instances and sessions. A missing slash is added.
/// False when it could not be kept.
bool setContentLocation(const char* path);

/// Fills `path` (kPathBufferSize bytes) with one of the user's folders, with a slash at the end.
/// A folder the desktop has no entry for is the home folder. Nothing is created.
/// False, and an empty text, for an unknown kind or when there is no such folder.
bool getSpecialFolder(int kind, char* path);

/// Has the desktop open a folder, file or address with whatever is made for it. Does not wait for
/// that program and does not report what became of it.
/// Threads: main thread. The host's handling of child processes is left alone.
void openWithShell(const char* path);

} // namespace Core

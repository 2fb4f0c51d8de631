// Standard error: our own messages get through while libraries that chatter are kept quiet.
#pragma once

#include <string>

namespace Standalone {

/// Sends what libraries write to standard error nowhere, as long as one of these lives.
/// Threads: any; several may live at a time.
class QuietLibraries {
  public:
    QuietLibraries();
    ~QuietLibraries();
    QuietLibraries(const QuietLibraries&) = delete;
    QuietLibraries& operator=(const QuietLibraries&) = delete;
};

/// One line, "orvelscope: " and the message, to the user's standard error. Control characters,
/// which file names may hold, show as question marks.
/// Threads: any but the audio thread.
void tell(std::string message);

} // namespace Standalone

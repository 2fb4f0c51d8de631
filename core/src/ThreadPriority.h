// What the platform folder provides for threads.
#pragma once

namespace Core::Threads {

/// Moves the calling thread `steps` above normal. Silent when the system refuses.
void raiseOwnPriority(int steps) noexcept;

} // namespace Core::Threads

// A TCP connection that waits no longer than it is told to. The one door to the system's sockets.
#pragma once

#include "WaitLimit.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace Dorna {

/// Threads: one; only the flag in a WaitLimit comes from others. Raises no signal, and the host's
/// child processes do not inherit it.
class Socket {
  public:
    Socket() = default;
    ~Socket() { close(); }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    /// Looks the name up and tries its addresses in turn. False when the limit was over first or
    /// nobody answers.
    bool connect(const std::string& host, int port, const WaitLimit& limit);
    /// All of it, or false.
    bool send(std::string_view bytes, const WaitLimit& limit);
    /// Bytes that were there, at least one; 0 when the other side closed, -1 when something failed
    /// or the limit was over.
    std::ptrdiff_t receive(std::span<char> buffer, const WaitLimit& limit);
    void close();

  private:
    enum class Ready { toRead, toWrite };
    bool waitUntil(Ready ready, const WaitLimit& limit) const;

    std::intptr_t handle_ = -1;
};

} // namespace Dorna

#include "Socket.h"

#include "NameLookup.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace Dorna {

namespace {
// So that one address that swallows everything leaves time for the next.
constexpr std::chrono::seconds kTimePerAddress{5};

bool wouldWait() { return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR; }
int number(std::intptr_t handle) { return static_cast<int>(handle); }

int pendingError(int handle) {
    int error = 0;
    socklen_t size = sizeof error;
    return getsockopt(handle, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}
} // namespace

bool Socket::connect(const std::string& host, int port, const WaitLimit& limit) {
    close();
    const AddressList addresses = lookUp(host, port, limit);
    for (const addrinfo* to = addresses.get(); to != nullptr; to = to->ai_next) {
        if (limit.isOver()) break;
        handle_ = ::socket(to->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        if (handle_ < 0) continue;
        if (::connect(number(handle_), to->ai_addr, to->ai_addrlen) == 0) return true;
        if ((errno == EINPROGRESS || errno == EINTR) &&
            waitUntil(Ready::toWrite, limit.within(kTimePerAddress)) &&
            pendingError(number(handle_)) == 0)
            return true;
        close();
    }
    return false;
}

bool Socket::send(std::string_view bytes, const WaitLimit& limit) {
    while (!bytes.empty()) {
        // No SIGPIPE: it would end the host when the other side has gone.
        const ssize_t sent = ::send(number(handle_), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent > 0)
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        else if (!wouldWait() || !waitUntil(Ready::toWrite, limit))
            return false;
    }
    return true;
}

std::ptrdiff_t Socket::receive(std::span<char> buffer, const WaitLimit& limit) {
    for (;;) {
        // Looked at first, so that an endless stream can be stopped too.
        if (limit.isOver()) return -1;
        const ssize_t count = ::recv(number(handle_), buffer.data(), buffer.size(), 0);
        if (count >= 0) return count;
        if (!wouldWait() || !waitUntil(Ready::toRead, limit)) return -1;
    }
}

bool Socket::waitUntil(Ready ready, const WaitLimit& limit) const {
    const short wanted = ready == Ready::toRead ? POLLIN : POLLOUT;
    while (!limit.isOver()) {
        pollfd entry{number(handle_), wanted, 0};
        const int count = ::poll(&entry, 1, static_cast<int>(limit.slice().count()));
        if (count > 0) return true; // an error too: the next call says which
        if (count < 0 && errno != EINTR) return false;
    }
    return false;
}

void Socket::close() {
    if (handle_ >= 0) ::close(number(std::exchange(handle_, -1)));
}

} // namespace Dorna

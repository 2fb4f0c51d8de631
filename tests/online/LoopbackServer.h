// A small server on this machine that answers as badly as a test wants.
#pragma once

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

/// One connection, after its request was read. False from `send` when the client has gone.
class Connection {
  public:
    Connection(int handle, const std::atomic<bool>& stopping)
        : handle_(handle)
        , stopping_(stopping) {}

    bool send(std::string_view text) const {
        while (!text.empty()) {
            const ssize_t sent = ::send(handle_, text.data(), text.size(), MSG_NOSIGNAL);
            if (sent <= 0) return false;
            text.remove_prefix(static_cast<std::size_t>(sent));
        }
        return true;
    }
    /// Says nothing more until the client closes or the server ends.
    void waitForTheEnd() const {
        char byte = 0;
        pollfd entry{handle_, POLLIN, 0};
        while (!stopping_)
            if (::poll(&entry, 1, 5) > 0 && ::recv(handle_, &byte, 1, 0) <= 0) return;
    }

  private:
    int handle_;
    const std::atomic<bool>& stopping_;
};

class LoopbackServer {
  public:
    using Answer = std::function<void(Connection&)>;

    explicit LoopbackServer(Answer answer)
        : answer_(std::move(answer))
        , handle_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const plain = reinterpret_cast<sockaddr*>(&address);
        if (::bind(handle_, plain, size) != 0 || ::listen(handle_, 8) != 0) std::abort();
        getsockname(handle_, plain, &size);
        port_ = ntohs(address.sin_port);
        thread_ = std::thread([this] { serve(); });
    }
    explicit LoopbackServer(std::string reply)
        : LoopbackServer([reply](Connection& client) { client.send(reply); }) {}
    ~LoopbackServer() {
        stopping_ = true;
        thread_.join();
        ::close(handle_);
    }

    int port() const { return port_; }
    std::string address() const { return "127.0.0.1:" + std::to_string(port_); }
    std::vector<std::string> requests() {
        const std::lock_guard guard(lock_);
        return requests_;
    }

  private:
    void serve() {
        pollfd entry{handle_, POLLIN, 0};
        while (!stopping_) {
            if (::poll(&entry, 1, 5) <= 0) continue;
            const int client = ::accept4(handle_, nullptr, nullptr, SOCK_CLOEXEC);
            if (client < 0) continue;
            std::string request;
            char byte = 0;
            while (!request.ends_with("\r\n") && ::recv(client, &byte, 1, 0) == 1)
                request += byte;
            {
                const std::lock_guard guard(lock_);
                requests_.push_back(request);
            }
            Connection connection(client, stopping_);
            answer_(connection);
            ::close(client);
        }
    }

    Answer answer_;
    int handle_;
    int port_ = 0;
    std::atomic<bool> stopping_{false};
    std::mutex lock_;
    std::vector<std::string> requests_;
    std::thread thread_;
};

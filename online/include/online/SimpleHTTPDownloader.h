// Fetches one resource by HTTP on a thread of its own.
#pragma once

#include "online/HttpReply.h"
#include "online/WebAddress.h"

#include <atomic>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>

namespace Dorna {

class Socket;
class WaitLimit;

/// What the caller of a fetch hears while it waits.
enum class TransferEvent : int {
    kProgress = 1,  ///< the value is the fraction of the body that is there, 0 to 1
    kFinished = 2,  ///< the value is 1
    kQueryStop = 3, ///< answer 1 to end the transfer
};

enum class FetchResult : int {
    kFailed = 0,
    kDone = 1,
    kNotWritten = 2, ///< the file could not be written
    kNoContent = 3,  ///< status 204: there is nothing to get
};

/// A small HTTP/1.1 client: GET over plain TCP, one transfer at a time; no TLS, no redirects (a
/// status outside 200 to 299 is a failure), no chunked transfers, no kept connection.
///
/// Bounds:  see HttpReplyReader; a body is at most 256 MB, and one that is fetched into memory at
///          most 64 MB, taken as it arrives and not as it is announced: nothing a server says makes
///          us take 256 MB of memory.
/// Waits:   10 s for the name and the connection, 10 s to send, 30 s for all headers, 20 s without
///          a byte of the body, an hour for all of it. A stop ends each of them within 0.2 s.
/// Threads: one thread fetches and waits meanwhile; `stop` and the getters may be called by any.
///          The worker ends before a fetch returns.
class CSimpleHTTPDownloader {
  public:
    /// Called on the fetching thread, about 50 times a second.
    using Callback = std::function<int(TransferEvent event, float value)>;

    static constexpr std::size_t kMaxBytesInMemory = std::size_t{64} << 20;
    static constexpr std::size_t kMaxHostBytes = 255;
    static constexpr std::size_t kMaxPathBytes = 2047;

    CSimpleHTTPDownloader() = default;
    ~CSimpleHTTPDownloader();
    CSimpleHTTPDownloader(const CSimpleHTTPDownloader&) = delete;
    CSimpleHTTPDownloader& operator=(const CSimpleHTTPDownloader&) = delete;

    /// The body into `data`. What a server that closed too early has sent is given too: see
    /// `isCutOff`. Empty unless the result is kDone.
    FetchResult Fetch(const WebAddress& from, std::string& data, const Callback& callback);
    /// The body into the file `target`, or "name (2).ext" when there is one; `written` gets the
    /// name. It is written under a temporary name beside it and renamed at the end, and only when
    /// it is whole: not cut off, and not packed in a way that is not undone here.
    FetchResult FetchToFile(const WebAddress& from,
                            const std::filesystem::path& target,
                            std::filesystem::path& written,
                            const Callback& callback);
    /// Ends the transfer under way as failed, and lets no other begin.
    void stop();

    /// Clear it, and a transfer waits behind the headers until it is set. Set at every start.
    void setContinue(bool wanted) { continue_ = wanted; }
    /// Sent with every request, as basic authorization; empty texts: none. Nothing is stored.
    void setAuthorization(const std::string& user, const std::string& password);

    TransferState state() const { return state_; }
    std::int64_t received() const { return received_; } ///< bytes of the body
    std::int64_t total() const { return total_; }
    int status() const { return status_; }    ///< of the reply, 0 before there is one
    bool isCutOff() const { return cutOff_; } ///< of the last transfer
    bool isEncoded() const { return encoded_; }

  private:
    bool start(const WebAddress& from, IBodySink& body);
    bool wait(const Callback& callback);
    FetchResult transfer(const WebAddress& from, IBodySink& body, const Callback& callback);
    void work() noexcept;
    void run();
    bool readReply(Socket& socket, const WaitLimit& limit);
    bool waitForContinue(const WaitLimit& limit) const;
    void publish(const HttpReplyReader& reader);

    std::thread worker_;
    std::atomic<bool> stopping_{false};
    std::atomic<bool> ended_{false}; // by the callback
    std::atomic<bool> working_{false};
    std::atomic<bool> continue_{false};
    std::atomic<TransferState> state_{TransferState::kIdle};
    std::atomic<std::int64_t> received_{0};
    std::atomic<std::int64_t> total_{0};
    std::atomic<int> status_{0};
    std::atomic<bool> cutOff_{false};
    std::atomic<bool> encoded_{false};
    std::string authorization_; // base64

    // Of the transfer under way; the worker's while it runs.
    WebAddress from_;
    IBodySink* body_ = nullptr;
};

/// The request exactly as it is sent. On purpose the header lines end with a single line feed and
/// only the blank line with carriage return and line feed. Blanks in the path become "%20". Empty
/// when host or path are too long or hold control characters.
std::string requestText(const WebAddress& from, const std::string& authorization);

} // namespace Dorna

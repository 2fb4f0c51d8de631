// Reads the reply to one HTTP request, byte by byte, with no socket.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Dorna {

/// Where a transfer is.
enum class TransferState : int {
    kFailed = 0, ///< or closed
    kIdle = 1,
    kStarted = 2,
    kReadingHeaders = 5,
    kNoContent = 6,   ///< the reply has status 204
    kHeadersDone = 7, ///< waiting for the wish to receive the body
    kReadingBody = 8,
    kComplete = 9,
};

/// Where a body goes, piece by piece as it arrives.
class IBodySink {
  public:
    /// False ends the transfer as failed.
    virtual bool write(std::string_view bytes) = 0;

  protected:
    ~IBodySink() = default;
};

/// Whatever the other side sends, this holds one header line in memory and nothing more; the body
/// is handed on. Everything announced is checked against what may arrive.
/// Threads: one.
class HttpReplyReader {
  public:
    /// A longer header line ends the transfer.
    static constexpr std::size_t kMaxLineBytes = 512;
    /// More header bytes in all end it too.
    static constexpr std::size_t kMaxHeaderBytes = std::size_t{64} << 10;
    /// A body of announced length may be this long: no reply makes us take more, in memory or on
    /// the disk. One that announces more has failed.
    static constexpr std::int64_t kMaxBodyBytes = std::int64_t{256} << 20;
    /// A body of unknown length is cut here.
    static constexpr std::int64_t kUnannouncedBytes = 65000;
    static constexpr std::size_t kMaxFileNameBytes = 255;

    /// `body` is not owned and outlives the reader, which stops behind the headers until `proceed`.
    explicit HttpReplyReader(IBodySink& body)
        : body_(body) {}

    /// Takes bytes as they arrive and says how many: fewer than offered when the reply ended, or
    /// waits for `proceed`.
    std::size_t feed(std::string_view bytes);
    /// The body is wanted; does nothing anywhere but behind the headers.
    void proceed();
    /// The other side closed: a body ends there, headers fail.
    void end();

    TransferState state() const { return state_; }
    /// Nothing more is taken.
    bool isOver() const;
    /// Of the reply; 0 before there was one.
    int status() const { return status_; }
    std::int64_t received() const { return received_; }
    /// Bytes of the body, announced or the limit. 0 before the headers are done.
    std::int64_t total() const { return total_; }
    /// True when the body may be shorter than what the server meant to send: it closed before the
    /// announced length, or the limit of an unannounced one was reached.
    bool isCutOff() const;
    /// The body is packed or parted in a way that is not undone here.
    bool isEncoded() const { return encoded_; }
    /// What the server would call the file; as it was sent, so never a path to write to.
    const std::string& fileName() const { return fileName_; }

  private:
    void takeHeaderByte(char byte);
    void takeLine();
    void takeStatus(std::string_view word);
    void takeLength(std::string_view word);
    void headersEnded();
    std::size_t takeBody(std::string_view bytes);
    void fail() { state_ = TransferState::kFailed; }

    IBodySink& body_;
    TransferState state_ = TransferState::kReadingHeaders;
    std::string line_;
    std::size_t headerBytes_ = 0;
    int status_ = 0;
    std::int64_t announced_ = -1;
    std::int64_t total_ = 0;
    std::int64_t received_ = 0;
    bool encoded_ = false;
    std::string fileName_;
};

} // namespace Dorna

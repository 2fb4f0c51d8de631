#include "online/SimpleHTTPDownloader.h"

#include "PartialFile.h"
#include "Socket.h"
#include "core/PersistentThread.h"
#include "online/Base64.h"

#include <array>

namespace Dorna {

namespace {
using namespace std::chrono_literals;

constexpr auto kConnectTime = 10s;
constexpr auto kSendTime = 10s;
constexpr auto kHeaderTime = 30s;
constexpr auto kSilence = 20s;
constexpr auto kWholeTransfer = 1h;
constexpr auto kPollInterval = 20ms; // of the thread that waits
constexpr std::size_t kReceiveBytes = std::size_t{16} << 10;

class MemoryBody final : public IBodySink {
  public:
    explicit MemoryBody(std::string& data)
        : data_(data) {}
    bool write(std::string_view bytes) override {
        if (bytes.size() > CSimpleHTTPDownloader::kMaxBytesInMemory - data_.size()) return false;
        data_ += bytes;
        return true;
    }

  private:
    std::string& data_;
};

float fractionOf(std::int64_t received, std::int64_t total) {
    const double percent = static_cast<double>(received) / (static_cast<double>(total) * 0.01);
    return static_cast<float>(percent / 100.0);
}
} // namespace

std::string requestText(const WebAddress& from, const std::string& authorization) {
    if (from.host.empty() || from.host.size() > CSimpleHTTPDownloader::kMaxHostBytes ||
        from.path.size() > CSimpleHTTPDownloader::kMaxPathBytes ||
        hasControlCharacters(from.host) || hasControlCharacters(from.path))
        return {};
    std::string text = "GET /";
    for (const char c : from.path)
        if (c == ' ')
            text += "%20";
        else
            text += c;
    text += " HTTP/1.1\nHost: " + from.host + "\n";
    if (!authorization.empty()) text += "Authorization: Basic " + authorization + "\n";
    return text + "\r\n";
}

CSimpleHTTPDownloader::~CSimpleHTTPDownloader() { stop(); }

void CSimpleHTTPDownloader::stop() {
    stopping_ = true;
    ended_ = true;
}

void CSimpleHTTPDownloader::setAuthorization(const std::string& user, const std::string& password) {
    authorization_ =
        user.empty() && password.empty() ? std::string() : encodeBase64(user + ":" + password);
}

FetchResult
CSimpleHTTPDownloader::Fetch(const WebAddress& from, std::string& data, const Callback& callback) {
    data.clear();
    MemoryBody body(data);
    const FetchResult result = transfer(from, body, callback);
    if (result != FetchResult::kDone) data.clear();
    return result;
}

FetchResult CSimpleHTTPDownloader::FetchToFile(const WebAddress& from,
                                               const std::filesystem::path& target,
                                               std::filesystem::path& written,
                                               const Callback& callback) {
    written.clear();
    PartialFile file(target);
    if (!file.isOpen()) return FetchResult::kNotWritten;
    const FetchResult result = transfer(from, file, callback);
    if (file.hasFailed()) return FetchResult::kNotWritten;
    if (result != FetchResult::kDone) return result;
    if (isCutOff() || isEncoded()) return FetchResult::kFailed;
    written = file.finish();
    return written.empty() ? FetchResult::kNotWritten : FetchResult::kDone;
}

// ---- the caller's thread

FetchResult
CSimpleHTTPDownloader::transfer(const WebAddress& from, IBodySink& body, const Callback& callback) {
    if (!start(from, body)) return FetchResult::kFailed;
    const bool heard = wait(callback);
    worker_.join();
    if (state_ == TransferState::kNoContent) return FetchResult::kNoContent;
    if (!heard || state_ != TransferState::kComplete) return FetchResult::kFailed;
    if (callback) callback(TransferEvent::kFinished, 1.0F);
    return FetchResult::kDone;
}

bool CSimpleHTTPDownloader::start(const WebAddress& from, IBodySink& body) {
    state_ = TransferState::kIdle;
    received_ = 0;
    total_ = 0;
    status_ = 0;
    cutOff_ = false;
    encoded_ = false;
    from_ = from;
    body_ = &body;
    continue_ = true;
    ended_ = false;
    if (stopping_) { // asked after `ended_` was cleared: a stop in between is not lost
        state_ = TransferState::kFailed;
        return false;
    }
    working_ = true;
    state_ = TransferState::kStarted;
    worker_ = Core::Threads::createThread(
        [](void* self) { static_cast<CSimpleHTTPDownloader*>(self)->work(); }, this, 0);
    if (worker_.joinable()) return true;
    working_ = false;
    state_ = TransferState::kFailed;
    return false;
}

/// False when the callback ended it.
bool CSimpleHTTPDownloader::wait(const Callback& callback) {
    while (working_) {
        if (callback) {
            if (callback(TransferEvent::kQueryStop, 0.0F) == 1) {
                ended_ = true;
                return false;
            }
            if (const std::int64_t total = total_; total > 0)
                callback(TransferEvent::kProgress, fractionOf(received_, total));
        }
        std::this_thread::sleep_for(kPollInterval);
    }
    return true;
}

// ---- the worker's thread

void CSimpleHTTPDownloader::work() noexcept {
    try {
        run();
    } catch (const std::exception&) { // no memory for the body
        state_ = TransferState::kFailed;
    }
    continue_ = false;
    working_ = false;
}

void CSimpleHTTPDownloader::run() {
    const std::string request = requestText(from_, authorization_);
    const WaitLimit limit(ended_, kWholeTransfer);
    Socket socket;
    const bool done = !request.empty() &&
                      socket.connect(from_.host, from_.port, limit.within(kConnectTime)) &&
                      socket.send(request, limit.within(kSendTime)) && readReply(socket, limit);
    if (!done) state_ = TransferState::kFailed;
}

/// False when the connection failed, or the transfer was ended.
bool CSimpleHTTPDownloader::readReply(Socket& socket, const WaitLimit& limit) {
    const WaitLimit headerLimit = limit.within(kHeaderTime);
    HttpReplyReader reader(*body_);
    publish(reader);
    std::array<char, kReceiveBytes> buffer;
    while (!reader.isOver()) {
        const bool inHeaders = reader.state() == TransferState::kReadingHeaders;
        const std::ptrdiff_t count =
            socket.receive(buffer, inHeaders ? headerLimit : limit.within(kSilence));
        if (count < 0) return false;
        if (count == 0) reader.end();
        std::string_view bytes(buffer.data(), static_cast<std::size_t>(count));
        bytes.remove_prefix(reader.feed(bytes));
        if (reader.state() == TransferState::kHeadersDone) {
            publish(reader);
            if (!waitForContinue(limit)) return false;
            reader.proceed();
            reader.feed(bytes);
        }
        publish(reader);
    }
    return true;
}

/// Behind the headers, until the caller wants the body.
bool CSimpleHTTPDownloader::waitForContinue(const WaitLimit& limit) const {
    while (!continue_ && !limit.isOver())
        std::this_thread::sleep_for(kPollInterval);
    return !limit.isOver();
}

void CSimpleHTTPDownloader::publish(const HttpReplyReader& reader) {
    status_ = reader.status();
    total_ = reader.total();
    received_ = reader.received();
    cutOff_ = reader.isCutOff();
    encoded_ = reader.isEncoded();
    state_ = reader.state();
}

} // namespace Dorna

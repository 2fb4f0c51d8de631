// The downloader against a server that does not mean well.
#include "FileFixture.h"
#include "LoopbackServer.h"
#include "online/SimpleHTTPDownloader.h"

#include <gmock/gmock.h>

#include <sys/resource.h>

#include <csignal>

namespace Dorna {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

const std::string kOk = "HTTP/1.1 200 OK\r\n";
const std::string kTen = kOk + "Content-Length: 10\r\n\r\n0123456789";

std::size_t openDescriptors() {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

/// The servers' ends of connections are this program's too, and close a moment later.
void expectDescriptors(std::size_t expected) {
    for (int i = 0; i < 100 && openDescriptors() > expected; ++i)
        std::this_thread::sleep_for(10ms);
    EXPECT_EQ(openDescriptors(), expected);
}

class DownloaderThread : public FileTest {
  protected:
    static WebAddress at(const LoopbackServer& server, std::string path = "file") {
        return {"127.0.0.1", server.port(), std::move(path)};
    }
    FetchResult fetch(const std::string& reply) {
        const LoopbackServer server(reply);
        return downloader.Fetch(at(server), data, {});
    }
    FetchResult fetchToFile(const std::string& reply) {
        const LoopbackServer server(reply);
        return downloader.FetchToFile(at(server), folder / "home/a.tar.gz", written, {});
    }

    CSimpleHTTPDownloader downloader;
    std::string data;
    fs::path written;
};

TEST_F(DownloaderThread, SendsItsRequestAndTellsHowFarItIs) {
    LoopbackServer server([](Connection& client) {
        client.send(kTen.substr(0, kTen.size() - 5));
        std::this_thread::sleep_for(200ms);
        client.send("56789");
    });
    std::vector<float> progress;
    int finished = 0;
    const auto callback = [&](TransferEvent event, float value) {
        if (event == TransferEvent::kProgress) progress.push_back(value);
        if (event == TransferEvent::kFinished && value == 1.0F) ++finished;
        return 0;
    };
    EXPECT_EQ(downloader.Fetch(at(server, "a b?c=d e"), data, callback), FetchResult::kDone);
    EXPECT_EQ(data, "0123456789");
    EXPECT_EQ(finished, 1);
    EXPECT_THAT(progress, testing::Contains(0.5F));
    EXPECT_EQ(downloader.state(), TransferState::kComplete);
    downloader.setAuthorization("user", "secret");
    downloader.Fetch(at(server), data, {});
    EXPECT_THAT(server.requests(),
                testing::ElementsAre("GET /a%20b?c=d%20e HTTP/1.1\nHost: 127.0.0.1\n\r\n",
                                     "GET /file HTTP/1.1\nHost: 127.0.0.1\n"
                                     "Authorization: Basic dXNlcjpzZWNyZXQ=\n\r\n"));
    EXPECT_EQ(requestText({"a", 80, "x\r\nEvil: y"}, ""), "");
    EXPECT_EQ(requestText({"a", 80, std::string(2048, 'x')}, ""), "");
}

TEST_F(DownloaderThread, ABadReplyIsAFailureAndNoMore) {
    const std::size_t before = openDescriptors();
    for (const std::string& reply :
         {std::string(), kOk + "Content-Le", "HTTP/1.1 302 Found\r\nLocation: /\r\n\r\n" + kTen}) {
        EXPECT_EQ(fetch(reply), FetchResult::kFailed) << reply.substr(0, 60);
        EXPECT_EQ(data, "");
    }
    EXPECT_EQ(fetch("HTTP/1.1 204 No Content\r\n\r\n"), FetchResult::kNoContent);
    int closedPort = 0;
    {
        const LoopbackServer gone{std::string()};
        closedPort = gone.port();
    }
    EXPECT_EQ(downloader.Fetch({"127.0.0.1", closedPort, ""}, data, {}), FetchResult::kFailed);
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(fetch(kTen), FetchResult::kDone) << "and the next one works";
}

TEST_F(DownloaderThread, WhatEndsEarlyOrNeverIsCutOff) {
    EXPECT_EQ(fetch(kOk + "\r\nshort"), FetchResult::kDone);
    EXPECT_FALSE(downloader.isCutOff());
    EXPECT_EQ(fetch(kTen.substr(0, kTen.size() - 1)), FetchResult::kDone);
    EXPECT_TRUE(downloader.isCutOff());
    const LoopbackServer endless([](Connection& client) {
        client.send(kOk + "\r\n");
        while (client.send(std::string(10'000, 'x'))) {
        }
    });
    EXPECT_EQ(downloader.Fetch(at(endless), data, {}), FetchResult::kDone);
    EXPECT_EQ(data, std::string(65000, 'x'));
    EXPECT_TRUE(downloader.isCutOff());
}

TEST_F(DownloaderThread, NamesAreLookedUp) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the C library's resolver thread is unknown to the thread sanitizer";
#endif
    const LoopbackServer server(kTen);
    const std::size_t before = openDescriptors();
    EXPECT_EQ(downloader.Fetch({"localhost", server.port(), ""}, data, {}), FetchResult::kDone);
    EXPECT_EQ(data, "0123456789");
    // Where the name has two addresses, the server only listens at one.
    expectDescriptors(before);
}

TEST_F(DownloaderThread, AFileIsThereAsAWholeOrNotAtAll) {
    for (const std::string& reply :
         {kTen.substr(0, kTen.size() - 1), kOk + "Content-", kOk + "\r\n" + std::string(65000, 'x'),
          kOk + "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n0\r\n\r\n"}) {
        EXPECT_EQ(fetchToFile(reply), FetchResult::kFailed) << reply.substr(0, 60);
        EXPECT_EQ(entriesIn(folder / "home"), 0);
    }
    for (const char* name : {"a.tar.gz", "a (2).tar.gz", "a (3).tar.gz"}) {
        EXPECT_EQ(fetchToFile(kTen), FetchResult::kDone);
        EXPECT_EQ(written, folder / "home" / name);
        EXPECT_EQ(read(written), "0123456789");
    }
    EXPECT_EQ(entriesIn(folder / "home"), 3);
    const LoopbackServer server(kTen);
    EXPECT_EQ(downloader.FetchToFile(at(server), folder / "none/a", written, {}),
              FetchResult::kNotWritten);
    // A file that may not grow any more, as on a full disk.
    rlimit usual{};
    getrlimit(RLIMIT_FSIZE, &usual);
    const rlimit small{8, usual.rlim_max};
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_EQ(fetchToFile(kTen), FetchResult::kNotWritten);
    setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(entriesIn(folder / "home"), 3);
}

TEST_F(DownloaderThread, TheBodyWaitsUntilItIsWanted) {
    const LoopbackServer server([](Connection& client) {
        std::this_thread::sleep_for(200ms);
        client.send(kTen);
    });
    int polls = 0; // behind the headers
    const auto callback = [&](TransferEvent event, float) {
        if (event != TransferEvent::kQueryStop) return 0;
        if (downloader.state() != TransferState::kHeadersDone) {
            if (polls == 0) downloader.setContinue(false);
            return 0;
        }
        EXPECT_EQ(downloader.received(), 0);
        if (++polls == 5) downloader.setContinue(true);
        return 0;
    };
    EXPECT_EQ(downloader.Fetch(at(server), data, callback), FetchResult::kDone);
    EXPECT_EQ(data, "0123456789");
    EXPECT_GE(polls, 5);
}

/// Takes no connection: its queue is full, so the client's knocking is not answered.
class FullHouse {
  public:
    FullHouse()
        : handle_(::socket(AF_INET, SOCK_STREAM, 0)) {
        address_.sin_family = AF_INET;
        address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address_;
        auto* const plain = reinterpret_cast<sockaddr*>(&address_);
        if (::bind(handle_, plain, size) != 0 || ::listen(handle_, 0) != 0) std::abort();
        getsockname(handle_, plain, &size);
        for (int& guest : guests_) {
            guest = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
            (void)::connect(guest, plain, size);
        }
    }
    ~FullHouse() {
        for (const int guest : guests_)
            ::close(guest);
        ::close(handle_);
    }
    int port() const { return ntohs(address_.sin_port); }

  private:
    int handle_;
    sockaddr_in address_{};
    int guests_[4] = {};
};

TEST_F(DownloaderThread, StopsWithinASecondWhateverItIsWaitingFor) {
    const FullHouse full;
    const LoopbackServer stalled([](Connection& client) {
        client.send(kTen.substr(0, kTen.size() - 3));
        client.waitForTheEnd();
    });
    const LoopbackServer flood([](Connection& client) {
        client.send(kOk + "Content-Length: 268435456\r\n\r\n");
        while (client.send(std::string(100, 'x')))
            std::this_thread::sleep_for(1ms);
    });
    const std::size_t before = openDescriptors();
    for (const int port : {full.port(), stalled.port(), flood.port()})
        for (const bool byCallback : {false, true}) {
            CSimpleHTTPDownloader stopped;
            const Clock::time_point begin = Clock::now();
            std::thread other([&] {
                std::this_thread::sleep_for(150ms);
                if (!byCallback) stopped.stop();
            });
            const auto callback = [&](TransferEvent event, float) {
                if (!byCallback || event != TransferEvent::kQueryStop) return 0;
                return Clock::now() > begin + 150ms ? 1 : 0;
            };
            const FetchResult result =
                stopped.FetchToFile({"127.0.0.1", port, "x"}, folder / "home/x", written, callback);
            other.join();
            EXPECT_LT(Clock::now(), begin + 150ms + 1s) << "port " << port;
            EXPECT_EQ(result, FetchResult::kFailed);
            EXPECT_EQ(stopped.state(), TransferState::kFailed);
        }
    expectDescriptors(before);
    EXPECT_EQ(entriesIn(folder / "home"), 0);
}

} // namespace
} // namespace Dorna

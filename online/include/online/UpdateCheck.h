// Asks the maker's server now and then whether there is a newer version, and fetches it on a yes.
#pragma once

#include "online/SessionListener.h"
#include "online/SimpleHTTPDownloader.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <thread>

namespace Dorna {

/// The server this build asks, as "host" or "host:port"; empty when it asks none.
const char* updateServer();

/// The time of day and a clock that never goes back; tests set both.
struct UpdateClock {
    std::function<std::int64_t()> secondsSince1970;
    std::function<std::uint64_t()> milliseconds;
};
UpdateClock systemUpdateClock();

/// One per open editor. Of all in a process one does the work: the first that ticks, until it is
/// destroyed. A check goes out at most once in 22 hours, the time of the last one is a setting.
/// Without a server there is no thread and no packet.
/// Threads: the GUI thread. Work is done on a thread of its own and its outcome told by `Tick`.
///          The destructor stops that thread and waits for it: far less than a second.
class UpdateCheck {
  public:
    enum State : int {
        kFinished = -1, ///< ticks do nothing
        kWaiting = 0,   ///< for the first second to pass
        kQueryDue = 1,
        kUpdateFound = 2, ///< the user is to be asked
        kWorking = 3,     ///< or the question is open
    };
    static constexpr std::int64_t kInterval = 79200; // seconds: 22 hours

    /// `server` as updateServer gives it.
    explicit UpdateCheck(const std::string& server, UpdateClock clock = systemUpdateClock());
    ~UpdateCheck();
    UpdateCheck(const UpdateCheck&) = delete;
    UpdateCheck& operator=(const UpdateCheck&) = delete;

    /// `webId` is what the server knows the product by. Reads the cached page.
    void
    setUp(const std::string& productName, const std::string& webId, std::uint32_t versionNumber);
    /// Of the host's kind, "VST2" and the like.
    void SetInterfaceName(const std::string& name) { interfaceName_ = name; }
    /// Not owned; may be null.
    void setListener(IDornaSessionListener* listener) { listener_ = listener; }

    /// Does the next step, from the editor's idle. `parent` asks the user; without one an update
    /// that was found waits.
    void Tick(IUpdateQuestion* parent);
    /// Asks the server whenever the last time was. False when another editor of this process has
    /// the check, or there is no server; true too while work is already under way.
    bool checkNow();

    bool hasServer() const { return !server_.host.empty(); }
    State state() const { return state_; }
    bool isDownloading() const { return state_ == kWorking && job_ == Job::kDownload; }
    /// The product's page as the server named it, from the cache at first; may be empty.
    const std::string& pageUrl() const { return pageUrl_; }
    /// Of the newer version, empty before one was found.
    const std::string& downloadUrl() const { return downloadUrl_; }
    /// What to show in a browser: the download, else the page, else the server itself. Always a
    /// web address, or empty.
    std::string addressForBrowser() const;

  private:
    enum class Job { kQuery, kDownload };
    /// What the worker leaves for `Tick`.
    struct Outcome {
        bool answered = false;
        bool updateExists = false;
        std::string pageUrl;
        std::string downloadUrl;
        std::filesystem::path file;
    };

    bool takeOwnership();
    bool isCheckDue() const;
    void storeCheckTime() const;
    void start(Job job);
    void work() noexcept;
    void query();
    void download();
    CSimpleHTTPDownloader::Callback transferEvents();
    void finishWork();
    void ask(IUpdateQuestion& parent);

    const int instance_;
    const WebAddress server_;
    const UpdateClock clock_;
    std::string productName_;
    std::string webId_;
    std::uint32_t versionNumber_ = 0;
    std::string interfaceName_;
    std::string pageUrl_;
    std::string downloadUrl_;
    std::optional<std::uint64_t> firstTick_; // ms
    State state_ = kWaiting;
    IDornaSessionListener* listener_ = nullptr;

    // The worker's while it runs, read by `Tick` when it is done.
    Job job_ = Job::kQuery;
    Outcome outcome_;
    std::atomic<bool> workDone_{false};
    std::atomic<float> progress_{0.0F};
    CSimpleHTTPDownloader downloader_;
    std::thread worker_;
};

} // namespace Dorna

#include "online/UpdateCheck.h"

#include "core/Paths.h"
#include "core/PersistentThread.h"
#include "core/Settings.h"
#include "online/DownloadName.h"
#include "online/UpdateQuery.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstring>

namespace Dorna {

namespace {
constexpr std::uint64_t kFirstWaitMs = 1000; // a window that opens has better things to do
constexpr int kNobody = -1;
constexpr const char* kLastCheck = "LastUpdateCheck";

std::atomic<int> nextInstance{0};
std::atomic<int> owner{kNobody};

std::string settingsOf(const std::string& productName) {
    std::array<char, 256> path{};
    Core::makeSettingsPath(path.data(), path.size(), "QUILLMERE", productName.c_str());
    return path.data();
}
} // namespace

const char* updateServer() { return ORVEL_UPDATE_SERVER; }

UpdateClock systemUpdateClock() {
    using namespace std::chrono;
    return {[] {
                return std::int64_t{
                    duration_cast<seconds>(system_clock::now().time_since_epoch()).count()};
            },
            [] {
                const auto now = steady_clock::now().time_since_epoch();
                return static_cast<std::uint64_t>(duration_cast<milliseconds>(now).count());
            }};
}

UpdateCheck::UpdateCheck(const std::string& server, UpdateClock clock)
    : instance_(nextInstance++)
    , server_(parseWebAddress(server))
    , clock_(std::move(clock)) {}

UpdateCheck::~UpdateCheck() {
    downloader_.stop();
    if (worker_.joinable()) worker_.join();
    int mine = instance_;
    owner.compare_exchange_strong(mine, kNobody);
}

void UpdateCheck::setUp(const std::string& productName,
                        const std::string& webId,
                        std::uint32_t versionNumber) {
    productName_ = productName;
    webId_ = webId;
    versionNumber_ = versionNumber;
    pageUrl_ = readCachedPage(productName_);
}

std::string UpdateCheck::addressForBrowser() const {
    for (const std::string& known : {downloadUrl_, pageUrl_})
        if (std::string address = browserAddress(known); !address.empty()) return address;
    if (!hasServer()) return {};
    std::string address = server_.host;
    if (server_.port != 80) address += ':' + std::to_string(server_.port);
    return browserAddress(address + '/');
}

bool UpdateCheck::takeOwnership() {
    int current = kNobody;
    return owner.compare_exchange_strong(current, instance_) || current == instance_;
}

// ---- the time of the last check

// A time that is still to come was written by a wrong clock, and says nothing.
bool UpdateCheck::isCheckDue() const {
    std::array<char, Core::kSettingBufferSize> text{};
    Core::readSetting(settingsOf(productName_).c_str(), kLastCheck, text.data(), nullptr);
    std::uint64_t last = 0;
    std::from_chars(text.data(), text.data() + std::strlen(text.data()), last);
    const auto now = static_cast<std::uint64_t>(clock_.secondsSince1970());
    return last > now || now - last > static_cast<std::uint64_t>(kInterval);
}

void UpdateCheck::storeCheckTime() const {
    const std::string now = std::to_string(clock_.secondsSince1970());
    Core::writeSetting(settingsOf(productName_).c_str(), kLastCheck, now.c_str());
}

// ---- GUI thread

void UpdateCheck::Tick(IUpdateQuestion* parent) {
    if (!hasServer() || state_ == kFinished || !takeOwnership()) return;
    const std::uint64_t now = clock_.milliseconds();
    if (!firstTick_) firstTick_ = now;
    if (now - *firstTick_ < kFirstWaitMs) return;
    switch (state_) {
    case kWaiting:
        state_ = isCheckDue() ? kQueryDue : kFinished;
        break;
    case kQueryDue:
        start(Job::kQuery);
        break;
    case kUpdateFound:
        if (parent != nullptr) ask(*parent);
        break;
    case kWorking:
        if (workDone_)
            finishWork();
        else if (worker_.joinable() && job_ == Job::kDownload && listener_ != nullptr)
            listener_->downloadProgress(progress_);
        break;
    case kFinished:
        break;
    }
}

bool UpdateCheck::checkNow() {
    if (!hasServer() || !takeOwnership()) return false;
    if (state_ == kWaiting || state_ == kFinished) state_ = kQueryDue;
    return true;
}

void UpdateCheck::ask(IUpdateQuestion& parent) {
    const std::string text =
        "A update for " + productName_ + " is available, should it be downloaded to your desktop?";
    const bool shown = parent.askYesNo("Update Available", text, [this](bool yes) {
        if (yes) return start(Job::kDownload);
        storeCheckTime();
        state_ = kFinished;
    });
    if (shown) state_ = kWorking;
}

void UpdateCheck::start(Job job) {
    state_ = kWorking;
    job_ = job;
    outcome_ = {};
    workDone_ = false;
    progress_ = 0.0F;
    worker_ = Core::Threads::createThread(
        [](void* self) { static_cast<UpdateCheck*>(self)->work(); }, this, 0);
    if (!worker_.joinable()) workDone_ = true; // told as a failure by the next tick
}

void UpdateCheck::finishWork() {
    if (worker_.joinable()) worker_.join();
    workDone_ = false;
    if (job_ == Job::kDownload) {
        state_ = kFinished;
        if (listener_ != nullptr) listener_->downloadEnded(outcome_.file);
        return;
    }
    if (!outcome_.pageUrl.empty()) pageUrl_ = outcome_.pageUrl;
    downloadUrl_ = outcome_.downloadUrl;
    // What cannot be fetched here (nothing named, or only for a browser) is not offered.
    const bool canFetch = !parseWebAddress(downloadUrl_).host.empty();
    state_ = outcome_.updateExists && canFetch ? kUpdateFound : kFinished;
    using Ended = IDornaSessionListener::CheckOutcome;
    if (listener_ != nullptr)
        listener_->checkEnded(!outcome_.answered      ? Ended::kNoAnswer
                              : outcome_.updateExists ? Ended::kUpdateExists
                                                      : Ended::kUpToDate);
}

// ---- worker

void UpdateCheck::work() noexcept {
    try {
        if (job_ == Job::kQuery)
            query();
        else
            download();
    } catch (const std::exception&) { // no memory, a path the system refuses: as no answer
        outcome_ = {};
    }
    workDone_ = true;
}

CSimpleHTTPDownloader::Callback UpdateCheck::transferEvents() {
    return [this](TransferEvent event, float value) {
        if (event == TransferEvent::kProgress) progress_ = value;
        if (event == TransferEvent::kFinished) storeCheckTime();
        return 0; // the destructor stops the downloader itself
    };
}

void UpdateCheck::query() {
    WebAddress from = server_;
    from.path = updateQueryPath(webId_, versionNumber_, interfaceName_);
    std::string text;
    const FetchResult result = downloader_.Fetch(from, text, transferEvents());
    outcome_.answered = (result == FetchResult::kDone && !downloader_.isCutOff()) ||
                        result == FetchResult::kNoContent;
    if (!outcome_.answered) return;
    if (findReplyValue(text, "PRODUCT_PAGE", outcome_.pageUrl))
        writeCachedPage(productName_, outcome_.pageUrl);
    std::string unused;
    outcome_.updateExists = findReplyValue(text, "UPDATE", unused);
    if (outcome_.updateExists) findReplyValue(text, "URL", outcome_.downloadUrl);
}

void UpdateCheck::download() {
    std::array<char, Core::kPathBufferSize> desktop{};
    const WebAddress from = parseWebAddress(downloadUrl_);
    if (from.host.empty() || !Core::getSpecialFolder(Core::kDesktopFolder, desktop.data())) return;
    const std::filesystem::path target =
        std::filesystem::path(desktop.data()) / fileNameOfAddress(from.path);
    downloader_.FetchToFile(from, target, outcome_.file, transferEvents());
}

} // namespace Dorna

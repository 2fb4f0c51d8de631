#include "NameLookup.h"

#include <ctime>
#include <mutex>
#include <utility>
#include <vector>

namespace Dorna {

namespace {
/// All that the C library works on. Stays where it is until the library has done with it.
struct Lookup {
    Lookup(std::string hostName, int port)
        : host(std::move(hostName))
        , service(std::to_string(port)) {
        hints.ai_family = AF_UNSPEC;
        hints.ai_socktype = SOCK_STREAM;
        control.ar_name = host.c_str();
        control.ar_service = service.c_str();
        control.ar_request = &hints;
    }
    ~Lookup() { const AddressList unused(control.ar_result); }
    Lookup(const Lookup&) = delete;
    Lookup& operator=(const Lookup&) = delete;
    bool isRunning() { return gai_error(&control) == EAI_INPROGRESS; }
    AddressList takeResult() { return AddressList(std::exchange(control.ar_result, nullptr)); }

    std::string host;
    std::string service;
    addrinfo hints{};
    gaicb control{};
};

/// Lookups nobody waits for any more. Never destroyed: one may outlast the plug-in.
class Abandoned {
  public:
    static Abandoned& instance() {
        static auto* const abandoned = new Abandoned;
        return *abandoned;
    }
    void add(std::unique_ptr<Lookup> lookup) {
        const std::lock_guard guard(lock_);
        lookups_.push_back(std::move(lookup));
    }
    void tidyUp() {
        const std::lock_guard guard(lock_);
        std::erase_if(lookups_, [](const auto& lookup) { return !lookup->isRunning(); });
    }

  private:
    std::mutex lock_;
    std::vector<std::unique_ptr<Lookup>> lookups_;
};

/// An address in digits needs nobody to be asked.
AddressList numericAddress(const Lookup& lookup) {
    addrinfo hints = lookup.hints;
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    addrinfo* list = nullptr;
    if (getaddrinfo(lookup.control.ar_name, lookup.control.ar_service, &hints, &list) != 0)
        return {};
    return AddressList(list);
}

void sleepOn(gaicb& control, std::chrono::milliseconds time) {
    const gaicb* const list[] = {&control};
    timespec timeout{};
    timeout.tv_nsec = time.count() * 1'000'000; // a slice is far below a second
    (void)gai_suspend(list, 1, &timeout);
}
} // namespace

AddressList lookUp(const std::string& host, int port, const WaitLimit& limit) {
    Abandoned::instance().tidyUp();
    auto lookup = std::make_unique<Lookup>(host, port);
    if (AddressList known = numericAddress(*lookup)) return known;

    gaicb* list[] = {&lookup->control};
    if (getaddrinfo_a(GAI_NOWAIT, list, 1, nullptr) != 0) return {};
    while (lookup->isRunning() && !limit.isOver())
        sleepOn(lookup->control, limit.slice());
    if (lookup->isRunning() && gai_cancel(&lookup->control) == EAI_NOTCANCELED) {
        Abandoned::instance().add(std::move(lookup));
        return {};
    }
    return gai_error(&lookup->control) == 0 ? lookup->takeResult() : nullptr;
}

} // namespace Dorna

// Finds the addresses of a host without ever being stuck in the resolver.
#pragma once

#include "WaitLimit.h"

#include <memory>
#include <string>

#include <netdb.h>

namespace Dorna {

struct AddressListDeleter {
    void operator()(addrinfo* list) const { freeaddrinfo(list); }
};
using AddressList = std::unique_ptr<addrinfo, AddressListDeleter>;

/// Null when there is none, or the limit was over first. A lookup that cannot be called back then
/// is left to the C library, which runs it on a thread of its own and in its own code; the next
/// lookup tidies up after it. So nothing of ours still runs when the plug-in is unloaded.
AddressList lookUp(const std::string& host, int port, const WaitLimit& limit);

} // namespace Dorna

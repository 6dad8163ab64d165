#include "directory/ldap/LdapAddresses.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <thread>

#include <netdb.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

// What one look-up found. It lives until both the one who waits and the resolver have done with it.
struct LookUp {
    LookUp()
        : done(::eventfd(0, EFD_CLOEXEC))
    {
    }
    ~LookUp() { ::close(done); }
    LookUp(const LookUp&) = delete;
    LookUp& operator=(const LookUp&) = delete;

    const int done; // readable when it is
    std::mutex mutex;
    LdapAddresses result;
};

LdapAddresses resolved(const std::string& host, const std::string& port, int flags)
{
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = flags | AI_NUMERICSERV;
    addrinfo* list = nullptr;
    LdapAddresses result;
    if (const int failed = ::getaddrinfo(host.c_str(), port.c_str(), &hints, &list); failed != 0) {
        result.reason = ::gai_strerror(failed);
        return result;
    }
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> freed(list, ::freeaddrinfo);
    for (const auto* info = list; info; info = info->ai_next) {
        LdapAddress address;
        std::memcpy(&address.bytes, info->ai_addr, info->ai_addrlen);
        address.length = info->ai_addrlen;
        result.found.push_back(address);
    }
    return result;
}

} // namespace

std::string LdapAddress::text() const
{
    char name[NI_MAXHOST] = "";
    ::getnameinfo(reinterpret_cast<const sockaddr*>(&bytes), length, name, sizeof name, nullptr, 0,
                  NI_NUMERICHOST);
    return name;
}

LdapAddresses addressesOf(const std::string& host, int port, const LdapWatchdog& watchdog,
                          LdapWatchdog::Deadline deadline)
{
    const auto service = std::to_string(port);
    if (auto numeric = resolved(host, service, AI_NUMERICHOST); !numeric.found.empty())
        return numeric;

    const auto lookUp = std::make_shared<LookUp>();
    std::thread([lookUp, host, service] {
        auto result = resolved(host, service, 0);
        std::lock_guard lock(lookUp->mutex);
        lookUp->result = std::move(result);
        const std::uint64_t one = 1;
        static_cast<void>(::write(lookUp->done, &one, sizeof one) == sizeof one);
    }).detach();

    const auto end = watchdog.waitFor(lookUp->done, POLLIN, deadline);
    if (end != LdapWatchdog::Wait::Ready)
        return {{}, end, ""};
    std::lock_guard lock(lookUp->mutex);
    return std::move(lookUp->result);
}

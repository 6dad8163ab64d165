#include "KnownHost.h"

#include <map>
#include <mutex>

#include <dlfcn.h>
#include <netdb.h>

namespace {

std::mutex mutex;
std::map<std::string, std::vector<std::string>> hosts;

std::vector<std::string> addressesOf(const std::string& name)
{
    const std::lock_guard lock(mutex);
    const auto known = hosts.find(name);
    return known == hosts.end() ? std::vector<std::string>() : known->second;
}

} // namespace

// The program's own comes before the C library's.
extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints, addrinfo** list)
{
    const auto real = reinterpret_cast<decltype(&::getaddrinfo)>(::dlsym(RTLD_NEXT, "getaddrinfo"));
    const auto known = addressesOf(name ? name : "");
    if (known.empty() || (hints && (hints->ai_flags & AI_NUMERICHOST) != 0))
        return real(name, service, hints, list);
    // freeaddrinfo() goes along the whole chain.
    *list = nullptr;
    for (auto** last = list; const auto& address : known) {
        if (const int failed = real(address.c_str(), service, hints, last); failed != 0)
            return failed;
        while (*last)
            last = &(*last)->ai_next;
    }
    return 0;
}

KnownHost::KnownHost(std::string name, std::vector<std::string> addresses)
    : m_name(std::move(name))
{
    const std::lock_guard lock(mutex);
    hosts[m_name] = std::move(addresses);
}

KnownHost::~KnownHost()
{
    const std::lock_guard lock(mutex);
    hosts.erase(m_name);
}

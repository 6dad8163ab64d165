#include "app/DemoLine.h"

#include "app/DemoServer.h"
#include "calls/sip/SipUri.h"
#include "system/Configuration.h"

namespace {

constexpr char nPROXY[] = "sip-outbound-proxy";

bool isOfTheDemo(const std::string& proxy)
{
    const auto host = sipHostOf(proxy);
    return host && host->isThisMachine();
}

} // namespace

Result<std::unique_ptr<ChildProgram>> startDemoLine(const Profile& profile, const std::filesystem::path& demo)
{
    const Configuration configuration(profile.configFile());
    const auto proxy = configuration.text(nPROXY);
    const bool hasOwn = !configuration.text("sip-server").empty() || !(proxy.empty() || isOfTheDemo(proxy));
    auto stale = isOfTheDemo(proxy) ? std::vector<std::string>{nPROXY} : std::vector<std::string>();
    if (!hasOwn)
        stale.emplace_back("sip-user");
    if (const auto forgotten = forgetDemoServer(profile, stale); !forgotten)
        return forgotten.error();
    if (hasOwn)
        return std::unique_ptr<ChildProgram>();
    return startDemoServer(profile, demo / "line" / "serve");
}

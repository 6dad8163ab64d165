#include "app/Commands.h"

#include <cstdio>

#include "calls/Journal.h"
#include "system/Configuration.h"
#include "web/Token.h"

namespace {

int refuse(const Error& error)
{
    std::fprintf(stderr, "%s\n", error.sentence.c_str());
    return EXIT_REFUSED;
}

// "3 s", or "-" for nothing.
std::string shown(const std::string& value, const std::string& unit)
{
    if (value.empty())
        return "-";
    return unit.empty() ? value : value + " " + unit;
}

} // namespace

int listConfiguration(const Profile& profile)
{
    const Configuration configuration(profile.configFile());
    for (const auto& item : configuration.items()) {
        const auto value = shown(configuration.text(item.name), item.unit);
        const auto byDefault = shown(item.byDefault, item.unit);
        std::printf("%s = %s (default %s; %s)\n    %s\n", item.name.c_str(), value.c_str(), byDefault.c_str(),
                    item.range().c_str(), item.help.c_str());
    }
    for (const auto& refusal : configuration.refused())
        std::fprintf(stderr, "%s\n", refusal.sentence.c_str());
    return configuration.refused().empty() ? EXIT_DONE : EXIT_REFUSED;
}

int setConfiguration(const Profile& profile, const std::string& item, const std::string& value)
{
    if (const auto made = profile.create(); !made)
        return refuse(made.error());
    Configuration configuration(profile.configFile());
    if (const auto written = configuration.set(item, value); !written)
        return refuse(written.error());
    std::printf("%s = %s\n", item.c_str(), value.c_str());
    return EXIT_DONE;
}

int clearCalls(const Profile& profile)
{
    const auto cleared = Journal::clear(profile.data);
    if (!cleared)
        return refuse(cleared.error());
    std::printf("Calls deleted: %d\n", cleared.value());
    return EXIT_DONE;
}

int replaceToken(const Profile& profile)
{
    if (const auto made = profile.create(); !made)
        return refuse(made.error());
    if (const auto renewed = renewToken(profile.data); !renewed)
        return refuse(renewed.error());
    std::printf("Pages that are open know the old token: open the telephone's address anew.\n");
    return EXIT_DONE;
}

#include "app/DemoDirectory.h"

#include "system/Configuration.h"

namespace {

constexpr std::size_t LONGEST_LINE = 8192;

Result<void> set(Configuration& configuration, const std::string& setting)
{
    const auto equals = setting.find('=');
    const auto name = setting.substr(0, equals);
    const auto value = setting.substr(equals + 1);
    return configuration.text(name) == value ? Result<void>() : configuration.set(name, value);
}

} // namespace

Result<std::unique_ptr<ChildProgram>> startDemoDirectory(const Profile& profile,
                                                         const std::filesystem::path& demo)
{
    auto server = ChildProgram::start(
        "/usr/bin/setpriv", {"--pdeathsig", "KILL", demo / "directory" / "serve", profile.data / "directory"},
        ChildProgram::Talk::WeRead);
    if (!server)
        return server;
    Configuration configuration(profile.configFile());
    for (bool answers = false;; answers = true) {
        const auto setting = server.value()->readLine(LONGEST_LINE);
        if (!setting)
            return setting.error();
        if (!setting.value()) {
            if (answers)
                return server;
            const auto ended = server.value()->finish();
            return ended ? Error{ErrorCode::Failed, "The server ended."} : ended.error();
        }
        if (const auto written = set(configuration, *setting.value()); !written)
            return written.error();
    }
}

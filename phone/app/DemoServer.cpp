#include "app/DemoServer.h"

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

Result<std::unique_ptr<ChildProgram>> startDemoServer(const Profile& profile,
                                                      const std::filesystem::path& program,
                                                      const std::vector<std::string>& arguments)
{
    std::vector<std::string> words{"--pdeathsig", "KILL", program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    auto server = ChildProgram::start("/usr/bin/setpriv", words, ChildProgram::Talk::WeRead);
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

Result<void> forgetDemoServer(const Profile& profile, const std::vector<std::string>& items)
{
    Configuration configuration(profile.configFile());
    for (const auto& item : items) {
        if (const auto cleared = set(configuration, item + '='); !cleared)
            return cleared;
    }
    return {};
}

#include "app/DemoPbx.h"

#include "app/DemoServer.h"
#include "system/Configuration.h"

Result<std::unique_ptr<ChildProgram>> startDemoPbx(const Profile& profile, const std::filesystem::path& demo)
{
    // The one of an earlier start is gone.
    Configuration configuration(profile.configFile());
    if (!configuration.text("pbx-server").empty()) {
        if (const auto cleared = configuration.set("pbx-server", ""); !cleared)
            return cleared.error();
    }
    return startDemoServer(profile, demo / "pbx" / "serve");
}

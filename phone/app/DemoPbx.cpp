#include "app/DemoPbx.h"

#include "app/DemoServer.h"

Result<std::unique_ptr<ChildProgram>> startDemoPbx(const Profile& profile, const std::filesystem::path& demo)
{
    if (const auto forgotten = forgetDemoServer(profile, {"pbx-server"}); !forgotten)
        return forgotten.error();
    return startDemoServer(profile, demo / "pbx" / "serve");
}

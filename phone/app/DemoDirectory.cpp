#include "app/DemoDirectory.h"

#include "app/DemoServer.h"

Result<std::unique_ptr<ChildProgram>> startDemoDirectory(const Profile& profile,
                                                         const std::filesystem::path& demo)
{
    return startDemoServer(profile, demo / "directory" / "serve", {profile.data / "directory"});
}

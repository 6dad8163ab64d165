// A server of the demo's own, on a free port of this machine.

#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "app/Profile.h"
#include "directory/ChildProgram.h"

// Starts `program`, which prints settings for the telephone, ITEM=VALUE, and ends its output when it can be
// used. They go into the profile. It ends with what is returned, or with the calling thread, however that
// ends.
Result<std::unique_ptr<ChildProgram>> startDemoServer(const Profile& profile,
                                                      const std::filesystem::path& program,
                                                      const std::vector<std::string>& arguments = {});

// Empties items of the profile that name a server of an earlier start, which is gone.
Result<void> forgetDemoServer(const Profile& profile, const std::vector<std::string>& items);

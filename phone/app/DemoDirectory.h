// The corporate directory of the demo: a server of its own on a free port of this machine.

#pragma once

#include <filesystem>
#include <memory>

#include "app/Profile.h"
#include "directory/ChildProgram.h"

// Starts it with the people in `demo`, keeps what it needs in the profile, and sets the profile's items so
// that the telephone asks it. Waits until it answers: a tenth of a second, at the first start a second.
// It ends with what is returned, or with the calling thread, however that ends.
Result<std::unique_ptr<ChildProgram>> startDemoDirectory(const Profile& profile,
                                                         const std::filesystem::path& demo);

// The PBX of the demo, with a phonebook of its own.

#pragma once

#include <filesystem>
#include <memory>

#include "app/Profile.h"
#include "directory/ChildProgram.h"

// Starts it and sets the profile's items so that the telephone is attached to it, or to none if it cannot be
// started. Waits until it answers: a tenth of a second. It ends with what is returned, or with the calling
// thread, however that ends.
Result<std::unique_ptr<ChildProgram>> startDemoPbx(const Profile& profile, const std::filesystem::path& demo);

// The line of the demo, on which everybody can be called and somebody calls back.

#pragma once

#include <filesystem>
#include <memory>

#include "app/Profile.h"
#include "directory/ChildProgram.h"

// Starts it and sets the profile's items so that the telephone calls over it, or over no line if it cannot be
// started. Null, and nothing is done, where the user has named a line of their own ("sip-server", or a
// "sip-outbound-proxy" that is not on this machine). Waits until it answers: a tenth of a second. It ends
// with what is returned, or with the calling thread, however that ends.
Result<std::unique_ptr<ChildProgram>> startDemoLine(const Profile& profile,
                                                    const std::filesystem::path& demo);

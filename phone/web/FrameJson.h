// Frames as the page reads them.

#pragma once

#include <string>

namespace DisplayAPI {
struct Frame;
}

// One JSON object; its members are those of the frame. Invalid UTF-8 is replaced.
std::string toJson(const DisplayAPI::Frame& frame);

// Frames as the page reads them.

#pragma once

#include <functional>
#include <string>

namespace DisplayAPI {
struct Frame;
}

// The address at which a page finds the picture at `path`; "" when it is gone or is no picture.
using PictureAddress = std::function<std::string(const std::string& path)>;

// One JSON object; its members are those of the frame, with addresses for the paths of pictures.
// Invalid UTF-8 is replaced.
std::string toJson(const DisplayAPI::Frame& frame, const PictureAddress& addressOf);

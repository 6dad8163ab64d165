// A picture: the path of an image file. An empty path is no picture.

#pragma once

#include <string>

#include <framework/Export.h>

namespace DisplayAPI {

class FRAMEWORK_API Image {
public:
    explicit Image(std::string path);
    virtual ~Image();

    const std::string& getPath() const { return m_path; }

private:
    std::string m_path;
};

} // namespace DisplayAPI

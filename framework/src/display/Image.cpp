#include <framework/display/Image.h>

#include <utility>

namespace DisplayAPI {

Image::Image(std::string path)
    : m_path(std::move(path))
{
}

Image::~Image() = default;

} // namespace DisplayAPI

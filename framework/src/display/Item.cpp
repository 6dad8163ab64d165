#include <framework/display/Item.h>

namespace DisplayAPI {

Item::~Item()
{
    expire();
}

} // namespace DisplayAPI

#include <framework/host/DisplayHostIfc.h>

namespace DisplayAPI {

DisplayHostIfc::~DisplayHostIfc() = default;

} // namespace DisplayAPI

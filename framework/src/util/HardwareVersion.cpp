#include <framework/util/HardwareVersion.h>

#include <atomic>

namespace {

std::atomic<int> s_variant{1};

} // namespace

int HardwareVersion::getHWVariant()
{
    return s_variant;
}

void HardwareVersion::setHWVariant(int variant)
{
    s_variant = variant;
}

#include <framework/display/Tracked.h>

#include "UiLock.h"

namespace DisplayAPI {

Tracked::~Tracked() = default;

std::weak_ptr<const void> Tracked::watch() const
{
    const UiLock lock;
    if (!m_life)
        m_life = std::make_shared<const char>();
    return m_life;
}

void Tracked::expire()
{
    const UiLock lock;
    m_life.reset();
}

} // namespace DisplayAPI

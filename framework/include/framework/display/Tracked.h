// Something that an event names and that may be gone when the event is delivered.

#pragma once

#include <memory>

#include <framework/Export.h>

namespace DisplayAPI {

class FRAMEWORK_API Tracked {
public:
    Tracked() = default;
    Tracked(const Tracked&) = delete;
    Tracked& operator=(const Tracked&) = delete;

    // Expires when the object is destroyed.
    std::weak_ptr<const void> watch() const;

protected:
    ~Tracked();

    // Whoever watches is told now. A destructor calls it first, so that no other thread still
    // reaches members that are about to go.
    void expire();

private:
    mutable std::shared_ptr<const char> m_life; // made when first watched: most objects never are
};

} // namespace DisplayAPI

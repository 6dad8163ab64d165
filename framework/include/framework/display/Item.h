// Something whose content the user changes: a field of a form, a list's search text, the
// dialler's digits. It is what an ItemStateListener is told of.

#pragma once

#include <framework/display/Tracked.h>

namespace DisplayAPI {

class FRAMEWORK_API Item : public virtual Tracked {
public:
    Item() = default;
    virtual ~Item();

    // For the event queue: its listener is about to be told of it.
    virtual void reporting() {}
};

} // namespace DisplayAPI

// What a look-up by name yields before its caller knows the type: services and phonelets.
//
// Ask for the expected interface with dynamic_cast; a service that is offered under the
// name but is of another type gives null, and is treated like one that is not offered.

#pragma once

#include <framework/Export.h>

class FRAMEWORK_API Executable {
public:
    Executable() = default;
    virtual ~Executable();

    Executable(const Executable&) = delete;
    Executable& operator=(const Executable&) = delete;
};

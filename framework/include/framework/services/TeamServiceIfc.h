// The telephone's team service. Phonelets only pass it on.

#pragma once

#include <framework/Executable.h>

class FRAMEWORK_API TeamServiceIfc : public Executable {
public:
    ~TeamServiceIfc() override;
};

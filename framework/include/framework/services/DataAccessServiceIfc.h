// The telephone's data access service. Phonelets only pass it on.

#pragma once

#include <framework/Executable.h>

class FRAMEWORK_API DataAccessServiceIfc : public Executable {
public:
    ~DataAccessServiceIfc() override;
};

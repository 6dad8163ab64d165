// Services that phonelets look up and only pass on.

#pragma once

#include <framework/services/DataAccessServiceIfc.h>
#include <framework/services/TeamServiceIfc.h>

class DataAccessService final : public DataAccessServiceIfc {};
class TeamService final : public TeamServiceIfc {};

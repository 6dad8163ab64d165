// The destructors of the service interfaces: one vtable and one type_info each, here, so that a
// down-cast works across shared objects.

#include <framework/services/DataAccessServiceIfc.h>
#include <framework/services/DigitAnalysisServiceEventIfc.h>
#include <framework/services/DigitAnalysisServiceIfc.h>
#include <framework/services/DirectoryServiceIfc.h>
#include <framework/services/DirectoryServiceObserverIfc.h>
#include <framework/services/JournalServiceIfc.h>
#include <framework/services/JournalServiceObserverIfc.h>
#include <framework/services/LocalMgmtIfc.h>
#include <framework/services/MgmtAgentIfc.h>
#include <framework/services/OBEXServiceIfc.h>
#include <framework/services/PhysicalInterfaceServiceIfc.h>
#include <framework/services/TeamServiceIfc.h>
#include <framework/services/physicalEventObserver.h>

DataAccessServiceIfc::~DataAccessServiceIfc() = default;
DigitAnalysisServiceEventIfc::~DigitAnalysisServiceEventIfc() = default;
DigitAnalysisServiceIfc::~DigitAnalysisServiceIfc() = default;
DirectoryServiceIfc::~DirectoryServiceIfc() = default;
DirectoryServiceObserverIfc::~DirectoryServiceObserverIfc() = default;
JournalServiceIfc::~JournalServiceIfc() = default;
JournalServiceObserverIfc::~JournalServiceObserverIfc() = default;
LocalMgmtIfc::~LocalMgmtIfc() = default;
MgmtAgentIfc::~MgmtAgentIfc() = default;
OBEXServiceIfc::~OBEXServiceIfc() = default;
PhysicalInterfaceServiceIfc::~PhysicalInterfaceServiceIfc() = default;
TeamServiceIfc::~TeamServiceIfc() = default;
physicalEventObserver::~physicalEventObserver() = default;

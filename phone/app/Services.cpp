#include "app/Services.h"

#include <map>

Services::Services(const Parts& parts)
    : m_localMgmt(parts.configuration, parts.profile.pictures(), parts.events)
    , m_physicalInterface(parts.events)
{
}

Executable* Services::find(const std::string& name)
{
    const std::map<std::string, Executable*> services{
        {"LocalMgmtIfc", &m_localMgmt},
        {"DataAccessServiceIfc", &m_dataAccess},
        {"TeamServiceIfc", &m_team},
        {"OBEXServiceIfc", &m_obex},
        {"PhysicalInterfaceServiceIfc", &m_physicalInterface},
    };
    const auto service = services.find(name);
    return service == services.end() ? nullptr : service->second;
}

void Services::itemChanged(const std::string& name)
{
    m_localMgmt.itemChanged(name);
}

void Services::dropObservers()
{
    m_localMgmt.dropObservers();
    m_physicalInterface.dropObservers();
}

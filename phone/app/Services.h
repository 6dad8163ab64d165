// Every service of the telephone, and the names under which phonelets find them.

#pragma once

#include <string>

#include <framework/Executable.h>

#include "app/EventPoster.h"
#include "app/EventTimers.h"
#include "app/PhoneletStates.h"
#include "app/Profile.h"
#include "system/Configuration.h"
#include "system/LocalMgmtService.h"
#include "system/ObexService.h"
#include "system/PassedOnServices.h"
#include "system/PhysicalInterfaceService.h"

class Services {
public:
    struct Parts {
        const Configuration& configuration;
        const Profile& profile;
        EventPoster& events;
        EventTimers& timers;
        EventPoster& updates; // for changes that others made
        PhoneletStates& states;
    };

    explicit Services(const Parts& parts);

    // Null for a name that stands for no service.
    Executable* find(const std::string& name);

    // An item has a new value.
    // [event thread]
    void itemChanged(const std::string& name);

    // The phonelets were stopped: what they left subscribed is dropped.
    // [event thread]
    void dropObservers();

    LocalMgmtService& localMgmt() { return m_localMgmt; }
    PhysicalInterfaceService& physicalInterface() { return m_physicalInterface; }

private:
    LocalMgmtService m_localMgmt;
    PhysicalInterfaceService m_physicalInterface;
    DataAccessService m_dataAccess;
    TeamService m_team;
    ObexService m_obex;
};

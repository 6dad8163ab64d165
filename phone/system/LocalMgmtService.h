// The configuration as phonelets see it, and the picture clips of the profile.

#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <vector>

#include <framework/services/LocalMgmtIfc.h>

#include "app/EventPoster.h"
#include "pictures/ClipFolder.h"
#include "system/Configuration.h"

class LocalMgmtService final : public LocalMgmtIfc {
public:
    // `bluetoothIsActive`: null where there is no Bluetooth.
    LocalMgmtService(const Configuration& configuration, std::filesystem::path pictures, EventPoster& events,
                     std::function<bool()> bluetoothIsActive = nullptr);

    // An item has a new value: tells who observes it, each by an event of its own.
    // [event thread]
    void itemChanged(const std::string& name);

    // The phonelets were stopped: nobody observes any more.
    void dropObservers() { m_observers.clear(); }

    bool read(ManageableData& data) override;
    void observeManageableData(const std::string& tag, MgmtAgentIfc* agent) override;
    std::vector<std::string> getPictureClips() override;
    std::string pictureNameFromPath(const std::string& path) override;
    std::string picturePathFromName(const std::string& name) override;

private:
    void tell(const std::string& name, MgmtAgentIfc* agent);

    const Configuration& m_configuration;
    ClipFolder m_clips;
    EventPoster& m_events;
    const std::function<bool()> m_bluetoothIsActive;
    std::map<std::string, std::vector<MgmtAgentIfc*>> m_observers;
};

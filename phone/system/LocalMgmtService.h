// The configuration as phonelets see it, and the picture clips of the profile.

#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <vector>

#include <framework/services/LocalMgmtIfc.h>

#include "app/EventPoster.h"
#include "system/Configuration.h"

class LocalMgmtService final : public LocalMgmtIfc {
public:
    // Items that the option store keeps too are written there before anybody is told: the tag and
    // its value; 0 for success.
    using WriteOption = std::function<int(const std::string& tag, int value)>;

    LocalMgmtService(const Configuration& configuration, std::filesystem::path pictures, EventPoster& events);

    void setOptionStore(WriteOption write) { m_writeOption = std::move(write); }

    // An item has a new value: writes it to the option store if it belongs there, and tells who
    // observes it, each by an event of its own.
    // [event thread]
    void itemChanged(const std::string& name);

    // Writes an item that the option store keeps; nothing for any other one.
    // [event thread]
    void copyToOptionStore(const std::string& name);

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
    const std::filesystem::path m_pictures;
    EventPoster& m_events;
    WriteOption m_writeOption;
    std::map<std::string, std::vector<MgmtAgentIfc*>> m_observers;
};

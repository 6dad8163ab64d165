#include "system/LocalMgmtService.h"

#include <algorithm>

#include <framework/services/ManageableData.h>
#include <framework/services/MgmtAgentIfc.h>

#include "directory/NameCollator.h"

namespace fs = std::filesystem;

namespace {

// No setting, but the state of a part of the telephone.
constexpr char BLUETOOTH_STATE[] = "bt-active";

} // namespace

LocalMgmtService::LocalMgmtService(const Configuration& configuration, fs::path pictures, EventPoster& events,
                                   std::function<bool()> bluetoothIsActive)
    : m_configuration(configuration)
    , m_clips(std::move(pictures))
    , m_events(events)
    , m_bluetoothIsActive(std::move(bluetoothIsActive))
{
}

void LocalMgmtService::itemChanged(const std::string& name)
{
    const auto observed = m_observers.find(name);
    if (observed == m_observers.end())
        return;
    for (auto* agent : observed->second)
        m_events.post("configuration item", [this, name, agent] { tell(name, agent); });
}

bool LocalMgmtService::read(ManageableData& data)
{
    const auto& name = data.getRootId();
    if (name == BLUETOOTH_STATE) {
        data.setValue(name, m_bluetoothIsActive && m_bluetoothIsActive() ? "true" : "false");
        return true;
    }
    if (!m_configuration.item(name))
        return false;
    data.setValue(name, m_configuration.text(name));
    return true;
}

void LocalMgmtService::observeManageableData(const std::string& tag, MgmtAgentIfc* agent)
{
    auto& agents = m_observers[tag];
    if (agent && std::find(agents.begin(), agents.end(), agent) == agents.end())
        agents.push_back(agent);
}

std::vector<std::string> LocalMgmtService::getPictureClips()
{
    const NameCollator collator(m_configuration.text("language"));
    std::map<std::string, std::string> sorted; // two names can have the same key, but for the name itself
    for (const auto& name : m_clips.clips())
        sorted[collator.key(name, "") + name] = name;
    std::vector<std::string> paths;
    for (const auto& [key, name] : sorted)
        paths.push_back(m_clips.pathFromName(name));
    return paths;
}

std::string LocalMgmtService::pictureNameFromPath(const std::string& path)
{
    return m_clips.nameFromPath(path);
}

std::string LocalMgmtService::picturePathFromName(const std::string& name)
{
    return m_clips.pathFromName(name);
}

void LocalMgmtService::tell(const std::string& name, MgmtAgentIfc* agent)
{
    const auto observed = m_observers.find(name);
    if (observed == m_observers.end() ||
        std::find(observed->second.begin(), observed->second.end(), agent) == observed->second.end())
        return;
    ManageableData data;
    data.setRootId(name);
    data.setValue(name, m_configuration.text(name));
    agent->manageableDataChanged(&data);
}

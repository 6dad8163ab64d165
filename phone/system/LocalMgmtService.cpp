#include "system/LocalMgmtService.h"

#include <algorithm>
#include <array>
#include <cctype>

#include <framework/services/ManageableData.h>
#include <framework/services/MgmtAgentIfc.h>

namespace fs = std::filesystem;

namespace {

// What a record of the contact store has room for, in bytes.
constexpr std::size_t LONGEST_PICTURE_NAME = 91;

// No setting, but the state of a part that this telephone does not have.
constexpr char BLUETOOTH_STATE[] = "bt-active";

bool isPicture(const fs::path& file)
{
    constexpr std::array<const char*, 4> ENDINGS{".png", ".jpg", ".jpeg", ".svg"};
    auto ending = file.extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return std::find(ENDINGS.begin(), ENDINGS.end(), ending) != ENDINGS.end();
}

} // namespace

LocalMgmtService::LocalMgmtService(const Configuration& configuration, fs::path pictures, EventPoster& events)
    : m_configuration(configuration)
    , m_pictures(std::move(pictures))
    , m_events(events)
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
        data.setValue(name, "false");
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
    std::vector<std::string> clips;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(m_pictures, error)) {
        const auto& path = entry.path();
        if (isPicture(path) && path.filename().string().size() <= LONGEST_PICTURE_NAME)
            clips.push_back(path.string());
    }
    std::sort(clips.begin(), clips.end());
    return clips;
}

std::string LocalMgmtService::pictureNameFromPath(const std::string& path)
{
    return fs::path(path).filename().string();
}

std::string LocalMgmtService::picturePathFromName(const std::string& name)
{
    // Only the last part counts: a name never leads out of the folder.
    const auto file = fs::path(name).filename();
    return file.empty() ? "" : (m_pictures / file).string();
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

#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <framework/services/LocalMgmtIfc.h>
#include <framework/services/ManageableData.h>
#include <framework/services/MgmtAgentIfc.h>

class FakeLocalMgmt final : public LocalMgmtIfc {
public:
    std::map<std::string, std::string> items;
    std::vector<std::string> reads; // the ids asked for, in order
    std::vector<std::pair<std::string, MgmtAgentIfc*>> observed;
    std::vector<std::string> clips;
    std::function<void()> whileLoading; // called while the clips are read

    bool read(ManageableData& data) override
    {
        reads.push_back(data.getRootId());
        const auto item = items.find(data.getRootId());
        if (item == items.end())
            return false;
        data.setValue(item->first, item->second);
        return true;
    }
    void observeManageableData(const std::string& tag, MgmtAgentIfc* agent) override
    {
        observed.emplace_back(tag, agent);
    }
    std::vector<std::string> getPictureClips() override
    {
        if (whileLoading)
            whileLoading();
        return clips;
    }
    std::string pictureNameFromPath(const std::string& path) override
    {
        return path.substr(path.find_last_of('/') + 1);
    }
    std::string picturePathFromName(const std::string& name) override
    {
        return name.empty() ? "" : "clips/" + name;
    }

    // Sets an item and tells who observes it.
    void change(const std::string& tag, const std::string& value)
    {
        items[tag] = value;
        ManageableData data;
        data.setRootId(tag);
        data.setValue(tag, value);
        for (const auto& [observedTag, agent] : observed)
            if (observedTag == tag)
                agent->manageableDataChanged(&data);
    }
};

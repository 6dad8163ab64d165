// The telephone's configuration items.

#pragma once

#include <string>
#include <vector>

#include <framework/Executable.h>

class ManageableData;
class MgmtAgentIfc;

class FRAMEWORK_API LocalMgmtIfc : public Executable {
public:
    ~LocalMgmtIfc() override;

    // Reads the item that the data's root id names; false when there is no such item.
    // [phonelet-thread]
    virtual bool read(ManageableData& data) = 0;

    // Tells `agent` of every later change of the item, from the event queue. Not owned; dropped when
    // the phonelet that registered it was stopped.
    // [phonelet-thread]
    virtual void observeManageableData(const std::string& tag, MgmtAgentIfc* agent) = 0;

    // Paths of the picture clips that a contact may have, sorted by name as the phone's language does.
    // [phonelet-thread]
    virtual std::vector<std::string> getPictureClips() = 0;
    // The name under which a record keeps a clip, at most 91 bytes, and back; one to one on clips.
    // "" gives "".
    // [phonelet-thread]
    virtual std::string pictureNameFromPath(const std::string& path) = 0;
    virtual std::string picturePathFromName(const std::string& name) = 0;
};

// Hears of changes of configuration items it observes. Called from the event queue.

#pragma once

#include <framework/Export.h>

class ManageableData;

class FRAMEWORK_API MgmtAgentIfc {
public:
    virtual ~MgmtAgentIfc();

    // `data` carries the new value under its root id; it is valid during the call only.
    // [phonelet-thread]
    virtual void manageableDataChanged(ManageableData* data) = 0;
    // Read and write data that the agent itself keeps; both return how many items: 0 for none.
    // [phonelet-thread]
    virtual int setData(ManageableData* data) = 0;
    virtual int getData(ManageableData* data) = 0;
    // The telephone's user data is being reset.
    // [phonelet-thread]
    virtual void resetUserData() = 0;
};

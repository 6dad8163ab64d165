// Hears of changes of the local phonebook that others made: an import, an administrator, a second
// program, a restore. Never of changes made through the observer's own requests. It is called from
// the event queue, never on the caller's stack.

#pragma once

#include <framework/Export.h>

class FRAMEWORK_API DirectoryServiceObserverIfc {
public:
    virtual ~DirectoryServiceObserverIfc();

    // `restart`: the database was replaced; nothing of what was read before holds.
    // [phonelet-thread]
    virtual void phonebookDatabaseUpdated(bool restart) = 0;
};

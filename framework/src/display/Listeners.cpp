#include <framework/display/Listeners.h>

#include <framework/host/EventQueue.h>

namespace DisplayAPI {

CommandListener::~CommandListener()
{
    EventQueue::discard(this);
}

ItemStateListener::~ItemStateListener()
{
    EventQueue::discard(this);
}

} // namespace DisplayAPI

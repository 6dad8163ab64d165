#include "PhonebookStateFatalError.h"

#include "PhonebookLog.h"

namespace {
constexpr char nSOURCE[] = "./src/PhonebookStateFatalError";
}

void PhonebookStateFatalError::enterStateEvent(EventContext*)
{
    PB_TRACE("PhonebookStateFatalError::enterStateEvent()");
}

void PhonebookStateFatalError::exitStateEvent(EventContext*)
{
    PB_TRACE("PhonebookStateFatalError::exitStateEvent()");
}

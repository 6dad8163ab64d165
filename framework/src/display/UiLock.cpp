#include "UiLock.h"

namespace DisplayAPI {

std::recursive_mutex& UiLock::mutex()
{
    // Never destroyed: widgets with static storage still lock it at exit.
    static auto& mutex = *new std::recursive_mutex;
    return mutex;
}

} // namespace DisplayAPI

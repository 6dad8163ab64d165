// The phonebook's log lines. Every source file that writes them names itself:
//
//     constexpr char nSOURCE[] = "./src/PhonebookList";
//
// Arguments are evaluated only when the level is on.

#pragma once

#include <framework/util/AppLog.h>

#define PB_LOG(level, ...)                                                                                   \
    do {                                                                                                     \
        if (AppLog::isEnabled("PhonebookPhonelet", (level)))                                                 \
            AppLog::log("PhonebookPhonelet", nSOURCE, (level), __LINE__, __VA_ARGS__);                       \
    } while (false)

#define PB_TRACE(...) PB_LOG(AppLog::TRACE, __VA_ARGS__)     // the way through the program
#define PB_USER(...) PB_LOG(AppLog::USER, __VA_ARGS__)       // what the user sees
#define PB_IGNORED(...) PB_LOG(AppLog::REFUSED, __VA_ARGS__) // requests that are ignored or refused
#define PB_ERROR(...) PB_LOG(AppLog::ERROR, __VA_ARGS__)

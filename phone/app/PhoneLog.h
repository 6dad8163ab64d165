// How the telephone's own code logs. A source defines `constexpr char nSOURCE[]`, its path without
// its ending, before it uses these.

#pragma once

#include <framework/util/AppLog.h>

inline constexpr char PHONE_LOG_COMPONENT[] = "Telephone";

#define PHONE_LOG(level, ...)                                                                                \
    do {                                                                                                     \
        if (AppLog::isEnabled(PHONE_LOG_COMPONENT, (level)))                                                 \
            AppLog::log(PHONE_LOG_COMPONENT, nSOURCE, (level), __LINE__, __VA_ARGS__);                       \
    } while (false)

#define PHONE_TRACE(...) PHONE_LOG(AppLog::TRACE, __VA_ARGS__)
#define PHONE_USER(...) PHONE_LOG(AppLog::USER, __VA_ARGS__)
#define PHONE_REFUSED(...) PHONE_LOG(AppLog::REFUSED, __VA_ARGS__)
#define PHONE_ERROR(...) PHONE_LOG(AppLog::ERROR, __VA_ARGS__)

// The telephone's log as phonelets see it. Ask isEnabled() first: formatting costs.

#pragma once

#include <string>

#include <framework/Export.h>

// Where log lines go. It may be called from several threads at once.
class FRAMEWORK_API AppLogSink {
public:
    virtual ~AppLogSink();
    virtual bool isEnabled(const char* component, int level) const = 0;
    virtual void write(const char* component, const char* file, int level, int line,
                       const std::string& text) = 0;
};

class FRAMEWORK_API AppLog {
public:
    enum Level : int { ERROR = 2, REFUSED = 3, USER = 4, TRACE = 5 };

    // [any-thread]
    static bool isEnabled(const char* component, int level);

    // printf formats. `file` is the source without its ending, such as "./src/PhonebookList".
    // [any-thread]
    static void log(const char* component, const char* file, int level, int line, const char* format, ...)
        __attribute__((format(printf, 5, 6)));

    // Where lines go from now on; null: nowhere. Not owned. Returns the one before.
    // [any-thread]
    static AppLogSink* setSink(AppLogSink* sink);
};

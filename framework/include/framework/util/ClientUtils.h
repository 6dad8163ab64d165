// Small helpers for talking to the telephone's services.

#pragma once

#include <string>

#include <framework/Export.h>

class FRAMEWORK_API ClientUtils {
public:
    // `&`, `<`, `>`, `"` and `'` as entities; characters that XML 1.0 does not allow are left out.
    // [any-thread]
    static std::string escapeXMLString(const std::string& text);
};

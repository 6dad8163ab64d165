// Turns translation keys into text of the telephone's current language.

#pragma once

#include <string>

#include <framework/Export.h>

namespace DisplayAPI {

class FRAMEWORK_API TranslatorIfc {
public:
    TranslatorIfc() = default;
    virtual ~TranslatorIfc();

    TranslatorIfc(const TranslatorIfc&) = delete;
    TranslatorIfc& operator=(const TranslatorIfc&) = delete;

    // The text for `key`. A key without a text gives the key itself, so that a gap is seen and
    // can be reported; "" gives "".
    // [any-thread]
    virtual std::string translate(const std::string& key) const = 0;

    // The same with `{1}` in the text replaced by `parameter`. Where the text has no `{1}`, the
    // parameter follows after a blank: what a confirmation speaks of is never lost.
    // [any-thread]
    virtual std::string translate(const std::string& key, const std::string& parameter) const = 0;
};

} // namespace DisplayAPI

// Shows keys as they are: "[key]" would hide a missing translation, the key itself does not.
// With a parameter: "key(parameter)".

#pragma once

#include <string>

#include <framework/display/TranslatorIfc.h>

class FakeTranslator final : public DisplayAPI::TranslatorIfc {
public:
    // Put before every key: a "language" for tests of repainting.
    std::string prefix;

    std::string translate(const std::string& key) const override { return key.empty() ? key : prefix + key; }
    std::string translate(const std::string& key, const std::string& parameter) const override
    {
        return prefix + key + "(" + parameter + ")";
    }
};

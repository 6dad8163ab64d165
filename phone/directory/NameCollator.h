// The order of names in one language, as keys whose bytes compare as the names do.

#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <unicode/coll.h>

// The keys are those of the collation that lists are sorted with (punctuation counted), for the
// name as a list shows it: "surname, first name".
class NameCollator {
public:
    // An unknown language gives the root collation.
    explicit NameCollator(const std::string& language);
    ~NameCollator();

    NameCollator(const NameCollator&) = delete;
    NameCollator& operator=(const NameCollator&) = delete;

    std::string key(std::string_view surname, std::string_view firstname) const;

    // Keys are comparable exactly when this text was the same when they were made.
    const std::string& identity() const { return m_identity; }

private:
    std::unique_ptr<icu::Collator> m_pCollator;
    std::string m_identity;
};

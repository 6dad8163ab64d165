// What a directory search looks for.
//
// The pairs are all to match, except that SURNAME and NICKNAME given together are alternatives.
// `*` in a value stands for any text; everything else in it is literal. Case does not matter.

#pragma once

#include <string>
#include <utility>
#include <vector>

#include <framework/Export.h>

using AttributeList = std::vector<std::pair<std::string, std::string>>; // (Utils:: name, value)

class FRAMEWORK_API PhonebookSearchCriteria {
public:
    enum class Source : int { Local = 0, Ldap = 1 };

    // `base` is the search base, "" for the configured one; `ldap` asks the corporate directory.
    PhonebookSearchCriteria(AttributeList attributes, const std::string& base, bool ldap);
    ~PhonebookSearchCriteria();

    const AttributeList& getAttributes() const { return m_attributes; }
    const std::string& getBase() const { return m_base; }
    Source getSource() const { return m_source; }

private:
    AttributeList m_attributes;
    std::string m_base;
    Source m_source;
};

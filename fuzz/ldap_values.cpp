// Whatever a directory's entry holds, a record is clean text of bounded length; whatever is looked
// for, the filter stays one filter.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <framework/services/Utils.h>

#include "directory/ContactText.h"
#include "directory/ldap/LdapFilter.h"
#include "directory/ldap/LdapRecord.h"

namespace {

constexpr std::size_t nMOST_CHARACTERS = 256;

LdapSettings settings()
{
    LdapSettings made;
    made.baseFilter = "(objectClass=person)";
    made.countryCode = "49";
    made.nickname = true;
    made.attributes.fields = {{Utils::SURNAME, {"sn"}},
                              {Utils::OFFICE, {"telephoneNumber"}},
                              {Utils::OFFICE2, {"telephoneNumber"}},
                              {Utils::ADDRESS1, {"postalAddress"}}};
    made.attributes.displayName = {"cn"};
    made.attributes.findsByDisplayName = true;
    made.attributes.nickname = {"uid"};
    return made;
}

void expect(bool holds)
{
    if (!holds)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const LdapSettings theSettings = settings();
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::string first(bytes.substr(0, size / 2));
    const std::string second(bytes.substr(size / 2));

    const AttributeList criteria{{Utils::SURNAME, first}, {Utils::NICKNAME, second}, {Utils::OFFICE, second}};
    const auto filter = ldapFilterOf(criteria, theSettings, false);
    expect(!filter || isOneFilter(filter->text));

    const auto wanted = filter.value_or(LdapFilter());
    LdapRecordReader reader(theSettings.attributes, wanted);
    for (const auto* attribute : {"sn", "cn", "telephoneNumber", "postalAddress", first.c_str()}) {
        reader.add(attribute, first);
        reader.add(attribute, second);
    }
    const auto record = reader.finish();
    if (!record)
        return 0;
    for (const auto& [name, value] : *record) {
        expect(isCleanText(value) && !value.empty());
        expect(cutText(value, nMOST_CHARACTERS) == value);
    }
    return 0;
}

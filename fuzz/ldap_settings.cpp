// Whatever an administrator writes about the directory, either the settings can be used as they are
// or a sentence says what is wrong; and whatever a server shows as its certificate can be talked about.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "directory/ContactText.h"
#include "directory/ldap/LdapCertificate.h"
#include "directory/ldap/LdapFilter.h"
#include "directory/ldap/LdapSettings.h"
#include "system/Configuration.h"

namespace {

const std::filesystem::path nNOWHERE = "/nonexistent";

void expect(bool holds)
{
    if (!holds)
        std::abort();
}

void expectUsable(const LdapSettings& settings)
{
    expect(!settings.servers.empty());
    for (const auto& server : settings.servers) {
        expect(!server.host.empty() && server.port > 0 && server.port < 65536);
        expect(settings.bindDn.empty() || server.tls != LdapTls::None);
    }
    expect(settings.bindDn.empty() || settings.checkCertificate);
    expect(settings.sizeLimit > 0 && settings.connectTime.count() > 0 && settings.searchTime.count() > 0);
    for (const auto& field : settings.attributes.fields)
        for (const auto& attribute : field.attributes)
            expect(!attribute.empty() && attribute.find_first_of("()*\\= ") == std::string::npos);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);

    // One item a line: "ldap-servers=ldap://a".
    Configuration::Values values;
    for (std::size_t from = 0; from < bytes.size();) {
        const auto end = std::min(bytes.find('\n', from), bytes.size());
        const auto line = bytes.substr(from, end - from);
        const auto middle = std::min(line.find('='), line.size());
        values[line.substr(0, middle)] = line.substr(std::min(middle + 1, line.size()));
        from = end + 1;
    }
    const auto setup = ldapSettingsOf(Configuration(nNOWHERE / "config.toml", values), nNOWHERE);
    for (const auto& sentence : setup.faults)
        expect(!sentence.empty());
    if (setup.usable())
        expectUsable(setup.settings);

    expect(!whatIsWrongWith(bytes, "localhost", nNOWHERE / "ca.pem").empty());
    return 0;
}

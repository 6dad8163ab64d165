#include "directory/ldap/LdapSettings.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>

#include <ldap.h>

#include <framework/services/Utils.h>

#include "directory/ldap/LdapFilter.h"
#include "system/Configuration.h"

namespace {

using Names = std::vector<std::string>;

constexpr int nGREATEST_PORT = 65535;

struct UrlDeleter {
    void operator()(LDAPURLDesc* url) const { ldap_free_urldesc(url); }
};

struct MappedField {
    const std::string& name; // Utils:: name
    const char* item;        // behind "ldap-attribute-"
    Names standard;          // RFC 4519, RFC 2798
    Names activeDirectory;
};

const std::vector<MappedField>& mappedFields()
{
    static const std::vector<MappedField> fields{
        {Utils::SURNAME, "surname", {"sn"}, {"sn"}},
        {Utils::FIRSTNAME, "firstname", {"givenName"}, {"givenName"}},
        {Utils::OFFICE, "office", {"telephoneNumber"}, {"telephoneNumber"}},
        {Utils::OFFICE2, "office2", {"otherTelephone", "telephoneNumber"}, {"otherTelephone"}},
        {Utils::MOBILE, "mobile", {"mobile"}, {"mobile"}},
        {Utils::PRIVATE, "private", {"homePhone"}, {"homePhone"}},
        {Utils::EMAIL, "email", {"mail"}, {"mail"}},
        {Utils::COMPANY, "company", {"o"}, {"company"}},
        {Utils::JOBFUNCTION, "jobfunction", {"title"}, {"title"}},
        {Utils::ADDRESS1,
         "address1",
         {"street", "postalAddress"},
         {"streetAddress", "street", "postalAddress"}},
        {Utils::ADDRESS2, "address2", {"l"}, {"l"}},
    };
    return fields;
}

std::string quoted(const std::string& text)
{
    return "\"" + text + "\"";
}

// Nothing for what is no address of a server.
std::optional<LdapServer> serverOf(const std::string& given, bool startTls)
{
    // libldap takes those for parts of a search, or of a name.
    if (given.find_first_of("? ") != std::string::npos)
        return std::nullopt;
    const auto uri = given.find("://") == std::string::npos ? "ldap://" + given : given;
    LDAPURLDesc* parsed = nullptr;
    if (ldap_url_parse(uri.c_str(), &parsed) != LDAP_URL_SUCCESS)
        return std::nullopt;
    const std::unique_ptr<LDAPURLDesc, UrlDeleter> url(parsed);
    const std::string scheme = url->lud_scheme;
    const bool hasPath = url->lud_dn && *url->lud_dn;
    const bool isPort = url->lud_port >= 0 && url->lud_port <= nGREATEST_PORT;
    if ((scheme != "ldap" && scheme != "ldaps") || !url->lud_host || !*url->lud_host || hasPath || !isPort)
        return std::nullopt;

    LdapServer server;
    server.host = url->lud_host;
    std::erase_if(server.host, [](char c) { return c == '[' || c == ']'; });
    server.port = url->lud_port != 0 ? url->lud_port : scheme == "ldaps" ? LDAPS_PORT : LDAP_PORT;
    server.tls = scheme == "ldaps" ? LdapTls::FromStart : startTls ? LdapTls::StartTls : LdapTls::None;
    const bool v6 = server.host.find(':') != std::string::npos;
    server.uri =
        scheme + "://" + (v6 ? "[" + server.host + "]" : server.host) + ":" + std::to_string(server.port);
    return server;
}

bool isAttributeName(const std::string& name)
{
    const auto plain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
               c == '.' || c == ';';
    };
    return !name.empty() && std::all_of(name.begin(), name.end(), plain) && name.front() != '-';
}

class Reader {
public:
    Reader(const Configuration& configuration, const std::filesystem::path& profile)
        : m_configuration(configuration)
        , m_profile(profile)
    {
    }

    LdapSetup read()
    {
        readServers();
        readIdentity();
        readSearch();
        readAttributes();
        return std::move(m_setup);
    }

private:
    void refuse(std::string sentence) { m_setup.faults.push_back(std::move(sentence)); }

    void readServers()
    {
        const bool startTls = m_configuration.text("ldap-security") == "starttls";
        const auto given = m_configuration.list("ldap-servers");
        m_setup.wanted = !given.empty();
        if (given.empty())
            refuse("There is no corporate directory: name its server in \"ldap-servers\".");
        for (const auto& uri : given) {
            if (auto server = serverOf(uri, startTls))
                m_setup.settings.servers.push_back(std::move(*server));
            else
                refuse(quoted(uri) + " in \"ldap-servers\" is no server: write ldap://NAME or ldaps://NAME, "
                                     "with :PORT if need be.");
        }
    }

    void readIdentity()
    {
        auto& settings = m_setup.settings;
        settings.checkCertificate = m_configuration.yes("ldap-check-certificate");
        // An absolute path stays what it is.
        settings.caFile = m_profile / m_configuration.text("ldap-ca-file");
        settings.bindDn = m_configuration.text("ldap-bind-dn");
        settings.password = LdapPassword(m_profile);
        if (m_setup.wanted)
            settings.password.forgetUnlessFor(settings.hosts());
        if (settings.bindDn.empty())
            return;
        const bool plain = std::any_of(settings.servers.begin(), settings.servers.end(),
                                       [](const auto& server) { return server.tls == LdapTls::None; });
        if (plain)
            refuse(
                "The password of \"ldap-bind-dn\" is sent over TLS only: set \"ldap-security\" to starttls, "
                "or name ldaps:// servers in \"ldap-servers\".");
        if (!settings.checkCertificate)
            refuse("The password of \"ldap-bind-dn\" is only sent to a server whose certificate was checked: "
                   "set \"ldap-check-certificate\" to true, and \"ldap-ca-file\" to who has signed it.");
    }

    void readSearch()
    {
        const std::map<std::string, LdapScope> scopes{
            {"subtree", LdapScope::Subtree}, {"one", LdapScope::OneLevel}, {"base", LdapScope::Base}};
        auto& settings = m_setup.settings;
        settings.base = m_configuration.text("ldap-base");
        settings.scope = scopes.at(m_configuration.text("ldap-scope"));
        settings.baseFilter = m_configuration.text("ldap-filter");
        if (settings.baseFilter.empty())
            settings.baseFilter = activeDirectory() ? "(objectCategory=person)" : "(objectClass=person)";
        if (settings.baseFilter.front() != '(')
            settings.baseFilter = "(" + settings.baseFilter + ")";
        settings.sizeLimit = m_configuration.number("ldap-size-limit");
        settings.connectTime = std::chrono::seconds(m_configuration.number("ldap-connect-timeout"));
        settings.searchTime = std::chrono::seconds(m_configuration.number("ldap-search-timeout"));
        settings.countryCode = m_configuration.text("country-code");
    }

    void readAttributes()
    {
        auto& settings = m_setup.settings;
        for (const auto& field : mappedFields())
            settings.attributes.fields.push_back(
                {field.name,
                 attributesOf(field.item, activeDirectory() ? field.activeDirectory : field.standard)});
        settings.attributes.displayName = attributesOf("display-name", {"displayName", "cn"});
        settings.attributes.findsByDisplayName = activeDirectory();
        settings.attributes.nickname = attributesOf("nickname", {activeDirectory() ? "mailNickname" : "uid"});
        settings.nickname = m_configuration.yes("ldap-nickname");
    }

    Names attributesOf(const std::string& field, const Names& bySchema)
    {
        const auto item = "ldap-attribute-" + field;
        auto given = m_configuration.list(item);
        if (given.empty())
            return bySchema;
        if (given == Names{"-"})
            return {};
        for (const auto& name : given) {
            if (!isAttributeName(name))
                refuse(quoted(name) + " in " + quoted(item) + " is no attribute's name.");
        }
        return given;
    }

    bool activeDirectory() const { return m_configuration.text("ldap-schema") == "activeDirectory"; }

    const Configuration& m_configuration;
    const std::filesystem::path m_profile;
    LdapSetup m_setup;
};

} // namespace

const std::vector<std::string>& LdapAttributeMap::of(const std::string& name) const
{
    static const std::vector<std::string> none;
    if (name == Utils::NICKNAME)
        return nickname;
    const auto field =
        std::find_if(fields.begin(), fields.end(), [&name](const auto& f) { return f.name == name; });
    return field == fields.end() ? none : field->attributes;
}

std::vector<std::string> LdapSettings::hosts() const
{
    std::vector<std::string> names;
    for (const auto& server : servers)
        names.push_back(server.host);
    return names;
}

LdapSetup ldapSettingsOf(const Configuration& configuration, const std::filesystem::path& profile)
{
    return Reader(configuration, profile).read();
}

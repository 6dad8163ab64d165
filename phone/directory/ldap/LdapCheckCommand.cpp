#include "directory/ldap/LdapCheckCommand.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <set>

#include <strings.h>

#include <framework/services/Utils.h>

#include "app/Commands.h"
#include "directory/ContactText.h"
#include "directory/ldap/LdapCertificate.h"
#include "directory/ldap/LdapConnection.h"
#include "directory/ldap/LdapRecord.h"
#include "directory/ldap/LdapSettings.h"
#include "system/Configuration.h"

namespace {

using Clock = LdapWatchdog::Clock;

// That many entries are looked at.
constexpr int nSAMPLE = 1000;
// A certificate that expires within this time is worth a word.
constexpr std::chrono::hours nRENEWAL{30 * 24};
constexpr std::size_t nLONGEST_NAME = 200;
constexpr std::size_t nMOST_BASES = 10;
constexpr char nITEM[] = "ldap-attribute-";

struct IgnoringCase {
    bool operator()(const std::string& one, const std::string& other) const
    {
        return ::strcasecmp(one.c_str(), other.c_str()) < 0;
    }
};
using Counts = std::map<std::string, int, IgnoringCase>;

std::string quoted(const std::string& text)
{
    return "\"" + text + "\"";
}

template <typename Texts, typename Write> std::string joined(const Texts& texts, Write write)
{
    std::string all;
    for (const auto& text : texts)
        all += (all.empty() ? "" : ", ") + write(text);
    return all;
}

std::string joined(const std::vector<std::string>& texts)
{
    return joined(texts, [](const auto& text) { return text; });
}

std::string asMany(int count, const std::string& one, const std::string& more)
{
    return std::to_string(count) + " " + (count == 1 ? one : more);
}

// What a directory knows of the entries that were looked at.
class Survey {
public:
    explicit Survey(const LdapSettings& settings)
        : m_map(settings.attributes)
        , m_nickname(settings.nickname)
        , m_reader(m_map, m_anything)
    {
        for (const auto& attribute : attributes())
            m_carry[attribute] = 0;
    }

    std::vector<std::string> attributes() const
    {
        auto names = m_reader.attributes();
        if (m_nickname)
            names.insert(names.end(), m_map.nickname.begin(), m_map.nickname.end());
        return names;
    }

    void add(const LdapEntryView& entry)
    {
        std::set<int*> carried;
        entry.forEachValue([&](auto attribute, auto value) {
            // A server may send whatever it likes.
            auto asked = m_carry.find(std::string(attribute));
            if (asked == m_carry.end())
                asked = m_carry.find(std::string(attribute.substr(0, attribute.find(';'))));
            if (asked != m_carry.end())
                carried.insert(&asked->second);
            m_reader.add(attribute, value);
        });
        for (auto* count : carried)
            ++*count;
        ++m_entries;
        const auto record = m_reader.finish();
        if (!record)
            return;
        ++m_named;
        for (const auto& [field, value] : *record)
            ++m_have[field];
        // The one of which most is known shows best what the telephone makes of an entry.
        if (record->size() > m_example.size())
            m_example = *record;
    }

    int entries() const { return m_entries; }
    int named() const { return m_named; }

    // A line for each field: "office2: 143 of 1000 (otherTelephone 0, telephoneNumber 898)".
    std::vector<std::string> fields() const
    {
        std::vector<std::string> lines;
        for (const auto& field : m_map.fields)
            lines.push_back(line(field.name, count(m_have, field.name), field.attributes));
        if (m_nickname)
            lines.push_back(line(Utils::NICKNAME, mostOf(m_map.nickname), m_map.nickname));
        return lines;
    }

    // The items of fields that nobody has.
    std::vector<std::string> unusedItems() const
    {
        std::vector<std::string> items;
        for (const auto& field : m_map.fields) {
            if (!field.attributes.empty() && count(m_have, field.name) == 0)
                items.push_back(quoted(nITEM + field.name));
        }
        return items;
    }

    std::string example() const
    {
        return joined(m_example, [](const auto& field) { return field.first + " " + quoted(field.second); });
    }

private:
    static int count(const Counts& counts, const std::string& name)
    {
        const auto found = counts.find(name);
        return found == counts.end() ? 0 : found->second;
    }

    int mostOf(const std::vector<std::string>& attributes) const
    {
        int most = 0;
        for (const auto& attribute : attributes)
            most = std::max(most, count(m_carry, attribute));
        return most;
    }

    std::string line(const std::string& field, int have, const std::vector<std::string>& attributes) const
    {
        if (attributes.empty())
            return field + ": not asked for";
        return field + ": " + std::to_string(have) + " of " + std::to_string(m_entries) + " (" +
               joined(
                   attributes,
                   [this](const auto& name) { return name + " " + std::to_string(count(m_carry, name)); }) +
               ")";
    }

    const LdapAttributeMap& m_map;
    const bool m_nickname;
    const LdapFilter m_anything;
    LdapRecordReader m_reader;
    Counts m_carry; // entries, by attribute
    Counts m_have;  // records, by field
    int m_entries = 0;
    int m_named = 0;
    AttributeList m_example;
};

// Writes what the steps came to.
class Report {
public:
    explicit Report(std::ostream& out)
        : m_out(out)
    {
    }

    void server(const std::string& uri) { m_out << '\n' << uri << '\n'; }
    void good(const std::string& step, const std::string& sentence) { line("OK    ", step, sentence); }
    void note(const std::string& step, const std::string& sentence) { line("NOTE  ", step, sentence); }
    void more(const std::string& text) { m_out << "        " << text << std::endl; }
    // Always false, for who must stop here.
    bool bad(const std::string& step, const std::string& sentence)
    {
        line("FAIL  ", step, sentence);
        return false;
    }

private:
    // At once: the next step may take its time.
    void line(const char* how, const std::string& step, const std::string& sentence)
    {
        m_out << how << step << ": " << sentence << std::endl;
    }

    std::ostream& m_out;
};

class ServerCheck {
public:
    ServerCheck(const LdapServer& server, const LdapSettings& settings, Report& report)
        : m_server(server)
        , m_settings(settings)
        , m_report(report)
        , m_connection(server, settings, m_watchdog)
    {
    }

    bool run() { return open() && findBase() && lookAtPeople(); }

private:
    bool open()
    {
        const auto deadline = Clock::now() + m_settings.connectTime;
        if (const auto fault = m_connection.resolve(deadline))
            return m_report.bad("Name", fault->sentence);
        m_report.good("Name", quoted(m_server.host) + " is " + joined(m_connection.addresses()) + ".");
        if (const auto fault = m_connection.connect(deadline))
            return m_report.bad("Connection", fault->sentence);
        m_report.good("Connection", "port " + std::to_string(m_server.port) + " answers.");
        if (const auto fault = m_connection.startTls(deadline))
            return m_report.bad("Encryption", fault->sentence);
        tellEncryption();
        if (const auto fault = m_connection.bind(deadline))
            return m_report.bad("Signing in", fault->sentence);
        m_report.good("Signing in", m_settings.bindDn.empty()
                                        ? "the server lets the telephone ask unnamed."
                                        : "the server knows " + quoted(m_settings.bindDn) + ".");
        return true;
    }

    void tellEncryption()
    {
        if (m_server.tls == LdapTls::None)
            return m_report.note(
                "Encryption", "none: what is searched and found can be read on the way. To change that set "
                              "\"ldap-security\" to starttls.");
        const auto certificate = ldapCertificateOf(m_connection.peerCertificate());
        if (!m_settings.checkCertificate || !certificate)
            return m_report.note("Encryption",
                                 "there is, but nobody checks whose certificate that is. To change that set "
                                 "\"ldap-check-certificate\" to true.");
        m_report.good("Encryption", "the certificate is for " + certificate->subject + ", signed by " +
                                        certificate->issuer + ", and good until " + certificate->lastDay +
                                        ".");
        if (certificate->until < std::chrono::system_clock::now() + nRENEWAL)
            m_report.note("Encryption", "the server needs a new certificate before " + certificate->lastDay +
                                            ", or the telephone will refuse it.");
    }

    bool findBase()
    {
        const LdapSearch base{m_settings.base, LdapScope::Base, "(objectClass=*)", {"1.1"}};
        const auto end =
            m_connection.search(base, searchDeadline(), [](const LdapEntryView&) { return true; });
        if (end.fault)
            return refused("Base", *end.fault);
        m_report.good("Base", quoted(m_settings.base) + " is there.");
        return true;
    }

    bool refused(const std::string& step, const LdapFault& fault)
    {
        m_report.bad(step, fault.sentence);
        if (fault.failure == LdapFailure::BaseWrong)
            tellBases();
        return false;
    }

    // What the server says that it holds (RFC 4512 5.1).
    void tellBases()
    {
        std::vector<std::string> bases;
        const LdapSearch root{"", LdapScope::Base, "(objectClass=*)", {"namingContexts"}};
        m_connection.search(root, searchDeadline(), [&bases](const LdapEntryView& entry) {
            entry.forEachValue([&bases](auto, auto base) {
                if (bases.size() < nMOST_BASES)
                    bases.push_back(quoted(fitText(base, nLONGEST_NAME)));
            });
            return true;
        });
        if (!bases.empty())
            m_report.more("The server holds " + joined(bases) + ".");
    }

    bool lookAtPeople()
    {
        Survey survey(m_settings);
        const LdapSearch people{m_settings.base, m_settings.scope, m_settings.baseFilter, survey.attributes(),
                                nSAMPLE};
        const auto begun = Clock::now();
        const auto end = m_connection.search(people, searchDeadline(), [&survey](const LdapEntryView& entry) {
            if (survey.entries() == nSAMPLE)
                return false;
            survey.add(entry);
            return true;
        });
        const auto took = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begun).count();
        // The telephone, too, shows what came in time.
        const bool late = end.fault && end.fault->failure == LdapFailure::NoAnswer && survey.entries() > 0;
        if (end.fault && !late)
            return refused("Filter", *end.fault);
        if (survey.entries() == 0)
            return m_report.bad("Filter",
                                m_settings.baseFilter +
                                    " finds nothing there that may be seen: correct \"ldap-filter\", "
                                    "\"ldap-base\" or \"ldap-scope\", or let \"ldap-bind-dn\" see more.");
        m_report.good("Filter", m_settings.baseFilter + " finds " +
                                    (end.partial || late ? "more than " : "") +
                                    asMany(survey.entries(), "entry", "entries") + ", read in " +
                                    std::to_string(took) + " ms.");
        return tell(survey);
    }

    bool tell(const Survey& survey)
    {
        if (survey.named() == 0)
            return m_report.bad("Fields", "no entry has a name that the telephone could show: correct "
                                          "\"ldap-attribute-surname\", or \"ldap-schema\".");
        m_report.good("Fields", "what the entries have, and in brackets which attributes they carry:");
        for (const auto& line : survey.fields())
            m_report.more(line);
        if (survey.named() < survey.entries())
            m_report.note("Fields", asMany(survey.entries() - survey.named(), "entry has", "entries have") +
                                        " no name and cannot be shown: let \"ldap-filter\" leave them out.");
        if (const auto unused = survey.unusedItems(); !unused.empty())
            m_report.note("Fields", "nobody has what " + joined(unused) +
                                        (unused.size() == 1 ? " names" : " name") +
                                        ": name another attribute, or \"-\".");
        m_report.good("Example", survey.example() + ".");
        return true;
    }

    LdapWatchdog::Deadline searchDeadline() const { return Clock::now() + m_settings.searchTime; }

    const LdapServer& m_server;
    const LdapSettings& m_settings;
    Report& m_report;
    LdapWatchdog m_watchdog;
    LdapConnection m_connection;
};

bool checkConfiguration(const Configuration& configuration, const LdapSetup& setup, Report& report)
{
    bool right = true;
    for (const auto& refusal : configuration.refused())
        right = report.bad("Configuration", refusal.sentence);
    for (const auto& sentence : setup.faults)
        right = report.bad("Configuration", sentence);
    if (!right)
        return false;
    const auto& settings = setup.settings;
    report.good("Configuration", asMany(static_cast<int>(settings.servers.size()), "server", "servers") +
                                     "; searched for " + settings.baseFilter + " below " +
                                     quoted(settings.base) + ".");
    return true;
}

} // namespace

int checkLdap(const Profile& profile, std::ostream& out)
{
    const Configuration configuration(profile.configFile());
    const auto setup = ldapSettingsOf(configuration, profile.data);
    Report report(out);
    bool right = checkConfiguration(configuration, setup, report);
    if (!setup.usable())
        return EXIT_REFUSED;
    for (const auto& server : setup.settings.servers) {
        report.server(server.uri);
        right = ServerCheck(server, setup.settings, report).run() && right;
    }
    out << (right ? "\nThe corporate directory can be used.\n"
                  : "\nThe corporate directory does not work as it should: see what FAILed above.\n");
    return right ? EXIT_DONE : EXIT_REFUSED;
}

// What a search of the corporate directory costs, beside libldap alone with the same search on a
// connection of its own to the same server in the same run: request to last entry read. `added_ms` is
// what we add to a search, `ratio` our time over that of libldap.

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <ldap.h>

#include <framework/services/Utils.h>
#include <framework/util/Utf8Utils.h>

#include "PhonebookList.h"
#include "Slapd.h"
#include "app/Clock.h"
#include "calls/DigitAnalysis.h"
#include "directory/DirectoryService.h"
#include "directory/ldap/LdapRecord.h"
#include "system/Configuration.h"

namespace {

namespace fs = std::filesystem;

// How many people have a surname that begins with "B", with "C", and with another letter.
constexpr int nFEW = 50;
constexpr int nMANY = 1000;
constexpr int nOTHERS = 98950;

class NoEvents final : public EventPoster, public EventTimers {
public:
    void post(std::string, std::function<void()>) override {}
    Id callAt(std::chrono::milliseconds, std::string, std::function<void()>) override { return 1; }
    void cancel(Id) override {}
};

std::string people(const std::string& surname, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i) {
        const auto number = std::to_string(100000 + i);
        all +=
            person(surname + number, "Anna" + std::to_string(i % 50),
                   "telephoneNumber: +49 30 23125-" + number + "\ntelephoneNumber: +49 30 23126-" + number +
                       "\nmobile: +49 171 555" + number + "\nhomePhone: 030 555 " + number + "\nmail: p" +
                       number + "@example.com\no: Example\ntitle: Engineer\nstreet: Main St. " + number +
                       "\nl: Berlin\ndisplayName: " + surname + number + "\n");
    }
    return all;
}

class Company {
public:
    Company()
        : m_folder(newFolder())
        , m_authority(made(m_folder / "authority"))
        , m_server(made(m_folder / "server"), options(m_authority))
    {
        Utf8Utils::create("de");
        const Configuration configuration(m_folder / "config.toml",
                                          {{"ldap-servers", m_server.uri()},
                                           {"ldap-base", Slapd::base()},
                                           {"ldap-ca-file", m_authority.file()},
                                           {"ldap-size-limit", std::to_string(nMANY)}});
        m_setup = ldapSettingsOf(configuration, m_folder);
        auto service = DirectoryService::open(
            m_folder, {.language = "de", .groupSlots = 20, .watchInterval = std::chrono::milliseconds(0)},
            m_events);
        if (!service)
            throw std::runtime_error(service.error().sentence);
        m_pService = std::move(service).value();
        m_pService->setCorporateDirectory(m_setup);
        connectBare();
    }
    ~Company()
    {
        ldap_unbind_ext(m_bare, nullptr, nullptr);
        m_pService.reset();
        fs::remove_all(m_folder);
    }
    Company(const Company&) = delete;
    Company& operator=(const Company&) = delete;

    DirectoryService& service() { return *m_pService; }
    DigitAnalysis& digits() { return m_digits; }

    // The entries and all their values read, as the library gives them.
    int searchBare(const std::string& surname)
    {
        const auto& settings = m_setup.settings;
        const auto filter = ldapFilterOf({{Utils::SURNAME, surname}}, settings, true).value();
        LdapRecordReader reader(settings.attributes, filter);
        const auto names = reader.attributes();
        std::vector<char*> attributes;
        for (const auto& name : names)
            attributes.push_back(const_cast<char*>(name.c_str()));
        attributes.push_back(nullptr);
        LDAPMessage* answer = nullptr;
        ldap_search_ext_s(m_bare, settings.base.c_str(), LDAP_SCOPE_SUBTREE, filter.text.c_str(),
                          attributes.data(), 0, nullptr, nullptr, nullptr, settings.sizeLimit, &answer);
        int entries = 0;
        for (auto* entry = ldap_first_entry(m_bare, answer); entry; entry = ldap_next_entry(m_bare, entry)) {
            readEntry(entry);
            ++entries;
        }
        ldap_msgfree(answer);
        return entries;
    }

private:
    static fs::path newFolder()
    {
        char folder[] = "/tmp/bench-ldap-XXXXXX";
        if (!mkdtemp(folder))
            throw std::runtime_error("no folder for the server");
        return folder;
    }
    static fs::path made(const fs::path& folder)
    {
        fs::create_directory(folder);
        return folder;
    }
    static SlapdOptions options(TestAuthority& authority)
    {
        SlapdOptions options;
        options.people = people("B", nFEW) + people("C", nMANY) + people("D", nOTHERS);
        options.database = "index uid eq,sub\n";
        options.certificate = authority.issue();
        options.logs = false;
        return options;
    }

    void connectBare()
    {
        const int version = LDAP_VERSION3;
        const int demand = LDAP_OPT_X_TLS_DEMAND;
        const int client = 0;
        berval nobody{0, nullptr};
        ldap_initialize(&m_bare, m_server.uri().c_str());
        ldap_set_option(m_bare, LDAP_OPT_PROTOCOL_VERSION, &version);
        ldap_set_option(m_bare, LDAP_OPT_X_TLS_CACERTFILE, m_authority.file().c_str());
        ldap_set_option(m_bare, LDAP_OPT_X_TLS_REQUIRE_CERT, &demand);
        ldap_set_option(m_bare, LDAP_OPT_X_TLS_NEWCTX, &client);
        if (ldap_start_tls_s(m_bare, nullptr, nullptr) != LDAP_SUCCESS ||
            ldap_sasl_bind_s(m_bare, "", LDAP_SASL_SIMPLE, &nobody, nullptr, nullptr, nullptr) !=
                LDAP_SUCCESS)
            throw std::runtime_error("libldap alone cannot connect");
    }

    void readEntry(LDAPMessage* entry)
    {
        BerElement* position = nullptr;
        for (auto* name = ldap_first_attribute(m_bare, entry, &position); name;
             name = ldap_next_attribute(m_bare, entry, position)) {
            auto** values = ldap_get_values_len(m_bare, entry, name);
            benchmark::DoNotOptimize(values);
            ldap_value_free_len(values);
            ldap_memfree(name);
        }
        ber_free(position, 0);
    }

    const fs::path m_folder;
    TestAuthority m_authority;
    Slapd m_server;
    LdapSetup m_setup;
    ManualClock m_clock;
    NoEvents m_events;
    DigitAnalysis m_digits{{}, {}, m_clock, m_events, m_events};
    std::unique_ptr<DirectoryService> m_pService;
    LDAP* m_bare = nullptr;
};

Company& company()
{
    static Company theCompany;
    return theCompany;
}

template <typename Work> double secondsFor(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double>& seconds)
{
    const auto middle = seconds.begin() + static_cast<std::ptrdiff_t>(seconds.size() / 2);
    std::nth_element(seconds.begin(), middle, seconds.end());
    return *middle;
}

// Both search in every iteration, one after the other. Medians are compared: one search that the
// server is late with would outweigh all others.
template <typename Ours>
void compare(benchmark::State& state, const std::string& surname, int count, Ours ours)
{
    std::vector<double> ourSeconds;
    std::vector<double> bareSeconds;
    ours(); // opens the connection that is kept
    for (auto _ : state) {
        int found = 0;
        bareSeconds.push_back(secondsFor([&] { found = company().searchBare(surname); }));
        ourSeconds.push_back(secondsFor([&] { benchmark::DoNotOptimize(ours()); }));
        state.SetIterationTime(ourSeconds.back());
        if (found != count)
            state.SkipWithError("libldap alone did not find everybody");
    }
    const auto our = median(ourSeconds);
    const auto bare = median(bareSeconds);
    state.counters["bare_ms"] = bare * 1000;
    state.counters["added_ms"] = (our - bare) * 1000;
    state.counters["ratio"] = our / bare;
}

// Up to the filled result records.
void searchRecords(benchmark::State& state, const std::string& surname, int count)
{
    compare(state, surname, count, [&] {
        PhonebookSearchCriteria criteria({{Utils::SURNAME, surname}}, "", true);
        PhonebookSearchResults results;
        if (company().service().search(criteria, results, true) != DIRECTORY_SUCCESS ||
            results.getRecords().size() != static_cast<std::size_t>(count) + 1)
            state.SkipWithError("we did not find everybody");
        return results.getRecords().size();
    });
}

// Up to the sorted rows with their canonical numbers.
void searchRows(benchmark::State& state, const std::string& surname, int count)
{
    PhonebookList list(&company().service(), &company().digits());
    compare(state, surname, count, [&] {
        PhonebookSearchCriteria criteria({{Utils::SURNAME, surname}}, "", true);
        list.populate(criteria, true);
        list.convertToCanonical();
        if (list.size() != static_cast<unsigned>(count))
            state.SkipWithError("we did not find everybody");
        return list.size();
    });
}

void records50(benchmark::State& state)
{
    searchRecords(state, "b10*", nFEW);
}
BENCHMARK(records50)->UseManualTime()->Unit(benchmark::kMillisecond);

void records1000(benchmark::State& state)
{
    searchRecords(state, "c10*", nMANY);
}
BENCHMARK(records1000)->UseManualTime()->Unit(benchmark::kMillisecond);

void rows1000(benchmark::State& state)
{
    searchRows(state, "c10*", nMANY);
}
BENCHMARK(rows1000)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

// What tests begin with that let the client meet servers that misbehave.
//
// Each test ends with a search of a server that is well.

#pragma once

#include <chrono>
#include <fstream>
#include <future>
#include <memory>
#include <string>

#include "../CorporateDirectory.h"
#include "FaultServer.h"

// How much more memory this process has needed at its worst since the object was made.
class MemoryGrowth {
public:
    MemoryGrowth()
        : m_before(kilobytes("VmRSS:"))
    {
        // The worst until now is forgotten (proc(5)).
        std::ofstream("/proc/self/clear_refs") << "5";
    }
    long kilobytesMore() const { return kilobytes("VmHWM:") - m_before; }

private:
    static long kilobytes(const std::string& item)
    {
        std::ifstream status("/proc/self/status");
        for (std::string name; status >> name;) {
            long value = 0;
            if (name == item && status >> value)
                return value;
        }
        return 0;
    }

    const long m_before;
};

class DirectoryFaults : public CorporateDirectory {
protected:
    using Clock = std::chrono::steady_clock;
    // "ldap-search-timeout" of these tests, and what a busy computer may need beyond.
    static constexpr std::chrono::milliseconds SEARCH_TIME{1000};
    static constexpr std::chrono::milliseconds SLACK{1500};
    static constexpr long MOST_MEMORY = 16 * 1024; // kB

    static void SetUpTestSuite()
    {
        s_folder = std::make_unique<TemporaryFolder>(std::filesystem::temp_directory_path());
        std::filesystem::create_directory(*s_folder / "ca");
        std::filesystem::create_directory(*s_folder / "server");
        s_authority = std::make_unique<TestAuthority>(*s_folder / "ca");
        s_good = std::make_unique<Slapd>(
            *s_folder / "server",
            SlapdOptions{person("Miller", "Ann") + person("Milton", "Bob"), s_authority->issue(), "", ""});
    }
    static void TearDownTestSuite()
    {
        s_good.reset();
        s_authority.reset();
        s_folder.reset();
    }

    Items common() const override
    {
        return {{"ldap-servers", s_good->uri()},
                {"ldap-base", Slapd::base()},
                {"ldap-ca-file", s_authority->file()},
                {"ldap-connect-timeout", "1"},
                {"ldap-search-timeout", "1"}};
    }

    // A search before, so that what libraries set up once does not count as growth.
    void SetUp() override { expectGoodServerIsSearched(); }
    void TearDown() override { expectGoodServerIsSearched(); }

    void expectGoodServerIsSearched()
    {
        // However busy the computer is.
        configure({{"ldap-connect-timeout", "60"}, {"ldap-search-timeout", "60"}});
        EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
        EXPECT_EQ(found(Utils::FIRSTNAME), (Strings{"Ann", "Bob"}));
    }

    // Without TLS, so that the server can be scripted.
    void configurePlain(const std::string& servers, Items items = {})
    {
        items["ldap-servers"] = servers;
        items.try_emplace("ldap-security", "none");
        configure(items);
    }

    // Searches, and expects that to end in time, in little memory, and like this.
    void expectSearchEnds(DirectoryStatus expected)
    {
        const MemoryGrowth memory;
        const auto begun = Clock::now();
        EXPECT_EQ(searchSurname("mil*"), expected) << errors();
        EXPECT_LT(Clock::now() - begun, SEARCH_TIME + SLACK);
#ifndef __SANITIZE_ADDRESS__
        EXPECT_LT(memory.kilobytesMore(), MOST_MEMORY);
#endif
    }

    // The same, of a server that answers as the script says; the server is well afterwards, and is
    // searched once more.
    void expectSearchEnds(DirectoryStatus expected, FaultServer& server)
    {
        configurePlain(server.uri());
        expectSearchEnds(expected);
        const auto rows = records;
        expectRecovery(server);
        records = rows;
    }

    void expectRecovery(FaultServer& server)
    {
        server.recover(s_good->port());
        EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
        EXPECT_EQ(found(Utils::FIRSTNAME), (Strings{"Ann", "Bob"}));
    }

    // A telephone set up like this that is switched off while it searches ends that at once.
    void expectOffAtOnce(const std::function<void()>& waitUntilItSearches)
    {
        LdapClient other;
        other.setUp(setup);
        auto search = std::async(std::launch::async, [&other] {
            PhonebookSearchResults results;
            return other.search({{{Utils::SURNAME, "mil*"}}, "", true}, results, true);
        });
        waitUntilItSearches();
        const auto begun = Clock::now();
        other.cancel();
        EXPECT_EQ(search.get(), DIRECTORY_CONNECTION_FAILURE);
        EXPECT_LT(Clock::now() - begun, SLACK);
    }

    static inline std::unique_ptr<TemporaryFolder> s_folder;
    static inline std::unique_ptr<TestAuthority> s_authority;
    static inline std::unique_ptr<Slapd> s_good;
};

// A search of a server that says nothing, and what other threads do to it meanwhile.

#include <future>

#include "CorporateDirectory.h"
#include "SilentServer.h"

using namespace std::chrono_literals;

namespace {

class SearchInVain : public CorporateDirectory {
protected:
    SearchInVain() { configure({}); }

    Items common() const override
    {
        return {{"ldap-servers", "ldap://127.0.0.1:" + std::to_string(server.port())},
                {"ldap-base", "dc=example,dc=com"},
                {"ldap-security", "none"},
                {"ldap-connect-timeout", "60"},
                {"ldap-search-timeout", "60"}};
    }

    struct Outcome {
        DirectoryStatus status;
        std::vector<AttributeList> records;
    };
    std::future<Outcome> startSearch()
    {
        return std::async(std::launch::async, [this] {
            PhonebookSearchResults results;
            const auto status = client.search({{{Utils::SURNAME, "mil*"}}, "", true}, results, true);
            return Outcome{status, results.getRecords()};
        });
    }

    SilentServer server;
};

constexpr auto nAT_ONCE = 10s; // far below the times of the search

template <typename Search> bool endsAtOnce(const Search& search)
{
    return search.wait_for(nAT_ONCE) == std::future_status::ready;
}

} // namespace

TEST_F(SearchInVain, IsGivenUpWithoutAWordWhenItsUserHasNoTime)
{
    auto search = startSearch();
    server.awaitQuestion();
    client.setUrgent(true);
    ASSERT_TRUE(endsAtOnce(search));
    const auto outcome = search.get();
    EXPECT_EQ(outcome.status, DIRECTORY_SUCCESS);
    EXPECT_EQ(outcome.records, (std::vector<AttributeList>{{{Utils::NICKNAME, "false"}}}));
    EXPECT_EQ(errors(), "");
}

TEST_F(SearchInVain, IsNotBegunWhileThereIsNoTime)
{
    client.setUrgent(true);
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS);
    EXPECT_TRUE(records.empty());
}

TEST_F(SearchInVain, IsBegunAgainWhenThereIsTime)
{
    auto givenUp = startSearch();
    server.awaitQuestion();
    client.setUrgent(true);
    givenUp.wait();

    client.setUrgent(false);
    auto search = startSearch();
    server.awaitQuestion();
    client.setUrgent(true);
    EXPECT_TRUE(endsAtOnce(search));
}

TEST_F(SearchInVain, EndsWhenTheTelephoneIsSwitchedOff)
{
    auto search = startSearch();
    server.awaitQuestion();
    client.cancel();
    ASSERT_TRUE(endsAtOnce(search));
    EXPECT_EQ(search.get().status, DIRECTORY_CONNECTION_FAILURE);
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_CONNECTION_FAILURE) << "and so does every later one";
}

TEST_F(SearchInVain, GoesOnUnderItsOwnSettingsWhenOthersAreWritten)
{
    auto search = startSearch();
    server.awaitQuestion();
    configure({{"ldap-servers", ""}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_NOT_CONFIGURED) << "asked under the new ones";
    EXPECT_EQ(search.wait_for(0s), std::future_status::timeout);
    server.hangUp();
    ASSERT_TRUE(endsAtOnce(search));
    EXPECT_EQ(search.get().status, DIRECTORY_CONNECTION_FAILURE);
}

TEST_F(SearchInVain, EndsWithAllThatWaitForIt)
{
    auto first = startSearch();
    server.awaitQuestion();
    auto second = startSearch();
    auto third = startSearch();
    client.cancel();
    for (auto* search : {&first, &second, &third}) {
        ASSERT_TRUE(endsAtOnce(*search));
        EXPECT_EQ(search->get().status, DIRECTORY_CONNECTION_FAILURE);
    }
}

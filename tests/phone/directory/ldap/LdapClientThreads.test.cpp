// A search of a server that says nothing, and what other threads do to it meanwhile.

#include <future>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "CorporateDirectory.h"

using namespace std::chrono_literals;

namespace {

class SearchInVain : public CorporateDirectory {
protected:
    SearchInVain()
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* any = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(::bind(m_listener, any, size), 0);
        EXPECT_EQ(::listen(m_listener, 8), 0);
        EXPECT_EQ(::getsockname(m_listener, any, &size), 0);
        m_uri = "ldap://127.0.0.1:" + std::to_string(ntohs(address.sin_port));
        configure({});
    }
    ~SearchInVain() override
    {
        for (const int conversation : m_conversations)
            ::close(conversation);
        ::close(m_listener);
    }

    Items common() const override
    {
        return {{"ldap-servers", m_uri},
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
    // Waits until the server has been asked for something, which it does not answer.
    void awaitQuestion()
    {
        m_conversations.push_back(::accept(m_listener, nullptr, nullptr));
        char first = 0;
        EXPECT_EQ(::recv(m_conversations.back(), &first, 1, MSG_PEEK), 1);
    }
    // Closes the conversations, as a server does that ends.
    void hangUp()
    {
        for (const int conversation : m_conversations)
            ::shutdown(conversation, SHUT_RDWR);
    }

private:
    const int m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    std::string m_uri;
    std::vector<int> m_conversations;
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
    awaitQuestion();
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
    awaitQuestion();
    client.setUrgent(true);
    givenUp.wait();

    client.setUrgent(false);
    auto search = startSearch();
    awaitQuestion();
    client.setUrgent(true);
    EXPECT_TRUE(endsAtOnce(search));
}

TEST_F(SearchInVain, EndsWhenTheTelephoneIsSwitchedOff)
{
    auto search = startSearch();
    awaitQuestion();
    client.cancel();
    ASSERT_TRUE(endsAtOnce(search));
    EXPECT_EQ(search.get().status, DIRECTORY_CONNECTION_FAILURE);
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_CONNECTION_FAILURE) << "and so does every later one";
}

TEST_F(SearchInVain, GoesOnUnderItsOwnSettingsWhenOthersAreWritten)
{
    auto search = startSearch();
    awaitQuestion();
    configure({{"ldap-servers", ""}});
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_NOT_CONFIGURED) << "asked under the new ones";
    EXPECT_EQ(search.wait_for(0s), std::future_status::timeout);
    hangUp();
    ASSERT_TRUE(endsAtOnce(search));
    EXPECT_EQ(search.get().status, DIRECTORY_CONNECTION_FAILURE);
}

TEST_F(SearchInVain, EndsWithAllThatWaitForIt)
{
    auto first = startSearch();
    awaitQuestion();
    auto second = startSearch();
    auto third = startSearch();
    client.cancel();
    for (auto* search : {&first, &second, &third}) {
        ASSERT_TRUE(endsAtOnce(*search));
        EXPECT_EQ(search->get().status, DIRECTORY_CONNECTION_FAILURE);
    }
}

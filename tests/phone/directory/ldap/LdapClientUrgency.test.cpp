// A search that its user no longer waits for.

#include <future>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include "CorporateDirectory.h"

using namespace std::chrono_literals;

namespace {

class UrgentClient : public CorporateDirectory {
protected:
    UrgentClient()
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* any = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(::bind(m_listener, any, size), 0);
        EXPECT_EQ(::listen(m_listener, 8), 0);
        EXPECT_EQ(::getsockname(m_listener, any, &size), 0);
        configure({{"ldap-servers", "ldap://127.0.0.1:" + std::to_string(ntohs(address.sin_port))},
                   {"ldap-base", "dc=example,dc=com"},
                   {"ldap-connect-timeout", "60"},
                   {"ldap-search-timeout", "60"}});
    }
    ~UrgentClient() override
    {
        for (const int conversation : m_conversations)
            ::close(conversation);
        ::close(m_listener);
    }

    std::future<DirectoryStatus> startSearch()
    {
        return std::async(std::launch::async, [this] { return searchSurname("mil*"); });
    }
    // Waits until the server has been asked for something, which it does not answer.
    void awaitQuestion()
    {
        m_conversations.push_back(::accept(m_listener, nullptr, nullptr));
        char first = 0;
        EXPECT_EQ(::recv(m_conversations.back(), &first, 1, MSG_PEEK), 1);
    }

private:
    const int m_listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    std::vector<int> m_conversations;
};

constexpr auto nAT_ONCE = 10s; // far below the times of the search

} // namespace

TEST_F(UrgentClient, GivesUpASearchAndSaysNothingOfIt)
{
    auto search = startSearch();
    awaitQuestion();
    client.setUrgent(true);
    ASSERT_EQ(search.wait_for(nAT_ONCE), std::future_status::ready);
    EXPECT_EQ(search.get(), DIRECTORY_SUCCESS);
    EXPECT_TRUE(records.empty());
    EXPECT_EQ(trailer, "false");
    EXPECT_EQ(errors(), "");
}

TEST_F(UrgentClient, AsksNobodyWhileThereIsNoTime)
{
    client.setUrgent(true);
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS);
    EXPECT_TRUE(records.empty());
}

TEST_F(UrgentClient, AsksAgainWhenThereIsTime)
{
    auto givenUp = startSearch();
    awaitQuestion();
    client.setUrgent(true);
    givenUp.wait();

    client.setUrgent(false);
    auto search = startSearch();
    awaitQuestion();
    client.setUrgent(true);
    EXPECT_EQ(search.wait_for(nAT_ONCE), std::future_status::ready);
}

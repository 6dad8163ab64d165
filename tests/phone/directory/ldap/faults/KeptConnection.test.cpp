// What servers and networks do to a connection between two searches.

#include "DirectoryFaults.h"

using namespace ldap_bytes;

namespace {

class KeptConnection : public DirectoryFaults {
protected:
    // Answers one search of a connection, says `more` in the same breath, and then does this.
    static FaultServer::Script answeringOnce(const std::function<void(Conversation&)>& then,
                                             const std::string& more = "")
    {
        return [then, more](Conversation& c) {
            if (const auto bind = c.request())
                c.send(result(bind->id, BindResponse, 0));
            if (const auto search = c.request())
                c.send(entry(search->id, "cn=Ann", {{"sn", {"Miller"}}}) + result(search->id, SearchDone, 0) +
                       more);
            then(c);
        };
    }

    // Two searches find somebody, each on a connection of its own, and nobody hears of it.
    void expectRenewed(FaultServer& server)
    {
        configurePlain(server.uri());
        expectSearchEnds(DIRECTORY_SUCCESS);
        expectSearchEnds(DIRECTORY_SUCCESS);
        EXPECT_EQ(found(), Strings{"Miller"});
        EXPECT_EQ(server.connections(), 2);
        EXPECT_EQ(errors(), "");
    }
};

} // namespace

TEST_F(KeptConnection, ThatTheServerClosedIsRenewed)
{
    FaultServer server(answeringOnce([](Conversation&) {}));
    expectRenewed(server);
}

TEST_F(KeptConnection, ThatTheServerClosesWhenItIsAskedAgainIsRenewed)
{
    FaultServer server(answeringOnce([](Conversation& c) { c.request(); }));
    expectRenewed(server);
}

TEST_F(KeptConnection, ThatTheServerSaidFarewellOnIsRenewed)
{
    FaultServer server(answeringOnce([](Conversation& c) {
        c.send(result(0, ExtendedResponse, 52, "idle", element(0x8A, "1.3.6.1.4.1.1466.20036")));
        c.untilClosed();
    }));
    expectRenewed(server);
}

TEST_F(KeptConnection, OnWhichTheServerAnswersWhatNobodyAskedIsRenewed)
{
    // The next question will have the number 3.
    FaultServer server(answeringOnce([](Conversation& c) { c.untilClosed(); },
                                     entry(3, "cn=Eve", {{"sn", {"Evil"}}}) + result(3, SearchDone, 0)));
    expectRenewed(server);
}

TEST_F(KeptConnection, ThatIsLostWithItsServerIsLeftForTheNext)
{
    const auto stays = [](Conversation& c) { c.untilClosed(); };
    FaultServer server(answeringOnce(stays));
    FaultServer next(answeringOnce(stays));
    configurePlain(server.uri() + "," + next.uri());
    expectSearchEnds(DIRECTORY_SUCCESS);
    EXPECT_EQ(next.connections(), 0);
    server.recover(freePort()); // nobody is behind it any more
    expectSearchEnds(DIRECTORY_SUCCESS);
    EXPECT_EQ(next.connections(), 1);
}

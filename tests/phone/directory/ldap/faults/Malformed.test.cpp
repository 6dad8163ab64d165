// Servers that answer with what is no answer.

#include "DirectoryFaults.h"

using namespace ldap_bytes;

namespace {

using Answer = std::function<void(Conversation&, int id)>;

constexpr std::size_t nJUNK = 600u * 1024 * 1024;
// A little less than the telephone takes.
constexpr std::size_t nLARGEST = 4u * 1024 * 1024 - 1024;

// Accepts whoever asks, and answers the search like this.
FaultServer::Script searched(Answer answer)
{
    return [answer = std::move(answer)](Conversation& c) {
        const auto bind = c.request();
        if (!bind || !c.send(result(bind->id, BindResponse, 0)))
            return;
        if (const auto search = c.request())
            answer(c, search->id);
        c.untilClosed();
    };
}

// Answers the first question like this.
FaultServer::Script asked(Answer answer)
{
    return [answer = std::move(answer)](Conversation& c) {
        if (const auto request = c.request())
            answer(c, request->id);
        c.untilClosed();
    };
}

Answer says(std::string bytes)
{
    return [bytes = std::move(bytes)](Conversation& c, int) { c.send(bytes); };
}

Answer floods(std::string bytes)
{
    return [bytes = std::move(bytes)](Conversation& c, int) { c.flood(bytes, nJUNK); };
}

std::string miller(int id)
{
    return entry(id, "cn=Ann Miller", {{"sn", {"Miller"}}, {"givenName", {"Ann"}}});
}

struct Nonsense {
    const char* name;
    Answer answer;
};

void PrintTo(const Nonsense& nonsense, std::ostream* out)
{
    *out << nonsense.name;
}

std::string repeated(const std::string& text, std::size_t size)
{
    std::string all;
    while (all.size() < size)
        all += text;
    return all;
}

const std::string nHEADER_OF_2_31 = "\x30" + longLength(0x80000000u);

const Nonsense nNONSENSE[] = {
    {"AnotherProtocol", says("HTTP/1.1 400 Bad Request\r\nServer: none\r\n\r\n<html></html>")},
    {"Zeros", says(std::string(100, '\0'))},
    {"AllOnes", says(std::string(100, '\xFF'))},
    {"AnEmptyMessage", says(std::string("\x30\x00\x30\x00", 4))},
    {"AMessageWithoutOperation", says(element(Sequence, number(Integer, 1)))},
    {"AnIndefiniteLength", says(std::string("\x30\x80\x02\x01\x01\x61\x00\x00", 8))},
    {"ALengthOfSixteenBytes", says("\x30\x90" + std::string(100, '\1'))},
    {"ALengthOf2To31", says(nHEADER_OF_2_31)},
    {"ALengthOf2To31AndWhatItSays", floods(nHEADER_OF_2_31 + std::string(60000, 'x'))},
    {"ALengthOf2To31Inside",
     [](Conversation& c, int id) {
         c.send(message(id, "\x64" + longLength(0x80000000u) + std::string(100, '\4')));
     }},
    {"Junk", floods(repeated("junk", 65536))},
    {"JunkAsOneMessage",
     [](Conversation& c, int) {
         c.send("\x30" + longLength(nJUNK));
         c.flood(repeated("junk", 65536), nJUNK);
     }},
    {"JunkAsMessagesOfTheLargestSize", floods(element(Sequence, repeated("junk", nLARGEST)))},
    {"AnswersToSomebodyElse",
     [](Conversation& c, int id) {
         c.send(result(id + 77, BindResponse, 0) + result(id + 77, SearchDone, 0));
     }},
    {"ManyAnswersToSomebodyElse",
     [](Conversation& c, int id) { c.flood(repeated(miller(id + 77), 65536), nJUNK); }},
    {"AnswersToQuestionsOfTheFuture",
     [](Conversation& c, int id) { c.flood(repeated(result(id + 1, SearchDone, 0), 65536), nJUNK); }},
    {"Announcements",
     [](Conversation& c, int) { c.flood(repeated(result(0, ExtendedResponse, 0), 65536), nJUNK); }},
    {"AFarewell",
     [](Conversation& c, int) {
         const auto name = element(0x8A, "1.3.6.1.4.1.1466.20036");
         c.send(result(0, ExtendedResponse, 52, "going down", name));
     }},
    {"AnAnswerToAnotherQuestion", [](Conversation& c, int id) { c.send(result(id, ExtendedResponse, 0)); }},
    {"AResultThatIsNone",
     [](Conversation& c, int id) {
         const auto wrong = element(OctetString, "success");
         c.send(message(id, element(BindResponse, wrong)) + message(id, element(SearchDone, wrong)));
     }},
    {"ANegativeResult",
     [](Conversation& c, int id) { c.send(result(id, BindResponse, -1) + result(id, SearchDone, -1)); }},
};

class Senseless : public DirectoryFaults, public testing::WithParamInterface<Nonsense> {};

} // namespace

TEST_P(Senseless, AnswerEndsTheSearchWhateverWasAsked)
{
    FaultServer whoWeAre(asked(GetParam().answer));
    expectSearchEnds(DIRECTORY_CONNECTION_FAILURE, whoWeAre);

    FaultServer search(searched(GetParam().answer));
    expectSearchEnds(DIRECTORY_CONNECTION_FAILURE, search);
    EXPECT_TRUE(records.empty());

    FaultServer wishForTls(asked(GetParam().answer));
    configure({{"ldap-servers", wishForTls.uri()}});
    expectSearchEnds(DIRECTORY_CONNECTION_FAILURE);
    expectRecovery(wishForTls);

    FaultServer handshake([](Conversation& c) {
        GetParam().answer(c, 1);
        c.untilClosed();
    });
    configure({{"ldap-servers", handshake.tlsUri()}});
    expectSearchEnds(DIRECTORY_CONNECTION_FAILURE);
}

TEST_P(Senseless, AnswerLetsTheNextServerBeAsked)
{
    FaultServer server(asked(GetParam().answer));
    configurePlain(server.uri() + "," + s_good->uri(), {{"ldap-search-timeout", "3"}});
    const auto begun = Clock::now();
    EXPECT_EQ(searchSurname("mil*"), DIRECTORY_SUCCESS) << errors();
    EXPECT_LT(Clock::now() - begun, std::chrono::seconds(3) + SLACK);
    EXPECT_EQ(found(Utils::FIRSTNAME), (Strings{"Ann", "Bob"}));
}

INSTANTIATE_TEST_SUITE_P(Is, Senseless, testing::ValuesIn(nNONSENSE),
                         [](const auto& nonsense) { return std::string(nonsense.param.name); });

namespace {

class WrongAnswers : public DirectoryFaults {};

} // namespace

TEST_F(WrongAnswers, ServerThatClosesInTheMiddleOfAnEntryHasFailed)
{
    FaultServer server([](Conversation& c) {
        const auto bind = c.request();
        if (!bind || !c.send(result(bind->id, BindResponse, 0)))
            return;
        if (const auto search = c.request())
            c.send(miller(search->id) + miller(search->id).substr(0, 20));
    });
    expectSearchEnds(DIRECTORY_CONNECTION_FAILURE, server);
    EXPECT_TRUE(said("the server broke the search off")) << errors();
}

TEST_F(WrongAnswers, RowsThatCameInTimeAreShown)
{
    FaultServer server(
        searched([](Conversation& c, int id) { c.send(miller(id) + miller(id).substr(0, 20)); }));
    expectSearchEnds(DIRECTORY_TOO_MANY_MATCHES, server);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records.front(), (AttributeList{{Utils::SURNAME, "Miller"}, {Utils::FIRSTNAME, "Ann"}}));
}

TEST_F(WrongAnswers, PeopleWithoutEndAreCutAtTheLimit)
{
    FaultServer server(
        searched([](Conversation& c, int id) { c.flood(repeated(miller(id), 65536), nJUNK); }));
    expectSearchEnds(DIRECTORY_TOO_MANY_MATCHES, server);
    EXPECT_EQ(records.size(), 100u);
}

TEST_F(WrongAnswers, NamelessEntriesWithoutEndAreNobody)
{
    FaultServer server(searched([](Conversation& c, int id) {
        c.flood(repeated(entry(id, "cn=nobody", {{"description", {"nobody"}}}), 65536), nJUNK);
    }));
    expectSearchEnds(DIRECTORY_CONNECTION_FAILURE, server);
}

TEST_F(WrongAnswers, LargestEntriesWithoutEndNeedNoMemory)
{
    // The first search of a connection has this number.
    const auto large = entry(2, "cn=nobody", {{"description", {repeated("x", nLARGEST)}}});
    FaultServer server(searched([&large](Conversation& c, int id) {
        EXPECT_EQ(id, 2);
        c.flood(large, nJUNK);
    }));
    expectSearchEnds(DIRECTORY_CONNECTION_FAILURE, server);
}

TEST_F(WrongAnswers, EntriesWithoutEndAreNoAnswerToWhoWeAre)
{
    FaultServer server(asked([](Conversation& c, int id) { c.flood(repeated(miller(id), 65536), nJUNK); }));
    expectSearchEnds(DIRECTORY_CONNECTION_FAILURE, server);
}

TEST_F(WrongAnswers, EntriesWithoutEndAreNoAnswerToTheWishForTls)
{
    FaultServer server(asked([](Conversation& c, int id) { c.flood(repeated(miller(id), 65536), nJUNK); }));
    configure({{"ldap-servers", server.uri()}});
    expectSearchEnds(DIRECTORY_CONNECTION_FAILURE);
    expectRecovery(server);
}

TEST_F(WrongAnswers, ReferralsAreNotFollowed)
{
    std::string own;
    FaultServer server(searched([&own](Conversation& c, int id) {
        c.send(message(id, element(SearchReference, element(OctetString, own))) +
               result(id, SearchDone, 10, "", element(Referral, element(OctetString, own))));
    }));
    own = server.uri() + "/" + Slapd::base() + "??sub";
    configurePlain(server.uri());
    expectSearchEnds(DIRECTORY_WRONG_BASE);
    EXPECT_EQ(server.connections(), 1);
    EXPECT_TRUE(said("lies on another server")) << errors();
    expectRecovery(server);
}

TEST_F(WrongAnswers, ReferencesBesidePeopleAreSkipped)
{
    std::string own;
    FaultServer server(searched([&own](Conversation& c, int id) {
        const auto reference = message(id, element(SearchReference, element(OctetString, own)));
        c.send(reference + miller(id) + repeated(reference, 65536) + result(id, SearchDone, 0));
    }));
    own = server.uri() + "/" + Slapd::base();
    expectSearchEnds(DIRECTORY_SUCCESS, server);
    EXPECT_EQ(records.size(), 1u);
    EXPECT_EQ(server.connections(), 2) << "one was to see that it has recovered";
}

TEST_F(WrongAnswers, WordsOfTheServerAreCutAndCleaned)
{
    FaultServer server(searched([](Conversation& c, int id) {
        c.send(result(id, SearchDone, 80, "\x1b[2J\nERROR: all is well\xff" + std::string(1000000, 'x')));
    }));
    expectSearchEnds(DIRECTORY_CONNECTION_FAILURE, server);
    for (const auto& text : log.texts(AppLog::ERROR)) {
        EXPECT_LT(text.size(), 1000u);
        EXPECT_EQ(text.find_first_of("\x1b\n\xff"), std::string::npos) << text;
    }
}

namespace {

class SizeLimit : public DirectoryFaults {
protected:
    // The server has so many people, and does not care for limits.
    void expectStatusFor(int people, DirectoryStatus expected, std::size_t shown)
    {
        FaultServer server(searched([people](Conversation& c, int id) {
            std::string all;
            for (int i = 0; i < people; ++i)
                all += miller(id);
            c.send(all + result(id, SearchDone, 0));
        }));
        configurePlain(server.uri(), {{"ldap-size-limit", "10"}});
        expectSearchEnds(expected);
        EXPECT_EQ(records.size(), shown);
        EXPECT_EQ(trailer, "false");
        expectRecovery(server);
    }
};

} // namespace

TEST_F(SizeLimit, IsNotMetByOneLess)
{
    expectStatusFor(9, DIRECTORY_SUCCESS, 9);
}

TEST_F(SizeLimit, IsNotExceededByAsMany)
{
    expectStatusFor(10, DIRECTORY_SUCCESS, 10);
}

TEST_F(SizeLimit, IsExceededByOneMore)
{
    expectStatusFor(11, DIRECTORY_TOO_MANY_MATCHES, 10);
}

TEST_F(SizeLimit, OfAServerThatShowsNobodyIsExceeded)
{
    FaultServer server(searched([](Conversation& c, int id) { c.send(result(id, SearchDone, 4)); }));
    expectSearchEnds(DIRECTORY_TOO_MANY_MATCHES, server);
    EXPECT_TRUE(records.empty());
}

// The line of the demo: whom can be called on it, and what is heard of them.

#include <set>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <gtest/gtest.h>

#include "../calls/sip/EngineProcess.h"
#include "../calls/sip/LineWatcher.h"
#include "../calls/sip/Soon.h"
#include "DemoTelephone.h"
#include "app/DemoLine.h"
#include "calls/sip/SipLine.h"
#include "system/Configuration.h"

namespace {

constexpr char nSOUNDS[] = SOURCE_DIR "/demo/line/sounds/";

SipSetup setupOf(const Profile& profile)
{
    return sipSettingsOf(Configuration(profile.configFile()), profile.data);
}

int portOf(const Profile& profile)
{
    return setupOf(profile).settings.outboundProxy.value_or(SipHost()).port;
}

// -1 for none.
pid_t calleeOn(int port)
{
    return processOf("sipp", std::string("-p") + '\0' + std::to_string(port) + '\0');
}

class DemoLine : public testing::Test {
protected:
    void serve()
    {
        auto started = startDemoLine(profile, SOURCE_DIR "/demo");
        ASSERT_TRUE(started) << started.error().sentence;
        server = std::move(started).value();
        ASSERT_TRUE(server);
    }
    // In service, with its calls to what is served.
    void useLine()
    {
        serve();
        auto setup = setupOf(profile);
        ASSERT_TRUE(setup.usable());
        setup.settings.sound = SipSound::None;
        line = std::make_unique<SipLine>(setup.settings);
        line->setObserver(&watcher);
        ASSERT_TRUE(watcher.isInService(*line));
    }
    void expectFailure(const std::string& number, CallEnd why, const std::vector<CallState>& states)
    {
        ASSERT_TRUE(line->placeCall(number, number));
        EXPECT_TRUE(watcher.ends(number, CallState::Failed, why)) << number;
        EXPECT_EQ(watcher.states(number), states) << number;
    }

    TemporaryFolder folder;
    const Profile profile = Profile::in(folder.path());
    std::unique_ptr<ChildProgram> server;
    LineWatcher watcher;
    std::unique_ptr<SipLine> line;
};

// A telephone that keeps what it hears.
class Ear {
public:
    // Calls somebody on a port of this machine.
    Ear(const std::string& number, int port)
    {
        m_callee.sin_port = htons(static_cast<std::uint16_t>(port));
        const auto sound =
            "v=0\r\no=- 1 1 IN IP4 127.0.0.1\r\ns=-\r\nc=IN IP4 127.0.0.1\r\nt=0 0\r\nm=audio " +
            std::to_string(m_sound.port()) + " RTP/AVP 0\r\n";
        request("INVITE", number, "<sip:" + number + "@127.0.0.1>", sound);
        std::string answer;
        while (answer.find("SIP/2.0 200") != 0 && (answer = m_signals.next()) != "") {
        }
        const auto to = answer.find("To: ") + 4;
        m_to = answer.substr(to, answer.find('\r', to) - to);
        request("ACK", number, m_to, "");
        m_number = number;
    }
    ~Ear() { request("BYE", m_number, m_to, ""); }
    Ear(const Ear&) = delete;
    Ear& operator=(const Ear&) = delete;

    // The next octets, G.711.
    std::string hear(std::size_t octets)
    {
        constexpr std::size_t RTP_HEADER = 12;
        std::string heard;
        while (heard.size() < octets) {
            const auto packet = m_sound.next();
            if (packet.size() <= RTP_HEADER)
                break;
            heard += packet.substr(RTP_HEADER);
        }
        return heard.substr(0, octets);
    }

private:
    class Socket {
    public:
        Socket()
        {
            sockaddr_in own = onThisMachine();
            ::bind(m_socket, reinterpret_cast<const sockaddr*>(&own), sizeof own);
            const timeval patience{10, 0};
            ::setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        }
        ~Socket() { ::close(m_socket); }
        Socket(const Socket&) = delete;
        Socket& operator=(const Socket&) = delete;

        int port() const
        {
            sockaddr_in own{};
            socklen_t size = sizeof own;
            ::getsockname(m_socket, reinterpret_cast<sockaddr*>(&own), &size);
            return ntohs(own.sin_port);
        }
        void send(const std::string& text, const sockaddr_in& peer) const
        {
            ::sendto(m_socket, text.data(), text.size(), 0, reinterpret_cast<const sockaddr*>(&peer),
                     sizeof peer);
        }
        // "" when none comes within ten seconds.
        std::string next() const
        {
            std::string packet(4096, '\0');
            const auto size = ::recv(m_socket, packet.data(), packet.size(), 0);
            packet.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
            return packet;
        }

    private:
        int m_socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    };

    static sockaddr_in onThisMachine()
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return address;
    }
    void request(const std::string& method, const std::string& number, const std::string& to,
                 const std::string& body) const
    {
        const auto own = "127.0.0.1:" + std::to_string(m_signals.port());
        m_signals.send(
            method + " sip:" + number + "@127.0.0.1 SIP/2.0\r\nVia: SIP/2.0/UDP " + own + ";branch=z9hG4bK" +
                method + own + "\r\nFrom: <sip:ear@" + own + ">;tag=1\r\nTo: " + to + "\r\nCall-ID: " + own +
                "\r\nCSeq: " + (method == "BYE" ? "2 " : "1 ") + method + "\r\nContact: <sip:ear@" + own +
                ">\r\nContent-Type: application/sdp\r\nContent-Length: " + std::to_string(body.size()) +
                "\r\n\r\n" + body,
            m_callee);
    }

    Socket m_signals;
    Socket m_sound;
    sockaddr_in m_callee = onThisMachine();
    std::string m_number;
    std::string m_to;
};

} // namespace

TEST_F(DemoLine, IsAnsweredWhateverNumberIsCalled)
{
    useLine();
    for (const auto* number : {"2105", "00442079460000"}) {
        ASSERT_TRUE(line->placeCall(number, number));
        ASSERT_TRUE(watcher.becomes(number, CallState::Connected)) << number;
        line->clearCall(number);
        EXPECT_TRUE(watcher.ends(number, CallState::Null, CallEnd::Cleared)) << number;
    }
}

TEST_F(DemoLine, IsHeard)
{
    serve();
    for (const auto& [number, sound] : std::map<std::string, std::string>{{"2105", "greeting.ul"},
                                                                          {"300", "promise.ul"},
                                                                          {"302", "brief.ul"},
                                                                          {"*8201", "picked-up.ul"}}) {
        Ear ear(number, portOf(profile));
        const auto heard = ear.hear(1600);
        EXPECT_EQ(heard.size(), 1600u) << number;
        EXPECT_TRUE(textOf(nSOUNDS + sound).starts_with(heard)) << number;
    }
}

TEST_F(DemoLine, SaysSomethingElseOnEveryOccasionAndLoudEnough)
{
    std::set<std::string> all;
    for (const auto* name : {"greeting", "promise", "call-back", "picked-up", "brief"}) {
        const auto sound = textOf(std::string(nSOUNDS) + name + ".ul");
        EXPECT_GT(sound.size(), 3u * 8000) << name;
        // Without its sign, the less a mu-law octet is the louder it is.
        const auto loud = std::ranges::count_if(sound, [](char octet) { return (octet & 0x7F) < 0x30; });
        EXPECT_GT(loud, 8000 / 4) << name;
        all.insert(sound);
    }
    EXPECT_EQ(all.size(), 5u);
}

TEST_F(DemoLine, HasPeopleWhoCannotBeSpokenTo)
{
    useLine();
    using enum CallState;
    expectFailure("486", CallEnd::Busy, {Failed});
    expectFailure("404", CallEnd::NotFound, {Failed});
    expectFailure("*21#", CallEnd::NotFound, {Failed});
    expectFailure("603", CallEnd::Declined, {Alerting, Failed});
}

TEST_F(DemoLine, NeverPretendsThatHelpWasReached)
{
    useLine();
    for (const auto* number : {"110", "112", "0112", "911", "999", "17"})
        expectFailure(number, CallEnd::Unreachable, {CallState::Failed});
}

TEST_F(DemoLine, RingsAtSomebodyWhoseCallCanBePickedUp)
{
    useLine();
    ASSERT_TRUE(line->placeCall("1", "201"));
    ASSERT_TRUE(watcher.becomes("1", CallState::Alerting));
    line->clearCall("1");
    ASSERT_TRUE(watcher.ends("1", CallState::Null, CallEnd::Cleared));
    ASSERT_TRUE(line->pickUpCall("2", "201"));
    EXPECT_TRUE(watcher.becomes("2", CallState::Connected));
    line->clearCall("2");
    ASSERT_TRUE(watcher.ends("2", CallState::Null, CallEnd::Cleared));
    ASSERT_TRUE(line->pickUpCall("3", "202"));
    EXPECT_TRUE(watcher.ends("3", CallState::Failed, CallEnd::Other));
}

TEST_F(DemoLine, HasSomebodyWhoHangsUp)
{
    useLine();
    ASSERT_TRUE(line->placeCall("1", "302"));
    ASSERT_TRUE(watcher.becomes("1", CallState::Connected));
    EXPECT_TRUE(watcher.ends("1", CallState::Null, CallEnd::Cleared));
}

TEST_F(DemoLine, HasSomebodyWhoCallsBack)
{
    useLine();
    ASSERT_TRUE(line->placeCall("1", "300"));
    ASSERT_TRUE(watcher.becomes("1", CallState::Connected));
    EXPECT_FALSE(watcher.hasOffer());
    line->clearCall("1");
    const auto offer = watcher.offer();
    EXPECT_EQ(offer.caller.number, "300");
    line->answerCall(offer.callId);
    ASSERT_TRUE(watcher.becomes(offer.callId, CallState::Connected));
    line->clearCall(offer.callId);
    EXPECT_TRUE(watcher.ends(offer.callId, CallState::Null, CallEnd::Cleared));
}

TEST_F(DemoLine, IsThereAgainWhenWhatServesItHasDied)
{
    serve();
    const int port = portOf(profile);
    const auto before = calleeOn(port);
    ASSERT_GT(before, 0);
    ::kill(before, SIGKILL);
    ASSERT_TRUE(soon([&] { return calleeOn(port) > 0 && calleeOn(port) != before && receivesUdp(port); }));
    EXPECT_EQ(Ear("2105", port).hear(160).size(), 160u);
}

TEST_F(DemoLine, LeavesALineOfTheUsersOwnAlone)
{
    for (const std::string own :
         {"sip-server = \"pbx.example.com\"\n", "sip-outbound-proxy = \"10.0.0.1\"\n"}) {
        folder.write("config.toml", "sip-user = \"101\"\n" + own);
        const auto started = startDemoLine(profile, SOURCE_DIR "/demo");
        ASSERT_TRUE(started) << started.error().sentence;
        EXPECT_FALSE(started.value());
        EXPECT_EQ(folder.read("config.toml"), "sip-user = \"101\"\n" + own);
    }
}

TEST_F(DemoLine, IsNotInTheWayOfALineThatTheUserNamesLater)
{
    folder.write("config.toml", "sip-user = \"101\"\nsip-server = \"pbx.example.com\"\n"
                                "sip-outbound-proxy = \"127.0.0.1:25060\"\n");
    ASSERT_TRUE(startDemoLine(profile, SOURCE_DIR "/demo"));
    const auto settings = setupOf(profile).settings;
    EXPECT_EQ(settings.user, "101");
    EXPECT_FALSE(settings.outboundProxy);
}

TEST_F(DemoLine, TakesThePlaceOfTheOneOfAnEarlierStart)
{
    folder.write("config.toml", "sip-user = \"100\"\nsip-outbound-proxy = \"127.0.0.1:1\"\n");
    serve();
    EXPECT_GT(portOf(profile), 1);
}

TEST_F(DemoLine, ThatCannotBeStartedIsMissedByNobody)
{
    folder.write("config.toml", "sip-user = \"100\"\nsip-outbound-proxy = \"127.0.0.1:1\"\n");
    const auto started = startDemoLine(profile, folder.path() / "nowhere");
    ASSERT_FALSE(started);
    EXPECT_NE(started.error().sentence.find("line/serve"), std::string::npos) << started.error().sentence;
    EXPECT_FALSE(setupOf(profile).wanted);
}

TEST_F(DemoLine, IsEveryDemosOwn)
{
    serve();
    const TemporaryFolder other;
    const auto second = startDemoLine(Profile::in(other.path()), SOURCE_DIR "/demo");
    ASSERT_TRUE(second && second.value());
    EXPECT_NE(portOf(profile), portOf(Profile::in(other.path())));
    for (const auto& one : {profile, Profile::in(other.path())})
        EXPECT_EQ(Ear("2105", portOf(one)).hear(160).size(), 160u);
}

TEST(DemoLineOfTheTelephone, EndsWithIt)
{
    for (const int signal : {SIGTERM, SIGKILL}) {
        const DemoHome home;
        DemoTelephone demo(home);
        const int port = portOf(home.profile());
        EXPECT_TRUE(receivesUdp(port)) << demo.said();
        EXPECT_TRUE(soon([&] { return engineOf(home.data()) > 0; }));
        demo.end(signal);
        EXPECT_FALSE(receivesUdp(port));
        EXPECT_TRUE(soon([&] { return engineOf(home.data()) < 0; }));
    }
}

#include "system/ObexService.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <utility>

#include <gtest/gtest.h>

#include "BluetoothMock.h"

namespace fs = std::filesystem;

namespace {

using Phase = SendStatus::Phase;

constexpr char nCARD[] = "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Ann Baker\r\nEND:VCARD\r\n";
constexpr char nPHONE[] = "00:11:22:33:44:55";
constexpr char nTABLET[] = "00:11:22:33:44:66";

// The event thread's queue, worked off by the test itself.
class Events final : public EventPoster {
public:
    void post(std::string, std::function<void()> event) override
    {
        const std::lock_guard lock(m_mutex);
        m_events.push_back(std::move(event));
        m_posted.notify_all();
    }

    // Waits for one event, and runs it.
    bool runsOne()
    {
        bool wasRun = false;
        return until([&] { return std::exchange(wasRun, true); });
    }

    // Runs events until `condition` holds; false if that takes longer than ten seconds.
    bool until(const std::function<bool()>& condition)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!condition()) {
            std::unique_lock lock(m_mutex);
            if (!m_posted.wait_until(lock, deadline, [this] { return !m_events.empty(); }))
                return false;
            const auto event = std::move(m_events.front());
            m_events.pop_front();
            lock.unlock();
            event();
        }
        return true;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_posted;
    std::deque<std::function<void()>> m_events;
};

class Screen final : public SendStatusObserver {
public:
    void sendStatusChanged(const SendStatus& status) override { seen.push_back(status); }

    std::vector<SendStatus> seen;
};

class Sending : public testing::Test {
protected:
    Sending() { obex.setObserver(&screen); }

    bool becomesActive(std::size_t devices)
    {
        obex.setAllowed(true);
        return events.until([&] { return obex.isActive() && obex.devices().size() == devices; });
    }

    bool isOver()
    {
        return events.until([&] { return obex.status().phase == Phase::Over; });
    }

    std::size_t files() const
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()));
    }

    // Sends to the one device that is there, until the transfer is under way.
    void beginTransfer()
    {
        mock.addDevice(nPHONE, "Ann's phone", true);
        ASSERT_TRUE(becomesActive(1));
        ASSERT_TRUE(obex.sendContact("Ann Baker.vcf", nCARD));
        ASSERT_TRUE(mock.awaitFile());
        ASSERT_TRUE(events.until([&] { return obex.status().phase == Phase::Sending; }));
    }

    SendOutcome outcomeOfSession(const std::string& error, const std::string& message)
    {
        mock.sessionError = std::make_unique<sdbus::Error>(error, message);
        EXPECT_TRUE(obex.sendContact("Ann Baker.vcf", nCARD));
        EXPECT_TRUE(isOver());
        EXPECT_EQ(files(), 0u);
        return obex.status().outcome;
    }

    PrivateBus bus;
    BluetoothMock mock{bus.address()};
    TemporaryFolder folder;
    Events events;
    Screen screen;
    ObexService obex{events, folder.path(), {bus.address(), bus.address()}};
};

} // namespace

TEST_F(Sending, PushesACardToTheOnlyDevice)
{
    beginTransfer();
    EXPECT_EQ(mock.destination(), nPHONE);
    EXPECT_EQ(mock.target(), "opp");
    EXPECT_EQ(mock.file().name, "Ann Baker.vcf");
    EXPECT_EQ(mock.file().text, nCARD);
    EXPECT_EQ(mock.file().permissions, fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(mock.file().folder, fs::perms::owner_all);

    mock.transfer("active", 20);
    ASSERT_TRUE(events.until([&] { return obex.status().sent == 20; }));
    EXPECT_EQ(obex.status().size, std::string(nCARD).size());
    EXPECT_EQ(files(), 1u);
    mock.transfer("complete", std::string(nCARD).size());
    ASSERT_TRUE(isOver());
    EXPECT_EQ(obex.status().outcome, SendOutcome::Sent);
    EXPECT_EQ(obex.status().text(), "phone.send.sent");
    EXPECT_TRUE(mock.awaitRemoved());
    EXPECT_EQ(files(), 0u);

    EXPECT_EQ(screen.seen.front().phase, Phase::Connecting);
    EXPECT_EQ(screen.seen.back().phase, Phase::Over);
}

TEST_F(Sending, HearsOfAnEndThatComesBeforeTheAnswer)
{
    mock.behaviour = BluetoothMock::Push::CompletesBeforeItAnswers;
    mock.addDevice(nPHONE, "Ann's phone", true);
    ASSERT_TRUE(becomesActive(1));
    ASSERT_TRUE(obex.sendContact("a.vcf", nCARD));
    ASSERT_TRUE(isOver());
    EXPECT_EQ(obex.status().outcome, SendOutcome::Sent);
}

TEST_F(Sending, AsksWhichOfThePairedDevices)
{
    mock.addDevice(nTABLET, "Tablet", true);
    mock.addDevice(nPHONE, "Ann's phone", true);
    mock.addDevice("00:11:22:33:44:77", "Stranger", false);
    ASSERT_TRUE(becomesActive(2));
    ASSERT_TRUE(obex.sendContact("a.vcf", nCARD));
    EXPECT_EQ(obex.status().phase, Phase::Choosing);
    EXPECT_EQ(obex.status().devices, (std::vector<SendDevice>{{nPHONE, "Ann's phone"}, {nTABLET, "Tablet"}}));
    EXPECT_EQ(files(), 0u);
    obex.choose("00:11:22:33:44:77");
    EXPECT_EQ(obex.status().phase, Phase::Choosing);
    obex.choose(nTABLET);
    ASSERT_TRUE(mock.awaitFile());
    EXPECT_EQ(mock.destination(), nTABLET);
}

TEST_F(Sending, ShowsADevicesNameOnOneLineThatReadsInItsDirection)
{
    mock.addDevice(nTABLET, "Bob\n\u202Ephone", true);
    mock.addDevice(nPHONE, std::string(200, 'A'), true);
    ASSERT_TRUE(becomesActive(2));
    EXPECT_EQ(obex.devices(),
              (std::vector<SendDevice>{{nPHONE, std::string(60, 'A')}, {nTABLET, "Bob phone"}}));
}

TEST_F(Sending, GoesToTheDeviceThatIsNamed)
{
    mock.addDevice(nTABLET, "Tablet", true);
    mock.addDevice(nPHONE, "Ann's phone", true);
    ASSERT_TRUE(becomesActive(2));
    obex.setDevice("Tablet");
    ASSERT_TRUE(obex.sendContact("a.vcf", nCARD));
    ASSERT_TRUE(mock.awaitFile());
    EXPECT_EQ(mock.destination(), nTABLET);
}

TEST_F(Sending, IsCancelledWhileChoosing)
{
    mock.addDevice(nTABLET, "Tablet", true);
    mock.addDevice(nPHONE, "Ann's phone", true);
    ASSERT_TRUE(becomesActive(2));
    ASSERT_TRUE(obex.sendContact("a.vcf", nCARD));
    obex.cancel();
    EXPECT_EQ(obex.status().outcome, SendOutcome::Cancelled);
}

TEST_F(Sending, IsCancelledWhileConnecting)
{
    mock.behaviour = BluetoothMock::Push::AnswersLater;
    mock.addDevice(nPHONE, "Ann's phone", true);
    ASSERT_TRUE(becomesActive(1));
    ASSERT_TRUE(obex.sendContact("a.vcf", nCARD));
    ASSERT_TRUE(mock.awaitSession());
    EXPECT_FALSE(screen.seen.back().isAskedFor);
    EXPECT_FALSE(obex.sendContact("b.vcf", nCARD)); // one at a time
    EXPECT_EQ(obex.status().contact, "a.vcf");
    EXPECT_EQ(screen.seen.back().phase, Phase::Connecting);
    EXPECT_TRUE(screen.seen.back().isAskedFor);
    EXPECT_FALSE(obex.status().isAskedFor);
    obex.cancel();
    ASSERT_TRUE(isOver());
    EXPECT_EQ(obex.status().outcome, SendOutcome::Cancelled);
    EXPECT_EQ(files(), 0u);
    mock.answerSession();
    EXPECT_TRUE(mock.awaitRemoved()); // nobody wants that session any more
}

TEST_F(Sending, IsCancelledWhileItIsUnderWay)
{
    beginTransfer();
    obex.cancel();
    ASSERT_TRUE(isOver());
    EXPECT_EQ(obex.status().outcome, SendOutcome::Cancelled);
    EXPECT_TRUE(mock.awaitCancelled());
    EXPECT_TRUE(mock.awaitRemoved());
    EXPECT_EQ(files(), 0u);
}

TEST_F(Sending, TellsWhyNobodyWasReached)
{
    mock.addDevice(nPHONE, "Ann's phone", true);
    ASSERT_TRUE(becomesActive(1));
    const std::string failed = "org.bluez.obex.Error.Failed";
    EXPECT_EQ(outcomeOfSession(failed, "Unable to find service record"), SendOutcome::NotSupported);
    EXPECT_EQ(obex.status().text(), "phone.send.notSupported");
    EXPECT_EQ(outcomeOfSession(failed, "Host is down (112)"), SendOutcome::OutOfRange);
    EXPECT_EQ(obex.status().text(), "phone.send.outOfRange");
    EXPECT_EQ(outcomeOfSession(failed, "Timed out waiting for response"), SendOutcome::OutOfRange);
    EXPECT_EQ(outcomeOfSession(failed, "Connection refused (111)"), SendOutcome::Refused);
    EXPECT_EQ(outcomeOfSession(failed, "The transport got disconnected"), SendOutcome::OutOfRange);
    EXPECT_EQ(outcomeOfSession("org.freedesktop.DBus.Error.ServiceUnknown", "no such name"),
              SendOutcome::NoService);
    EXPECT_EQ(outcomeOfSession(failed, "Something else"), SendOutcome::Failed);
    EXPECT_EQ(obex.status().text(), "phone.send.failed");
}

TEST_F(Sending, IsRefusedByADeviceThatTakesNothing)
{
    beginTransfer();
    mock.transfer("error", 0);
    ASSERT_TRUE(isOver());
    EXPECT_EQ(obex.status().outcome, SendOutcome::Refused);
    EXPECT_EQ(obex.status().text(), "phone.send.refused");
    EXPECT_TRUE(mock.awaitRemoved());
}

TEST_F(Sending, LosesADeviceThatGoesAwayMeanwhile)
{
    beginTransfer();
    mock.transfer("active", 20);
    mock.transfer("error", 20);
    ASSERT_TRUE(isOver());
    EXPECT_EQ(obex.status().outcome, SendOutcome::OutOfRange);
}

TEST_F(Sending, FailsWhenTheFileIsNotTaken)
{
    mock.fileError = std::make_unique<sdbus::Error>("org.bluez.obex.Error.Failed", "Forbidden");
    mock.addDevice(nPHONE, "Ann's phone", true);
    ASSERT_TRUE(becomesActive(1));
    ASSERT_TRUE(obex.sendContact("a.vcf", nCARD));
    ASSERT_TRUE(isOver());
    EXPECT_EQ(obex.status().outcome, SendOutcome::Refused);
    EXPECT_TRUE(mock.awaitRemoved());
}

TEST_F(Sending, EndsWithTheServiceAndWorksAgainWithIt)
{
    beginTransfer();
    mock.endService();
    ASSERT_TRUE(isOver());
    EXPECT_EQ(obex.status().outcome, SendOutcome::NoService);
    ASSERT_TRUE(events.until([&] { return !obex.isActive(); }));
    EXPECT_FALSE(obex.sendContact("a.vcf", nCARD));

    mock.startService();
    ASSERT_TRUE(events.until([&] { return obex.isActive(); }));
    EXPECT_TRUE(obex.sendContact("a.vcf", nCARD));
}

TEST_F(Sending, EndsWithTheBus)
{
    beginTransfer();
    bus.end();
    ASSERT_TRUE(isOver());
    EXPECT_EQ(obex.status().outcome, SendOutcome::NoService);
    EXPECT_TRUE(events.until([&] { return !obex.isActive(); }));
    EXPECT_EQ(files(), 0u);
}

TEST_F(Sending, KnowsWhetherBluetoothIsOn)
{
    ASSERT_TRUE(becomesActive(0));
    mock.switchOn(false);
    EXPECT_TRUE(events.until([&] { return !obex.isActive(); }));
    EXPECT_FALSE(obex.sendContact("a.vcf", nCARD));
    EXPECT_EQ(obex.status().outcome, SendOutcome::NoService);
    EXPECT_EQ(obex.status().text(), "phone.send.noService");
    mock.switchOn(true);
    EXPECT_TRUE(events.until([&] { return obex.isActive(); }));
}

TEST_F(Sending, SaysThatThereIsNoDevice)
{
    mock.addDevice("00:11:22:33:44:77", "Stranger", false);
    ASSERT_TRUE(becomesActive(0));
    EXPECT_FALSE(obex.sendContact("a.vcf", nCARD));
    EXPECT_EQ(obex.status().outcome, SendOutcome::NoDevice);
}

TEST_F(Sending, ForgetsADeviceThatWasRemoved)
{
    mock.addDevice(nPHONE, "Ann's phone", true);
    mock.addDevice(nTABLET, "Tablet", true);
    ASSERT_TRUE(becomesActive(2));
    mock.removeDevice(nPHONE);
    ASSERT_TRUE(events.until([&] { return obex.devices().size() == 1; }));
    ASSERT_TRUE(obex.sendContact("a.vcf", nCARD));
    ASSERT_TRUE(mock.awaitSession());
    EXPECT_EQ(mock.destination(), nTABLET);
}

TEST_F(Sending, StopsWhenItIsForbidden)
{
    beginTransfer();
    obex.setAllowed(false);
    EXPECT_EQ(obex.status().outcome, SendOutcome::NoService);
    EXPECT_FALSE(obex.isActive());
    EXPECT_EQ(files(), 0u);
    EXPECT_TRUE(mock.awaitRemoved());
}

TEST_F(Sending, GivesAFileNoNameThatLeadsElsewhere)
{
    mock.addDevice(nPHONE, "Ann's phone", true);
    ASSERT_TRUE(becomesActive(1));
    ASSERT_TRUE(obex.sendContact("../../etc/passwd.vcf", nCARD));
    ASSERT_TRUE(mock.awaitFile());
    EXPECT_EQ(mock.file().name, "passwd.vcf");
    obex.cancel();
    ASSERT_TRUE(isOver());
    for (const std::string name : {"..", ".", "", "a/"}) {
        obex.sendContact(name, nCARD);
        EXPECT_EQ(obex.status().contact, "contact.vcf");
        obex.cancel();
        ASSERT_TRUE(isOver());
    }
}

TEST(SendingWithoutABus, IsRefusedAndSaysWhy)
{
    const std::vector<const char*> buses{"DBUS_SYSTEM_BUS_ADDRESS", "DBUS_SESSION_BUS_ADDRESS"};
    for (const auto* variable : buses)
        setenv(variable, "unix:path=/nowhere", 1);
    {
        const TemporaryFolder folder;
        Events events;
        ObexService obex(events, folder.path());
        EXPECT_FALSE(obex.sendContact("a.vcf", nCARD));
        EXPECT_EQ(obex.status().outcome, SendOutcome::NoService);
        obex.setAllowed(true);
        EXPECT_TRUE(events.runsOne()); // it has tried
        EXPECT_FALSE(obex.isActive());
        EXPECT_FALSE(obex.sendContact("a.vcf", nCARD));
    }
    for (const auto* variable : buses)
        unsetenv(variable);
}

TEST(SendingWithoutABus, RemovesWhatAKilledTelephoneLeft)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "sending-abcdef");
    folder.write("sending-abcdef/Ann.vcf", nCARD);
    folder.write("contacts.db", "");
    Events events;
    const ObexService obex(events, folder.path());
    EXPECT_FALSE(fs::exists(folder / "sending-abcdef"));
    EXPECT_TRUE(fs::exists(folder / "contacts.db"));
}

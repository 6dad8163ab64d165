// The telephone with a line that its configuration names.

#include <future>

#include <gtest/gtest.h>

#include <framework/csta/CSTARequests.h>
#include <framework/host/TextScreen.h>

#include "EngineProcess.h"
#include "Sipp.h"
#include "Soon.h"
#include "TemporaryFolder.h"
#include "app/Phone.h"
#include "app/Resources.h"

namespace {

class PhoneLine : public testing::Test {
protected:
    void start(ManualClock* manual = nullptr)
    {
        PhoneOptions options;
        options.profile = Profile::in(folder.path());
        options.catalogues = Resources::beside(BIN_DIR).catalogues;
        options.items = {{"language", "en"}};
        options.clock = manual;
        phone = std::move(Phone::create(std::move(options))).value();
        phone->start();
    }
    void configure(const std::string& user, int peer)
    {
        folder.write("config.toml", "sip-user = \"" + user + "\"\nsip-outbound-proxy = \"127.0.0.1:" +
                                        std::to_string(peer) + "\"\n");
    }
    // On the event thread.
    bool is(const std::function<bool(Services&)>& condition)
    {
        std::promise<bool> answer;
        phone->events().post("test", [&] { answer.set_value(condition(phone->services())); });
        return answer.get_future().get();
    }
    bool hasLine()
    {
        return soon([this] { return is([](Services& services) { return services.hasLine(); }); });
    }
    bool hasNoLine()
    {
        return soon([this] { return is([](Services& services) { return !services.hasLine(); }); });
    }
    bool call(const std::string& number)
    {
        return is([&](Services& services) {
            CSTAMakeCallRequest request;
            request.SetCalledDevice(number);
            services.calls().sendRequest(request);
            return dynamic_cast<const CSTAMakeCallResponse*>(request.getResponse()) != nullptr;
        });
    }
    pid_t engine() const { return engineOf(folder.path()); }

    TemporaryFolder folder;
    ManualClock clock;
    std::unique_ptr<Phone> phone;
};

} // namespace

TEST_F(PhoneLine, PlacesCallsAndHangsUp)
{
    Sipp callee("answers");
    configure("100", callee.port());
    start();
    ASSERT_TRUE(hasLine());
    ASSERT_TRUE(call("201"));
    ASSERT_TRUE(soon([&] { return callee.messages().find("\nACK ") != std::string::npos; }));
    EXPECT_FALSE(call("202")); // one at a time
    is([](Services& services) {
        services.calls().hangUp();
        return true;
    });
    EXPECT_TRUE(callee.succeeds());
}

TEST_F(PhoneLine, ChangesWithTheConfiguration)
{
    configure("100", freePort());
    start();
    ASSERT_TRUE(hasLine());
    const auto before = engine();
    configure("101", freePort());
    phone->reloadConfiguration();
    EXPECT_TRUE(soon([&] { return engine() > 0 && engine() != before; }));
    EXPECT_TRUE(hasLine());
    configure("", freePort());
    phone->reloadConfiguration();
    EXPECT_TRUE(hasNoLine());
    EXPECT_FALSE(call("201"));
    EXPECT_EQ(engine(), -1);
}

TEST_F(PhoneLine, ChangesAfterTheCallThatThereIs)
{
    Sipp callee("answers");
    configure("100", callee.port());
    start();
    ASSERT_TRUE(hasLine());
    const auto before = engine();
    ASSERT_TRUE(call("201"));
    ASSERT_TRUE(soon([&] { return callee.messages().find("\nACK ") != std::string::npos; }));
    configure("101", callee.port());
    phone->reloadConfiguration();
    EXPECT_TRUE(is([](Services& services) { return services.hasLine(); })); // it was read by then
    EXPECT_EQ(engine(), before);
    is([](Services& services) {
        services.calls().hangUp();
        return true;
    });
    EXPECT_TRUE(callee.succeeds());
    EXPECT_TRUE(soon([&] { return engine() > 0 && engine() != before; }));
    EXPECT_TRUE(hasLine());
}

TEST_F(PhoneLine, SaysOnTheIdleScreenWhyItIsNotThere)
{
    const auto shows = [this](const std::string& text) {
        return soon([&] { return toText(*phone->frames().latest()).find(text) != std::string::npos; });
    };
    folder.write("config.toml", "sip-user = \"100\"\n");
    start();
    EXPECT_TRUE(shows("The line cannot be used. The log says why."));
    Sipp refusing("refuses-to-register", "403 Forbidden");
    folder.write("config.toml",
                 "sip-user = \"100\"\nsip-server = \"127.0.0.1:" + std::to_string(refusing.port()) + "\"\n");
    phone->reloadConfiguration();
    EXPECT_TRUE(shows("The server refuses the line. Check its number and password."));
}

TEST_F(PhoneLine, EndsWithTheTelephone)
{
    configure("100", freePort());
    start();
    ASSERT_TRUE(hasLine());
    phone->stop();
    phone.reset();
    EXPECT_EQ(engine(), -1);
}

TEST_F(PhoneLine, IsNotStartedWhereTimeStandsStill)
{
    configure("100", freePort());
    start(&clock);
    phone->runPending();
    phone->advance(std::chrono::seconds(10));
    EXPECT_FALSE(phone->services().hasLine());
    EXPECT_EQ(engine(), -1);
}

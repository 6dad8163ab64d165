#include <gtest/gtest.h>

#include <framework/services/physicalEventObserver.h>

#include "app/EventThread.h"
#include "app/PhoneKey.h"
#include "system/PhysicalInterfaceService.h"

using DisplayAPI::Key;
using Strings = std::vector<std::string>;

namespace {

class Subscriber final : public physicalEventObserver {
public:
    Strings heard;

    void buttonPressedEvent(PhysDefs::keyFunctionType, int, PhysDefs::actionType, std::string name) override
    {
        heard.push_back(name);
    }
    void hookswitchEvent(bool offHook) override { heard.push_back(offHook ? "off-hook" : "on-hook"); }
    void jackEvent(int, bool) override {}
    Executable* getSubscribingService() override { return nullptr; }
};

class PhysicalInterface : public testing::Test {
protected:
    void press(const PhoneKey& key)
    {
        service.keyPressed(key);
        events.runPending();
    }

    ManualClock clock;
    EventThread events{clock};
    PhysicalInterfaceService service{events};
    Subscriber subscriber;
    const std::vector<PhysDefs::SubscriptionGrp> ownKeypad{{2, 1, 1}};
};

} // namespace

TEST_F(PhysicalInterface, TellsASubscriberOfKeysAndOfTheHook)
{
    EXPECT_TRUE(service.subscribe(&subscriber, ownKeypad));
    press(PhoneKey::of(Key::ofDigit('5')));
    press(PhoneKey::of(PhoneKey::Kind::Home));
    service.hookChanged(true);
    events.runPending();
    EXPECT_EQ(subscriber.heard, (Strings{"5", "home", "off-hook"}));
}

TEST_F(PhysicalInterface, TellsNothingOfWhatIsNoKeyOfTheTelephone)
{
    service.subscribe(&subscriber, ownKeypad);
    press(PhoneKey::of(Key::ofText("m")));
    press(PhoneKey::of(Key::of(Key::Kind::Row, 3)));
    EXPECT_EQ(subscriber.heard, Strings{});
}

TEST_F(PhysicalInterface, RefusesGroupsItDoesNotKnow)
{
    EXPECT_FALSE(service.subscribe(&subscriber, {}));
    EXPECT_FALSE(service.subscribe(&subscriber, {{2, 1, 1}, {9, 1, 1}}));
    EXPECT_FALSE(service.subscribe(nullptr, ownKeypad));
    press(PhoneKey::of(Key::ofDigit('5')));
    EXPECT_EQ(subscriber.heard, Strings{});
}

TEST_F(PhysicalInterface, DropsAKeyThatIsQueuedWhenThePhoneletsStop)
{
    service.subscribe(&subscriber, ownKeypad);
    service.keyPressed(PhoneKey::of(Key::ofDigit('5')));
    service.dropObservers();
    events.runPending();
    EXPECT_EQ(subscriber.heard, Strings{});
}

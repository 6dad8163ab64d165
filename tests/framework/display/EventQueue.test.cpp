#include "DisplayTest.h"

#include <stdexcept>
#include <vector>

using namespace DisplayAPI;

namespace {

class Events : public testing::Test {
protected:
    Events()
    {
        EventQueue::discardAll();
        recorder.call(static_cast<Displayable&>(list), "list");
        recorder.call(static_cast<Item&>(list), "list");
    }
    ~Events() override { EventQueue::discardAll(); }

    void deliver()
    {
        EventQueue::deliver([this](const char* name, const std::function<void()>& run) {
            names.emplace_back(name);
            run();
        });
    }

    Recorder recorder;
    SearchList list;
    Command command{Command::OK, TranslationInfo::plain("command")};
    std::vector<std::string> names;
};

} // namespace

TEST_F(Events, AreDeliveredInOrderAndNamed)
{
    EventQueue::post(&command, &list, &recorder);
    EventQueue::post(&list, static_cast<ItemStateListener*>(&recorder));
    EXPECT_EQ(recorder.heard(), "") << "never on the stack of the one who raised it";

    deliver();

    EXPECT_EQ(recorder.heard(), "command(list) changed(list) ");
    EXPECT_EQ(names, (std::vector<std::string>{"commandAction", "itemStateChanged"}));
}

TEST_F(Events, RaisedByAnEventAreDeliveredToo)
{
    int rest = 2;
    recorder.onCommand = [&](Command*, Displayable*) {
        if (rest-- > 0)
            EventQueue::post(&command, &list, &recorder);
    };
    EventQueue::post(&command, &list, &recorder);

    deliver();

    EXPECT_EQ(recorder.heard(), "command(list) command(list) command(list) ");
}

TEST_F(Events, AreDeliveredOneByOneOnRequest)
{
    EventQueue::post(&command, &list, &recorder);
    EventQueue::post(&command, &list, &recorder);
    const auto run = [](const char*, const std::function<void()>& deliver) { deliver(); };

    EXPECT_TRUE(EventQueue::deliverOne(run));
    EXPECT_EQ(recorder.heard(), "command(list) ");
    EXPECT_TRUE(EventQueue::deliverOne(run));
    EXPECT_FALSE(EventQueue::deliverOne(run));
}

TEST_F(Events, ForNobodyAreNotQueued)
{
    EventQueue::post(&command, &list, nullptr);
    EventQueue::post(&list, static_cast<ItemStateListener*>(nullptr));
    EventQueue::post(nullptr, &list, &recorder);

    deliver();

    EXPECT_TRUE(names.empty());
}

TEST_F(Events, AreDroppedWithTheirCommandItemOrScreen)
{
    auto mortalCommand = std::make_unique<Command>(Command::OK, TranslationInfo::plain("mortal"));
    auto mortalList = std::make_unique<SearchList>();
    EventQueue::post(mortalCommand.get(), &list, &recorder);
    EventQueue::post(&command, mortalList.get(), &recorder);
    EventQueue::post(mortalList.get(), static_cast<ItemStateListener*>(&recorder));
    const auto* address = static_cast<Item*>(mortalList.get());

    mortalCommand.reset();
    mortalList.reset();

    EXPECT_FALSE(EventQueue::isQueued(address));
    deliver();
    EXPECT_TRUE(names.empty());
}

TEST_F(Events, AreForgottenWithTheirListener)
{
    {
        Recorder mortal;
        EventQueue::post(&command, &list, &mortal);
        EventQueue::post(&list, static_cast<ItemStateListener*>(&mortal));
    }
    EventQueue::post(&command, &list, &recorder);

    deliver();

    EXPECT_EQ(names.size(), 1u);
}

TEST_F(Events, AreAllForgottenOnRequest)
{
    EventQueue::post(&command, &list, &recorder);
    EventQueue::discardAll();

    deliver();

    EXPECT_TRUE(names.empty());
}

TEST_F(Events, OfAnItemAreKnownWhileTheyWaitAndRun)
{
    bool during = false;
    bool ofAnother = false;
    SearchList another;
    recorder.onItem = [&](Item* item) {
        during = EventQueue::isDelivering(item);
        ofAnother = EventQueue::isDelivering(&another);
    };
    EventQueue::post(&list, static_cast<ItemStateListener*>(&recorder));
    EXPECT_TRUE(EventQueue::isQueued(&list));
    EXPECT_FALSE(EventQueue::isQueued(&another));
    EXPECT_FALSE(EventQueue::isDelivering(&list));

    deliver();

    EXPECT_TRUE(during);
    EXPECT_FALSE(ofAnother);
    EXPECT_FALSE(EventQueue::isQueued(&list));
    EXPECT_FALSE(EventQueue::isDelivering(&list));
}

TEST_F(Events, AreOverWhenTheListenerThrows)
{
    recorder.onItem = [](Item*) { throw std::runtime_error("handler"); };
    EventQueue::post(&list, static_cast<ItemStateListener*>(&recorder));

    EXPECT_THROW(deliver(), std::runtime_error);

    EXPECT_FALSE(EventQueue::isDelivering(&list));
    deliver();
    EXPECT_EQ(names.size(), 1u);
}

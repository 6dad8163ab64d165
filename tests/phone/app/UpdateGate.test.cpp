#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/EventThread.h"
#include "app/UpdateGate.h"

namespace {

class UpdateGateTest : public testing::Test {
protected:
    UpdateGateTest()
    {
        events.setDone([this] { gate.eventDone(); });
    }
    void change(const std::string& what)
    {
        gate.post("change", [this, what] { seen.push_back(what); });
    }
    void setForm(bool open)
    {
        events.post("key", [this, open] { formIsOpen = open; });
        events.runPending();
    }

    ManualClock clock;
    EventThread events{clock};
    bool formIsOpen = false;
    UpdateGate gate{events, [this] { return formIsOpen; }};
    std::vector<std::string> seen;
};

} // namespace

TEST_F(UpdateGateTest, LetsAChangeThroughWhenNoFormIsOpen)
{
    change("import");
    events.runPending();
    EXPECT_EQ(seen, std::vector<std::string>{"import"});
}

TEST_F(UpdateGateTest, HoldsChangesBackWhileAFormIsOpenAndThenDeliversThemInOrder)
{
    setForm(true);
    change("import");
    change("language");
    events.runPending();
    EXPECT_EQ(seen, std::vector<std::string>{});

    setForm(false);

    EXPECT_EQ(seen, (std::vector<std::string>{"import", "language"}));
}

TEST_F(UpdateGateTest, HoldsTheRestBackWhenAChangeOpensAForm)
{
    setForm(true);
    gate.post("change", [this] { formIsOpen = true; });
    change("second");
    events.runPending();

    setForm(false);
    EXPECT_EQ(seen, std::vector<std::string>{});

    setForm(false);
    EXPECT_EQ(seen, std::vector<std::string>{"second"});
}

TEST_F(UpdateGateTest, KeepsTheOrderOfAChangeThatComesWhileOthersAreHeld)
{
    setForm(true);
    change("first");
    events.runPending();
    events.post("key", [this] {
        formIsOpen = false;
        change("second");
    });
    events.runPending();
    EXPECT_EQ(seen, (std::vector<std::string>{"first", "second"}));
}

// Every journey once more with the first call of a service failing, then with the second, and so on
// until no call is left to fail. Whatever fails, the telephone goes on and no contact is lost that
// the journey itself does not delete; a change that failed is told on the screen.

#include <gtest/gtest.h>

#include <algorithm>

#include "FailingServices.h"
#include "JourneyPhone.h"

namespace {

using Strings = std::vector<std::string>;

struct Outcome {
    std::string screens;
    Strings contacts;
    Strings complaints;
    bool messageSeen = false;
    bool changeFailed = false;
    int calls = 0;
};

Outcome walk(const Journey& journey, int failing)
{
    FailingServices services(failing);
    Outcome outcome;
    JourneyPhone phone(
        journey, [&](const std::string& name, Executable* service) { return services.wrap(name, service); });
    for (const auto& step : journey.steps)
        outcome.screens += phone.run(step.words);
    outcome.contacts = phone.contacts();
    outcome.complaints = phone.complaints();
    outcome.messageSeen = phone.messageSeen();
    outcome.changeFailed = services.changeFailed();
    outcome.calls = services.calls();
    return outcome;
}

class FailureReplay : public testing::TestWithParam<std::filesystem::path> {};

std::string nameOf(const testing::TestParamInfo<std::filesystem::path>& info)
{
    auto name = info.param.stem().string();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

} // namespace

TEST_P(FailureReplay, SurvivesAnyCallThatFails)
{
    const auto journey = Journey::read(GetParam());
    const auto untouched = walk(journey, 0);
    int failing = 1;
    for (;; ++failing) {
        SCOPED_TRACE("call " + std::to_string(failing) + " failed");
        const auto outcome = walk(journey, failing);
        EXPECT_EQ(outcome.complaints, Strings{});
        EXPECT_TRUE(std::includes(outcome.contacts.begin(), outcome.contacts.end(),
                                  untouched.contacts.begin(), untouched.contacts.end()));
        if (outcome.changeFailed) {
            EXPECT_TRUE(outcome.messageSeen);
        }
        if (outcome.calls < failing) {
            EXPECT_EQ(outcome.screens, untouched.screens);
            break;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, FailureReplay, testing::ValuesIn(allJourneys()), nameOf);

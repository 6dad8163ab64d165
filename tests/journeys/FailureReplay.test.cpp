// Every journey once more with the first call of a service failing, then with the second, and so on
// until no call is left to fail. Whatever fails, and wherever the keys that follow lead then, the
// telephone goes on, no contact is lost or renamed without the phonebook asking for it, and a change
// that failed is told on the screen.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "FailingServices.h"
#include "JourneyPhone.h"

namespace {

using Strings = std::vector<std::string>;
using Contacts = std::map<std::string, std::string>; // names by id

struct Outcome {
    std::string screens;
    Contacts before; // at the start
    Contacts after;  // and at the end
    Strings changes; // what the phonebook asked for
    Strings complaints;
    bool failureSeen = false;
    bool changeFailed = false;
    int callsAtStart = 0;
    int calls = 0;
};

Outcome walk(const Journey& journey, int failing)
{
    FailingServices services(failing);
    Outcome outcome;
    JourneyPhone phone(
        journey, [&](const std::string& name, Executable* service) { return services.wrap(name, service); });
    outcome.callsAtStart = services.calls();
    outcome.before = phone.contacts();
    for (const auto& step : journey.steps)
        outcome.screens += phone.run(step.words);
    outcome.after = phone.contacts();
    outcome.changes = services.changes();
    outcome.complaints = phone.complaints();
    outcome.failureSeen = phone.failureSeen();
    outcome.changeFailed = services.changeFailed();
    outcome.calls = services.calls();
    return outcome;
}

// Whether the phonebook asked for this to be done with the contact, or with all.
bool asked(const Outcome& outcome, const std::string& request, const std::string& id)
{
    return std::ranges::any_of(outcome.changes, [&](const auto& change) {
        return change.find(request) != change.npos &&
               (change.find(id) != change.npos || change.find("<UniqueID>") == change.npos);
    });
}

// The contacts that are gone or have another name although the phonebook did not ask for it.
Strings lostBy(const Outcome& outcome)
{
    Strings lost;
    for (const auto& [id, name] : outcome.before) {
        const auto found = outcome.after.find(id);
        const bool isGone = found == outcome.after.end();
        if (isGone ? !asked(outcome, "delete_request", id)
                   : found->second != name && !asked(outcome, "write_request", id))
            lost.push_back(name);
    }
    return lost;
}

// Then a contact that is gone says nothing about this telephone.
bool othersTakeContactsAway(const Journey& journey)
{
    return std::ranges::any_of(journey.steps, [](const JourneyStep& step) {
        return step.words.find("outside:delete-all") != std::string::npos ||
               step.words.find("outside:restore") != std::string::npos ||
               step.words.find("outside:damage") != std::string::npos;
    });
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
    const bool keepsContacts = !othersTakeContactsAway(journey);
    int failing = 1;
    for (;; ++failing) {
        SCOPED_TRACE("call " + std::to_string(failing) + " failed");
        const auto outcome = walk(journey, failing);
        EXPECT_EQ(outcome.complaints, Strings{});
        if (keepsContacts) {
            EXPECT_EQ(lostBy(outcome), Strings{});
        }
        // What fails while it starts nobody has asked for.
        if (outcome.changeFailed && failing > outcome.callsAtStart) {
            EXPECT_TRUE(outcome.failureSeen);
        }
        if (outcome.calls < failing) {
            EXPECT_EQ(outcome.screens, untouched.screens);
            break;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, FailureReplay, testing::ValuesIn(allJourneys()), nameOf);

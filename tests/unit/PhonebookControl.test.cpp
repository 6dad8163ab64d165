#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <testing/FakeContext.h>
#include <testing/FakeCstaService.h>
#include <testing/FakeDigitAnalysis.h>
#include <testing/FakeDirectoryService.h>
#include <testing/FakeLocalMgmt.h>
#include <testing/FakeServices.h>
#include <testing/LogCapture.h>

#include "PhonebookControl.h"

namespace {

using Names = std::vector<std::string>;

const Names SERVICES{"DirectoryServiceIfc", "CSTAServiceIfc",       "DigitAnalysisServiceIfc",
                     "LocalMgmtIfc",        "DataAccessServiceIfc", "TeamServiceIfc",
                     "JournalServiceIfc",   "OBEXServiceIfc",       "PhysicalInterfaceServiceIfc"};

// What the getters return, in the order in which the services are looked up.
std::vector<const void*> servicesOf(const PhonebookControl& control)
{
    return {control.getDirectoryService(),        control.getCSTAService(),
            control.getDigitAnalysisService(),    control.getLocalManagementService(),
            control.getDataAccessService(),       control.getTeamService(),
            control.getJournalService(),          control.getOBEXService(),
            control.getPhysicalInterfaceService()};
}

class Control : public testing::Test {
protected:
    LogCapture log;
    FakeContext context;
    FakeDirectoryService directory;
    FakeCstaService csta;
    FakeDigitAnalysis digits;
    FakeLocalMgmt configuration;
    FakeDataAccess dataAccess;
    FakeTeam team;
    FakeJournal journal;
    FakeObex obex;
    FakePhysicalInterface keys;
};

TEST_F(Control, AsksForEachServiceOnceAndInOrder)
{
    const PhonebookControl control(&context);

    EXPECT_EQ(context.asked, SERVICES);
}

TEST_F(Control, HandsOutWhatTheTelephoneOffers)
{
    const std::vector<Executable*> offered{&directory, &csta,    &digits, &configuration, &dataAccess,
                                           &team,      &journal, &obex,   &keys};
    for (std::size_t i = 0; i < SERVICES.size(); ++i)
        context.services[SERVICES[i]] = offered[i];
    const PhonebookControl control(&context);

    EXPECT_EQ(servicesOf(control), std::vector<const void*>({&directory, &csta, &digits, &configuration,
                                                             &dataAccess, &team, &journal, &obex, &keys}));
}

TEST_F(Control, HasNoServicesWhenTheTelephoneOffersNone)
{
    const PhonebookControl control(&context);

    EXPECT_EQ(servicesOf(control), std::vector<const void*>(SERVICES.size(), nullptr));
}

TEST_F(Control, HasNoServicesWithoutAContext)
{
    const PhonebookControl control(nullptr);

    EXPECT_EQ(servicesOf(control), std::vector<const void*>(SERVICES.size(), nullptr));
}

TEST_F(Control, TakesAServiceOfAnotherTypeForNone)
{
    for (const auto& name : SERVICES)
        context.services[name] = name == "TeamServiceIfc" ? static_cast<Executable*>(&journal) : &team;
    const PhonebookControl control(&context);

    EXPECT_EQ(servicesOf(control), std::vector<const void*>(SERVICES.size(), nullptr));
}

TEST_F(Control, TracesItsLifeAndEachQuestion)
{
    {
        const PhonebookControl control(&context);
        servicesOf(control);
    }

    EXPECT_EQ(log.texts(5),
              Names({"PhonebookControl::PhonebookControl()", "PhonebookControl::getDirectoryService()",
                     "PhonebookControl::getCSTAService()", "PhonebookControl::getDigitAnalysisService()",
                     "PhonebookControl::getLocalManagementService()", "PhonebookControl::getDASService()",
                     "PhonebookControl::getTeamService()", "PhonebookControl::getJournalService()",
                     "PhonebookControl::getOBEXService()", "PhonebookControl::getPhysicalInterfaceService()",
                     "PhonebookControl::~PhonebookControl()"}));
    EXPECT_EQ(log.lines().front().component, "PhonebookPhonelet");
    EXPECT_EQ(log.lines().front().file, "./src/PhonebookControl");
}

} // namespace

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Command.h"

namespace {

using Names = std::vector<std::string>;

// How the compiler laid the plug-in's classes out, asked once.
class Classes {
public:
    static const Classes& get()
    {
        static const Classes classes;
        return classes;
    }

    // The operations in the slots of a class's own table; a destructor takes two.
    Names slots(const std::string& className) const
    {
        Names names;
        bool inside = false;
        for (const auto& line : m_lines) {
            if (line == "Vtable for " + className) {
                inside = true;
                continue;
            }
            if (!inside)
                continue;
            // The next table, of another base, begins with its own offset.
            const bool isOffset = std::regex_search(line, std::regex(R"(\)\(\.\.\.\)\)-\d+$)"));
            if (line.empty() || isOffset)
                break;
            std::smatch match;
            if (std::regex_search(line, match, std::regex(R"([A-Za-z_]+::(~?[A-Za-z_]+)$)")))
                names.push_back(match[1]);
        }
        return names;
    }

    // The direct bases of a class, in order; `known` says which names are meant.
    Names bases(const std::string& className, const Names& known) const
    {
        Names names;
        bool inside = false;
        for (const auto& line : m_lines) {
            if (line == "Class " + className)
                inside = true;
            else if (inside && line.empty())
                break;
            std::smatch match;
            if (inside && std::regex_search(line, match, std::regex(R"(^ *([A-Za-z_:]+) \(0x)")) &&
                std::find(known.begin(), known.end(), match[1]) != known.end())
                names.push_back(match[1]);
        }
        return names;
    }

private:
    Classes()
    {
        const auto folder =
            std::filesystem::temp_directory_path() / ("deskbook-slots-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "all.cpp") << "#include \"PhonebookMode.h\"\n"
                                             "#include \"PhonebookPhonelet.h\"\n"
                                             "#include \"PhonebookControl.h\"\n"
                                             "#include \"PhonebookList.h\"\n";
        const auto layout = folder / "classes.txt";
        m_messages = outputOf("g++ -std=c++20 -fsyntax-only -fdump-lang-class='" + layout.string() +
                              "' -I '" SOURCE_DIR "/framework/include' -I '" SOURCE_DIR "/src' '" +
                              (folder / "all.cpp").string() + "'");
        std::ifstream file(layout);
        for (std::string line; std::getline(file, line);)
            m_lines.push_back(line);
        std::filesystem::remove_all(folder);
        if (m_lines.empty())
            ADD_FAILURE() << "the compiler says: " << m_messages;
    }

    std::string m_messages;
    Names m_lines;
};

Names slots(const std::string& className)
{
    return Classes::get().slots(className);
}

const Names STATE_EVENTS{"tabValid",
                         "tabFrom",
                         "tabTo",
                         "enterStateEvent",
                         "exitStateEvent",
                         "backEvent",
                         "okEvent",
                         "saveEvent",
                         "rightEvent",
                         "screenEvent",
                         "doCSTAServiceInitiatedEvent",
                         "itemStateChangedEvent",
                         "popupDiallerItemStateChangedEvent",
                         "dialingStartedEvent",
                         "getDialPartyDetails",
                         "dialingStoppedEvent",
                         "interDigitTimeoutEvent",
                         "setCallContextProvider",
                         "clearCallContextProvider",
                         "phonebookDatabaseUpdated",
                         "mobilityPhonebookRefreshActive",
                         "mobilityPhonebookRefreshPending",
                         "timerEvent",
                         "buttonPressedEvent",
                         "stateAfterDialing"};

Names followedBy(Names names, const Names& more)
{
    names.insert(names.end(), more.begin(), more.end());
    return names;
}

TEST(SlotOrder, OfThePhonebookPhonelet)
{
    EXPECT_EQ(slots("PhonebookPhonelet"), Names({"~PhonebookPhonelet",
                                                 "~PhonebookPhonelet",
                                                 "init",
                                                 "shutdown",
                                                 "timerEvent",
                                                 "getInterfaces",
                                                 "startPhonelet",
                                                 "stopPhonelet",
                                                 "hide",
                                                 "show",
                                                 "tab",
                                                 "pause",
                                                 "resume",
                                                 "localeChanged",
                                                 "dateFormatChanged",
                                                 "timeFormatChanged",
                                                 "childGainedFocus",
                                                 "childLostFocus",
                                                 "deliverEvent",
                                                 "handleInterDigitTimeout",
                                                 "handleInitialDigitTimeout",
                                                 "isDiallingOk",
                                                 "handleDialingStarted",
                                                 "handleDialingStarted",
                                                 "handleDialingStopped",
                                                 "getDialPartyDetails",
                                                 "getEventHandlerName",
                                                 "phonebookDatabaseUpdated",
                                                 "missedCallsCountUpdate",
                                                 "missedCallsUpdate",
                                                 "dialledCallsUpdate",
                                                 "receivedCallsUpdate",
                                                 "forwardedCallsUpdate",
                                                 "callBacksUpdate",
                                                 "callBacksCountUpdate",
                                                 "buttonPressedEvent",
                                                 "hookswitchEvent",
                                                 "jackEvent",
                                                 "getSubscribingService",
                                                 "itemStateChanged",
                                                 "manageableDataChanged",
                                                 "setData",
                                                 "getData",
                                                 "resetUserData"}));
}

TEST(SlotOrder, OfThePhonebookPhoneletsBases)
{
    const Names bases{"Phonelet",
                      "CSTAEventIfc",
                      "DigitAnalysisServiceEventIfc",
                      "DisplayAPI::ItemStateListener",
                      "DirectoryServiceObserverIfc",
                      "JournalServiceObserverIfc",
                      "MgmtAgentIfc",
                      "physicalEventObserver"};
    EXPECT_EQ(Classes::get().bases("PhonebookPhonelet", bases), bases);
}

TEST(SlotOrder, OfTheMode)
{
    EXPECT_EQ(slots("PhonebookMode"),
              Names({"~PhonebookMode", "~PhonebookMode", "commandAction", "itemStateChanged",
                     "handleCSTASystemStatusEvent", "handleInitialDigitTimeout", "handleInterDigitTimeout",
                     "isDiallingOk", "handleDialingStarted", "handleDialingStarted", "handleDialingStopped",
                     "getDialPartyDetails", "getEventHandlerName", "handlePopupDiallerItemStateChanged",
                     "phonebookDatabaseUpdated", "RestartLocalPhonebook", "handleCSTADisplayUpdatedEvent"}));
}

TEST(SlotOrder, OfTheModesBases)
{
    const Names bases{"DisplayAPI::CommandListener", "DisplayAPI::ItemStateListener", "CSTAEventObserverBase",
                      "DigitAnalysisServiceEventIfc"};
    EXPECT_EQ(Classes::get().bases("PhonebookMode", bases), bases);
}

TEST(SlotOrder, OfTheStates)
{
    EXPECT_EQ(slots("PhonebookStateBase"), STATE_EVENTS);
}

// A state with members of its own has its destructor behind the events; those with none have none.
TEST(SlotOrder, OfEveryStatesDestructor)
{
    EXPECT_EQ(slots("PhonebookStateBaseDialer"),
              followedBy(STATE_EVENTS, {"~PhonebookStateBaseDialer", "~PhonebookStateBaseDialer"}));
    EXPECT_EQ(slots("PhonebookStateViewingList"),
              followedBy(STATE_EVENTS, {"~PhonebookStateViewingList", "~PhonebookStateViewingList"}));
    EXPECT_EQ(slots("LDAPStateViewingList"),
              followedBy(STATE_EVENTS, {"~LDAPStateViewingList", "~LDAPStateViewingList"}));
    EXPECT_EQ(slots("PhonebookStateRefreshing"),
              followedBy(STATE_EVENTS, {"~PhonebookStateRefreshing", "~PhonebookStateRefreshing"}));
}

TEST(SlotOrder, OfTheControl)
{
    EXPECT_EQ(slots("PhonebookControl"), Names({"~PhonebookControl", "~PhonebookControl"}));
}

TEST(SlotOrder, OfTheList)
{
    EXPECT_EQ(slots("PhonebookList"), Names({"~PhonebookList",
                                             "~PhonebookList",
                                             "size",
                                             "addEntry",
                                             "updateEntry",
                                             "populate",
                                             "populate",
                                             "depopulate",
                                             "elementAt",
                                             "getFullEntry",
                                             "deleteEntry",
                                             "deleteAll",
                                             "getIndex",
                                             "getDisplayMode",
                                             "getDisplayQualifier",
                                             "setDisplayMode",
                                             "setDisplayQualifier",
                                             "getGroupIndication",
                                             "convertToCanonical",
                                             "getNickNameResultIndicator",
                                             "isNicknameAttributeActive"}));
}

} // namespace

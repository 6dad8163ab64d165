// Calls that come in while the event thread waits for a directory that says nothing.

#include <gtest/gtest.h>

#include <atomic>

#include <framework/services/PhonebookSearchCriteria.h>
#include <framework/services/PhonebookSearchResults.h>
#include <framework/services/Utils.h>

#include "../SilentServer.h"
#include "../TemporaryFolder.h"
#include "../calls/TestLine.h"
#include "ScriptedPhonelet.h"
#include "app/Phone.h"
#include "app/PhoneKey.h"
#include "app/Resources.h"
#include "directory/ContactStore.h"
#include "directory/DirectoryService.h"

using namespace std::chrono_literals;
using DisplayAPI::FrameCall;

namespace {

class CallsWhileBusy : public testing::Test {
protected:
    CallsWhileBusy()
    {
        Contact contact;
        contact.surname = "Miller";
        contact.firstname = "Anna";
        contact.office = "030 2222";
        EXPECT_TRUE(ContactStore(DirectoryService::fileIn(folder.path()), "en").write(contact).ok());

        PhoneOptions options;
        options.profile = Profile::in(folder.path());
        options.catalogues = Resources::beside(BIN_DIR).catalogues;
        options.items = {{"language", "en"},
                         {"ldap-servers", "ldap://127.0.0.1:" + std::to_string(server.port())},
                         {"ldap-base", "dc=example,dc=com"},
                         {"ldap-security", "none"},
                         {"ldap-connect-timeout", "60"},
                         {"ldap-search-timeout", "60"}};
        options.phonelets = {{"book", std::string(BIN_DIR) + "/libhello-phonelet.so"}};
        options.wrapPhonelet = [this](std::unique_ptr<Phonelet>) {
            auto scripted = std::make_unique<ScriptedPhonelet>(calls);
            scripted->script["OK"] = [this] { search(); };
            return scripted;
        };
        phone = std::move(Phone::create(std::move(options))).value();
        phone->start();
        phone->events().post("add line", [this] {
            auto added = std::make_unique<TestLine>("20");
            line = added.get();
            phone->services().addLine(std::move(added));
        });
        press("phonebook");
        EXPECT_TRUE(phone->events().waitUntilDone(20s));
        press("ok");
        server.awaitQuestion();
    }
    ~CallsWhileBusy() override { phone->stop(); }

    void search()
    {
        PhonebookSearchCriteria criteria({{Utils::SURNAME, "mil*"}}, "", true);
        PhonebookSearchResults results;
        phone->services().directory().search(criteria, results, true);
        searchIsOver = true;
    }
    void press(const std::string& word) { phone->keys().press(keysFromWord(word)->front()); }
    // The first frame with so many calls; null when none comes.
    FrameStore::FramePtr frameWithCalls(std::size_t count)
    {
        auto frame = phone->frames().latest();
        while (frame && frame->signs.calls.size() != count)
            frame = phone->frames().waitForFrameAfter(frame->number, 20s);
        return frame;
    }

    TemporaryFolder folder;
    SilentServer server;
    ScriptedPhonelet::Calls calls;
    TestLine* line = nullptr;
    std::atomic<bool> searchIsOver = false;
    std::unique_ptr<Phone> phone;
};

TEST_F(CallsWhileBusy, AreOnTheScreenAtOnceWithTheirCallersNameUntilTheCallerGivesUp)
{
    line->ring({"+49302222", ""});
    const auto ringing = frameWithCalls(1);
    ASSERT_NE(ringing, nullptr);
    EXPECT_EQ(ringing->signs.calls[0].state, FrameCall::State::Incoming);
    EXPECT_EQ(ringing->signs.calls[0].name, "Miller, Anna");

    line->tell(CallState::Null, CallEnd::NoAnswer);
    EXPECT_NE(frameWithCalls(0), nullptr);
    EXPECT_FALSE(searchIsOver);
}

TEST_F(CallsWhileBusy, AreTakenAtOnce)
{
    line->ring({"+49302222", ""});
    press("hook");
    ASSERT_TRUE(phone->events().waitUntilDone(20s));
    EXPECT_TRUE(searchIsOver);
    const auto frame = phone->frames().latest();
    ASSERT_EQ(frame->signs.calls.size(), 1u);
    EXPECT_EQ(frame->signs.calls[0].state, FrameCall::State::Connected);
    EXPECT_TRUE(frame->signs.offHook);
    EXPECT_EQ(frame->base.role, DisplayAPI::FrameRole::Idle);
}

TEST_F(CallsWhileBusy, AreRejectedAtOnce)
{
    line->ring({"+49302222", ""});
    press("hangup");
    ASSERT_TRUE(phone->events().waitUntilDone(20s));
    EXPECT_TRUE(searchIsOver);
    EXPECT_EQ(phone->frames().latest()->signs.calls.size(), 0u);
    EXPECT_FALSE(phone->frames().latest()->signs.offHook);
}

} // namespace

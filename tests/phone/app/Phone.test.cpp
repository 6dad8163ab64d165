// The telephone with phonelets of the tests' own.

#include <gtest/gtest.h>

#include <future>
#include <stdexcept>

#include <framework/host/TextScreen.h>
#include <framework/services/LocalMgmtIfc.h>

#include <testing/CheckedPhonelet.h>
#include <testing/LogCapture.h>

#include "../TemporaryFolder.h"
#include "../calls/TestLine.h"
#include "ScriptedPhonelet.h"
#include "app/Phone.h"
#include "app/PhoneKey.h"
#include "app/Resources.h"
#include "directory/DirectoryService.h"

using namespace std::chrono_literals;
using Calls = ScriptedPhonelet::Calls;
using Verdict = KeyGate::Verdict;

namespace {

const std::filesystem::path HELLO = std::string(BIN_DIR) + "/libhello-phonelet.so";

PhoneOptions optionsIn(const TemporaryFolder& folder)
{
    PhoneOptions options;
    options.profile = Profile::in(folder.path());
    options.catalogues = Resources::beside(BIN_DIR).catalogues;
    options.items = {{"language", "en"}};
    return options;
}

class PhoneTest : public testing::Test {
protected:
    PhoneTest()
    {
        setenv("TZ", "UTC", 1);
        auto options = optionsIn(folder);
        options.clock = &clock;
        options.phonelets = {{"book", HELLO}, {"child", HELLO}};
        options.items.erase("language");
        folder.write("config.toml", "language = \"en\"\n");
        options.wrapPhonelet = [this](std::unique_ptr<Phonelet>) -> std::unique_ptr<Phonelet> {
            auto scripted = std::make_unique<ScriptedPhonelet>(calls);
            (pBook ? pChild : pBook) = scripted.get();
            return std::make_unique<CheckedPhonelet>(std::move(scripted),
                                                     [](const std::string& what) { ADD_FAILURE() << what; });
        };
        phone = std::move(Phone::create(std::move(options))).value();
        phone->start();
        phone->runPending();
        calls.clear();
    }
    ~PhoneTest() override { phone->stop(); }

    Verdict press(const std::string& word)
    {
        auto verdict = Verdict::Passed;
        const auto keys = keysFromWord(word);
        for (const auto& key : *keys) {
            verdict = phone->keys().press(key);
            phone->runPending();
        }
        return verdict;
    }
    // What was called since this was asked last.
    Calls called() { return std::exchange(calls, {}); }
    std::string screen() { return toText(*phone->frames().latest()); }
    bool shows(const std::string& text) { return screen().find(text) != std::string::npos; }
    void inEvent(const std::function<void()>& action)
    {
        phone->events().post("test", action);
        phone->runPending();
    }
    void administratorWrites(const std::string& text)
    {
        folder.write("config.toml", text);
        phone->reloadConfiguration();
        phone->runPending();
    }
    void openForm()
    {
        press("phonebook");
        inEvent([this] {
            phone->services().directory().addObserver(pBook);
            pBook->display().setCurrent(&pBook->form);
        });
        called();
    }
    void leaveForm()
    {
        inEvent([this] { pBook->display().setCurrent(&pBook->list); });
    }
    // Another program adds a contact.
    void othersAdd(const std::string& surname)
    {
        Contact contact;
        contact.surname = surname;
        ASSERT_TRUE(ContactStore(DirectoryService::fileIn(folder.path()), "").write(contact).ok());
        inEvent([this] { phone->services().directory().lookForChanges(); });
    }
    void openChild()
    {
        press("phonebook");
        inEvent([this] { pBook->getPhoneletHandle()->push("book", "child", 0); });
        called();
    }

    TemporaryFolder folder;
    ManualClock clock;
    Calls calls;
    ScriptedPhonelet* pBook = nullptr;
    ScriptedPhonelet* pChild = nullptr;
    std::unique_ptr<Phone> phone;
};

} // namespace

TEST_F(PhoneTest, IsIdleAtFirst)
{
    EXPECT_TRUE(shows("09:00\nMonday, January 2"));
    EXPECT_TRUE(shows("( Phonebook )")) << screen();
}

TEST(PhoneWithABadContactsFile, NamesTheFileInItsLanguage)
{
    const TemporaryFolder folder;
    const auto file = DirectoryService::fileIn(folder.path());
    folder.write(file.filename().string(), "this is no database");
    ManualClock clock;
    auto options = optionsIn(folder);
    options.clock = &clock;
    options.items = {{"language", "de"}};
    const auto phone = std::move(Phone::create(std::move(options))).value();
    phone->start();
    phone->runPending();

    const auto screen = toText(*phone->frames().latest());
    EXPECT_NE(screen.find(file.string()), std::string::npos) << screen;
    EXPECT_NE(screen.find("keine Kontaktdatei dieses Telefons"), std::string::npos) << screen;
}

TEST_F(PhoneTest, ShowsThatItIsOffHookAndThatItsDigitsAreDialled)
{
    const auto signs = [this] { return phone->frames().latest()->signs; };
    press("dialpad");
    EXPECT_TRUE(signs().dialPad);
    press("dialpad");
    EXPECT_FALSE(signs().dialPad);
    press("hook");
    EXPECT_TRUE(signs().offHook);
    press("hangup");
    EXPECT_FALSE(signs().offHook);
}

TEST_F(PhoneTest, TellsTheTimeEachMinute)
{
    phone->advance(60s);
    EXPECT_TRUE(shows("09:01"));
}

TEST_F(PhoneTest, ShowsThePhonebookWithItsKeyAndThenTabs)
{
    press("phonebook");
    EXPECT_EQ(called(), Calls{"book: show"});
    EXPECT_TRUE(shows("> one"));

    press("phonebook");
    EXPECT_EQ(called(), Calls{"book: tab"});
}

TEST_F(PhoneTest, OpensThePhonebookWithTheIdleScreensSoftKey)
{
    press("soft1");
    EXPECT_EQ(called(), Calls{"book: show"});
}

TEST_F(PhoneTest, HidesThePhonebookWithHomeAndKeepsItsScreen)
{
    press("phonebook");
    press("down");
    press("home");
    EXPECT_EQ(called(), (Calls{"book: show", "book: hide"}));
    EXPECT_TRUE(shows("Monday"));

    press("phonebook");
    EXPECT_TRUE(shows("> two"));
}

TEST_F(PhoneTest, HidesThePhonebookWhenACallIsAccepted)
{
    press("phonebook");
    inEvent([this] { phone->callAccepted(); });
    EXPECT_EQ(called(), (Calls{"book: show", "book: hide"}));
}

TEST_F(PhoneTest, HidesAPhoneletAfterItAskedToLeaveAndNotInside)
{
    press("phonebook");
    pBook->script["BACK"] = [this] {
        pBook->getPhoneletHandle()->leave("Book");
        EXPECT_EQ(calls.back(), "book: BACK");
    };
    press("back");
    EXPECT_EQ(called(), (Calls{"book: show", "book: BACK", "book: hide"}));
}

TEST_F(PhoneTest, BringsAPhoneletToTheFrontThatAsksForTheFocus)
{
    inEvent([this] { pChild->requestFocus(); });
    EXPECT_EQ(called(), Calls{"child: show"});
    inEvent([this] { pBook->requestFocus(); });
    EXPECT_EQ(called(), (Calls{"child: hide", "book: show"}));
    inEvent([this] { pBook->releaseFocus(); });
    EXPECT_EQ(called(), Calls{"book: hide"});
}

TEST_F(PhoneTest, PushesAChildWithoutHidingItsParent)
{
    press("phonebook");
    called();
    inEvent([this] {
        pBook->getPhoneletHandle()->push("book", "child", 0);
        EXPECT_EQ(calls, Calls{});
    });
    EXPECT_EQ(called(), (Calls{"child: show", "book: gained child"}));
}

TEST_F(PhoneTest, ShowsTheParentBeforeItHearsThatItsChildLostTheFocusToTheTabKey)
{
    openChild();
    press("phonebook");
    EXPECT_EQ(called(), (Calls{"child: hide", "book: show", "book: lost child"}));
}

TEST_F(PhoneTest, LetsAChildThatIsLeftTakeItsParentWithIt)
{
    openChild();
    pChild->script["BACK"] = [this] { pChild->getPhoneletHandle()->leave("Child"); };
    press("back");
    EXPECT_EQ(called(), (Calls{"child: BACK", "child: hide", "book: hide", "book: lost child"}));
    EXPECT_TRUE(shows("Monday"));
}

TEST_F(PhoneTest, LeavesAPhoneletWhoseScreenHasNoUseForBack)
{
    press("phonebook");
    inEvent([this] { pBook->list.setCommandListener(nullptr); });
    inEvent([this] { pBook->display().remove(pBook->list, false); });
    press("back");
    EXPECT_EQ(called(), (Calls{"book: show", "book: hide"}));
}

TEST_F(PhoneTest, IgnoresAPushOfAPhoneletThatDoesNotExist)
{
    LogCapture log;
    press("phonebook");
    inEvent([this] { pBook->getPhoneletHandle()->push("book", "CorvanStimulus", 0); });
    EXPECT_EQ(called(), Calls{"book: show"});
    EXPECT_TRUE(log.has("there is no phonelet \"CorvanStimulus\" for \"book\"", AppLog::REFUSED));
}

TEST_F(PhoneTest, ClosesANotificationWithAKeyThatDoesNothingElse)
{
    press("phonebook");
    inEvent([this] { pBook->display().setCurrent(&pBook->notification); });
    called();
    EXPECT_EQ(press("ok"), Verdict::Consumed);
    EXPECT_EQ(called(), Calls{"book: SCREEN"});
    EXPECT_EQ(press("ok"), Verdict::Passed);
    EXPECT_EQ(called(), Calls{"book: OK"});
}

TEST_F(PhoneTest, ClosesANotificationBeforeTheTabKeyAndHomeAct)
{
    const auto showNotification = [this] {
        inEvent([this] { pBook->display().setCurrent(&pBook->notification); });
    };
    press("phonebook");
    called();
    showNotification();
    press("phonebook");
    EXPECT_EQ(called(), (Calls{"book: SCREEN", "book: tab"}));
    showNotification();
    press("home");
    EXPECT_EQ(called(), (Calls{"book: SCREEN", "book: hide"}));
}

TEST_F(PhoneTest, NeverDialsARowThatAppearedAfterTheKeyWasPressed)
{
    press("phonebook");
    pBook->script["OK"] = [this] {
        pBook->display().setCurrent(&pBook->progress);
        EXPECT_EQ(phone->keys().press(keysFromWord("ok")->front()), Verdict::Busy);
        pBook->progress.dismiss();
    };
    called();
    press("ok");
    EXPECT_EQ(called(), Calls{"book: OK"});
}

TEST_F(PhoneTest, ClosesANotificationByItselfAlsoWhileHidden)
{
    press("phonebook");
    inEvent([this] {
        pBook->notification.setTimeout(3000);
        pBook->display().setCurrent(&pBook->notification);
        pBook->context().getDisplay()->hide();
    });
    called();
    phone->advance(3000ms);
    EXPECT_EQ(called(), Calls{"book: SCREEN"});
}

TEST_F(PhoneTest, ExpiresAPhoneletsTimers)
{
    inEvent([this] { pBook->context().startTimer(pBook->context().createTimer(pBook, 500)); });
    phone->advance(500ms);
    EXPECT_EQ(called(), Calls{"book: timer"});
    EXPECT_FALSE(pBook->context().isTimerRunning(1));
    inEvent([this] { pBook->context().deleteTimer(1); });
}

TEST_F(PhoneTest, LetsAPhoneletSleepByItsClock)
{
    press("phonebook");
    pBook->notification.setTimeout(3000);
    inEvent([this] {
        pBook->display().setCurrent(&pBook->notification);
        pBook->context().sleep(1'999'001us);
    });
    EXPECT_EQ(clock.now(), 2000ms);
    called();
    phone->advance(999ms);
    EXPECT_EQ(called(), Calls{});
    phone->advance(1ms);
    EXPECT_EQ(called(), Calls{"book: SCREEN"});
}

TEST_F(PhoneTest, GoesOnAfterAPhoneletThrew)
{
    LogCapture log;
    press("phonebook");
    pBook->script["OK"] = [] { throw std::out_of_range("row 7"); };
    press("ok");
    EXPECT_TRUE(log.has("event \"commandAction\" ended with an exception: row 7", AppLog::ERROR))
        << testing::PrintToString(log.texts(AppLog::ERROR));
    press("home");
    EXPECT_EQ(called().back(), "book: hide");
}

TEST_F(PhoneTest, TellsPhoneletsOfAnotherLanguageAndRepaints)
{
    press("phonebook");
    called();
    administratorWrites("language = \"de\"\n");
    EXPECT_EQ(called(), (Calls{"book: locale de", "child: locale de"}));
    EXPECT_TRUE(shows("( Zurück )"));
    administratorWrites("language = \"de\"\n");
    EXPECT_EQ(called(), Calls{});
}

TEST_F(PhoneTest, HoldsAnotherLanguageBackWhileAFormIsOpen)
{
    press("phonebook");
    inEvent([this] { pBook->display().setCurrent(&pBook->form); });
    called();
    administratorWrites("language = \"de\"\n");
    EXPECT_EQ(called(), Calls{});
    EXPECT_TRUE(shows("( Back )"));

    inEvent([this] { pBook->display().setCurrent(&pBook->list); });

    EXPECT_EQ(called(), (Calls{"book: locale de", "child: locale de"}));
    EXPECT_TRUE(shows("( Zurück )"));
}

TEST_F(PhoneTest, HoldsChangesOfTheContactsBackWhateverLiesOverAForm)
{
    openForm();
    othersAdd("Baker");
    EXPECT_EQ(called(), Calls{});
    const auto coverWith = [this](auto& popup) {
        inEvent([&] { pBook->display().setCurrent(&popup); });
        othersAdd("Cole");
        phone->advance(60s);
        inEvent([&] { popup.dismiss(); });
    };
    coverWith(pBook->notification);
    coverWith(pBook->progress);
    EXPECT_EQ(called(), Calls{});
    press("home");
    othersAdd("Dunn");
    EXPECT_EQ(called(), Calls{"book: hide"});
    press("phonebook");
    called();

    leaveForm();

    EXPECT_EQ(called(), Calls{"book: contacts changed"});
}

TEST_F(PhoneTest, DeliversHeldChangesInTheirOrderWhenAFormIsLeft)
{
    openForm();
    othersAdd("Baker");
    administratorWrites("language = \"de\"\n");
    othersAdd("Cole");
    EXPECT_EQ(called(), Calls{});

    leaveForm();

    EXPECT_EQ(called(), (Calls{"book: contacts changed", "book: locale de", "child: locale de"}));
}

TEST_F(PhoneTest, TellsOfContactsThatChangeAgainAfterAForm)
{
    openForm();
    othersAdd("Baker");
    leaveForm();
    called();
    othersAdd("Cole");
    EXPECT_EQ(called(), Calls{"book: contacts changed"});
}

TEST_F(PhoneTest, SaysOnTheIdleScreenWhichSettingIsRefused)
{
    administratorWrites("language = \"en\"\n\nvisible-rows = 99\n");
    EXPECT_TRUE(
        shows("Setting refused: config.toml, line 3: \"visible-rows\" must be a number from 3 to 40."));
}

TEST_F(PhoneTest, NamesNoLineOfAConfigurationThatCannotBeReadAtAll)
{
    administratorWrites(std::string(2 * 1024 * 1024, '#'));
    EXPECT_TRUE(shows("No setting of config.toml can be read: this is not a configuration file."));
}

TEST_F(PhoneTest, WritesAnAdministratorsOptionIntoTheOptionStoreToo)
{
    administratorWrites("ldap-qualifier = 4\n");
    EXPECT_EQ(phone->services().directory().readOption("LdapQualifier"), 4);
}

TEST_F(PhoneTest, SaysOnceWhyACallDoesNotBegin)
{
    const auto dialAtIdle = [this] {
        for (const char* key : {"hook", "4", "7", "1", "1", "ok"})
            press(key);
    };
    dialAtIdle();
    EXPECT_TRUE(shows("No line available."));
    press("hook");

    auto added = std::make_unique<TestLine>("20", TestLine::Behaviour::Refuses);
    auto& line = *added;
    phone->services().addLine(std::move(added));
    dialAtIdle();
    EXPECT_TRUE(shows("= 4711: Call failed"));
    EXPECT_FALSE(shows("No line"));
    press("hook");

    line.behaves = TestLine::Behaviour::Waits;
    dialAtIdle();
    line.behaves = TestLine::Behaviour::Refuses;
    for (const char* key : {"dialpad", "4", "7", "1", "2", "ok"})
        press(key);
    EXPECT_TRUE(shows("= 4711: Calling"));
    EXPECT_TRUE(shows("= 4712: Line in use"));
    EXPECT_FALSE(shows("No line"));
}

TEST_F(PhoneTest, DeliversNothingAfterStop)
{
    press("phonebook");
    called();
    phone->stop();
    EXPECT_EQ(called(),
              (Calls{"book: hide", "book: stop", "book: shutdown", "child: stop", "child: shutdown"}));
    phone->stop();
    press("phonebook");
    phone->advance(60s);
    EXPECT_EQ(called(), Calls{});
}

TEST(Phone, NamesOnTheIdleScreenAPhoneletThatIsMissingOrBroken)
{
    TemporaryFolder folder;
    LogCapture log;
    ManualClock clock;
    folder.write("libbroken.so", "text");
    auto options = optionsIn(folder);
    options.clock = &clock;
    options.phonelets = {{"missing", folder / "libmissing.so"},
                         {"broken", folder / "libbroken.so"},
                         {"thrower", HELLO},
                         {"hello", HELLO}};
    Calls calls;
    options.wrapPhonelet = [&](std::unique_ptr<Phonelet> phonelet) -> std::unique_ptr<Phonelet> {
        if (!calls.empty())
            return phonelet;
        auto thrower = std::make_unique<ScriptedPhonelet>(calls);
        thrower->script["start"] = [] { throw std::runtime_error("no"); };
        return thrower;
    };
    const auto phone = std::move(Phone::create(std::move(options))).value();
    phone->start();
    phone->runPending();

    const auto screen = toText(*phone->frames().latest());
    EXPECT_NE(screen.find("The application missing is missing."), screen.npos) << screen;
    EXPECT_NE(screen.find("The application broken has failed."), screen.npos) << screen;
    EXPECT_NE(screen.find("The application thrower has failed."), screen.npos) << screen;
    EXPECT_NE(phone->phonelet("hello"), nullptr);
}

TEST(Phone, GreetsWithTheSmallestPhonelet)
{
    TemporaryFolder folder;
    ManualClock clock;
    const auto start = [&] {
        auto options = optionsIn(folder);
        options.clock = &clock;
        options.phonelets = {{"hello", HELLO}};
        auto phone = std::move(Phone::create(std::move(options))).value();
        phone->start();
        phone->runPending();
        return phone;
    };
    const auto press = [](Phone& phone, const std::string& word) {
        phone.keys().press(keysFromWord(word)->front());
        phone.runPending();
        return toText(*phone.frames().latest());
    };

    auto phone = start();
    EXPECT_EQ(press(*phone, "phonebook"),
              "Greetings\n> Hello\n  Good morning\n  Good evening\n( OK )( Menu )( Back )\n");
    press(*phone, "tab");
    EXPECT_EQ(press(*phone, "ok"), "Greetings\n! Good morning!\n");
    phone->advance(3000ms);
    EXPECT_NE(press(*phone, "back").find("( Phonebook )"), std::string::npos);
    phone->stop();

    phone = start();
    EXPECT_NE(press(*phone, "phonebook").find("> Good morning"), std::string::npos);
}

TEST(Phone, ShowsAndDropsKeysWhileAHandlerBlocks)
{
    TemporaryFolder folder;
    Calls calls;
    ScriptedPhonelet* book = nullptr;
    auto options = optionsIn(folder);
    options.phonelets = {{"book", HELLO}};
    options.wrapPhonelet = [&](std::unique_ptr<Phonelet>) {
        auto scripted = std::make_unique<ScriptedPhonelet>(calls);
        book = scripted.get();
        return scripted;
    };
    const auto phone = std::move(Phone::create(std::move(options))).value();
    phone->start();
    ASSERT_TRUE(phone->events().waitUntilDone(20s));
    std::promise<void> answered;
    book->script["OK"] = [&] {
        book->display().setCurrent(&book->progress);
        answered.get_future().wait();
        book->progress.dismiss();
    };
    const auto press = [&](const std::string& word) {
        return phone->keys().press(keysFromWord(word)->front());
    };
    press("phonebook");
    ASSERT_TRUE(phone->events().waitUntilDone(20s));

    const auto before = phone->frames().latest()->number;
    press("ok");
    const auto blocked = phone->frames().waitForFrameAfter(before, 20s);
    ASSERT_NE(blocked, nullptr);
    EXPECT_EQ(toText(blocked->top()), "~ wait\n");
    EXPECT_EQ(press("ok"), Verdict::Busy);
    answered.set_value();

    ASSERT_TRUE(phone->events().waitUntilDone(20s));
    EXPECT_EQ(calls, (Calls{"book: start", "book: show", "book: OK"}));
    phone->stop();
}

TEST(Phone, NoticesAChangedSettingByItself)
{
    TemporaryFolder folder;
    auto options = optionsIn(folder);
    options.items.clear();
    folder.write("config.toml", "language = \"en\"\n");
    const auto phone = std::move(Phone::create(std::move(options))).value();
    phone->start();
    ASSERT_TRUE(phone->events().waitUntilDone(20s));
    const auto before = phone->frames().latest();

    folder.write("config.toml", "language = \"de\"\n");

    const auto after = phone->frames().waitForFrameAfter(before->number, 20s);
    ASSERT_NE(after, nullptr);
    EXPECT_EQ(after->softKeys.front().label, "Telefonbuch");
}

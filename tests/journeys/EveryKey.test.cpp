// Every key, and whatever else may happen, on every screen of the contacts and of the directory: none leads
// to a screen that cannot be left again, and the telephone can be used as before.

#include <gtest/gtest.h>

#include <algorithm>

#include <framework/display/Frame.h>

#include "JourneyPhone.h"

using DisplayAPI::FrameRole;

namespace {

// Words from the idle screen, with a soft-key bar and without.
struct Screen {
    std::string name;
    std::string withSoftKeys;
    std::string without;
};

std::ostream& operator<<(std::ostream& out, const Screen& screen)
{
    return out << screen.name;
}

std::vector<Screen> screens()
{
    std::vector<Screen> all;
    const auto add = [&](const std::string& name, const std::string& words, const std::string& without) {
        all.push_back({name, words, without});
    };
    // The screens that lie behind another one.
    const auto behind = [&](const std::string& name, const std::string& before, const std::string& words,
                            const std::string& without) {
        const auto screen = std::ranges::find(all, before, &Screen::name);
        add(name, screen->withSoftKeys + " " + words, screen->without + " " + without);
    };
    add("List", "phonebook", "phonebook");
    add("TabBar", "phonebook up", "phonebook up");
    add("EntryMenu", "phonebook menu", "phonebook down menu");
    behind("DeleteQuestion", "EntryMenu", "down down down down down ok", "down down ok");
    behind("Deleted", "DeleteQuestion", "ok", "ok");
    behind("DeleteAllQuestion", "EntryMenu", "up ok", "back up ok down down ok");
    behind("Details", "EntryMenu", "down ok", "down ok");
    behind("NumberField", "Details", "down down", "down down");
    behind("DefaultNumberField", "NumberField", "down down down down", "down down down down");
    behind("FormOptions", "Details", "up", "up");
    behind("ChangedForm", "Details", "text:x 2", "text:x 2");
    behind("SaveQuestion", "ChangedForm", "back", "back");
    behind("Saved", "ChangedForm", "save", "save");
    behind("NoName", "Details", "clearall down clearall save", "clearall down clearall save");
    behind("DiallerOverForm", "ChangedForm", "hook", "hook");
    add("NewContact", "phonebook menu down down down ok", "phonebook ok ok");
    add("NameFormat", "phonebook menu up up ok down", "phonebook ok down ok down");
    add("Groups", "phonebook menu down down down down ok", "phonebook ok up ok down");
    behind("GroupMenu", "Groups", "menu", "menu");
    behind("GroupView", "GroupMenu", "ok", "ok");
    behind("GroupForm", "GroupMenu", "down ok", "down ok");
    behind("GroupSaveQuestion", "GroupForm", "text:x back", "text:x back");
    behind("GroupSaved", "GroupForm", "text:x save", "text:x save");
    behind("NoGroupName", "GroupForm", "clearall save", "clearall save");
    behind("GroupDeleteQuestion", "GroupMenu", "down down down ok", "down down ok");
    behind("GroupDeleted", "GroupDeleteQuestion", "ok", "ok");

    add("Directory", "phonebook tab", "phonebook tab");
    behind("DirectoryTyped", "Directory", "text:mil", "text:mil");
    behind("DirectoryNobody", "Directory", "text:nobody *", "text:nobody *");
    behind("DirectoryMenu", "Directory", "menu", "ok");
    behind("Found", "Directory", "text:mil *", "text:mil *");
    behind("FoundMenu", "Found", "menu", "menu");
    behind("DiallerOverFound", "Found", "hook", "hook");
    behind("FoundOne", "FoundMenu", "down ok", "down down down down ok");
    behind("FoundNumber", "FoundOne", "down down", "down down");
    behind("FoundOptions", "FoundOne", "up right", "up right");
    behind("DiallerOverFoundOne", "FoundNumber", "hook", "hook");
    behind("FoundSaved", "FoundOne", "save", "save");
    behind("FoundSavedTwice", "FoundSaved", "ok menu down ok save", "ok menu down down down down ok save");
    behind("Find", "DirectoryMenu", "ok", "ok");
    behind("FindFilled", "Find", "text:mil* up", "text:mil* up");
    behind("FindNothing", "Find", "up ok", "up ok");
    behind("FoundNameFormat", "FoundMenu", "up up ok down", "back up ok down ok down");
    behind("FoundQualifier", "FoundMenu", "up ok down", "back up ok down down ok down");

    add("Pbx", "pbx:accepts phonebook tab tab", "pbx:accepts phonebook tab tab");
    add("PbxRefused", "pbx:refuses phonebook tab tab", "pbx:refuses phonebook tab tab");
    behind("PbxEmptyTab", "PbxRefused", "ok", "ok");
    return all;
}

constexpr const char* EVENTS[] = {
    "ok",
    "back",
    "menu",
    "save",
    "up",
    "down",
    "left",
    "right",
    "clear",
    "0",
    "#",
    "*",
    "text:a",
    "clearall",
    "soft1",
    "soft2",
    "soft3",
    "row1",
    "tab2",
    "phonebook",
    "home",
    "hook",
    "hook 3 wait:6000",
    "dialpad 3",
    "hangup",
    "wait:3000",
    "outside:Zander,Zoe",
    "outside:delete-all",
    "item:language=de",
    "restart",
};

// The same with a PBX.
constexpr const char* PBX_EVENTS[] = {
    "pbx:unavailable", "pbx:disabled",     "pbx:off",  "pbx:row:0:Abel,_Nora", "pbx:row:0:", "pbx:row:9:x",
    "pbx:flood",       "item:pbx-server=", "pbx:lost",
};

class EveryKey : public testing::TestWithParam<std::tuple<Screen, bool>> {
protected:
    static Journey journey()
    {
        Journey journey;
        journey.items = {{"soft-key-bar", hasSoftKeys() ? "true" : "false"}, {"language", "en"}};
        if (wordsToTheScreen().starts_with("phonebook tab"))
            journey.items.emplace("ldap-servers", "company");
        if (hasPbx())
            journey.pbx = "available";
        journey.groups = {"Friends"};
        journey.contacts = {"Adams, Bob; office=030 1111; group=Friends", "Miller, Anna; mobile=0170 333",
                            "Smith"};
        journey.line = "4711";
        return journey;
    }

    static std::vector<std::string> events()
    {
        std::vector<std::string> all(std::begin(EVENTS), std::end(EVENTS));
        if (hasPbx())
            all.insert(all.end(), std::begin(PBX_EVENTS), std::end(PBX_EVENTS));
        return all;
    }

    static bool hasPbx() { return wordsToTheScreen().starts_with("pbx:"); }
    static bool hasSoftKeys() { return std::get<1>(GetParam()); }
    static std::string wordsToTheScreen()
    {
        const auto& screen = std::get<0>(GetParam());
        return hasSoftKeys() ? screen.withSoftKeys : screen.without;
    }

    static bool isIdle(JourneyPhone& phone) { return phone.screen().starts_with("09:"); }

    // A person who wants out: Back, and the last answer of a question.
    static bool findsToIdle(JourneyPhone& phone)
    {
        constexpr int PATIENCE = 12;
        phone.run("tab1");
        for (int i = 0; i < PATIENCE && !isIdle(phone); ++i) {
            const auto frame = phone.phone().frames().latest();
            const bool isQuestion = frame->top().role == FrameRole::Question;
            if (!isQuestion)
                phone.run("back");
            else if (hasSoftKeys())
                phone.run("soft" + std::to_string(frame->softKeys.size() - 1)); // the last one is Back
            else
                phone.run("row" + std::to_string(frame->top().rows.size()));
        }
        return isIdle(phone);
    }

    // Each contact has one, below the options where there are no soft keys; without contacts one says so.
    static std::size_t rowsOf(const JourneyPhone& phone)
    {
        const auto contacts = phone.contacts().size();
        return hasSoftKeys() ? std::max<std::size_t>(contacts, 1) : contacts + 1;
    }
};

std::string nameOf(const testing::TestParamInfo<std::tuple<Screen, bool>>& info)
{
    return std::get<0>(info.param).name + (std::get<1>(info.param) ? "SoftKeys" : "NoSoftKeys");
}

} // namespace

TEST_P(EveryKey, LeavesTheTelephoneUsable)
{
    for (const auto& event : events()) {
        SCOPED_TRACE(event);
        JourneyPhone phone(journey());
        phone.run(wordsToTheScreen());
        phone.run(event);
        phone.run("hangup");
        if (isIdle(phone))
            phone.run("phonebook");

        ASSERT_TRUE(findsToIdle(phone)) << phone.screen();
        phone.run("phonebook");
        if (phone.phone().frames().latest()->tabs.empty())
            phone.run("phonebook"); // the PBX's lines have no tabs
        if (phone.phone().frames().latest()->top().role == FrameRole::Notification)
            phone.run("ok"); // it refuses to show them
        auto screen = phone.run("tab1");
        if (phone.phone().frames().latest()->top().role == FrameRole::Question)
            screen = phone.run(hasSoftKeys() ? "soft1" : "row1"); // contacts that others changed meanwhile
        EXPECT_EQ(phone.phone().frames().latest()->base.rows.size(), rowsOf(phone)) << screen;
        EXPECT_EQ(phone.complaints(), std::vector<std::string>{});
    }
}

INSTANTIATE_TEST_SUITE_P(All, EveryKey, testing::Combine(testing::ValuesIn(screens()), testing::Bool()),
                         nameOf);

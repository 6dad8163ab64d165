#include "PhonebookProtocolAdaptor.h"

#include <gtest/gtest.h>

#include <testing/FakeDirectoryService.h>

#include "TraceLines.h"

namespace {

using Strings = std::vector<std::string>;

const std::string prologue = "<?xml version=\"1.0\" encoding=\"utf-8\"?><Schema name=\"PhoneBook\">";

// The fields of a record in the order of the write request's arguments.
struct Fields {
    std::string surname = "1", firstname = "2", office = "3", mobile = "4", privateNumber = "5", email = "6",
                group = "7", defaultNumber = "Mobile", company = "9", office2 = "10", address = "11",
                address2 = "12", jobFunction = "13", picture = "14", externalId = "15";
};

int write(DirectoryServiceIfc* directory, const Fields& f, std::string& id)
{
    return PhonebookProtocolAdaptor::addFullEntry(directory, &f.surname, &f.firstname, &f.office, &f.mobile,
                                                  &f.privateNumber, &f.email, &f.group, &f.defaultNumber,
                                                  &f.company, &f.office2, &f.address, &f.address2,
                                                  &f.jobFunction, &f.picture, &f.externalId, id);
}

std::string answer(const std::string& reason, const std::string& rest = "")
{
    return prologue + "<ReasonForMessage>" + reason + "</ReasonForMessage>" + rest + "</Schema>";
}

std::string sentFor(const Fields& fields, std::string id)
{
    FakeDirectoryService directory;
    write(&directory, fields, id);
    return directory.requests.at(0);
}

} // namespace

TEST(PhonebookProtocolAdaptor, WritesAChangedRecordWithItsIdAtTheEnd)
{
    EXPECT_EQ(sentFor({}, "id7"),
              prologue + "<ReasonForMessage>write_request</ReasonForMessage><Entry><Surname>1</Surname>"
                         "<Firstname>2</Firstname><Office>3</Office><Mobile>4</Mobile><Private>5</Private>"
                         "<Email>6</Email><Group>7</Group><DefaultNumber>3</DefaultNumber>"
                         "<Company>9</Company><Office2>10</Office2><Address>11</Address>"
                         "<Address2>12</Address2><JobFunction>13</JobFunction><VoiceDial></VoiceDial>"
                         "<Picture>14</Picture><ExternalID>15</ExternalID><UniqueID>id7</UniqueID>"
                         "</Entry></Schema>");
}

TEST(PhonebookProtocolAdaptor, WritesANewRecordWithoutAnId)
{
    const std::string sent = sentFor({}, "");
    EXPECT_EQ(sent.find("UniqueID"), std::string::npos);
    EXPECT_TRUE(sent.ends_with("<ExternalID>15</ExternalID></Entry></Schema>")) << sent;
}

TEST(PhonebookProtocolAdaptor, EscapesWhatTheUserTypesButNotGroupAndId)
{
    Fields fields;
    for (auto* field :
         {&fields.surname, &fields.firstname, &fields.office, &fields.mobile, &fields.privateNumber,
          &fields.email, &fields.group, &fields.company, &fields.office2, &fields.address, &fields.address2,
          &fields.jobFunction, &fields.picture, &fields.externalId})
        *field = "&";
    const std::string sent = sentFor(fields, "&");
    for (const char* name : {"Surname", "Firstname", "Office", "Mobile", "Private", "Email", "Company",
                             "Office2", "Address", "Address2", "JobFunction", "Picture", "ExternalID"})
        EXPECT_NE(sent.find("<" + std::string(name) + ">&amp;</"), std::string::npos) << name;
    EXPECT_NE(sent.find("<Group>&</Group>"), std::string::npos);
    EXPECT_NE(sent.find("<UniqueID>&</UniqueID>"), std::string::npos);
}

TEST(PhonebookProtocolAdaptor, SendsTheDefaultNumberAsADigit)
{
    const std::pair<const char*, const char*> codes[] = {{"Office", "1"},  {"Office2", "2"}, {"Mobile", "3"},
                                                         {"Private", "4"}, {"None", "0"},    {"", "0"},
                                                         {"Fax", "0"}};
    for (const auto& [name, code] : codes) {
        Fields fields;
        fields.defaultNumber = name;
        EXPECT_NE(sentFor(fields, "").find("<DefaultNumber>" + std::string(code) + "</"), std::string::npos)
            << name;
    }
}

TEST(PhonebookProtocolAdaptor, LearnsTheIdOfANewRecord)
{
    FakeDirectoryService directory;
    std::string id;
    EXPECT_EQ(write(&directory, {}, id), 0);
    EXPECT_NE(id, "");
    EXPECT_TRUE(directory.records.contains(id));
}

TEST(PhonebookProtocolAdaptor, TakesTheIdThatTheAnswerCarries)
{
    FakeDirectoryService directory;
    directory.answer = answer("write_response", "<Entry><UniqueID>id8</UniqueID></Entry>");
    std::string id = "id7";
    EXPECT_EQ(write(&directory, {}, id), 0);
    EXPECT_EQ(id, "id8");
}

TEST(PhonebookProtocolAdaptor, TellsAFullDirectoryFromOtherFailures)
{
    FakeDirectoryService directory;
    std::string id = "id7";
    directory.failure = "Not enough memory";
    EXPECT_EQ(write(&directory, {}, id), 103);
    for (const char* failure : {"not enough memory", "Not enough memory.", "Disk on fire"}) {
        directory.failure = failure;
        EXPECT_EQ(write(&directory, {}, id), 100) << failure;
    }
    EXPECT_EQ(id, "id7");
}

TEST(PhonebookProtocolAdaptor, FailsToWriteForAnAnswerThatIsNoWriteResponse)
{
    FakeDirectoryService directory;
    std::string id = "id7";
    for (const auto& text :
         {std::string(), std::string("<Schema"), answer("read_response"), answer("delete_response"),
          std::string(
              "<Schema name=\"Other\"><ReasonForMessage>write_response</ReasonForMessage></Schema>")}) {
        directory.answer = text;
        EXPECT_EQ(write(&directory, {}, id), 100) << text;
    }
    EXPECT_EQ(write(nullptr, {}, id), 100);
    EXPECT_EQ(id, "id7");
}

TEST(PhonebookProtocolAdaptor, ReadsARecordInTheOrderOfItsFields)
{
    FakeDirectoryService directory;
    directory.answer = answer(
        "read_response",
        "<Entry><UniqueID>id7</UniqueID><Surname>1</Surname><Firstname>2</Firstname><Office>3</Office>"
        "<Mobile>4</Mobile><Private>5</Private><Email>6</Email><Group>7</Group>"
        "<DefaultNumber>2</DefaultNumber><Company>9</Company><Office2>10</Office2><Address>11</Address>"
        "<Address2>12</Address2><JobFunction>13</JobFunction><Picture>14</Picture>"
        "<ExternalID>15</ExternalID></Entry>");
    const std::string id = "id&7";
    Strings fields = {"before"};
    EXPECT_EQ(PhonebookProtocolAdaptor::getFullEntryData(&directory, &id, fields), 1);
    EXPECT_EQ(fields, (Strings{"before", "1", "2", "3", "4", "5", "6", "7", "Office2", "9", "10", "11", "12",
                               "13", "14", "15"}));
    EXPECT_EQ(directory.requests,
              (Strings{prologue + "<ReasonForMessage>read_request</ReasonForMessage><Entry>"
                                  "<UniqueID>id&7</UniqueID></Entry></Schema>"}));
}

TEST(PhonebookProtocolAdaptor, LeavesTheFieldsAloneWhenARecordCannotBeRead)
{
    FakeDirectoryService directory;
    const std::string id = "id7";
    Strings fields = {"before"};
    for (const auto& text : {std::string(), std::string("?"), answer("failure"), answer("write_response")}) {
        directory.answer = text;
        EXPECT_EQ(PhonebookProtocolAdaptor::getFullEntryData(&directory, &id, fields), 0) << text;
    }
    EXPECT_EQ(PhonebookProtocolAdaptor::getFullEntryData(nullptr, &id, fields), 0);
    EXPECT_EQ(fields, Strings{"before"});
}

TEST(PhonebookProtocolAdaptor, DeletesOneRecordById)
{
    FakeDirectoryService directory;
    const std::string id = "id&7";
    directory.answer = answer("delete_response");
    EXPECT_EQ(PhonebookProtocolAdaptor::deleteEntry(&directory, &id), 1);
    EXPECT_EQ(directory.requests,
              (Strings{prologue + "<ReasonForMessage>delete_request</ReasonForMessage><Entry>"
                                  "<UniqueID>id&7</UniqueID></Entry></Schema>"}));
    directory.answer = answer("read_response");
    EXPECT_EQ(PhonebookProtocolAdaptor::deleteEntry(&directory, &id), 0);
    directory.answer = answer("failure");
    EXPECT_EQ(PhonebookProtocolAdaptor::deleteEntry(&directory, &id), 0);
    EXPECT_EQ(PhonebookProtocolAdaptor::deleteEntry(nullptr, &id), 0);
}

TEST(PhonebookProtocolAdaptor, DeletesEverythingWithAReasonAlone)
{
    FakeDirectoryService directory;
    directory.answer = answer("delete_response");
    EXPECT_EQ(PhonebookProtocolAdaptor::deleteAll(&directory, -1), 1);
    EXPECT_EQ(directory.requests,
              (Strings{prologue + "<ReasonForMessage>delete_request</ReasonForMessage></Schema>"}));
}

TEST(PhonebookProtocolAdaptor, DeletesAGroupByItsTag)
{
    FakeDirectoryService directory;
    directory.answer = answer("delete_response");
    EXPECT_EQ(PhonebookProtocolAdaptor::deleteAll(&directory, 3), 1);
    EXPECT_EQ(PhonebookProtocolAdaptor::deleteAll(&directory, 0), 1);
    const std::string begin = prologue + "<ReasonForMessage>delete_request</ReasonForMessage><Entry><Group>";
    EXPECT_EQ(directory.requests,
              (Strings{begin + "3</Group></Entry></Schema>", begin + "0</Group></Entry></Schema>"}));
    directory.answer = answer("failure");
    EXPECT_EQ(PhonebookProtocolAdaptor::deleteAll(&directory, -1), 0);
    EXPECT_EQ(PhonebookProtocolAdaptor::deleteAll(nullptr, -1), 0);
}

TEST(PhonebookProtocolAdaptor, SplitsTheListIntoItems)
{
    FakeDirectoryService directory;
    directory.list = "a\t1\nb\t2";
    Strings items = {"before"};
    EXPECT_EQ(PhonebookProtocolAdaptor::getListData(&directory, -1, items), 1);
    EXPECT_EQ(items, (Strings{"before", "a\t1", "b\t2"}));
    EXPECT_GE(items.capacity(), 11u);
    EXPECT_EQ(directory.listCalls, Strings{"all"});
}

TEST(PhonebookProtocolAdaptor, AsksForAGroupByItsTag)
{
    FakeDirectoryService directory;
    directory.list = "a";
    Strings items;
    EXPECT_EQ(PhonebookProtocolAdaptor::getListData(&directory, 3, items), 1);
    EXPECT_EQ(PhonebookProtocolAdaptor::getListData(&directory, 0, items), 1);
    EXPECT_EQ(directory.listCalls, (Strings{"3", "0"}));
}

TEST(PhonebookProtocolAdaptor, DropsTheEmptyPieceAfterALastNewline)
{
    FakeDirectoryService directory;
    directory.list = "a\n\nb\n";
    Strings items;
    EXPECT_EQ(PhonebookProtocolAdaptor::getListData(&directory, -1, items), 1);
    EXPECT_EQ(items, (Strings{"a", "", "b"}));

    directory.list = "a\n\n";
    Strings more;
    EXPECT_EQ(PhonebookProtocolAdaptor::getListData(&directory, -1, more), 1);
    EXPECT_EQ(more, (Strings{"a", ""}));
}

TEST(PhonebookProtocolAdaptor, HasNoItemsForAnEmptyList)
{
    FakeDirectoryService directory;
    Strings items = {"before"};
    for (const char* text : {"empty", ""}) {
        directory.list = text;
        EXPECT_EQ(PhonebookProtocolAdaptor::getListData(&directory, -1, items), 0) << text;
    }
    EXPECT_EQ(PhonebookProtocolAdaptor::getListData(nullptr, -1, items), 0);
    EXPECT_EQ(items, Strings{"before"});
}

TEST(PhonebookProtocolAdaptor, SplitsAnItemIntoItsFields)
{
    const std::string item = "id7\tMiller\tJane\t2";
    Strings fields;
    EXPECT_EQ(PhonebookProtocolAdaptor::getEntryData(&item, fields), 1);
    EXPECT_EQ(fields, (Strings{"id7", "Miller", "Jane", "Office2"}));
}

TEST(PhonebookProtocolAdaptor, CountsThePieceAfterTheLastTab)
{
    const std::string noNumber = "id7\tMiller\tJane\t";
    Strings fields;
    EXPECT_EQ(PhonebookProtocolAdaptor::getEntryData(&noNumber, fields), 1);
    EXPECT_EQ(fields, (Strings{"id7", "Miller", "Jane", "None"}));

    const std::string tooMany = "id7\tMiller\tJane\t2\t";
    Strings five;
    EXPECT_EQ(PhonebookProtocolAdaptor::getEntryData(&tooMany, five), 0);
    EXPECT_EQ(five, (Strings{"id7", "Miller", "Jane", "2", ""}));
}

TEST(PhonebookProtocolAdaptor, RefusesAnItemWithOtherThanFourFields)
{
    const std::string empty;
    Strings fields;
    EXPECT_EQ(PhonebookProtocolAdaptor::getEntryData(&empty, fields), 0);
    EXPECT_TRUE(fields.empty());

    const std::string item = "id7\tMiller\tJane\t2";
    Strings used = {"before"};
    EXPECT_EQ(PhonebookProtocolAdaptor::getEntryData(&item, used), 0);
    EXPECT_EQ(used.size(), 5u);
}

TEST(PhonebookProtocolAdaptor, NamesTheDefaultNumberOfACode)
{
    EXPECT_EQ(PhonebookProtocolAdaptor::dataBaseEnum2IconName("1"), "Office");
    EXPECT_EQ(PhonebookProtocolAdaptor::dataBaseEnum2IconName("2"), "Office2");
    EXPECT_EQ(PhonebookProtocolAdaptor::dataBaseEnum2IconName("3"), "Mobile");
    EXPECT_EQ(PhonebookProtocolAdaptor::dataBaseEnum2IconName("4"), "Private");
    for (const char* code : {"0", "5", "", "01", "1 "})
        EXPECT_EQ(PhonebookProtocolAdaptor::dataBaseEnum2IconName(code), "None") << code;
}

TEST(PhonebookProtocolAdaptor, LogsEachOperationByItsName)
{
    std::string text = "id7";
    Strings strings;
    expectTraces("PhonebookProtocolAdaptor",
                 {
                     {"addFullEntry", [&] { write(nullptr, {}, text); }},
                     {"getFullEntryData",
                      [&] { PhonebookProtocolAdaptor::getFullEntryData(nullptr, &text, strings); }},
                     {"deleteEntry", [&] { PhonebookProtocolAdaptor::deleteEntry(nullptr, &text); }},
                     {"deleteAll", [] { PhonebookProtocolAdaptor::deleteAll(nullptr, -1); }},
                     {"getListData", [&] { PhonebookProtocolAdaptor::getListData(nullptr, -1, strings); }},
                     {"getEntryData", [&] { PhonebookProtocolAdaptor::getEntryData(&text, strings); }},
                     {"dataBaseEnum2IconName", [] { PhonebookProtocolAdaptor::dataBaseEnum2IconName("1"); }},
                 });
}

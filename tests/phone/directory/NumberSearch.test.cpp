#include "directory/NumberSearch.h"

#include <gtest/gtest.h>

#include "StoreTesting.h"
#include "calls/DialPlan.h"
#include "directory/ContactStore.h"

namespace {

using Names = std::vector<std::string>;

DialPlanRules berlin()
{
    DialPlanRules rules;
    rules.countryCode = "49";
    rules.areaCode = "30";
    rules.internalDigits = 3;
    rules.enterprisePrefix = "+49 30 23125";
    return rules;
}

class NumberSearch : public testing::Test {
protected:
    void add(const std::string& surname, const std::string& firstname, const std::string& number,
             std::string Contact::*field = &Contact::office)
    {
        Contact contact;
        contact.surname = surname;
        contact.firstname = firstname;
        contact.*field = number;
        ASSERT_TRUE(store.write(contact));
    }

    Names names(const std::string& number)
    {
        return namesWithNumber(store.file(), number,
                               [this](const std::string& form) {
                                   ++compared;
                                   return plan.canonical(form);
                               })
            .value();
    }

    TemporaryFolder folder;
    ContactStore store{folder / "contacts.db", "en"};
    DialPlan plan{berlin()};
    int compared = 0;
};

TEST_F(NumberSearch, FindsANumberHoweverItIsWritten)
{
    add("Miller", "Anna", "(030) 22 22-7");
    add("Adams", "Bob", "+49 170 333", &Contact::mobile);
    for (const auto* form : {"03022227", "+493022227", "0049 30 22227", "22227", "+49 (0)30 / 2222.7"})
        EXPECT_EQ(names(form), Names{"Miller, Anna"}) << form;
    EXPECT_EQ(names("0170333"), Names{"Adams, Bob"});
    EXPECT_EQ(names("03022228"), Names{});
    EXPECT_EQ(names("27"), Names{});
}

TEST_F(NumberSearch, FindsANumberOfAnyField)
{
    for (const auto& field : nNUMBER_FIELDS)
        add(field.name, "", "030 5555", field.text);
    EXPECT_EQ(names("+49305555"), (Names{"mobile", "office", "office2", "private"}));
}

TEST_F(NumberSearch, NamesAllWhoHaveItInTheirOrder)
{
    add("Smith", "Zoe", "030 1111");
    add("Adams", "Bob", "+49301111", &Contact::privateNumber);
    add("Adams", "Bob", "030 1111", &Contact::mobile);
    EXPECT_EQ(names("0301111"), (Names{"Adams, Bob", "Smith, Zoe"}));
}

TEST_F(NumberSearch, FindsInternalNumbersUnderTheirFullOnes)
{
    add("Colleague", "", "+49 30 23125 7");
    EXPECT_EQ(names("7"), Names{"Colleague"});
    add("Other", "", "8");
    EXPECT_EQ(names("+4930231258"), Names{"Other"});
}

TEST_F(NumberSearch, FindsNumbersWithOtherSignsToo)
{
    add("Code", "", "*21*4711#");
    add("Blank", "", "030\u00a06666\u20117");
    add("Mail", "", "anna@example.com");
    EXPECT_EQ(names("*21*4711#"), Names{"Code"});
    EXPECT_EQ(names("+49 30 66667"), Names{"Blank"});
    EXPECT_EQ(names("anna@example.com"), Names{"Mail"});
}

TEST_F(NumberSearch, ReadsOnlyWhatEndsLikeTheNumber)
{
    ASSERT_TRUE(store.inTransaction([this] {
        for (int i = 0; i < 5000; ++i) {
            Contact contact;
            contact.id = ContactStore::newId();
            contact.surname = "Surname " + std::to_string(i);
            contact.office = "+49 30 " + std::to_string(100000 + i);
            contact.mobile = "+49 170 " + std::to_string(200000 + i);
            store.put(contact);
        }
        return true;
    }));
    EXPECT_EQ(names("030104321"), Names{"Surname 4321"});
    EXPECT_LT(compared, 120);
}

TEST_F(NumberSearch, FollowsEveryChangeWhoeverMakesIt)
{
    add("Miller", "Anna", "030 2222");
    EXPECT_EQ(names("0302222"), Names{"Miller, Anna"});
    ContactStore others(folder / "contacts.db", "en");
    ASSERT_TRUE(others.eraseAll(std::nullopt));
    EXPECT_EQ(names("0302222"), Names{});
}

TEST_F(NumberSearch, IndexesAFileThatHasNoIndexYet)
{
    add("Miller", "Anna", "030 2222");
    const auto count = [this] {
        Database file(folder / "contacts.db", Database::Mode::ReadWrite);
        return file.queryNumber("SELECT count(*) FROM sqlite_schema WHERE name LIKE '%\\_end' ESCAPE '\\'");
    };
    EXPECT_EQ(count(), 4);
    {
        Database file(folder / "contacts.db", Database::Mode::ReadWrite);
        for (const auto& field : nNUMBER_FIELDS)
            file.execute("DROP INDEX contacts_by_" + std::string(field.name) + "_end");
    }
    EXPECT_EQ(names("0302222"), Names{"Miller, Anna"}); // slowly
    store.reopen();
    EXPECT_EQ(count(), 4);
    EXPECT_EQ(names("0302222"), Names{"Miller, Anna"});
}

} // namespace

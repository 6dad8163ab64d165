#include "PhonebookFullEntry.h"

#include <stdexcept>
#include <tuple>

#include <gtest/gtest.h>

#include <framework/services/Utils.h>

#include "TraceLines.h"

namespace {

using Getter = const std::string& (PhonebookFullEntry::*)() const;
using Setter = void (PhonebookFullEntry::*)(std::string);

struct Field {
    const char* name;
    Getter get;
    Setter set;
    unsigned int limit;
};

const Field limitedFields[] = {
    {"office", &PhonebookFullEntry::getOffice, &PhonebookFullEntry::setOffice, 50},
    {"mobile", &PhonebookFullEntry::getMobile, &PhonebookFullEntry::setMobile, 50},
    {"private", &PhonebookFullEntry::getPrivate, &PhonebookFullEntry::setPrivate, 50},
    {"email", &PhonebookFullEntry::getEmail, &PhonebookFullEntry::setEmail, 35},
    {"company", &PhonebookFullEntry::getCompany, &PhonebookFullEntry::setCompany, 40},
    {"office2", &PhonebookFullEntry::getOffice2, &PhonebookFullEntry::setOffice2, 50},
    {"address", &PhonebookFullEntry::getAddress, &PhonebookFullEntry::setAddress, 40},
    {"address2", &PhonebookFullEntry::getAddress2, &PhonebookFullEntry::setAddress2, 40},
    {"jobFunction", &PhonebookFullEntry::getJobFunction, &PhonebookFullEntry::setJobFunction, 30},
};

// Values in the order that setAll() takes them.
const std::vector<std::string> fifteen = {"surname", "firstname", "office",  "mobile",  "private",
                                          "email",   "3",         "Private", "company", "office2",
                                          "address", "address2",  "job",     "picture", "external"};

PhonebookFullEntry filled()
{
    PhonebookFullEntry entry;
    entry.setAll(fifteen);
    entry.setUniqueId("id7");
    return entry;
}

// The same order, read back.
std::vector<std::string> fieldsOf(const PhonebookFullEntry& entry)
{
    return {entry.getSurname(),     entry.getFirstname(), entry.getOffice(),    entry.getMobile(),
            entry.getPrivate(),     entry.getEmail(),     entry.getGroup(),     entry.getDefaultNumber(),
            entry.getCompany(),     entry.getOffice2(),   entry.getAddress(),   entry.getAddress2(),
            entry.getJobFunction(), entry.getPicture(),   entry.getExternalId()};
}

const std::vector<std::string> blank = {"", "", "", "", "", "", "0", "None", "", "", "", "", "", "", ""};

} // namespace

TEST(PhonebookFullEntry, StartsWithEmptyFields)
{
    const PhonebookFullEntry entry;
    EXPECT_EQ(fieldsOf(entry), std::vector<std::string>(15));
    EXPECT_EQ(entry.getUniqueId(), "");
    EXPECT_EQ(entry.getFullRecordPointer(), nullptr);
}

TEST(PhonebookFullEntry, CutsTheFieldsOfALocalRecordToTheirLimits)
{
    for (const auto& field : limitedFields) {
        PhonebookFullEntry entry;
        const std::string longest = "ä" + std::string(field.limit - 1, 'x');
        (entry.*field.set)(longest + "y");
        EXPECT_EQ((entry.*field.get)(), longest) << field.name;
        (entry.*field.set)("short");
        EXPECT_EQ((entry.*field.get)(), "short") << field.name;
    }
}

TEST(PhonebookFullEntry, KeepsTheFieldsOfACorporateDirectoryRecordWhole)
{
    for (const auto& field : limitedFields) {
        PhonebookFullEntry entry;
        entry.setLDAPPhonebookFullEntry(true);
        (entry.*field.set)(std::string(200, 'x'));
        EXPECT_EQ((entry.*field.get)(), std::string(200, 'x')) << field.name;
    }
}

TEST(PhonebookFullEntry, CutsNamesUnlessTheRowIsMarkedToo)
{
    PhonebookFullEntry entry;
    entry.setLDAPPhonebookFullEntry(true);
    entry.setSurname(std::string(31, 's'));
    EXPECT_EQ(entry.getSurname(), std::string(30, 's'));

    entry.setLDAPPhonebookListEntry(true);
    entry.setSurname(std::string(31, 's'));
    EXPECT_EQ(entry.getSurname(), std::string(31, 's'));
}

TEST(PhonebookFullEntry, CutsFieldsWhenOnlyTheRowIsMarked)
{
    PhonebookFullEntry entry;
    entry.setLDAPPhonebookListEntry(true);
    entry.setOffice(std::string(51, '1'));
    EXPECT_EQ(entry.getOffice(), std::string(50, '1'));
}

TEST(PhonebookFullEntry, KeepsNinetyOneBytesOfAPictureName)
{
    for (const bool ldap : {false, true}) {
        PhonebookFullEntry entry;
        entry.setLDAPPhonebookFullEntry(ldap);
        entry.setLDAPPhonebookListEntry(ldap);
        entry.setPicture(std::string(100, 'p'));
        EXPECT_EQ(entry.getPicture(), std::string(91, 'p'));
        entry.setPicture(std::string(90, 'p') + "ä");
        EXPECT_EQ(entry.getPicture(), std::string(90, 'p') + "\xC3");
    }
}

TEST(PhonebookFullEntry, AssignsGroupAndExternalIdAsTheyAre)
{
    PhonebookFullEntry entry;
    entry.setGroup(std::string(200, 'g'));
    entry.setExternalId(std::string(200, 'e'));
    EXPECT_EQ(entry.getGroup(), std::string(200, 'g'));
    EXPECT_EQ(entry.getExternalId(), std::string(200, 'e'));
}

TEST(PhonebookFullEntry, KnowsItsGroupByTagAndByIndex)
{
    PhonebookFullEntry entry;
    EXPECT_EQ(entry.getGroupIndex(), 0);
    entry.setGroupIndex(3);
    EXPECT_EQ(entry.getGroup(), "3");
    EXPECT_EQ(entry.getGroupIndex(), 3);
    entry.setGroupIndex(0);
    EXPECT_EQ(entry.getGroup(), "0");
}

TEST(PhonebookFullEntry, IsBlankWithoutGroupAndDefaultNumber)
{
    auto entry = filled();
    entry.setBlank();
    auto expected = blank;
    expected[14] = "external";
    EXPECT_EQ(fieldsOf(entry), expected);
    EXPECT_EQ(entry.getUniqueId(), "");
}

TEST(PhonebookFullEntry, IsFilledByPosition)
{
    const auto entry = filled();
    EXPECT_EQ(fieldsOf(entry), fifteen);
    EXPECT_EQ(entry.getSurname(), "surname");
    EXPECT_EQ(entry.getOffice2(), "office2");
    EXPECT_EQ(entry.getJobFunction(), "job");
    EXPECT_EQ(entry.getUniqueId(), "id7");
}

TEST(PhonebookFullEntry, IsFilledByPositionThroughItsLimits)
{
    PhonebookFullEntry entry;
    entry.setAll(std::vector<std::string>(15, std::string(100, 'x')));
    EXPECT_EQ(entry.getSurname(), std::string(30, 'x'));
    EXPECT_EQ(entry.getEmail(), std::string(35, 'x'));
    EXPECT_EQ(entry.getPicture(), std::string(91, 'x'));
    EXPECT_EQ(entry.getExternalId(), std::string(100, 'x'));
}

TEST(PhonebookFullEntry, ThrowsAtTheFirstFieldThatIsMissing)
{
    PhonebookFullEntry entry;
    entry.setUniqueId("id7");
    entry.setExternalId("before");
    auto fourteen = fifteen;
    fourteen.pop_back();
    EXPECT_THROW(entry.setAll(fourteen), std::out_of_range);
    auto expected = fifteen;
    expected[14] = "before";
    EXPECT_EQ(fieldsOf(entry), expected);
    EXPECT_EQ(entry.getUniqueId(), "id7");

    for (std::size_t count = 0; count < fifteen.size(); ++count) {
        const auto end = fifteen.begin() + static_cast<std::ptrdiff_t>(count);
        std::vector<std::string> there(fifteen.begin(), end);
        PhonebookFullEntry other;
        EXPECT_THROW(other.setAll(there), std::out_of_range) << count;
        there.resize(fifteen.size());
        EXPECT_EQ(fieldsOf(other), there) << count;
    }
}

TEST(PhonebookFullEntry, IsFilledFromTheAttributesOfTheCorporateDirectory)
{
    const AttributeList attributes = {
        {Utils::SURNAME, "Miller"},  {Utils::FIRSTNAME, "Jane"}, {Utils::OFFICE, "1"},
        {Utils::OFFICE2, "2"},       {Utils::MOBILE, "3"},       {Utils::PRIVATE, "4"},
        {Utils::EMAIL, "j@e.org"},   {Utils::COMPANY, "Acme"},   {Utils::JOBFUNCTION, "Smith"},
        {Utils::ADDRESS1, "Road 1"}, {Utils::ADDRESS2, "Town"},  {Utils::NICKNAME, "JJ"}};
    auto entry = filled();
    entry.setAll(&attributes);
    EXPECT_EQ(fieldsOf(entry),
              (std::vector<std::string>{"Miller", "Jane", "1", "3", "4", "j@e.org", "0", "Office", "Acme",
                                        "2", "Road 1", "Town", "Smith", "", "external"}));
    EXPECT_EQ(entry.getUniqueId(), "");
}

TEST(PhonebookFullEntry, IsBlankWhereAttributesAreMissingAndTakesTheLastOfARepeatedOne)
{
    const AttributeList attributes = {{Utils::SURNAME, "Miller"}, {Utils::SURNAME, "Smith"}};
    auto entry = filled();
    entry.setExternalId("");
    entry.setAll(&attributes);
    auto expected = blank;
    expected[0] = "Smith";
    EXPECT_EQ(fieldsOf(entry), expected);
}

TEST(PhonebookFullEntry, TakesTheLastOfARepeatedNumberAlsoWhenItIsEmpty)
{
    const AttributeList attributes = {{Utils::MOBILE, "3"}, {Utils::OFFICE, "1"}, {Utils::OFFICE, ""}};
    PhonebookFullEntry entry;
    entry.setAll(&attributes);
    EXPECT_EQ(entry.getOffice(), "");
    EXPECT_EQ(entry.getDefaultNumber(), "Office") << "as the row that is made from them";
}

TEST(PhonebookFullEntry, CutsTheAttributesToTheLimitsUnlessItIsMarked)
{
    const AttributeList attributes = {{Utils::SURNAME, std::string(31, 's')},
                                      {Utils::COMPANY, std::string(41, 'c')}};
    PhonebookFullEntry entry;
    entry.setAll(&attributes);
    EXPECT_EQ(entry.getSurname(), std::string(30, 's'));
    EXPECT_EQ(entry.getCompany(), std::string(40, 'c'));

    entry.setLDAPPhonebookListEntry(true);
    entry.setLDAPPhonebookFullEntry(true);
    entry.setAll(&attributes);
    EXPECT_EQ(entry.getSurname(), std::string(31, 's'));
    EXPECT_EQ(entry.getCompany(), std::string(41, 'c'));
}

TEST(PhonebookFullEntry, DialsTheFirstNumberOfTheAttributesThatIsNotEmpty)
{
    AttributeList attributes = {
        {Utils::PRIVATE, "4"}, {Utils::MOBILE, "3"}, {Utils::OFFICE2, "2"}, {Utils::OFFICE, "1"}};
    PhonebookFullEntry entry;
    for (const char* number : {"Office", "Office2", "Mobile", "Private", "None"}) {
        entry.setAll(&attributes);
        EXPECT_EQ(entry.getDefaultNumber(), number);
        if (!attributes.empty())
            attributes.pop_back();
    }
    const AttributeList emptyOffice = {{Utils::OFFICE, ""}, {Utils::MOBILE, "3"}};
    entry.setAll(&emptyOffice);
    EXPECT_EQ(entry.getDefaultNumber(), "Mobile");
}

TEST(PhonebookFullEntry, KnowsTheNumberAndTheIconOfItsDefault)
{
    auto entry = filled();
    const std::tuple<const char*, const char*, int> defaults[] = {
        {"Office", "office", 2},   {"Office2", "office2", 3}, {"Mobile", "mobile", 4},
        {"Private", "private", 1}, {"None", "", 0},           {"", "", 0},
        {"office", "", 0}};
    for (const auto& [name, number, icon] : defaults) {
        entry.setDefaultNumber(name);
        EXPECT_EQ(entry.getDefaultPhonebookNo(), number) << name;
        EXPECT_EQ(entry.getDefaultIcon(), icon) << name;
    }
}

TEST(PhonebookFullEntry, HasNothingToSaveWithoutANameOnly)
{
    PhonebookFullEntry entry;
    entry.setOffice("100");
    EXPECT_EQ(entry.validateEntry(), 1);
    entry.setSurname("Miller");
    EXPECT_EQ(entry.validateEntry(), 0);
    entry.setSurname("");
    entry.setFirstname(" ");
    EXPECT_EQ(entry.validateEntry(), 0);
}

TEST(PhonebookFullEntry, DiffersByEachComparedField)
{
    const auto entry = filled();
    for (std::size_t i = 0; i < 14; ++i) {
        auto fields = fifteen;
        fields[i] += "x";
        auto other = entry;
        EXPECT_TRUE(entry == other);
        other.setAll(fields);
        EXPECT_FALSE(entry == other) << i;
        EXPECT_TRUE(entry != other) << i;
    }
    auto other = entry;
    other.setUniqueId("id8");
    EXPECT_TRUE(entry != other);
}

TEST(PhonebookFullEntry, EqualsARecordThatDiffersInExternalIdOrMarksOnly)
{
    const auto entry = filled();
    auto other = entry;
    other.setExternalId("elsewhere");
    other.setLDAPPhonebookFullEntry(true);
    other.setLDAPPhonebookListEntry(true);
    EXPECT_TRUE(entry == other);
    EXPECT_FALSE(entry != other);
}

TEST(PhonebookFullEntry, LogsEachOperationByItsName)
{
    PhonebookFullEntry entry;
    const AttributeList attributes;
    expectTraces("PhonebookFullEntry",
                 {
                     {"getOffice", [&] { entry.getOffice(); }},
                     {"getMobile", [&] { entry.getMobile(); }},
                     {"getPrivate", [&] { entry.getPrivate(); }},
                     {"getEmail", [&] { entry.getEmail(); }},
                     {"getGroup", [&] { entry.getGroup(); }},
                     {"getCompany", [&] { entry.getCompany(); }},
                     {"getOffice2", [&] { entry.getOffice2(); }},
                     {"getAddress", [&] { entry.getAddress(); }},
                     {"getAddress2", [&] { entry.getAddress2(); }},
                     {"getJobFunction", [&] { entry.getJobFunction(); }},
                     {"getPicture", [&] { entry.getPicture(); }},
                     {"getExternalId", [&] { entry.getExternalId(); }},
                     {"getGroupIndex", [&] { entry.getGroupIndex(); }},
                     {"getDefaultPhonebookNo", [&] { entry.getDefaultPhonebookNo(); }},
                     {"getDefaultIcon", [&] { entry.getDefaultIcon(); }},
                     {"validateEntry", [&] { entry.validateEntry(); }},
                     {"setBlank", [&] { entry.setBlank(); }},
                     {"setOffice", [&] { entry.setOffice("a"); }},
                     {"setMobile", [&] { entry.setMobile("a"); }},
                     {"setPrivate", [&] { entry.setPrivate("a"); }},
                     {"setEmail", [&] { entry.setEmail("a"); }},
                     {"setCompany", [&] { entry.setCompany("a"); }},
                     {"setOffice2", [&] { entry.setOffice2("a"); }},
                     {"setAddress", [&] { entry.setAddress("a"); }},
                     {"setAddress2", [&] { entry.setAddress2("a"); }},
                     {"setJobFunction", [&] { entry.setJobFunction("a"); }},
                     {"setPicture", [&] { entry.setPicture("a"); }},
                     {"setGroup", [&] { entry.setGroup("a"); }},
                     {"setExternalId", [&] { entry.setExternalId("a"); }},
                     {"setGroupIndex", [&] { entry.setGroupIndex(1); }},
                     {"setLDAPPhonebookFullEntry", [&] { entry.setLDAPPhonebookFullEntry(true); }},
                     {"setAll", [&] { entry.setAll(fifteen); }},
                     {"setAll", [&] { entry.setAll(&attributes); }},
                     {"operator==", [&] { static_cast<void>(entry == entry); }},
                 });
}

// The demo's address book shows in the first minute what the phone can do.

#include <fstream>
#include <set>

#include "VcardTest.h"

namespace {

std::vector<Json> demoContacts()
{
    std::ifstream file(SOURCE_DIR "/demo/contacts.vcf", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return jsonLines(parseText(text).out);
}

bool hasAll(const Json& contact, std::initializer_list<const char*> fields)
{
    for (const char* field : fields) {
        if (contact[field] == "")
            return false;
    }
    return true;
}

std::size_t countOf(const std::vector<Json>& contacts, bool (*wanted)(const Json&))
{
    std::size_t count = 0;
    for (const auto& contact : contacts)
        count += wanted(contact) ? 1 : 0;
    return count;
}

} // namespace

TEST(DemoContacts, AreAllUsableWithoutProblems)
{
    const auto contacts = demoContacts();

    EXPECT_GE(contacts.size(), 60u);
    std::set<std::string> ids;
    for (const auto& contact : contacts) {
        EXPECT_FALSE(contact.contains("invalid")) << contact;
        EXPECT_EQ(contact["problems"], Json::array()) << contact;
        ids.insert(contact["uid"]);
    }
    EXPECT_EQ(ids.size(), contacts.size());
}

TEST(DemoContacts, ShowEveryKindOfEntry)
{
    const auto contacts = demoContacts();

    EXPECT_GE(countOf(contacts, [](const Json& c) { return !c["photo"].is_null(); }), 20u);
    EXPECT_GE(countOf(contacts,
                      [](const Json& c) {
                          return hasAll(c, {"office", "office2", "mobile", "private"});
                      }),
              4u);
    EXPECT_GE(countOf(contacts,
                      [](const Json& c) {
                          return c["office"] == "" && c["office2"] == "" && c["mobile"] == "" &&
                                 c["private"] == "";
                      }),
              2u);
    EXPECT_GE(countOf(contacts, [](const Json& c) { return c["groups"].size() > 1; }), 1u);
    EXPECT_GE(countOf(contacts, [](const Json& c) { return c["groups"].empty(); }), 3u);
    EXPECT_GE(countOf(contacts, [](const Json& c) { return !c["notShown"].empty(); }), 5u);
}

TEST(DemoContacts, AreWrittenInFourScripts)
{
    std::string names;
    for (const auto& contact : demoContacts())
        names += contact["surname"];

    for (const char* letter : {"M", "\u0418", "\u0394", "\u5C71"})
        EXPECT_NE(names.find(letter), std::string::npos) << letter;
}

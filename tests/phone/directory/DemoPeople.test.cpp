// The people of the demo's corporate directory show in the first minute what real ones are like.

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include "TemporaryFolder.h"
#include "calls/DialPlan.h"

namespace {

constexpr char nPEOPLE[] = SOURCE_DIR "/demo/directory/people.ldif";

std::string textOf(const std::string& file)
{
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

// The values of an attribute that are plain ASCII.
std::vector<std::string> valuesOf(const std::string& attribute)
{
    std::vector<std::string> values;
    std::ifstream people(nPEOPLE);
    for (std::string line; std::getline(people, line);) {
        if (line.rfind(attribute + ": ", 0) == 0)
            values.push_back(line.substr(attribute.size() + 2));
    }
    return values;
}

} // namespace

TEST(DemoPeople, AreWhatTheirProgramWrites)
{
    const TemporaryFolder folder;
    const auto written = (folder / "people.ldif").string();
    ASSERT_EQ(std::system(
                  ("python3 -B " SOURCE_DIR "/tools/make_demo_people.py " + written + " >/dev/null").c_str()),
              0);
    EXPECT_TRUE(textOf(written) == textOf(nPEOPLE)) << "run tools/make_demo_people.py";
}

TEST(DemoPeople, HaveNumbersThatCanBeDialledInAllTheirForms)
{
    DialPlanRules berlin; // as the demo's config.toml has them
    berlin.countryCode = "49";
    berlin.areaCode = "30";
    berlin.internalDigits = 4;
    const DialPlan plan(berlin);
    std::set<std::string> shapes;
    for (const auto* attribute : {"telephoneNumber", "mobile", "homePhone"}) {
        const auto numbers = valuesOf(attribute);
        EXPECT_GT(numbers.size(), 100u) << attribute;
        for (const auto& number : numbers) {
            const auto full = plan.canonical(number);
            const bool known = full.rfind("+49", 0) == 0 || full.rfind("+44", 0) == 0 ||
                               full.rfind("+33", 0) == 0 || full.rfind("+46", 0) == 0 ||
                               full.rfind("+1", 0) == 0;
            EXPECT_TRUE(known ? full.size() > 9 : plan.isInternal(full)) << number << " is " << full;
            std::string shape;
            for (const char c : number)
                shape += c >= '0' && c <= '9' ? '9' : c;
            shapes.insert(shape);
        }
    }
    EXPECT_GT(shapes.size(), 20u);
}

TEST(DemoPeople, IncludeColleaguesFromTheContactsWithTheirNumbers)
{
    std::set<std::string> known;
    std::ifstream contacts(SOURCE_DIR "/demo/contacts.vcf");
    for (std::string line; std::getline(contacts, line);) {
        if (line.rfind("TEL;", 0) == 0)
            known.insert(line.substr(line.find(':') + 1, line.find('\r') - line.find(':') - 1));
    }
    std::size_t shared = 0;
    for (const auto& number : valuesOf("telephoneNumber"))
        shared += known.count(number);
    EXPECT_GT(shared, 10u);
}
